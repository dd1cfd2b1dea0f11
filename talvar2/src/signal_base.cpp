#include "talvar2/debug/assertion.h"
#include "talvar2/functor/signal.h"

namespace talvar2 {
namespace _internal {
namespace {

// Locations reported by the signal's debug assertions; hosts filter on them.
constexpr const char* k_signal_header = "functor/signal.h";
constexpr int k_duplicate_connection_line = 277;
constexpr int k_unknown_connection_line = 292;

}  // namespace

signal_base_t::signal_base_t() : m_mutex(new threading::mutex_t) {}

signal_base_t::signal_base_t(const signal_base_t& other)
    : subscriber_base_t(), m_mutex(new threading::mutex_t) {
  threading::mutex_guard_t guard(*other.m_mutex);
  for (const node_t* node = other.m_head; node != nullptr; node = node->next)
    if (!node->connection.empty()) _insert(node->connection);
}

signal_base_t::~signal_base_t() {
  threading::mutex_t* mutex = m_mutex;
  mutex->acquire();
  const bool emitting = m_emission_state != nullptr;
  if (emitting) *m_emission_state = false;
  _erase_all();
  free_nodes();
  mutex->release();
  // A running emission still holds the mutex and frees it when it unwinds.
  if (!emitting) delete mutex;
  m_mutex = nullptr;
}

void signal_base_t::_insert(const connection_t& connection) {
  threading::mutex_guard_t guard(*m_mutex);
  for (const node_t* node = m_head; node != nullptr; node = node->next) {
    if (node->connection == connection) {
      debug::assertion_failed("\"signal_t::_insert: this connection is already exists.\" == NULL",
                              k_signal_header, k_duplicate_connection_line, __PRETTY_FUNCTION__);
      return;
    }
  }
  connection.subscriber->add_signal(this);  // lock order: signal, then subscriber
  append(connection);
}

void signal_base_t::_erase(const connection_t& connection) {
  threading::mutex_guard_t guard(*m_mutex);
  node_t* previous = nullptr;
  node_t* node = m_head;
  while (node != nullptr && !(node->connection == connection)) {
    previous = node;
    node = node->next;
  }
  const bool subscriber_found = node != nullptr;
  if (!subscriber_found) {
    debug::assertion_failed(
        "\"signal_t::disconnect: attempt to disconnect unknown connection\" && subscriber_found",
        k_signal_header, k_unknown_connection_line, __PRETTY_FUNCTION__);
    return;
  }
  subscriber_base_t* subscriber = node->connection.subscriber;
  if (m_emission_state == nullptr)
    unlink(node, previous);
  else
    node->connection = connection_t();  // the running emission skips it
  // Every back-reference to this signal goes, even if the subscriber holds
  // further connections to it.
  if (subscriber != nullptr) subscriber->remove_signal(this);
}

void signal_base_t::_erase_all() {
  threading::mutex_guard_t guard(*m_mutex);
  for (node_t* node = m_head; node != nullptr; node = node->next) {
    if (node->connection.empty()) continue;
    node->connection.subscriber->remove_signal(this);
    if (m_emission_state != nullptr) node->connection = connection_t();
  }
  if (m_emission_state == nullptr) free_nodes();
}

void signal_base_t::on_subscriber_destroy(subscriber_base_t* subscriber) {
  threading::mutex_guard_t guard(*m_mutex);
  node_t* previous = nullptr;
  node_t* node = m_head;
  while (node != nullptr) {
    node_t* next = node->next;
    if (node->connection.subscriber != subscriber) {
      previous = node;
    } else if (m_emission_state != nullptr) {
      node->connection = connection_t();
      previous = node;
    } else {
      unlink(node, previous);
    }
    node = next;
  }
}

std::size_t signal_base_t::connection_count() const {
  threading::mutex_guard_t guard(*m_mutex);
  std::size_t live = 0;
  for (const node_t* node = m_head; node != nullptr; node = node->next)
    if (!node->connection.empty()) ++live;
  return live;
}

bool signal_base_t::begin_emission(onstack_signal_state_t& state) const {
  state.mutex->acquire();
  if (m_emission_state == nullptr) {
    m_emission_state = &state.alive;
    state.nested = false;
  } else {
    state.nested = true;
  }
  state.alive_in_force = m_emission_state;
  if (!*state.alive_in_force) {
    state.mutex->release();
    return false;
  }
  return true;
}

bool signal_base_t::check_valid_state_after_call(onstack_signal_state_t& state) {
  if (*state.alive_in_force) return true;
  end_after_destruction(state);
  return false;
}

void signal_base_t::post_call(onstack_signal_state_t& state) const {
  if (!state.nested) {
    m_emission_state = nullptr;
    remove_emptied();
  }
  state.mutex->release();
}

void signal_base_t::end_after_destruction(onstack_signal_state_t& state) {
  state.mutex->release();
  // The destructor left the mutex to the outermost emission.
  if (!state.nested) delete state.mutex;
}

void signal_base_t::append(const connection_t& connection) {
  node_t* node = new node_t;
  node->connection = connection;
  if (m_tail == nullptr)
    m_head = node;
  else
    m_tail->next = node;
  m_tail = node;
  ++m_count;
}

void signal_base_t::unlink(node_t* node, node_t* previous) const {
  (previous == nullptr ? m_head : previous->next) = node->next;
  if (m_tail == node) m_tail = previous;
  delete node;
  --m_count;
}

void signal_base_t::remove_emptied() const {
  node_t* previous = nullptr;
  node_t* node = m_head;
  while (node != nullptr) {
    node_t* next = node->next;
    if (node->connection.empty())
      unlink(node, previous);
    else
      previous = node;
    node = next;
  }
}

void signal_base_t::free_nodes() const {
  while (m_head != nullptr) {
    node_t* next = m_head->next;
    delete m_head;
    m_head = next;
  }
  m_tail = nullptr;
  m_count = 0;
}

}  // namespace _internal
}  // namespace talvar2
