// Several threads connect, disconnect, emit, copy and destroy against shared
// signals and subscribers; afterwards every count must add up.
//
// A subscriber that a running emission may still call has to be cut before
// it starts dying (its own part is gone by the time its base cuts the
// connections), so subscribers here die connected only to signals that
// nobody emits meanwhile.

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace talvar2_test {
namespace {

using talvar2::signal_t;
using talvar2::_internal::subscriber_base_t;

constexpr int k_threads = 4;
constexpr int k_rounds = 2000;
constexpr int k_keep_every = 100;  // rounds between subscribers that stay to the end

class counter_t : public subscriber_base_t {
 public:
  void on_value(int value) {
    m_calls.fetch_add(1);
    m_sum.fetch_add(value);
  }
  long calls() const { return m_calls.load(); }
  long sum() const { return m_sum.load(); }

 private:
  std::atomic<long> m_calls{0};
  std::atomic<long> m_sum{0};
};

// Counts like counter_t and notices two emissions running at once.
class serial_probe_t : public counter_t {
 public:
  void on_value(int value) {
    if (m_in_flight.fetch_add(1) != 0) m_overlaps.fetch_add(1);
    counter_t::on_value(value);
    m_in_flight.fetch_sub(1);
  }
  long overlaps() const { return m_overlaps.load(); }

 private:
  std::atomic<int> m_in_flight{0};
  std::atomic<long> m_overlaps{0};
};

// Runs `body(thread_index)` on k_threads threads that start together.
template <class Body>
void run_together(Body body) {
  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < k_threads; ++i) {
    threads.emplace_back([&ready, &body, i] {
      ready.fetch_add(1);
      while (ready.load() < k_threads) std::this_thread::yield();
      body(i);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

struct shared_state {
  signal_t<int> hub;     // emitted by every thread
  signal_t<int> roster;  // only connected to and cut while the threads run
  serial_probe_t probe;  // on hub for the whole run
  counter_t fan_in;      // on every thread's short-lived signals
  std::atomic<long> hub_emissions{0}, hub_sum{0}, local_emissions{0};
};

void emit(shared_state& shared, int value) {
  shared.hub(value);
  ++shared.hub_emissions;
  shared.hub_sum += value;
}

// One subscriber on hub and roster: its calls stop once it is cut from hub,
// and it dies either still on roster, while other threads connect to it, or
// cut from it.
void churn_subscriber(shared_state& shared, int value, bool die_connected) {
  auto subscriber = std::make_unique<counter_t>();
  shared.hub.connect(subscriber.get(), &counter_t::on_value);
  shared.roster.connect(subscriber.get(), &counter_t::on_value);
  emit(shared, value);
  EXPECT_GE(subscriber->calls(), 1);
  shared.hub.disconnect(subscriber.get(), &counter_t::on_value);
  const long frozen = subscriber->calls();
  emit(shared, value);
  EXPECT_EQ(subscriber->calls(), frozen);
  if (!die_connected) shared.roster.disconnect(subscriber.get(), &counter_t::on_value);
}

// A short-lived signal and its copy, both calling the shared fan_in.
void churn_local_signal(shared_state& shared, int value) {
  counter_t local_subscriber;
  signal_t<int> local;
  local.connect(&shared.fan_in, &counter_t::on_value);
  local.connect(&local_subscriber, &counter_t::on_value);
  local(value);
  signal_t<int> copy(local);
  copy(value);
  shared.local_emissions += 2;
  EXPECT_EQ(local_subscriber.calls(), 2);
}

TEST(SignalThreads, EmittingConnectingAndDyingTogetherKeepsEveryCount) {
  shared_state shared;
  shared.hub.connect(&shared.probe, &serial_probe_t::on_value);
  std::vector<std::vector<std::unique_ptr<counter_t>>> kept(k_threads);  // stay to the end
  run_together([&](int thread_index) {
    for (int round = 0; round < k_rounds; ++round) {
      const int value = thread_index * 10 + round % 10;
      churn_subscriber(shared, value, round % 2 == 0);
      churn_local_signal(shared, value);
      if (round % k_keep_every != 0) continue;
      kept[thread_index].push_back(std::make_unique<counter_t>());
      shared.hub.connect(kept[thread_index].back().get(), &counter_t::on_value);
      shared.roster.connect(kept[thread_index].back().get(), &counter_t::on_value);
    }
  });
  EXPECT_EQ(shared.probe.overlaps(), 0);
  EXPECT_EQ(shared.probe.calls(), shared.hub_emissions.load());
  EXPECT_EQ(shared.probe.sum(), shared.hub_sum.load());
  EXPECT_EQ(shared.fan_in.calls(), shared.local_emissions.load());

  // Exactly the survivors are still connected, each once.
  const std::size_t kept_count = k_threads * k_rounds / k_keep_every;
  EXPECT_EQ(shared.hub.connection_count(), kept_count + 1);
  EXPECT_EQ(shared.roster.connection_count(), kept_count);
  auto kept_calls = [&] {
    std::vector<long> calls;
    for (const auto& own : kept)
      for (const auto& subscriber : own) calls.push_back(subscriber->calls());
    return calls;
  };
  std::vector<long> expected = kept_calls();
  for (long& calls : expected) ++calls;
  shared.roster(1);
  EXPECT_EQ(kept_calls(), expected);
  kept.clear();
  EXPECT_EQ(shared.hub.connection_count(), 1u);
  EXPECT_EQ(shared.roster.connection_count(), 0u);
}

TEST(SignalThreads, OneSubscriberWiredToManySignalsAtOnce) {
  // Every thread registers its signals with the same subscriber at once: a
  // lost back-reference would leave a connection behind when it dies.
  constexpr int k_signals_per_thread = 300;
  auto subscriber = std::make_unique<counter_t>();
  std::vector<std::vector<std::unique_ptr<signal_t<int>>>> signals(k_threads);
  run_together([&](int thread_index) {
    auto& own = signals[thread_index];
    for (int i = 0; i < k_signals_per_thread; ++i) {
      own.push_back(std::make_unique<signal_t<int>>());
      own.back()->connect(subscriber.get(), &counter_t::on_value);
      if (i % 3 == 0) {  // some come and go again
        own.back()->disconnect(subscriber.get(), &counter_t::on_value);
        own.back()->connect(subscriber.get(), &counter_t::on_value);
      }
    }
  });

  for (const auto& own : signals)
    for (const auto& signal : own) (*signal)(1);
  EXPECT_EQ(subscriber->calls(), k_threads * k_signals_per_thread);

  subscriber.reset();
  std::size_t left_behind = 0;
  for (const auto& own : signals)
    for (const auto& signal : own) left_behind += signal->connection_count();
  EXPECT_EQ(left_behind, 0u);
}

// --- counted subscribers that come and go beside emitting threads ----------

enum life_t { k_unborn, k_alive, k_dead };

// A counted subscriber that cuts itself from the hub before it dies, as a
// subscriber living beside emitting threads must. Its life is recorded
// outside it, so a call arriving after its death is counted, not lost.
class leaving_subscriber_t : public talvar2::intrusive_pointer_impl_t, public subscriber_base_t {
 public:
  leaving_subscriber_t(signal_t<int>& hub, std::atomic<int>& life, std::atomic<long>& late_calls)
      : m_hub(hub), m_life(life), m_late_calls(late_calls) {
    m_life = k_alive;
    m_hub.connect(this, &leaving_subscriber_t::on_value);
  }
  ~leaving_subscriber_t() override {
    m_hub.disconnect(this, &leaving_subscriber_t::on_value);
    m_life = k_dead;
  }
  void on_value(int) {
    if (m_life.load() != k_alive) m_late_calls.fetch_add(1);
    m_calls.fetch_add(1);
  }
  long calls() const { return m_calls.load(); }

 private:
  signal_t<int>& m_hub;
  std::atomic<int>& m_life;
  std::atomic<long>& m_late_calls;
  std::atomic<long> m_calls{0};
};

using leaving_ptr = talvar2::intrusive_pointer_t<leaving_subscriber_t>;

TEST(SignalThreads, CountedSubscribersDieOnAnyThreadAndNoCallComesAfterDeath) {
  constexpr int k_emitters = 2;
  constexpr int k_emissions = 10000;
  constexpr int k_churners = 2;
  constexpr int k_per_churner = 4000;
  signal_t<int> hub;
  serial_probe_t probe;  // stays on the hub throughout
  hub.connect(&probe, &serial_probe_t::on_value);
  std::vector<std::atomic<int>> lives(k_churners * k_per_churner);
  std::atomic<long> late_calls{0};
  std::atomic<long> local_calls{0};
  // Subscribers handed between threads: whoever drops the last reference
  // destroys it, on whichever thread that happens to be.
  std::mutex exchange_mutex;
  std::vector<leaving_ptr> exchange;
  auto take = [&] {
    std::lock_guard<std::mutex> lock(exchange_mutex);
    if (exchange.empty()) return leaving_ptr();
    leaving_ptr taken = exchange.back();
    exchange.pop_back();
    return taken;
  };

  run_together([&](int thread_index) {
    if (thread_index < k_emitters) {
      for (int i = 0; i < k_emissions; ++i) hub(i);
      return;
    }
    const int churner = thread_index - k_emitters;
    for (int i = 0; i < k_per_churner; ++i) {
      leaving_ptr mine(new leaving_subscriber_t(hub, lives[churner * k_per_churner + i], late_calls));
      leaving_ptr other = take();
      {
        // A signal of this thread's own, dead before either subscriber can
        // be: a dying subscriber cuts it without racing its emission.
        signal_t<int> local;
        local.connect(mine.get(), &leaving_subscriber_t::on_value);
        if (other) local.connect(other.get(), &leaving_subscriber_t::on_value);
        const long before = mine->calls();
        local(i);
        local_calls.fetch_add(1);
        EXPECT_GE(mine->calls(), before + 1);
      }
      if (i % 2 == 0) {  // the other churner may end it
        std::lock_guard<std::mutex> lock(exchange_mutex);
        exchange.push_back(mine);
      }
    }
  });
  exchange.clear();

  static_assert(k_threads == k_emitters + k_churners, "every thread has a part");
  for (const auto& life : lives) EXPECT_EQ(life.load(), k_dead);
  EXPECT_EQ(late_calls.load(), 0);
  EXPECT_EQ(probe.overlaps(), 0);
  EXPECT_EQ(probe.calls(), long(k_emitters) * k_emissions);
  EXPECT_EQ(local_calls.load(), long(k_churners) * k_per_churner);
  EXPECT_EQ(hub.connection_count(), 1u);
}

}  // namespace
}  // namespace talvar2_test
