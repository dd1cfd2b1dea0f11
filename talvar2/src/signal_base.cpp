#include "talvar2/debug/assertion.h"
#include "talvar2/functor/signal.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <vector>

namespace talvar2 {
namespace _internal {
namespace {

// Locations reported by the signal's debug assertions; hosts filter on them.
constexpr const char* k_signal_header = "functor/signal.h";
constexpr int k_duplicate_connection_line = 277;
constexpr int k_unknown_connection_line = 292;

// What a signal without storage walks: an entry that ends the walk.
const connection_t k_no_entries;

}  // namespace

// The array may only change under `lock`. While an emission runs, cut
// connections are only emptied and entries keep their positions; outside
// one, emptied entries are removed at once from a short array and, from a
// long one, once they are half of it, so that a cut costs no more than a
// connect. Every entry from `stored` to `capacity` is empty, and `stored`
// stays below `capacity`: the walk ends on an empty entry.
//
// A signal that many subscribers connect to (the palette's change signal,
// one connection per style) would make every connect and every subscriber's
// death walk the whole array; past a few connections the live entries are
// also indexed by subscriber (by position, rebuilt when emptied entries go).
//
// Callables of cut connections wait in `retired`, and arrays replaced during
// an emission in `replaced`, until no emission runs: the callable running
// may be among them, and a callable's destructor may touch this very signal,
// which must then find its array whole.
struct signal_base_t::core_t : emission_core_t {
  std::size_t capacity = 0;
  std::size_t live = 0;
  std::size_t emptied = 0;
  using index_t = std::unordered_multimap<const subscriber_base_t*, std::size_t>;
  // Made when the array gets long; most signals have a few connections.
  std::unique_ptr<index_t> by_subscriber;
  std::vector<slot_box_t*> retired;
  std::vector<connection_t*> replaced;

  core_t() { entries = const_cast<connection_t*>(&k_no_entries); }  // never written: capacity 0
  // A core outliving its signal goes when its emission unwinds: nothing runs.
  ~core_t() {
    emission_state = nullptr;
    release_retired();
    release_storage();
  }

  bool emitting() const { return emission_state != nullptr; }
  connection_t* begin() const { return entries; }
  connection_t* end() const { return entries + stored; }
  void append(const connection_t& connection);
  // The position of the live entry equal to `connection`, or npos.
  std::size_t find(const connection_t& connection) const;
  // The positions of the live entries whose subscriber is `subscriber`.
  std::vector<std::size_t> positions_of(const subscriber_base_t* subscriber) const;
  // Empties the entry at `position`; positions stay valid until tidy().
  void cut(std::size_t position);
  // Outside an emission: removes emptied entries when due and lets go of
  // the callables of cut connections and of replaced arrays.
  void tidy();
  void remove_emptied();
  void clear();
  void release_retired();

  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

