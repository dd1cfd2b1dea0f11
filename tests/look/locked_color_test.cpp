#include "orvix1/locked_color.h"

#include <gtest/gtest.h>

namespace {

TEST(LockedColor, LocksAndSharesTheColour) {
  talvar2::value_locker_t<wxColour> locker(wxColour(1, 2, 3));
  const wxColour red(255, 0, 0);
  orvix1::set_locked_color(locker, red);
  EXPECT_TRUE(locker.locked);
  EXPECT_EQ(locker.value, red);
  EXPECT_TRUE(locker.value.IsSameAs(red));  // shares the data, like wxColour assignment
}

}  // namespace
