#ifndef ORVIX1_TESTS_DPI_SCALE_H
#define ORVIX1_TESTS_DPI_SCALE_H

// The library's scale fixed for a scope through its override (the desktop's
// fonts stay as they are), then handed back to the desktop.

#include "orvix1/dpi.h"

namespace orvix1_test {

class scoped_DPI_scale_t {
 public:
  explicit scoped_DPI_scale_t(double scale) { orvix1::set_DPI_scale_override(scale); }
  ~scoped_DPI_scale_t() { orvix1::set_DPI_scale_override(0.0); }
  scoped_DPI_scale_t(const scoped_DPI_scale_t&) = delete;
  scoped_DPI_scale_t& operator=(const scoped_DPI_scale_t&) = delete;
};

}  // namespace orvix1_test

#endif
