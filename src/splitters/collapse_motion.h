#ifndef ORVIX1_SRC_SPLITTERS_COLLAPSE_MOTION_H
#define ORVIX1_SRC_SPLITTERS_COLLAPSE_MOTION_H

// How the sash travels while a pane collapses or reopens, one tick at a
// time. It knows no timer and no window, so that its steps can be checked as
// plain numbers; the splitter ticks it and moves the sash where it says.
//
// Closing accelerates from a pixel per tick, the speed multiplied by the
// acceleration factor each tick. Opening starts at the distance divided by
// the factor and slows by the factor each tick, never below a pixel per
// tick. The tick that reaches or passes the target lands exactly on it; the
// motion comes to rest when the splitter says so, after it has moved the
// sash there, so that whoever hears of that move still sees it under way.

namespace orvix1 {
namespace detail {

class collapse_motion_t {
 public:
  /// idle: open and at rest; closed: collapsed and at rest.
  enum state_t { idle, opening, closing, closed };

  explicit collapse_motion_t(float acceleration) : m_acceleration(acceleration) {}

  /// Read when a motion starts and on every tick.
  void set_acceleration(float factor) { m_acceleration = factor; }
  float acceleration() const { return m_acceleration; }

  state_t state() const { return m_state; }
  bool moving() const { return m_state == opening || m_state == closing; }
  /// Where the pane is, or where it is heading while it moves.
  bool closing_or_closed() const { return m_state == closing || m_state == closed; }
  /// Where the pane was when it last came to rest: a closing pane is not
  /// closed until it gets there, an opening one stays closed until then.
  bool pane_closed() const { return m_closed; }

  /// Sets off from `from` toward `to`. False when it is already there: the
  /// motion has then ended at once, closed or open as asked.
  bool start(bool close, int from, int to);
  /// The pane's extent changed under a running motion.
  void retarget(int to) { m_target = to; }
  /// A running motion heads for the closed (true) or the open end from where
  /// it is; one at rest stays as it is.
  void turn(bool close) {
    if (moving()) m_state = close ? closing : opening;
  }
  /// One tick of a running motion: the sash position to show.
  int next();
  /// The last tick reached the target.
  bool arrived() const { return m_arrived; }
  /// A running motion comes to rest at the end it was heading for.
  void finish() {
    if (moving()) settle(m_state == closing);
  }
  /// Comes to rest closed or open at once, wherever the sash is.
  void settle(bool close);
  /// Drops a running motion: the pane is again what it was before it set off.
  void halt() { m_state = m_closed ? closed : idle; }

 private:
  state_t m_state = idle;
  bool m_closed = false;
  bool m_arrived = false;
  float m_acceleration;
  float m_position = 0;
  float m_speed = 0;
  int m_target = 0;
};

}  // namespace detail
}  // namespace orvix1

#endif
