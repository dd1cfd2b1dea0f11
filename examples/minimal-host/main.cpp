// minimal-host: a plain wxWidgets program that uses orvix1. A frame holds a
// tab pane; under it an element tree shows the selected tab, and a task on a
// worker thread reports its result to the GUI thread through PostSignal.
//
//   minimal-host           runs until the window is closed
//   minimal-host --smoke   (or MINIMAL_HOST_SMOKE=1) shows the window, waits
//                          for the task's result and exits: 0 when all went well

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <wx/log.h>
#include <wx/wx.h>

#include <orvix1/elements/ElementAdapter.h>
#include <orvix1/elements/RectangleElement.h>
#include <orvix1/elements/TextElement.h>
#include <orvix1/host_session.h>
#include <orvix1/tasks/Scheduler.h>
#include <orvix1/ui_settings.h>
#include <orvix1/ui_style.h>
#include <orvix1/wxTabPane.h>
#include <orvix1/wx_dll_application.h>

using namespace orvix1;

namespace {

int g_assertions = 0;
bool g_result_arrived = false;

void count_assertion(const wxString& file, int line, const wxString&, const wxString& condition,
                     const wxString& message) {
  ++g_assertions;
  std::fprintf(stderr, "%s:%d: assertion \"%s\" failed: %s\n", file.utf8_str().data(), line,
               condition.utf8_str().data(), message.utf8_str().data());
}

// A style: named colours filled from the palette, filled again when it changes.
class page_style_t : public ui_style_t {
 public:
  page_style_t() { set_style_info(); }
  void set_style_info() override {
    internal_set_color("clBtnBgNormal", m_settings->get_color(color_note_bg));
    internal_set_color("clBorderNormal", m_settings->get_color(color_strip_border));
  }
};

// Counts primes on a worker of the "service" unit; the count reaches the GUI thread.
class count_primes_task_t : public tasks::DefaultTaskImpl {
 public:
  talvar2::signal_t<int> counted;  // emitted on the GUI thread

  void DoTask() override {
    int count = 0;
    for (int n = 2; n < 100000 && !IsCanceled(); ++n) {
      bool prime = true;
      for (int d = 2; d * d <= n && prime; ++d) prime = n % d != 0;
      count += prime ? 1 : 0;
    }
    tasks::PostSignal(counted, count);
  }
};

// The window an element tree draws in. Nothing in this tree takes the keyboard
// focus, so neither does the window.
class element_view_t : public wxWindow {
 public:
  explicit element_view_t(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);  // the adapter paints all of it
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE);
  }
  bool AcceptsFocus() const override { return false; }
};

class main_frame_t : public wxFrame, public talvar2::subscriber_base_t {
 public:
  main_frame_t(tasks::SchedulerPtr scheduler, bool smoke)
      : wxFrame(nullptr, wxID_ANY, "orvix1 minimal host", wxDefaultPosition, wxSize(640, 320)),
        m_scheduler(scheduler) {
    // The tab pane: a strip of closable document tabs.
    auto* pane = new wxTabPane(this, wxID_ANY);
    m_tabs = pane->AddPanel(wxTabPane::primary_panel);
    m_tabs->SetCrossed(true);
    for (const char* name : {"Welcome", "Notes", "Results", "Settings"}) m_tabs->AddButton(name);
    pane->selection_changed().connect(this, &main_frame_t::on_selection);

    // The page under the tabs: an element tree drawn in one window.
    auto* page = new element_view_t(this);
    m_adapter = new elements::ElementAdapter(page);
    m_root = new elements::RectangleElement();
    m_root->SetUiStyle(new page_style_t);
    m_adapter->SetRootElement(m_root);
    m_text = new elements::TextElement(m_root, elements::UIElement::pfHCenter | elements::UIElement::pfVCenter,
                                       "Page Welcome");

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(pane, wxSizerFlags().Expand());
    sizer->Add(page, wxSizerFlags(1).Expand());
    SetSizer(sizer);
    m_tabs->SetCurrentSelection(0);

    talvar2::intrusive_pointer_t<count_primes_task_t> task(new count_primes_task_t);
    task->counted.connect(this, &main_frame_t::on_counted);
    m_scheduler->AddTask(task, "minimal-host");

    Bind(wxEVT_CLOSE_WINDOW, &main_frame_t::on_close, this);
    if (smoke) {  // every 100 ms: close half a second after the result; give up after 10 s
      m_smoke_timer.Bind(wxEVT_TIMER, &main_frame_t::on_smoke_timer, this);
      m_smoke_timer.Start(100);
    }
  }

  ~main_frame_t() override {
    m_root->Destroy();
    delete m_adapter;
  }

 private:
  void on_selection(wxTabPanel* panel, int index) {
    if (wxTabButton* button = panel->GetButton(index)) m_text->SetText("Page " + button->GetLabel().utf8_string());
  }

  void on_counted(int primes) {
    g_result_arrived = true;
    m_tabs->AddButton("Primes: " + std::to_string(primes));
  }

  void on_smoke_timer(wxTimerEvent&) {
    ++m_ticks;
    if (g_result_arrived ? ++m_ticks_after_result >= 5 : m_ticks > 100) Close();
  }

  // Work still running ends before the window does.
  void on_close(wxCloseEvent& event) {
    m_smoke_timer.Stop();
    m_scheduler->CancelAndWait(tasks::dialog_info_t(), true);
    event.Skip();
  }

  tasks::SchedulerPtr m_scheduler;
  wxTabPanel* m_tabs = nullptr;
  elements::ElementAdapter* m_adapter = nullptr;
  talvar2::intrusive_pointer_t<elements::RectangleElement> m_root;
  talvar2::intrusive_pointer_t<elements::TextElement> m_text;
  wxTimer m_smoke_timer;
  int m_ticks = 0;
  int m_ticks_after_result = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const bool smoke = (argc > 1 && std::strcmp(argv[1], "--smoke") == 0) ||
                     std::getenv("MINIMAL_HOST_SMOKE") != nullptr;
  wxSetAssertHandler(count_assertion);  // the default handler opens a dialog
  {
    // wxWidgets (with the library's application object), the library and the
    // palette every widget draws with; all ended again when the session goes.
    // nullptr: no native host window, this is a wx program.
    host_session_t session(argc, argv, nullptr);
    if (!session.ok()) {
      std::fprintf(stderr, "minimal-host: wxWidgets did not start (no display?)\n");
      return 2;
    }
    delete wxLog::SetActiveTarget(new wxLogStderr);
    {
      tasks::SchedulerPtr scheduler = tasks::Scheduler::Get(new tasks::ISchedulerStatusCallback);
      (new main_frame_t(scheduler, smoke))->Show();
      wxTheApp->OnRun();  // the wx main loop, until the frame is closed
    }
    tasks::Scheduler::Release();
  }

  if (!smoke) return 0;
  const bool ok = g_result_arrived && g_assertions == 0;
  std::printf("minimal-host: %s\n", ok ? "ok" : g_result_arrived ? "FAILED: assertions" : "FAILED: no result");
  return ok ? 0 : 1;
}
