#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "talvar2/assertion_recorder.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"
#include "talvar2/signal_listener.h"

namespace talvar2_test {
namespace {

using talvar2::signal_t;
using talvar2::subscriber_base_t;

template <class... A>
class capture_t : public subscriber_base_t {
 public:
  void on_emit(A... args) { calls.emplace_back(args...); }
  std::vector<std::tuple<std::decay_t<A>...>> calls;
};

template <class... A>
void expect_arguments_reach_every_slot(A... args) {
  SCOPED_TRACE(testing::Message() << sizeof...(A) << " arguments");
  signal_t<A...> signal;
  signal(args...);  // nobody listens yet
  capture_t<A...> first, second;
  signal.connect(&first, &capture_t<A...>::on_emit);
  signal.connect(&second, &capture_t<A...>::on_emit);
  signal(args...);
  signal.disconnect(&first, &capture_t<A...>::on_emit);
  EXPECT_EQ(signal.connection_count(), 1u);
  signal(args...);
  const std::tuple<A...> call(args...);
  EXPECT_EQ(first.calls, (std::vector<std::tuple<A...>>(1, call)));
  EXPECT_EQ(second.calls, (std::vector<std::tuple<A...>>(2, call)));
}

TEST(Signal, PassesEveryArityFromNoneToSix) {
  expect_arguments_reach_every_slot();
  expect_arguments_reach_every_slot(7);
  expect_arguments_reach_every_slot(7, std::string("two"));
  expect_arguments_reach_every_slot(7, std::string("two"), 3.5);
  expect_arguments_reach_every_slot(7, std::string("two"), 3.5, 'c');
  expect_arguments_reach_every_slot(7, std::string("two"), 3.5, 'c', -5L);
  expect_arguments_reach_every_slot(7, std::string("two"), 3.5, 'c', -5L, true);
}

class counted_payload_t : public talvar2::intrusive_pointer_impl_t {};
using payload_ptr = talvar2::intrusive_pointer_t<counted_payload_t>;

class text_filter_t : public subscriber_base_t {
 public:
  void on_text(const std::string& in, std::string& out, payload_ptr payload) {
    seen_input = &in;
    references_seen = payload->ref_count();
    out += in + "+";
  }
  const std::string* seen_input = nullptr;
  std::uint64_t references_seen = 0;
};

TEST(Signal, ReferencesReachSlotsUncopiedAndCountedCopiesAreReleased) {
  signal_t<const std::string&, std::string&, payload_ptr> text;
  text_filter_t first, second;
  text.connect(&first, &text_filter_t::on_text);
  text.connect(&second, &text_filter_t::on_text);
  const std::string in = "in";
  std::string out;
  const payload_ptr payload(new counted_payload_t);
  text(in, out, payload);
  EXPECT_EQ(out, "in+in+");  // both slots wrote into the caller's string
  EXPECT_EQ(first.seen_input, &in);
  EXPECT_EQ(second.seen_input, &in);
  EXPECT_GT(second.references_seen, 1u);  // the slot held its own copy
  EXPECT_EQ(payload->ref_count(), 1u);    // and every copy made on the way is gone
}

TEST(Signal, DuplicateConnectAndUnknownDisconnectAssertAndChangeNothing) {
  call_log_t log;
  listener_t a("a", log), b("b", log), stranger("stranger", log);
  signal_t<int> signal;
  signal.connect(&a, &listener_t::on_value);
  signal.connect(&b, &listener_t::on_value);
  signal.connect(&b, &listener_t::on_other_value);
  signal.disconnect(&b, &listener_t::on_other_value);

  assertion_recorder recorder;
  signal.connect(&a, &listener_t::on_value);
  const recorded_assertion duplicate = recorder.single();
  EXPECT_EQ(duplicate.expression, "\"signal_t::_insert: this connection is already exists.\" == NULL");
  EXPECT_EQ(duplicate.file, "functor/signal.h");
  EXPECT_EQ(duplicate.line, 277);
  EXPECT_NE(duplicate.function.find("_insert"), std::string::npos) << duplicate.function;

  recorder.clear();
  signal.disconnect(&stranger, &listener_t::on_value);  // target never connected
  signal.disconnect(&a, &listener_t::on_other_value);   // member never connected on a
  signal.disconnect(&b, &listener_t::on_other_value);   // already disconnected
  const std::vector<recorded_assertion> unknown = recorder.records();
  ASSERT_EQ(unknown.size(), 3u);
  for (const recorded_assertion& assertion : unknown) {
    EXPECT_EQ(assertion.expression,
              "\"signal_t::disconnect: attempt to disconnect unknown connection\" && subscriber_found");
    EXPECT_EQ(assertion.file, "functor/signal.h");
    EXPECT_EQ(assertion.line, 292);
  }
  signal(1);
  EXPECT_EQ(log, (call_log_t{"a:1", "b:1"}));
}

// Signals with many subscribers look connections up by subscriber: the
// same rules hold there, during emissions too.
TEST(Signal, LongConnectionListsKeepEveryRule) {
  call_log_t log;
  std::vector<std::unique_ptr<listener_t>> listeners;
  signal_t<int> signal;
  for (int i = 0; i < 40; ++i) {
    listeners.push_back(std::make_unique<listener_t>(std::to_string(i), log));
    signal.connect(listeners.back().get(), &listener_t::on_value);
  }
  signal.connect(listeners[3].get(), &listener_t::on_other_value);  // a second member, allowed
  {
    assertion_recorder recorder;
    signal.connect(listeners[30].get(), &listener_t::on_value);
    EXPECT_EQ(recorder.single().line, 277);
  }
  // The first slot cuts a later connection and destroys a later subscriber.
  listeners[0]->set_action([&](int) {
    signal.disconnect(listeners[10].get(), &listener_t::on_value);
    listeners[20].reset();
    listeners[0]->set_action(nullptr);
  });
  signal(1);
  EXPECT_EQ(log.size(), 39u);
  EXPECT_EQ(std::count(log.begin(), log.end(), "10:1") + std::count(log.begin(), log.end(), "20:1"), 0);
  listeners[3].reset();  // both of its connections go
  EXPECT_EQ(signal.connection_count(), 37u);
}

TEST(Signal, CopyTakesConnectionsInOrderAndIsIndependent) {
  call_log_t log;
  listener_t a("a", log), c("c", log);
  auto b = std::make_unique<listener_t>("b", log);
  auto original = std::make_unique<signal_t<int>>();
  original->connect(&a, &listener_t::on_value);
  original->connect(b.get(), &listener_t::on_value);
  original->connect(&a, &listener_t::on_other_value);

  signal_t<int> copy(*original);
  original->disconnect(b.get(), &listener_t::on_value);
  copy.connect(&c, &listener_t::on_value);
  (*original)(2);
  copy(3);
  EXPECT_EQ(log, (call_log_t{"a:2", "a/other:2", "a:3", "b:3", "a/other:3", "c:3"}));

  // The copy registered itself with its subscribers: b's death cuts its
  // connection; the original's death leaves it whole.
  b.reset();
  original.reset();
  log.clear();
  copy(4);
  EXPECT_EQ(log, (call_log_t{"a:4", "a/other:4", "c:4"}));
}

}  // namespace
}  // namespace talvar2_test
