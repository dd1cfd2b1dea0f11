// Threads emit, connect, disconnect, copy and destroy signals and counted
// subscribers together; afterwards every count must add up.

#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace talvar2_test {
namespace {

using talvar2::scoped_connection_t;
using talvar2::signal_t;

enum life_t { k_alive = 1, k_dead };

// A counted subscriber that cuts itself from the hub before it dies, as a
// subscriber living beside emitting threads must (its own part is gone by
// the time its base cuts the connections). Its life is recorded outside it,
// so a call arriving after its death is counted, not lost.
class leaving_subscriber_t : public talvar2::intrusive_pointer_impl_t, public talvar2::subscriber_base_t {
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

// Stays on the hub throughout and notices two emissions running at once.
class serial_probe_t : public talvar2::subscriber_base_t {
 public:
  void on_value(int) {
    if (m_in_flight.fetch_add(1) != 0) overlaps.fetch_add(1);
    calls.fetch_add(1);
    m_in_flight.fetch_sub(1);
  }
  std::atomic<long> calls{0}, overlaps{0};

 private:
  std::atomic<int> m_in_flight{0};
};

// Whether one of this process's threads sleeps where a waiting lock puts
// it: on a futex, or in a nap between looks (the kernel function it sleeps in).
bool sleeps_in_lock(pid_t thread) {
  std::ifstream wchan("/proc/self/task/" + std::to_string(thread) + "/wchan");
  std::string where;
  std::getline(wchan, where);
  return where.find("futex") != std::string::npos || where.find("nanosleep") != std::string::npos;
}

// A connect from another thread while a slot runs waits for it, asleep
// once the slot takes long, and goes on when the emission ends: first while
// the lock belongs to the emitting thread (which used it often), then as an
// ordinary lock. The slot runs until it sees the other thread asleep.
TEST(SignalThreads, ConnectFromAnotherThreadSleepsUntilTheRunningSlotReturns) {
  signal_t<int> hub;
  std::atomic<bool> in_slot{false}, slot_returned{false}, connector_slept{false};
  std::atomic<pid_t> connector{0};
  scoped_connection_t slot = hub.connect([&](int value) {
    if (value == 0) return;
    in_slot = true;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!connector_slept && std::chrono::steady_clock::now() < deadline) {
      connector_slept = connector.load() != 0 && sleeps_in_lock(connector.load());
      std::this_thread::yield();
    }
    slot_returned = true;
  });
  for (int use = 0; use < 1000; ++use) hub(0);
  serial_probe_t probes[2];
  for (serial_probe_t& probe : probes) {
    in_slot = slot_returned = connector_slept = false;
    connector = 0;
    std::thread connecting([&] {
      while (!in_slot) std::this_thread::yield();
      connector = gettid();
      hub.connect(&probe, &serial_probe_t::on_value);
      EXPECT_TRUE(slot_returned.load());
    });
    hub(1);
    connecting.join();
    EXPECT_TRUE(connector_slept.load());
  }
  EXPECT_EQ(hub.connection_count(), 3u);
}

// 2 threads emit the hub while 2 churn counted subscribers on the hub and the
// roster (never emitted); every other one is handed to the other churner.
TEST(SignalThreads, CountedSubscribersDieOnAnyThreadAndNoCallComesAfterDeath) {
  constexpr int k_emitters = 2, k_emissions = 10000, k_churners = 2, k_per_churner = 4000;
  signal_t<int> hub, roster;
  serial_probe_t probe;
  hub.connect(&probe, &serial_probe_t::on_value);
  std::vector<std::atomic<int>> lives(k_churners * k_per_churner);
  std::atomic<long> late_calls{0}, local_calls{0};
  std::mutex exchange_mutex;
  std::vector<leaving_ptr> exchange;
  auto take = [&] {
    std::lock_guard<std::mutex> lock(exchange_mutex);
    if (exchange.empty()) return leaving_ptr();
    leaving_ptr taken = exchange.back();
    exchange.pop_back();
    return taken;
  };

  std::atomic<int> ready{0};
  std::vector<std::thread> threads;
  for (int thread_index = 0; thread_index < k_emitters + k_churners; ++thread_index) {
    threads.emplace_back([&, thread_index] {
      ready.fetch_add(1);
      while (ready.load() < k_emitters + k_churners) std::this_thread::yield();
      if (thread_index < k_emitters) {
        for (int i = 0; i < k_emissions; ++i) hub(i);
        return;
      }
      const int churner = thread_index - k_emitters;
      for (int i = 0; i < k_per_churner; ++i) {
        leaving_ptr mine(new leaving_subscriber_t(hub, lives[churner * k_per_churner + i], late_calls));
        roster.connect(mine.get(), &leaving_subscriber_t::on_value);
        if (i % 3 == 0) roster.disconnect(mine.get(), &leaving_subscriber_t::on_value);
        leaving_ptr other = take();
        {
          // Signals of this thread's own, dead before either subscriber can be.
          signal_t<int> local;
          local.connect(mine.get(), &leaving_subscriber_t::on_value);
          if (other) local.connect(other.get(), &leaving_subscriber_t::on_value);
          signal_t<int> copy(local);
          const long before = mine->calls();
          local(i);
          copy(i);
          local_calls.fetch_add(2);
          EXPECT_GE(mine->calls(), before + 2);
        }
        if (i % 2 == 0) {
          std::lock_guard<std::mutex> lock(exchange_mutex);
          exchange.push_back(mine);
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  exchange.clear();

  for (const auto& life : lives) EXPECT_EQ(life.load(), k_dead);
  EXPECT_EQ(late_calls.load(), 0);
  EXPECT_EQ(probe.overlaps.load(), 0);
  EXPECT_EQ(probe.calls.load(), long(k_emitters) * k_emissions);
  EXPECT_EQ(local_calls.load(), 2L * k_churners * k_per_churner);
  EXPECT_EQ(hub.connection_count(), 1u);
  EXPECT_EQ(roster.connection_count(), 0u);
}

}  // namespace
}  // namespace talvar2_test
