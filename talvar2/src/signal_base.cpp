#include "talvar2/debug/assertion.h"
#include "talvar2/functor/signal.h"

#include <unordered_map>
#include <vector>

namespace talvar2 {
namespace _internal {
namespace {

// Locations reported by the signal's debug assertions; hosts filter on them.
constexpr const char* k_signal_header = "functor/signal.h";
constexpr int k_duplicate_connection_line = 277;
constexpr int k_unknown_connection_line = 292;

}  // namespace

// The list may only change under `mutex`. `emission_state` points at the
// outermost running emission's alive flag; while it is set, cut connections
// are only emptied and the list keeps its shape.
//
// A signal that many subscribers connect to (the palette's change signal,
// one connection per style) would make every connect and every subscriber's
// death walk the whole list; past a few connections the live nodes are also
// indexed by subscriber.
//
// Callables of cut nodes wait in `retired` until no emission runs: the one
// running may be among them, and a callable's destructor may touch this very
// signal, which must then find its list whole.
struct signal_base_t::core_t {
  threading::mutex_t mutex;
  node_t* head = nullptr;
  node_t* tail = nullptr;
  bool* emission_state = nullptr;
  std::size_t live = 0;
  bool indexed = false;
  std::unordered_multimap<const subscriber_base_t*, node_t*> by_subscriber;
  std::vector<slot_box_t*> retired;

  // A core outliving its signal goes when its emission unwinds: nothing runs.
  ~core_t() {
    emission_state = nullptr;
    release_retired();
  }

  void append(const connection_t& connection);
  // The live node holding `connection`, or null.
  node_t* find(const connection_t& connection) const;
  // The live nodes whose subscriber is `subscriber`, in no particular order.
  std::vector<node_t*> nodes_of(const subscriber_base_t* subscriber) const;
  void unlink(node_t* node);
  void remove_emptied();
  void free_nodes();
  // Cuts `node`'s connection: unlinks it, or only empties it during an emission.
  void cut(node_t* node);
  // Lets go of the retired callables unless an emission is running.
  void release_retired();

