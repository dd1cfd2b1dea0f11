#include "orvix1/html_help_window.h"

#include <functional>
#include <utility>

#include <wx/html/htmlwin.h>
#include <wx/sizer.h>

#include "core/log.h"
#include "core/wx_log_capture.h"
#include "orvix1/ui_update_helpers.h"

namespace orvix1 {
namespace {

// Tells its owner the title of each page it opens, links followed included.
class help_view_t : public wxHtmlWindow {
 public:
  help_view_t(wxWindow* parent, std::function<void(const wxString&)> on_title)
      : wxHtmlWindow(parent, wxID_ANY), m_on_title(std::move(on_title)) {}

  void OnSetTitle(const wxString& title) override {
    wxHtmlWindow::OnSetTitle(title);  // keeps GetOpenedPageTitle() right
    m_on_title(title);
  }

 private:
  std::function<void(const wxString&)> m_on_title;
};

class help_window_t : public wxFrame {
 public:
  help_window_t() : wxFrame(nullptr, wxID_ANY, _("Help")) {
    m_view = new help_view_t(this, [this](const wxString& page_title) {
      if (m_fixed_title.empty() && !page_title.empty()) SetTitle(page_title);
    });
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_view, wxSizerFlags(1).Expand());
    SetSizer(sizer);
    SetSize(FromDIP(wxSize(640, 480)));
    // The frame follows the palette; pages keep the colours they set.
    m_look.create(this, style_t(font_normal, color_window_bg, color_window_text), 0);
    m_look.propagate_style();
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Destroy(); });
  }
  ~help_window_t() override;

  // Deletion waits for idle time; a new page meanwhile opens a new window.
  bool Destroy() override;

  // Loads `url`; on failure the window keeps its page and the reason is logged.
  bool load(const wxString& url, const wxString& title) {
    wx_log_capture_t wx_errors;
    const wxString previous_title = m_fixed_title;
    m_fixed_title = title;
    if (!m_view->LoadPage(url)) {
      m_fixed_title = previous_title;
      ORVIX_LOG_WARNING(log::get_logger("orvix.help"),
                        "cannot show " << url.utf8_string() << " in the help window"
                                       << (wx_errors.text().empty() ? "" : ": ")
                                       << wx_errors.text().utf8_string());
      return false;
    }
    if (!title.empty()) SetTitle(title);
    return true;
  }

  std::string page() const { return m_view->GetOpenedPage().utf8_string(); }

 private:
  help_view_t* m_view;
  wxString m_fixed_title;
  style_updater_t m_look;
};

help_window_t* g_help_window = nullptr;

help_window_t::~help_window_t() {
  if (g_help_window == this) g_help_window = nullptr;
}

bool help_window_t::Destroy() {
  if (g_help_window == this) g_help_window = nullptr;
  return wxFrame::Destroy();
}

}  // namespace

wxFrame* show_html_help_window(const std::string& url, const std::string& title) {
  const bool created = g_help_window == nullptr;
  help_window_t* window = created ? new help_window_t : g_help_window;
  if (!window->load(wxString::FromUTF8(url), wxString::FromUTF8(title))) {
    if (created) delete window;
    return nullptr;
  }
  g_help_window = window;
  window->Show();
  window->Raise();
  return window;
}

wxFrame* get_html_help_window() { return g_help_window; }

std::string get_html_help_window_page() {
  return g_help_window != nullptr ? g_help_window->page() : std::string();
}

void destroy_html_help_window() {
  help_window_t* window = g_help_window;
  if (window == nullptr) return;
  g_help_window = nullptr;
  // Destroyed at once: wxWidgets may end right after.
  delete window;
}

}  // namespace orvix1
