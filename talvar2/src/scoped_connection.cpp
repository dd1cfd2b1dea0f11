#include "talvar2/functor/scoped_connection.h"

#include <utility>

#include "talvar2/functor/signal.h"

namespace talvar2 {
namespace _internal {

slot_box_t::~slot_box_t() {
  // Every signal let go of a released token before its last node went.
  delete m_adopted;
}

void slot_box_t::release() {
  if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

}  // namespace _internal

scoped_connection_t::scoped_connection_t(scoped_connection_t&& other) noexcept
    : m_box(std::exchange(other.m_box, nullptr)), m_token(std::exchange(other.m_token, nullptr)) {}

scoped_connection_t& scoped_connection_t::operator=(scoped_connection_t&& other) noexcept {
  if (this != &other) {
    disconnect();
    m_box = std::exchange(other.m_box, nullptr);
    m_token = std::exchange(other.m_token, nullptr);
  }
  return *this;
}

// The token is the connection's subscriber: its death cuts the connection
// with the locking and waiting every dying subscriber gets.
void scoped_connection_t::disconnect() {
  delete std::exchange(m_token, nullptr);
  drop_box();
}

void scoped_connection_t::release() {
  if (m_box != nullptr) m_box->adopt(std::exchange(m_token, nullptr));
  drop_box();
}

void scoped_connection_t::drop_box() {
  if (m_box != nullptr) std::exchange(m_box, nullptr)->release();
}

}  // namespace talvar2
