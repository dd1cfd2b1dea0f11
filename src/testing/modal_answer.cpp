#include <wx/dialog.h>

#include "orvix1/testing.h"
#include "orvix1/wx_dll_application.h"

namespace orvix1 {
namespace testing {
namespace {

// Long enough for the dialog's modal loop to start turning.
constexpr int k_answer_delay_ms = 20;

}  // namespace

modal_answer_t* modal_answer_t::s_instance = nullptr;

modal_answer_t::modal_answer_t(int answer)
    : m_previous(get_modal_callback()), m_answer(answer), m_timer(this) {
  wxASSERT_MSG(s_instance == nullptr, "one modal answer at a time");
  s_instance = this;
  Bind(wxEVT_TIMER, &modal_answer_t::on_timer, this);
  set_modal_callback(&modal_answer_t::on_modal_dialog);
}

modal_answer_t::~modal_answer_t() {
  m_timer.Stop();
  set_modal_callback(m_previous);
  s_instance = nullptr;
}

// The library asks before it shows a modal dialog; the callback this one
// replaced decides first whether it is shown at all.
int modal_answer_t::on_modal_dialog(wxWindow* window) {
  modal_answer_t* self = s_instance;
  const int verdict = self != nullptr && self->m_previous != nullptr ? self->m_previous(window) : 0;
  auto* dialog = wxDynamicCast(window, wxDialog);
  if (self == nullptr || verdict != 0 || dialog == nullptr || self->m_answered || self->m_dialog != nullptr)
    return verdict;
  self->m_dialog = dialog;
  self->m_timer.StartOnce(k_answer_delay_ms);
  return verdict;
}

// The timer runs inside the dialog's modal loop; until that loop has
// started there is nothing to end yet.
void modal_answer_t::on_timer(wxTimerEvent&) {
  if (m_dialog == nullptr) return;
  if (!m_dialog->IsModal()) {
    m_timer.StartOnce(k_answer_delay_ms);
    return;
  }
  wxDialog* dialog = m_dialog;
  m_dialog = nullptr;
  m_answered = true;
  m_title = dialog->GetTitle().utf8_string();
  dialog->EndModal(m_answer);
}

}  // namespace testing
}  // namespace orvix1
