#ifndef ORVIX1_LOCKED_COLOR_H
#define ORVIX1_LOCKED_COLOR_H

#include <wx/colour.h>

#include "orvix1/export.h"
#include "talvar2/value_locker.h"

namespace orvix1 {

/// Stores `colour` in the locker (sharing its data, as wxColour assignment
/// does) and marks it locked: an explicit choice that refreshes leave alone.
ORVIX1_API void set_locked_color(talvar2::value_locker_t<wxColour>& locker, wxColour colour);

}  // namespace orvix1

#endif
