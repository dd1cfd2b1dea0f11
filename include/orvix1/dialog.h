#ifndef ORVIX1_DIALOG_H
#define ORVIX1_DIALOG_H
/// @file
/// Modal dialogs that honour the host's modal callback.

#include <wx/dialog.h>

#include "orvix1/wx_dll_application.h"

namespace orvix1 {

/// Adds the host's modal hook to a dialog class: ShowModal first offers the
/// dialog to the callback, and shows it itself only when there is none or the
/// callback answers 0.
template <class Base>
class modal_flavor : public Base {
 public:
  using Base::Base;

  int ShowModal() override {
    if (modal_callback_t callback = get_modal_callback()) {
      const int result = callback(this);
      if (result != 0) return result;
    }
    return Base::ShowModal();
  }
};

}  // namespace orvix1

#endif
