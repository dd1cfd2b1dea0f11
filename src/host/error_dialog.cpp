#include "orvix1/error_dialog.h"

#include <algorithm>

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include "core/log.h"
#include "host/dialog_placement.h"
#include "orvix1/ui_update_helpers.h"

namespace orvix1 {
namespace {

// Collects the messages reported while it is open; closing destroys it. It
// follows the palette: font_normal (1) on color_face (1) in
// color_button_text (6), the messages on color_window_bg (0) in
// color_window_text (7).
class error_dialog_t : public wxDialog {
 public:
  explicit error_dialog_t(wxWindow* parent)
      : wxDialog(parent, wxID_ANY, _("Error"), wxDefaultPosition, wxDefaultSize,
                 wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER) {
    const wxSize size = FromDIP(wxSize(420, 160));
    m_messages = new wxTextCtrl(this, wxID_ANY, wxEmptyString, wxDefaultPosition,
                                wxSize(std::min(size.x, detail::widest_dialog_text(this)), size.y),
                                wxTE_MULTILINE | wxTE_READONLY | wxTE_WORDWRAP);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_messages, wxSizerFlags(1).Expand().Border());
    sizer->Add(CreateButtonSizer(wxOK), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM));
    SetSizerAndFit(sizer);
    detail::centre_dialog_on(this, parent);
    // Colours and fonts from the palette, again at every change of it.
    m_look.create(this, style_t(font_normal, color_face, color_button_text), -1);
    m_look.add(m_messages, style_t(font_normal, color_window_bg, color_window_text));
    m_look.propagate_style();
    Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Destroy(); }, wxID_OK);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Destroy(); });
  }
  ~error_dialog_t() override;

  // Deletion waits for idle time; new messages go to a new dialog meanwhile.
  bool Destroy() override;

  void add_message(const wxString& message) {
    if (!m_messages->IsEmpty()) m_messages->AppendText("\n");
    m_messages->AppendText(message);
  }

 private:
  wxTextCtrl* m_messages;
  style_updater_t m_look;
};

error_dialog_t* g_error_dialog = nullptr;

error_dialog_t::~error_dialog_t() {
  if (g_error_dialog == this) g_error_dialog = nullptr;
}

bool error_dialog_t::Destroy() {
  if (g_error_dialog == this) g_error_dialog = nullptr;
  return wxDialog::Destroy();
}

}  // namespace

void show_error_dlg(const std::string& message, wxWindow* parent) {
  ORVIX_LOG_ERROR(log::get_logger("orvix.dialogs"), message);
  if (g_error_dialog == nullptr) g_error_dialog = new error_dialog_t(parent);
  g_error_dialog->add_message(wxString::FromUTF8(message));
  g_error_dialog->Show();
  g_error_dialog->Raise();
}

wxDialog* get_error_dlg() { return g_error_dialog; }

void destroy_error_dlg() {
  error_dialog_t* dialog = g_error_dialog;
  if (dialog == nullptr) return;
  g_error_dialog = nullptr;
  // Destroyed at once: the last clean-up may end wxWidgets right after.
  delete dialog;
}

}  // namespace orvix1
