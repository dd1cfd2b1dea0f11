// Slots that change the signal calling them; destroying cases are meant to
// be caught under AddressSanitizer too.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "talvar2/functor/signal.h"
#include "talvar2/signal_listener.h"

namespace talvar2_test {
namespace {

using int_signal_t = inspectable_signal_t<int>;

struct three_listeners {
  call_log_t log;
  listener_t a{"a", log};
  listener_t b{"b", log};
  listener_t c{"c", log};

  void connect_all(talvar2::signal_t<int>& signal) {
    signal.connect(&a, &listener_t::on_value);
    signal.connect(&b, &listener_t::on_value);
    signal.connect(&c, &listener_t::on_value);
  }

  call_log_t emit(const talvar2::signal_t<int>& signal, int value) {
    log.clear();
    signal(value);
    return log;
  }
};

// A slot changes the connections of the signal calling it, once, at
// emission 1. A copy made right after the change takes the live connections.
TEST(SignalReentrancy, SlotDisconnectedOrConnectedDuringEmission) {
  using change_t = void (*)(three_listeners&, int_signal_t&, listener_t& d);
  struct case_t {
    const char* name;
    listener_t three_listeners::*actor;
    change_t change;
    std::size_t nodes_while_emitting;  // emptied entries stay until the outermost emission ends
    call_log_t first, second;
  };
  const case_t cases[] = {
      {"b cuts itself", &three_listeners::b,
       [](three_listeners& l, int_signal_t& s, listener_t&) { s.disconnect(&l.b, &listener_t::on_value); }, 3,
       {"a:1", "b:1", "c:1"}, {"a:2", "c:2"}},
      {"a cuts the later b", &three_listeners::a,
       [](three_listeners& l, int_signal_t& s, listener_t&) { s.disconnect(&l.b, &listener_t::on_value); }, 3,
       {"a:1", "c:1"}, {"a:2", "c:2"}},
      // A nested emission that removed a's emptied entry would leave the
      // outer one stepping on from a freed node.
      {"a cuts itself, then emits again", &three_listeners::a,
       [](three_listeners& l, int_signal_t& s, listener_t&) {
         s.disconnect(&l.a, &listener_t::on_value);
         s(2);
       },
       3, {"a:1", "b:2", "c:2", "b:1", "c:1"}, {"b:2", "c:2"}},
      {"a connects d", &three_listeners::a,
       [](three_listeners&, int_signal_t& s, listener_t& d) { s.connect(&d, &listener_t::on_value); }, 4,
       {"a:1", "b:1", "c:1", "d:1"}, {"a:2", "b:2", "c:2", "d:2"}},
      // The emptied entry is no duplicate: a is called again at the tail.
      {"a reconnects itself", &three_listeners::a,
       [](three_listeners& l, int_signal_t& s, listener_t&) {
         s.disconnect(&l.a, &listener_t::on_value);
         s.connect(&l.a, &listener_t::on_value);
       },
       4, {"a:1", "b:1", "c:1", "a:1"}, {"b:2", "c:2", "a:2"}},
  };
  for (const case_t& c : cases) {
    SCOPED_TRACE(c.name);
    three_listeners l;
    listener_t d("d", l.log);
    int_signal_t signal;
    std::unique_ptr<int_signal_t> copy;
    l.connect_all(signal);
    (l.*c.actor).set_action([&](int value) {
      if (value != 1 || copy) return;
      c.change(l, signal, d);
      EXPECT_EQ(signal.connection_count(), c.second.size());
      EXPECT_EQ(signal.node_count(), c.nodes_while_emitting);
      copy = std::make_unique<int_signal_t>(signal);
    });

    signal(1);
    EXPECT_EQ(l.log, c.first);
    EXPECT_EQ(l.emit(signal, 2), c.second);
    EXPECT_EQ(signal.node_count(), c.second.size());
    EXPECT_EQ(copy->node_count(), c.second.size());
    EXPECT_EQ(l.emit(*copy, 2), c.second);
  }
}

TEST(SignalReentrancy, SubscriberDestroyedDuringEmissionIsNotCalledAgain) {
  for (const bool by_itself : {false, true}) {
    SCOPED_TRACE(by_itself ? "in its own slot" : "by an earlier slot");
    call_log_t log;
    listener_t a("a", log);
    auto* doomed = new listener_t("d", log);
    listener_t c("c", log);
    int_signal_t signal;
    signal.connect(&a, &listener_t::on_value);
    signal.connect(doomed, &listener_t::on_value);
    signal.connect(doomed, &listener_t::on_other_value);
    signal.connect(&c, &listener_t::on_value);
    (by_itself ? doomed : &a)->set_action([&](int) {
      auto& still_alive = signal;  // the closure may die with `doomed`
      delete std::exchange(doomed, nullptr);
      EXPECT_EQ(still_alive.connection_count(), 2u);
    });

    signal(1);
    EXPECT_EQ(log, (by_itself ? call_log_t{"a:1", "d:1", "c:1"} : call_log_t{"a:1", "c:1"}));
    EXPECT_EQ(signal.node_count(), 2u);
  }
}

struct slot_failure : std::runtime_error {
  slot_failure() : std::runtime_error("slot failed") {}
};

TEST(SignalReentrancy, ThrowingSlotStopsTheEmissionAndLeavesTheSignalUsable) {
  struct case_t {
    const char* name;
    bool nested;  // a emits 2 from inside 1; b cuts itself, then throws at 2
    call_log_t thrown, after;
  };
  const case_t cases[] = {
      {"b throws", false, {"a:1", "b:1"}, {"a:3", "b:3", "c:3"}},
      {"b throws from a nested emission", true, {"a:1", "a:2", "b:2"}, {"a:3", "c:3"}},
  };
  for (const case_t& c : cases) {
    SCOPED_TRACE(c.name);
    three_listeners l;
    int_signal_t signal;
    l.connect_all(signal);
    l.a.set_action([&](int value) {
      if (c.nested && value == 1) signal(2);
    });
    l.b.set_action([&](int value) {
      if (value != (c.nested ? 2 : 1)) return;
      if (c.nested) signal.disconnect(&l.b, &listener_t::on_value);
      throw slot_failure();
    });
    EXPECT_THROW(signal(1), slot_failure);
    EXPECT_EQ(l.log, c.thrown);
    EXPECT_EQ(l.emit(signal, 3), c.after);
    // No emission is left marked running: a disconnect unlinks at once.
    signal.disconnect(&l.c, &listener_t::on_value);
    EXPECT_EQ(signal.node_count(), c.after.size() - 1);
  }
}

// Under AddressSanitizer: nothing may touch the dead signal or free its mutex twice.
TEST(SignalReentrancy, SlotDestroyingTheSignalEndsOnlyThatEmission) {
  struct case_t {
    const char* name;
    bool forwarded;  // else a emits 2 from inside 1, and b throws after the delete
    call_log_t expected;
  };
  const case_t cases[] = {
      {"nested emission, then a throw", false, {"a:1", "a:2", "b:2"}},
      // The outer signal reaches the inner one's slots; the inner one's death cuts the link.
      {"forwarded from an outer signal", true, {"a:1", "b:1", "z:1"}},
  };
  using base_t = talvar2::basic_signal_t<int>;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    three_listeners l;
    listener_t z("z", l.log);
    int_signal_t outer;
    auto* signal = new int_signal_t;
    l.connect_all(*signal);
    outer.connect<base_t>(signal, &base_t::operator());
    outer.connect(&z, &listener_t::on_value);
    l.a.set_action([&](int value) {
      if (!c.forwarded && value == 1) (*signal)(2);
    });
    l.b.set_action([&](int) {
      delete signal;
      if (!c.forwarded) throw slot_failure();
    });

    if (c.forwarded) {
      outer(1);
    } else {
      EXPECT_THROW((*signal)(1), slot_failure);
    }
    EXPECT_EQ(l.log, c.expected);
    EXPECT_EQ(outer.connection_count(), 1u);
    EXPECT_EQ(outer.node_count(), 1u);
  }
}

}  // namespace
}  // namespace talvar2_test