 private:
  static constexpr std::size_t k_index_from = 16;
  static constexpr std::size_t k_first_capacity = 2;  // one connection and the end
  void grow();
  void release_storage();
  void rebuild_index();
  void unindex(std::size_t position);
};

signal_base_t::core_t& signal_base_t::core() {
  emission_core_t* existing = current_core();
  if (existing != nullptr) return *static_cast<core_t*>(existing);
  auto* created = new core_t;
  if (m_core.compare_exchange_strong(existing, created, std::memory_order_acq_rel))
    return *created;
  delete created;  // another thread made it first
  return *static_cast<core_t*>(existing);
}

signal_base_t::core_t* signal_base_t::full_core() const {
  return static_cast<core_t*>(current_core());
}

signal_base_t::signal_base_t(const signal_base_t& other) : subscriber_base_t() {
  core_t* source = other.full_core();
  if (source == nullptr) return;
  source->lock.acquire();
  // By position: a subscriber's callback cannot run here, but the source's
  // array is only ours to read while its lock is held.
  for (std::size_t position = 0; position < source->stored; ++position)
    if (!source->entries[position].empty()) _insert(source->entries[position]);
  source->lock.release();
}

signal_base_t::~signal_base_t() {
  core_t* core = full_core();
  if (core == nullptr) return;  // never connected to
  core->lock.acquire();
  const bool emitting = core->emitting();
  if (emitting) *core->emission_state = false;
  _erase_all();
  // An emission still walking the array finds it empty and stops.
  core->clear();
  core->lock.release();
  // A running emission still holds the lock and frees the core when it unwinds.
  if (!emitting) delete core;
  m_core.store(nullptr, std::memory_order_release);
}

void signal_base_t::_insert(const connection_t& connection) {
  core_t& list = core();
  list.lock.acquire();
  if (list.find(connection) != core_t::npos) {
    debug::assertion_failed("\"signal_t::_insert: this connection is already exists.\" == NULL",
                            k_signal_header, k_duplicate_connection_line, __PRETTY_FUNCTION__);
  } else {
    connection.subscriber->add_signal(this);  // lock order: signal, then subscriber
    list.append(connection);
  }
  list.lock.release();
}

void signal_base_t::_erase(const connection_t& connection) {
  core_t& list = core();
  list.lock.acquire();
  const std::size_t position = list.find(connection);
  const bool subscriber_found = position != core_t::npos;
  if (!subscriber_found) {
    debug::assertion_failed(
        "\"signal_t::disconnect: attempt to disconnect unknown connection\" && subscriber_found",
        k_signal_header, k_unknown_connection_line, __PRETTY_FUNCTION__);
    list.lock.release();
    return;
  }
  subscriber_base_t* subscriber = list.entries[position].subscriber;
  list.cut(position);
  // Every back-reference to this signal goes, even if the subscriber holds
  // further connections to it.
  if (subscriber != nullptr) subscriber->remove_signal(this);
  list.tidy();
  list.lock.release();
}

void signal_base_t::_erase_all() {
  core_t* list = full_core();
  if (list == nullptr) return;
  list->lock.acquire();
  for (const connection_t* entry = list->begin(); entry != list->end(); ++entry)
    if (!entry->empty()) entry->subscriber->remove_signal(this);
  if (list->emitting()) {
    for (std::size_t position = 0; position < list->stored; ++position)
      if (!list->entries[position].empty()) list->cut(position);
  } else {
    list->clear();
    list->release_retired();
  }
  list->lock.release();
}

void signal_base_t::on_subscriber_destroy(subscriber_base_t* subscriber) {
  core_t* list = full_core();
  if (list == nullptr) return;
  list->lock.acquire();
  for (std::size_t position : list->positions_of(subscriber)) list->cut(position);
  list->tidy();
  list->lock.release();
}

bool signal_base_t::try_lock_for_subscriber() {
  emission_core_t* list = current_core();
  return list == nullptr || list->lock.try_acquire();
}

void signal_base_t::unlock_for_subscriber() {
  if (emission_core_t* list = current_core()) list->lock.release();
}

std::size_t signal_base_t::connection_count() const {
  core_t* list = full_core();
  if (list == nullptr) return 0;
  list->lock.acquire();
  const std::size_t live = list->live;
  list->lock.release();
  return live;
}

bool signal_base_t::check_valid_state_after_call(onstack_signal_state_t& state) {
  if (*state.alive_in_force) return true;
  end_after_destruction(state);
  return false;
}

void signal_base_t::tidy_after_emission(emission_core_t* core) {
  static_cast<core_t*>(core)->tidy();
}

void signal_base_t::end_after_destruction(onstack_signal_state_t& state) {
  state.core->lock.release();
  // The destructor left the core to the outermost emission.
  if (!state.nested) delete static_cast<core_t*>(state.core);
}

void signal_base_t::core_t::append(const connection_t& connection) {
  if (stored + 1 >= capacity) grow();
  entries[stored++] = connection;
  if (connection.owned != nullptr) connection.owned->add_ref();
  ++live;
  if (by_subscriber) {
    by_subscriber->emplace(connection.subscriber, stored - 1);
  } else if (live > k_index_from) {
    by_subscriber = std::make_unique<index_t>();
    rebuild_index();
  }
}

void signal_base_t::core_t::grow() {
  const std::size_t grown = capacity == 0 ? k_first_capacity : capacity * 2;
  auto* moved = new connection_t[grown]();
  std::copy(begin(), end(), moved);
  if (capacity != 0) {
    if (emitting()) {
      // The running walk finds the old array empty and goes on in this one.
      std::fill(begin(), end(), connection_t());
      replaced.push_back(entries);
      tidy_due = true;
    } else {
      delete[] entries;
    }
  }
  entries = moved;
  capacity = grown;
}

void signal_base_t::core_t::release_storage() {
  if (capacity != 0) delete[] entries;
  entries = const_cast<connection_t*>(&k_no_entries);
  stored = 0;
  capacity = 0;
  for (connection_t* array : replaced) delete[] array;
  replaced.clear();
}

std::size_t signal_base_t::core_t::find(const connection_t& connection) const {
  if (by_subscriber) {
    const auto range = by_subscriber->equal_range(connection.subscriber);
    for (auto entry = range.first; entry != range.second; ++entry)
      if (entries[entry->second] == connection) return entry->second;
    return npos;
  }
  for (std::size_t position = 0; position < stored; ++position)
    if (!entries[position].empty() && entries[position] == connection) return position;
  return npos;
}

std::vector<std::size_t> signal_base_t::core_t::positions_of(
    const subscriber_base_t* subscriber) const {
  std::vector<std::size_t> positions;
  if (by_subscriber) {
    const auto range = by_subscriber->equal_range(subscriber);
    for (auto entry = range.first; entry != range.second; ++entry) positions.push_back(entry->second);
    return positions;
  }
  for (std::size_t position = 0; position < stored; ++position)
    if (entries[position].subscriber == subscriber) positions.push_back(position);
  return positions;
}

void signal_base_t::core_t::cut(std::size_t position) {
  if (by_subscriber) unindex(position);
  connection_t& connection = entries[position];
  if (connection.owned != nullptr) retired.push_back(connection.owned);
  connection = connection_t();  // a running emission skips it
  --live;
  ++emptied;
  if (emitting()) tidy_due = true;
}

void signal_base_t::core_t::tidy() {
  if (emitting()) return;
  tidy_due = false;
  if (emptied != 0 && (!by_subscriber || emptied * 2 >= stored)) remove_emptied();
  for (connection_t* array : replaced) delete[] array;
  replaced.clear();
  release_retired();
}

void signal_base_t::core_t::remove_emptied() {
  connection_t* kept_end = std::remove_if(begin(), end(), [](const connection_t& connection) {
    return connection.empty();
  });
  std::fill(kept_end, end(), connection_t());
  stored = static_cast<std::size_t>(kept_end - entries);
  emptied = 0;
  if (by_subscriber) rebuild_index();
}

void signal_base_t::core_t::clear() {
  for (connection_t* entry = begin(); entry != end(); ++entry)
    if (entry->owned != nullptr) retired.push_back(entry->owned);
  live = 0;
  emptied = 0;
  by_subscriber.reset();
  if (emitting()) {
    // The running walk reads on: it must find empty entries.
    std::fill(begin(), end(), connection_t());
    stored = 0;
  } else {
    release_storage();
  }
}

void signal_base_t::core_t::release_retired() {
  // A released callable may connect or cut on this signal and retire more.
  while (!emitting() && !retired.empty()) {
    std::vector<slot_box_t*> releasing;
    releasing.swap(retired);
    for (slot_box_t* box : releasing) box->release();
  }
}

void signal_base_t::core_t::rebuild_index() {
  by_subscriber->clear();
  for (std::size_t position = 0; position < stored; ++position)
    if (!entries[position].empty()) by_subscriber->emplace(entries[position].subscriber, position);
}

void signal_base_t::core_t::unindex(std::size_t position) {
  const auto range = by_subscriber->equal_range(entries[position].subscriber);
  for (auto entry = range.first; entry != range.second; ++entry) {
    if (entry->second == position) {
      by_subscriber->erase(entry);
      return;
    }
  }
}

}  // namespace _internal
}  // namespace talvar2
