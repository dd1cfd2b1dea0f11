// Callables as slots: how their connections end, what they may do inside an
// emission, and when the callables themselves are destroyed.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "talvar2/functor/signal.h"
#include "talvar2/signal_listener.h"

namespace talvar2_test {
namespace {

using talvar2::scoped_connection_t;
using talvar2::signal_t;
using talvar2::subscriber_base_t;

// Captured by a callable; counts the copies alive, so a test sees when the
// signal has destroyed the callable.
struct lifetime_probe_t {
  explicit lifetime_probe_t(int& alive) : alive(&alive) { ++alive; }
  lifetime_probe_t(const lifetime_probe_t& other) : alive(other.alive) { ++*alive; }
  ~lifetime_probe_t() { --*alive; }
  int* alive;
};

void append_tagged(call_log_t& log, int value) { log.push_back("f:" + std::to_string(value)); }

TEST(SignalCallable, EveryKindOfCallableIsCalledInConnectionOrderAmongMembers) {
  call_log_t log;
  listener_t member("m", log);
  subscriber_base_t owner;
  signal_t<int> signal;
  signal.connect(&owner, [&log](int value) { log.push_back("lambda:" + std::to_string(value)); });
  signal.connect(&member, &listener_t::on_value);
  signal.connect(&owner, std::function<void(int)>([&log](int value) { append_tagged(log, value); }));
  int counter = 0;
  scoped_connection_t stateful = signal.connect([&log, counter](int) mutable {
    log.push_back("n" + std::to_string(++counter));
    return counter;  // a result is dropped
  });
  signal(1);
  signal(2);
  EXPECT_EQ(log, (call_log_t{"lambda:1", "m:1", "f:1", "n1", "lambda:2", "m:2", "f:2", "n2"}));
  EXPECT_EQ(signal.connection_count(), 4u);

  signal_t<const std::string&, std::string&> rewrite;
  scoped_connection_t upper = rewrite.connect([](const std::string& in, std::string& out) { out = in + "!"; });
  std::string out;
  rewrite("hi", out);
  EXPECT_EQ(out, "hi!");
}

enum ending_t { k_handle_destroyed, k_disconnect, k_assigned_over, k_subscriber_dies, k_released };

TEST(SignalCallable, ConnectionEndsWithItsHandleOrSubscriberAndFreesTheCallable) {
  struct row_t {
    ending_t ending;
    bool called_after;
    std::size_t connections_after;
  };
  const row_t rows[] = {
      {k_handle_destroyed, false, 0}, {k_disconnect, false, 0}, {k_assigned_over, false, 1},
      {k_subscriber_dies, false, 0},  {k_released, true, 1},
  };
  for (const row_t& row : rows) {
    SCOPED_TRACE(row.ending);
    int alive = 0, calls = 0;
    std::optional<signal_t<>> signal(std::in_place);
    {
      lifetime_probe_t probe(alive);
      auto count = [probe, &calls] { ++calls; };
      auto subscriber = std::make_unique<subscriber_base_t>();
      std::optional<scoped_connection_t> handle;
      if (row.ending == k_subscriber_dies)
        signal->connect(subscriber.get(), count);
      else
        handle.emplace(signal->connect(count));
      (*signal)();
      switch (row.ending) {
        case k_handle_destroyed: handle.reset(); break;
        case k_disconnect: handle->disconnect(); break;
        case k_assigned_over: *handle = signal->connect([] {}); break;
        case k_subscriber_dies: subscriber.reset(); break;
        case k_released: handle->release(); break;
      }
      EXPECT_EQ(handle && handle->holds_connection(), row.ending == k_assigned_over);
      (*signal)();
      EXPECT_EQ(calls, row.called_after ? 2 : 1);
      EXPECT_EQ(signal->connection_count(), row.connections_after);
    }
    EXPECT_EQ(alive, row.ending == k_released ? 1 : 0);
    signal.reset();
    EXPECT_EQ(alive, 0);
  }
}

TEST(SignalCallable, HandleOutlivingItsSignalOrMovedEndsNothingTwice) {
  int alive = 0;
  scoped_connection_t kept, released;
  {
    signal_t<> signal;
    lifetime_probe_t probe(alive);
    kept = signal.connect([probe] {});
    released = signal.connect([probe] {});
    signal_t<> copy(signal);  // shares both callables
    EXPECT_EQ(copy.connection_count(), 2u);
    scoped_connection_t moved(std::move(kept));
    EXPECT_FALSE(kept.holds_connection());
    moved.disconnect();  // cuts the copy's connection too
    EXPECT_EQ(copy.connection_count(), 1u);
    EXPECT_EQ(signal.connection_count(), 1u);
  }
  EXPECT_EQ(alive, 1);  // the handle still holds its callable
  released.release();
  EXPECT_EQ(alive, 0);
  kept.disconnect();
}

TEST(SignalCallable, SlotEndingItsOwnConnectionFinishesWithItsCapturesIntact) {
  call_log_t log;
  int alive = 0;
  inspectable_signal_t<int> signal;
  scoped_connection_t self, later, added;
  {
    lifetime_probe_t probe(alive);
    self = signal.connect([&, probe](int value) {
      self.disconnect();
      later.disconnect();
      added = signal.connect([&log](int v) { log.push_back("added:" + std::to_string(v)); });
      log.push_back("self:" + std::to_string(value) + " alive " + std::to_string(*probe.alive));
      signal(value + 1);  // nested: finds neither cut slot
    });
  }
  later = signal.connect([&log](int value) { log.push_back("later:" + std::to_string(value)); });
  signal(1);
  EXPECT_EQ(log, (call_log_t{"self:1 alive 1", "added:2", "added:1"}));
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(signal.node_count(), 1u);  // the cut nodes are gone
}

TEST(SignalCallable, SlotDestroyingTheSignalKeepsItsCallableUntilItReturns) {
  int alive = 0, alive_inside = -1;
  auto signal = std::make_unique<signal_t<>>();
  {
    lifetime_probe_t probe(alive);
    signal->connect([&, probe] {
      signal.reset();
      alive_inside = *probe.alive;
    }).release();
  }
  (*signal)();
  EXPECT_EQ(alive_inside, 1);
  EXPECT_EQ(alive, 0);
}

// Two threads emit while two connect and disconnect callables: once
// disconnect() returns, the callable is never called again, and every
// callable is destroyed in the end.
TEST(SignalCallable, DisconnectFromAnotherThreadWaitsForTheRunningEmission) {
  constexpr int k_emitters = 2, k_emissions = 5000, k_churners = 2, k_per_churner = 2000;
  signal_t<int> hub;
  std::atomic<long> late_calls{0}, live_callables{0}, steady_calls{0};
  struct counted_t {
    explicit counted_t(std::atomic<long>& live) : live(&live) { live.fetch_add(1); }
    counted_t(const counted_t& other) : live(other.live) { live->fetch_add(1); }
    ~counted_t() { live->fetch_sub(1); }
    std::atomic<long>* live;
  };
  hub.connect([&steady_calls](int) { steady_calls.fetch_add(1); }).release();
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int index = 0; index < k_emitters + k_churners; ++index) {
    threads.emplace_back([&, index] {
      ready.fetch_add(1);
      while (ready.load() < k_emitters + k_churners) std::this_thread::yield();
      if (index < k_emitters) {
        for (int i = 0; i < k_emissions; ++i) hub(i);
        return;
      }
      subscriber_base_t owner;
      for (int i = 0; i < k_per_churner; ++i) {
        auto ended = std::make_shared<std::atomic<bool>>(false);
        counted_t counted(live_callables);
        auto slot = [ended, counted, &late_calls](int) {
          if (ended->load()) late_calls.fetch_add(1);
        };
        scoped_connection_t connection = hub.connect(slot);
        if (i % 4 == 0) hub.connect(&owner, slot);
        connection.disconnect();
        if (i % 4 != 0) ended->store(true);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(late_calls.load(), 0);
  EXPECT_EQ(steady_calls.load(), long(k_emitters) * k_emissions);
  EXPECT_EQ(hub.connection_count(), 1u);
  EXPECT_EQ(live_callables.load(), 0);
}

}  // namespace
}  // namespace talvar2_test