 private:
  static constexpr std::size_t k_index_from = 16;
  void index(node_t* node) { by_subscriber.emplace(node->connection.subscriber, node); }
  void unindex(node_t* node);
  void retire(node_t* node);
};

signal_base_t::core_t& signal_base_t::core() {
  core_t* existing = current_core();
  if (existing != nullptr) return *existing;
  auto* created = new core_t;
  if (m_core.compare_exchange_strong(existing, created, std::memory_order_acq_rel))
    return *created;
  delete created;  // another thread made it first
  return *existing;
}

signal_base_t::signal_base_t(const signal_base_t& other) : subscriber_base_t() {
  core_t* source = other.current_core();
  if (source == nullptr) return;
  threading::mutex_guard_t guard(source->mutex);
  for (const node_t* node = source->head; node != nullptr; node = node->next)
    if (!node->connection.empty()) _insert(node->connection);
}

signal_base_t::~signal_base_t() {
  core_t* core = current_core();
  if (core == nullptr) return;  // never connected to
  core->mutex.acquire();
  const bool emitting = core->emission_state != nullptr;
  if (emitting) *core->emission_state = false;
  _erase_all();
  core->free_nodes();
  core->mutex.release();
  // A running emission still holds the mutex and frees the core when it unwinds.
  if (!emitting) delete core;
  m_core.store(nullptr, std::memory_order_release);
}

void signal_base_t::_insert(const connection_t& connection) {
  core_t& list = core();
  threading::mutex_guard_t guard(list.mutex);
  if (list.find(connection) != nullptr) {
    debug::assertion_failed("\"signal_t::_insert: this connection is already exists.\" == NULL",
                            k_signal_header, k_duplicate_connection_line, __PRETTY_FUNCTION__);
    return;
  }
  connection.subscriber->add_signal(this);  // lock order: signal, then subscriber
  list.append(connection);
}

void signal_base_t::_erase(const connection_t& connection) {
  core_t& list = core();
  threading::mutex_guard_t guard(list.mutex);
  node_t* node = list.find(connection);
  const bool subscriber_found = node != nullptr;
  if (!subscriber_found) {
    debug::assertion_failed(
        "\"signal_t::disconnect: attempt to disconnect unknown connection\" && subscriber_found",
        k_signal_header, k_unknown_connection_line, __PRETTY_FUNCTION__);
    return;
  }
  subscriber_base_t* subscriber = node->connection.subscriber;
  list.cut(node);
  // Every back-reference to this signal goes, even if the subscriber holds
  // further connections to it.
  if (subscriber != nullptr) subscriber->remove_signal(this);
  list.release_retired();
}

void signal_base_t::_erase_all() {
  core_t* list = current_core();
  if (list == nullptr) return;
  threading::mutex_guard_t guard(list->mutex);
  for (node_t* node = list->head; node != nullptr; node = node->next)
    if (!node->connection.empty()) node->connection.subscriber->remove_signal(this);
  if (list->emission_state == nullptr) {
    list->free_nodes();
    list->release_retired();
    return;
  }
  for (node_t* node = list->head; node != nullptr; node = node->next)
    if (!node->connection.empty()) list->cut(node);
}

void signal_base_t::on_subscriber_destroy(subscriber_base_t* subscriber) {
  core_t* list = current_core();
  if (list == nullptr) return;
  threading::mutex_guard_t guard(list->mutex);
  for (node_t* node : list->nodes_of(subscriber)) list->cut(node);
  list->release_retired();
}

bool signal_base_t::try_lock_for_subscriber() {
  core_t* list = current_core();
  return list == nullptr || list->mutex.try_acquire();
}

void signal_base_t::unlock_for_subscriber() {
  if (core_t* list = current_core()) list->mutex.release();
}

std::size_t signal_base_t::connection_count() const {
  core_t* list = current_core();
  if (list == nullptr) return 0;
  threading::mutex_guard_t guard(list->mutex);
  return list->live;
}

signal_base_t::node_t* signal_base_t::first_node(const onstack_signal_state_t& state) {
  return state.core->head;
}

bool signal_base_t::begin_emission(onstack_signal_state_t& state) const {
  core_t* list = state.core;
  if (list == nullptr) return false;  // never connected to: no one to call
  list->mutex.acquire();
  if (list->emission_state == nullptr) {
    list->emission_state = &state.alive;
    state.nested = false;
  } else {
    state.nested = true;
  }
  state.alive_in_force = list->emission_state;
  if (!*state.alive_in_force) {
    list->mutex.release();
    return false;
  }
  return true;
}

bool signal_base_t::check_valid_state_after_call(onstack_signal_state_t& state) {
  if (*state.alive_in_force) return true;
  end_after_destruction(state);
  return false;
}

void signal_base_t::post_call(onstack_signal_state_t& state) {
  core_t* list = state.core;
  if (!state.nested) {
    list->emission_state = nullptr;
    list->remove_emptied();
    list->release_retired();
  }
  list->mutex.release();
}

void signal_base_t::end_after_destruction(onstack_signal_state_t& state) {
  state.core->mutex.release();
  // The destructor left the core to the outermost emission.
  if (!state.nested) delete state.core;
}

void signal_base_t::core_t::append(const connection_t& connection) {
  node_t* node = new node_t;
  node->connection = connection;
  node->owned = connection.owned;
  if (node->owned != nullptr) node->owned->add_ref();
  node->previous = tail;
  (tail == nullptr ? head : tail->next) = node;
  tail = node;
  ++live;
  if (indexed) {
    index(node);
  } else if (live > k_index_from) {
    for (node_t* each = head; each != nullptr; each = each->next)
      if (!each->connection.empty()) index(each);
    indexed = true;
  }
}

signal_base_t::node_t* signal_base_t::core_t::find(const connection_t& connection) const {
  if (indexed) {
    const auto range = by_subscriber.equal_range(connection.subscriber);
    for (auto entry = range.first; entry != range.second; ++entry)
      if (entry->second->connection == connection) return entry->second;
    return nullptr;
  }
  for (node_t* node = head; node != nullptr; node = node->next)
    if (!node->connection.empty() && node->connection == connection) return node;
  return nullptr;
}

std::vector<signal_base_t::node_t*> signal_base_t::core_t::nodes_of(
    const subscriber_base_t* subscriber) const {
  std::vector<node_t*> nodes;
  if (indexed) {
    const auto range = by_subscriber.equal_range(subscriber);
    for (auto entry = range.first; entry != range.second; ++entry) nodes.push_back(entry->second);
    return nodes;
  }
  for (node_t* node = head; node != nullptr; node = node->next)
    if (node->connection.subscriber == subscriber) nodes.push_back(node);
  return nodes;
}

void signal_base_t::core_t::unindex(node_t* node) {
  const auto range = by_subscriber.equal_range(node->connection.subscriber);
  for (auto entry = range.first; entry != range.second; ++entry) {
    if (entry->second == node) {
      by_subscriber.erase(entry);
      return;
    }
  }
}

void signal_base_t::core_t::unlink(node_t* node) {
  (node->previous == nullptr ? head : node->previous->next) = node->next;
  (node->next == nullptr ? tail : node->next->previous) = node->previous;
  retire(node);
  delete node;
}

void signal_base_t::core_t::retire(node_t* node) {
  if (node->owned != nullptr) retired.push_back(node->owned);
  node->owned = nullptr;
}

void signal_base_t::core_t::release_retired() {
  // A released callable may connect or cut on this signal and retire more.
  while (emission_state == nullptr && !retired.empty()) {
    std::vector<slot_box_t*> releasing;
    releasing.swap(retired);
    for (slot_box_t* box : releasing) box->release();
  }
}

void signal_base_t::core_t::cut(node_t* node) {
  if (indexed) unindex(node);
  --live;
  if (emission_state == nullptr)
    unlink(node);
  else
    node->connection = connection_t();  // the running emission skips it
}

void signal_base_t::core_t::remove_emptied() {
  for (node_t* node = head; node != nullptr;) {
    node_t* next = node->next;
    if (node->connection.empty()) unlink(node);
    node = next;
  }
}

void signal_base_t::core_t::free_nodes() {
  while (head != nullptr) {
    node_t* next = head->next;
    retire(head);
    delete head;
    head = next;
  }
  tail = nullptr;
  live = 0;
  indexed = false;
  by_subscriber.clear();
}

}  // namespace _internal
}  // namespace talvar2
