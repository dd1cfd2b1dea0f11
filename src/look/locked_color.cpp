#include "orvix1/locked_color.h"

namespace orvix1 {

void set_locked_color(talvar2::value_locker_t<wxColour>& locker, wxColour colour) {
  if (&locker.value != &colour) {
    locker.locked = false;
    locker.value = colour;
  }
  locker.locked = true;
}

}  // namespace orvix1
