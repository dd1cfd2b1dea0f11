#include "splitters/collapse_motion.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

namespace {

using orvix1::detail::collapse_motion_t;

// The positions of the ticks until the motion arrives (at most 100).
std::vector<int> ticks(collapse_motion_t& motion) {
  std::vector<int> positions;
  while (!motion.arrived() && positions.size() < 100) positions.push_back(motion.next());
  return positions;
}

TEST(CollapseMotion, ClosingAcceleratesOpeningSettlesAndBothLandOnTheTarget) {
  struct row_t {
    bool close;
    int from, to;
    float acceleration;
    std::vector<int> positions;
  };
  const row_t rows[] = {
      {true, 198, 397, 2, {199, 201, 205, 213, 229, 261, 325, 397}},
      {true, 198, 1, 2, {197, 195, 191, 183, 167, 135, 71, 1}},
      {true, 0, 100, 3, {1, 4, 13, 40, 100}},
      {true, 0, 7, 2, {1, 3, 7}},  // a tick that lands on the target is the last
      // 297.5, 247.75, ..., 199.55, 198.55: the last steps are a pixel each
      {false, 397, 198, 2, {297, 247, 222, 210, 204, 201, 199, 198, 198}},
      {false, 10, 13, 2, {11, 12, 13}},  // 1.5 per tick slows to no less than 1
      {false, 0, 100, 1.5f, {66, 100}},  // 66.7, then 44.4 more passes the target
  };
  for (const row_t& row : rows) {
    collapse_motion_t motion(row.acceleration);
    if (!row.close) motion.settle(true);
    ASSERT_TRUE(motion.start(row.close, row.from, row.to));
    EXPECT_EQ(motion.state(), row.close ? collapse_motion_t::closing : collapse_motion_t::opening);
    EXPECT_EQ(motion.pane_closed(), !row.close) << "not before it gets there";
    EXPECT_EQ(ticks(motion), row.positions) << row.from << " -> " << row.to;
    EXPECT_EQ(motion.pane_closed(), !row.close) << "not before it comes to rest";
    motion.finish();
    EXPECT_EQ(motion.state(), row.close ? collapse_motion_t::closed : collapse_motion_t::idle);
    EXPECT_EQ(motion.pane_closed(), row.close);
  }
}

TEST(CollapseMotion, EachWayOfStoppingOrTurningLeavesTheStateItNames) {
  using m_t = collapse_motion_t;
  struct row_t {
    const char* what;
    std::function<void(m_t&)> act;
    m_t::state_t state;
    bool pane_closed;
  };
  const row_t rows[] = {
      {"already there", [](m_t& m) { EXPECT_FALSE(m.start(true, 50, 50)); }, m_t::closed, true},
      {"closing finished", [](m_t& m) { m.start(true, 0, 10), m.finish(); }, m_t::closed, true},
      {"opening halted", [](m_t& m) { m.settle(true), m.start(false, 50, 20), m.halt(); },
       m_t::closed, true},
      {"opening turned", [](m_t& m) { m.settle(true), m.start(false, 50, 20), m.turn(true); },
       m_t::closing, true},
      {"turned at rest", [](m_t& m) { m.turn(true); }, m_t::idle, false},
      {"finished at rest", [](m_t& m) { m.settle(true), m.finish(); }, m_t::closed, true},
  };
  for (const row_t& row : rows) {
    collapse_motion_t motion(2);
    row.act(motion);
    EXPECT_EQ(motion.state(), row.state) << row.what;
    EXPECT_EQ(motion.pane_closed(), row.pane_closed) << row.what;
  }
}

TEST(CollapseMotion, ATargetMovedBehindTheSashEndsTheNextTickOnIt) {
  collapse_motion_t motion(2);
  ASSERT_TRUE(motion.start(true, 100, 300));
  EXPECT_EQ(motion.next(), 101);
  motion.retarget(90);
  EXPECT_EQ(motion.next(), 90);
  EXPECT_TRUE(motion.arrived());
}

}  // namespace
