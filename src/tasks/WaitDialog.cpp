#include "orvix1/tasks/WaitDialog.h"

#include <algorithm>

#include <wx/dcclient.h>
#include <wx/sizer.h>
#include <wx/strconv.h>
#include <wx/utils.h>

#include "host/dialog_placement.h"
#include "orvix1/tasks/dialog_info.h"
#include "orvix1/ui_settings.h"
#include "tasks/dialog_accessible.h"

namespace orvix1 {
namespace tasks {
namespace {

// Taken once per process by the first SetMultilineText.
struct wrap_metrics_t {
  int sample_width = 0;
  int display_width = 0;
  int display_height = 1;
};

wrap_metrics_t measure_wrap_metrics(wxWindow* window, const wxFont& font) {
  wxClientDC dc(window);
  if (font.IsOk()) dc.SetFont(font);
  wrap_metrics_t metrics;
  metrics.sample_width = dc.GetTextExtent("is the").x;
  const wxSize display = wxGetDisplaySize();
  metrics.display_width = display.x;
  metrics.display_height = display.y != 0 ? display.y : 1;
  return metrics;
}

wxString from_locale(const std::string& text) { return wxString(text.c_str(), wxConvLibc); }

}  // namespace

wxBEGIN_EVENT_TABLE(WaitDialog, wxDialog)
  EVT_TIMER(WaitDialog::poll_timer_id, WaitDialog::OnTimer)
  EVT_CLOSE(WaitDialog::OnClose)
  EVT_INIT_DIALOG(WaitDialog::OnInitDialog)
wxEND_EVENT_TABLE()

ISchedulerStatus::~ISchedulerStatus() = default;

WaitDialog::WaitDialog(wxWindow* parent,
                       boost::shared_ptr<talvar2::threading::scheduler_operation_status_t> status)
    : m_status(std::move(status)) {
  Initialize(parent);
}

WaitDialog::WaitDialog(wxWindow* parent, ISchedulerStatus* status) : m_scheduler_status(status) {
  Initialize(parent);
}

WaitDialog::~WaitDialog() { delete m_timer; }

void WaitDialog::Initialize(wxWindow* parent) {
  m_timer = new wxTimer(this, poll_timer_id);
  Create(parent, wxID_ANY, "prod_name", wxDefaultPosition, wxDefaultSize, wxCAPTION);
  detail::make_accessible_dialog(*this);

  const talvar2::intrusive_pointer_t<ui_settings_t> palette = ui_settings_t::get();
  auto* box = new wxBoxSizer(wxVERTICAL);
  auto* grid = new wxFlexGridSizer(2, 0, 0);
  grid->SetFlexibleDirection(wxBOTH);
  grid->SetNonFlexibleGrowMode(wxFLEX_GROWMODE_SPECIFIED);

  m_animation = new wxAnimationCtrl(this, wxID_ANY, wxNullAnimation, wxDefaultPosition,
                                    wxDefaultSize, wxAC_DEFAULT_STYLE);
  grid->Add(m_animation, 0, wxALIGN_CENTER_VERTICAL | wxALIGN_CENTER_HORIZONTAL | wxALL, 5);

  m_title = new wxStaticText(this, wxID_ANY, "closing");
  m_title->SetFont(palette->get_font(font_title));
  grid->Add(m_title, 0, wxALIGN_CENTER_VERTICAL | wxALL, 5);

  grid->Add(0, 0, 1, wxEXPAND, 5);

  m_message = new wxStaticText(this, wxID_ANY, "please_wait");
  m_message->SetFont(palette->get_font(font_normal));
  grid->Add(m_message, 0, wxALIGN_CENTER_VERTICAL | wxALIGN_CENTER_HORIZONTAL | wxALL, 5);

  box->Add(grid, 0, wxEXPAND | wxALL, 10);
  SetSizer(box);
  // Colours and fonts from the palette, again at every change of it.
  m_look.create(this, style_t(font_normal, color_face, color_button_text), -1);
  m_look.add(m_title, style_t(font_title, color_face, color_button_text));
  m_look.propagate_style();
}

void WaitDialog::SetAnimation(const wxAnimation& animation) { m_animation->SetAnimation(animation); }

void WaitDialog::SetCaption(const std::string& caption) { SetTitle(from_locale(caption)); }

void WaitDialog::SetMsgTitle(const std::string& title) { m_title->SetLabel(from_locale(title)); }

void WaitDialog::SetMsgText(const std::string& text) {
  if (m_message != nullptr) SetMultilineText(m_message, text, GetFont());
}

void WaitDialog::SetMultilineText(wxStaticText* control, const std::string& text,
                                  const wxFont& font) {
  static const wrap_metrics_t metrics = measure_wrap_metrics(this, font);

  Fit();
  const wxSize before = GetClientSize();
  control->SetLabel(from_locale(text));
  // The screen's proportions, but never wider than a share of the work
  // area: a long message would otherwise make a dialog wider than the screen.
  const int widest = detail::widest_dialog_text(this);
  const int target = metrics.display_width * before.y / metrics.display_height + metrics.sample_width;
  int wrap = std::min(std::max(before.x, target), widest);
  control->Wrap(wrap);
  Fit();

  // Wrapping made the dialog higher; widen it once more if it is still too
  // narrow for its new height. Wrap only ever adds line breaks, so the
  // wider wrap starts again from the unwrapped text.
  const wxSize after = GetClientSize();
  const int target2 = after.y * metrics.display_width / metrics.display_height + metrics.sample_width;
  if (after.x < std::min(target2, widest)) {
    wrap = std::min(target2, widest);
    control->SetLabel(from_locale(text));
    control->Wrap(wrap);
    Fit();
  }
  KeepWithin(control, text, wrap, widest);
}

// GTK may lay a line out wider than the DC measured it (slanted faces
// overhang): the wrap narrows by the overshoot until the control fits.
void WaitDialog::KeepWithin(wxStaticText* control, const std::string& text, int wrap, int widest) {
  for (int attempt = 0; attempt < 3 && control->GetBestSize().x > widest; ++attempt) {
    wrap -= control->GetBestSize().x - widest;
    control->SetLabel(from_locale(text));
    control->Wrap(std::max(wrap, 1));
    Fit();
  }
}

bool WaitDialog::IsOperationFinished() const {
  if (m_status) return m_status->is_finished();
  return m_scheduler_status != nullptr && m_scheduler_status->IsFinished();
}

void WaitDialog::OnTimer(wxTimerEvent&) {
  const bool finished = IsOperationFinished();
  if (IsModal() && finished) {
    m_timer->Stop();
    m_closing = true;
    EndModal(wxID_OK);
  }
  if (finished) SetReturnCode(wxID_OK);
}

void WaitDialog::OnClose(wxCloseEvent& event) {
  if (m_closing)
    Destroy();
  else
    event.Veto();  // the work goes on; an unvetoable close is reported by wx itself
}

void WaitDialog::OnInitDialog(wxInitDialogEvent& event) {
  wxDialog::OnInitDialog(event);  // the standard initialisation: data to the controls
  Layout();
  detail::centre_dialog_on(this, GetParent());
  if (has_frames(m_animation->GetAnimation())) m_animation->Play();
  m_timer->Start(poll_interval_ms, wxTIMER_CONTINUOUS);
}

}  // namespace tasks
}  // namespace orvix1
