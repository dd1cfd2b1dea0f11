#include "splitters/collapse_motion.h"

#include <cmath>

namespace orvix1 {
namespace detail {

bool collapse_motion_t::start(bool close, int from, int to) {
  m_target = to;
  m_arrived = false;
  m_position = static_cast<float>(from);
  const float distance = to - m_position;
  if (distance == 0) {
    settle(close);
    return false;
  }
  if (close)
    m_speed = distance > 0 ? 1.0f : -1.0f;
  else
    m_speed = distance / m_acceleration;
  m_state = close ? closing : opening;
  return true;
}

// The passing test uses the speed after its change: it keeps the sign of the
// direction, and a target moved behind the sash by a resize counts as passed.
int collapse_motion_t::next() {
  m_position += m_speed;
  if (m_state == closing) {
    m_speed *= m_acceleration;
  } else {
    m_speed /= m_acceleration;
    if (std::fabs(m_speed) < 1.0f) m_speed = std::copysign(1.0f, m_speed);
  }
  m_arrived = (m_target - m_position) * m_speed <= 0;
  return m_arrived ? m_target : static_cast<int>(m_position);
}

void collapse_motion_t::settle(bool close) {
  m_arrived = false;
  m_closed = close;
  m_state = close ? closed : idle;
}

}  // namespace detail
}  // namespace orvix1
