#include "viewer_frame.h"

#include <fstream>
#include <sstream>

#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/menu.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include <orvix1/ui_settings.h>
#include <orvix1/ui_style.h>
#include <orvix1/wx_xml_config.h>

#include "line_count_task.h"

using namespace orvix1;

namespace {

const char k_count_group[] = "log-viewer/count";
// A page shows the head of its file; the count covers all of it.
const std::size_t k_shown_bytes = 64 * 1024;

enum { id_close_tab = wxID_HIGHEST + 1, id_cancel_count, id_light_theme, id_dark_theme };

// The strip's colours come from the palette and follow a theme switch.
class status_style_t : public ui_style_t {
 public:
  status_style_t() { set_style_info(); }
  void set_style_info() override {
    internal_set_color("clBtnBgNormal", m_settings->get_color(color_strip_bg));
    internal_set_color("clBorderNormal", m_settings->get_color(color_strip_border));
  }
};

// The window the status elements draw in; it never takes the focus.
class element_view_t : public wxWindow {
 public:
  explicit element_view_t(wxWindow* parent) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);  // the adapter paints all of it
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxFULL_REPAINT_ON_RESIZE);
  }
  bool AcceptsFocus() const override { return false; }
};

std::string head_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string head(k_shown_bytes, '\0');
  file.read(head.data(), static_cast<std::streamsize>(head.size()));
  head.resize(static_cast<std::size_t>(file.gcount()));
  return head;
}

std::string percent(std::uint64_t done, std::uint64_t total) {
  return std::to_string(total == 0 ? 100 : done * 100 / total) + "%";
}

}  // namespace

viewer_frame_t::viewer_frame_t(tasks::SchedulerPtr scheduler, viewer_options_t options)
    : wxFrame(nullptr, wxID_ANY, "orvix1 log viewer", wxDefaultPosition, wxSize(900, 600)),
      m_scheduler(scheduler),
      m_options(std::move(options)) {
  build_menu();
  m_splitter = new wxAdvancedSplitter(this);
  m_files = new wxListBox(m_splitter, wxID_ANY);
  m_tabs = new wxTabPane(m_splitter, wxID_ANY);
  m_splitter->SplitVertically(m_files, m_tabs);
  m_splitter->SetRelativeSashPosition(0.25f);

  m_tabs->tab_closed().connect(this, [this](wxTabPane*, wxWindow* page, wxTabButton*) { on_tab_closed(page); });
  m_tabs->selection_changed().connect(this, [this](wxTabPanel*, int) {
    const auto page = m_pages.find(m_tabs->GetSelectedPage());
    if (page != m_pages.end()) show_count(page->second);
  });
  m_files->Bind(wxEVT_LISTBOX, &viewer_frame_t::on_list_choice, this);

  auto* sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(m_splitter, wxSizerFlags(1).Expand());
  build_status_strip(this);
  sizer->Add(m_status->GetHolder(), wxSizerFlags().Expand());
  SetSizer(sizer);
  Bind(wxEVT_CLOSE_WINDOW, &viewer_frame_t::on_close, this);
}

viewer_frame_t::~viewer_frame_t() {
  m_status_root->Destroy();
  delete m_status;
}

void viewer_frame_t::build_menu() {
  auto* file = new wxMenu;
  file->Append(wxID_OPEN);
  file->Append(id_close_tab, "&Close tab\tCtrl+W");
  file->Append(id_cancel_count, "C&ancel counting\tCtrl+.");
  file->AppendSeparator();
  file->Append(wxID_EXIT);
  auto* view = new wxMenu;
  view->AppendRadioItem(id_light_theme, "&Light theme");
  view->AppendRadioItem(id_dark_theme, "&Dark theme");
  auto* bar = new wxMenuBar;
  bar->Append(file, "&File");
  bar->Append(view, "&View");
  SetMenuBar(bar);

  Bind(wxEVT_MENU, &viewer_frame_t::on_open, this, wxID_OPEN);
  Bind(wxEVT_MENU, [this](wxCommandEvent&) { m_tabs->RequestClose(m_tabs->GetSelection()); }, id_close_tab);
  Bind(wxEVT_MENU, [this](wxCommandEvent&) { cancel_counting(); }, id_cancel_count);
  Bind(wxEVT_MENU, [this](wxCommandEvent&) { Close(); }, wxID_EXIT);
  Bind(wxEVT_MENU, [this](wxCommandEvent&) { switch_theme("light"); }, id_light_theme);
  Bind(wxEVT_MENU, [this](wxCommandEvent&) { switch_theme("dark"); }, id_dark_theme);
}

void viewer_frame_t::build_status_strip(wxWindow* parent) {
  auto* view = new element_view_t(parent);
  view->SetMinSize(wxSize(-1, view->GetCharHeight() + view->FromDIP(8)));
  m_status = new elements::ElementAdapter(view);
  m_status_root = new elements::RectangleElement();
  m_status_root->SetUiStyle(new status_style_t);
  m_status->SetRootElement(m_status_root);
  using elements::UIElement;
  m_status_file = new elements::TextElement(m_status_root, UIElement::pfLeft | UIElement::pfVCenter, "No file");
  m_status_count = new elements::TextElement(m_status_root, UIElement::pfHCenter | UIElement::pfVCenter);
  m_status_theme = new elements::TextElement(m_status_root, UIElement::pfRight | UIElement::pfVCenter,
                                             "Desktop colours");
}

bool viewer_frame_t::open_file(const std::string& given) {
  // Absolute, so that the saved layout holds from any working folder.
  const std::string path = wxFileName(wxString::FromUTF8(given)).GetAbsolutePath().utf8_string();
  if (!wxFileName::IsFileReadable(path)) {
    wxLogError("Cannot read %s", path);
    return false;
  }
  if (m_files->FindString(path, true) == wxNOT_FOUND) m_files->Append(path);
  m_files->SetStringSelection(path);
  for (const auto& [window, page] : m_pages) {
    if (page.path == path) {
      m_tabs->SetSelection(m_tabs->FindPage(window));
      return true;
    }
  }
  wxWindow* page = make_page(path);
  m_pages[page].path = path;
  m_tabs->AddPage(page, wxFileName(path).GetFullName(), true);
  m_tabs->SetPageKey(page, path);  // the saved layout names pages by their paths
  start_count(page);
  m_tabs->SetSelection(m_tabs->FindPage(page));
  return true;
}

wxWindow* viewer_frame_t::make_page(const std::string& path) {
  auto* text = new wxTextCtrl(m_tabs->GetPageArea(), wxID_ANY, wxEmptyString, wxDefaultPosition,
                              wxDefaultSize, wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP);
  const std::string head = head_of(path);
  wxString shown = wxString::FromUTF8(head);
  if (shown.empty() && !head.empty()) shown = wxString(head.data(), wxConvISO8859_1, head.size());
  text->SetValue(shown);
  return text;
}

void viewer_frame_t::start_count(wxWindow* page) {
  auto* task = new line_count_task_t(m_pages[page].path);
  // The task is checked as well as the page: a closed page's window may be
  // reused for a new page while the old count still ends.
  auto current = [this, page, task]() -> page_t* {
    const auto found = m_pages.find(page);
    return found != m_pages.end() && found->second.task.get() == task ? &found->second : nullptr;
  };
  task->progress.connect(this, [this, current](std::uint64_t done, std::uint64_t total, const std::string&) {
    if (page_t* state = current()) {
      ++state->count.progress_reports;
      state->count.done = done;
      state->count.total = total;
      show_count(*state);
    }
  });
  task->finished.connect(this, [this, current, task](std::uint64_t lines, bool complete) {
    if (page_t* state = current()) {
      state->count.finished = true;
      state->count.complete = complete;
      state->count.canceled = task->IsCanceled();
      state->count.lines = lines;
      show_count(*state);
    }
  });
  m_pages[page].task = task;
  m_scheduler->AddTask(task, k_count_group);
}

void viewer_frame_t::show_count(const page_t& page) {
  const auto selected = m_pages.find(m_tabs->GetSelectedPage());
  if (selected == m_pages.end() || &selected->second != &page) return;  // the strip tells of the selected page
  const line_count_t& count = page.count;
  m_status_file->SetText(page.path);
  if (!count.finished)
    m_status_count->SetText("Counting lines: " + percent(count.done, count.total));
  else if (count.complete)
    m_status_count->SetText(std::to_string(count.lines) + " lines");
  else
    m_status_count->SetText(count.canceled ? "Counting canceled" : "The file could not be read");
}

void viewer_frame_t::cancel_counting() { m_scheduler->Cancel(k_count_group); }

bool viewer_frame_t::switch_theme(const std::string& name) {
  const std::string path = m_options.themes_dir + "/" + name + ".xml";
  if (!ui_settings_configure_t::get()->apply_theme(path)) {
    wxLogError("Cannot read the theme %s", path);
    return false;
  }
  m_status_theme->SetText("Theme: " + name);
  GetMenuBar()->Check(name == "dark" ? id_dark_theme : id_light_theme, true);
  return true;
}

bool viewer_frame_t::save_layout() {
  std::string files;
  for (int i = 0; i < m_tabs->GetPageCount(); ++i) files += m_tabs->GetPageKey(m_tabs->GetPage(i)) + "\n";
  wx_xml_config_t config;
  config.write("files", files);
  config.write("layout", m_tabs->SaveLayout());
  std::string error;
  if (!config.save(m_options.config_path, &error)) {
    wxLogError("Cannot save the layout to %s: %s", m_options.config_path, error);
    return false;
  }
  return true;
}

bool viewer_frame_t::restore_layout() {
  wx_xml_config_t config;
  std::string error, files, layout;
  if (!config.load(m_options.config_path, &error)) {
    wxLogVerbose("No layout restored from %s: %s", m_options.config_path, error);
    return false;
  }
  config.read("files", files);
  config.read("layout", layout);
  std::istringstream paths(files);
  for (std::string path; std::getline(paths, path);)
    if (!path.empty()) open_file(path);  // a file gone since is reported and passed over
  return m_tabs->RestoreLayout(layout);
}

const line_count_t* viewer_frame_t::count_of(const std::string& path) const {
  for (const auto& entry : m_pages)
    if (entry.second.path == path) return &entry.second.count;
  return nullptr;
}

std::string viewer_frame_t::status_text() const {
  return m_status_file->GetText() + " | " + m_status_count->GetText() + " | " + m_status_theme->GetText();
}

// Raised by the pane for every tab that goes, while the page still exists.
void viewer_frame_t::on_tab_closed(wxWindow* page) {
  const auto found = m_pages.find(page);
  if (found == m_pages.end()) return;
  found->second.task->Cancel();
  m_pages.erase(found);
  if (m_pages.empty()) {
    m_status_file->SetText("No file");
    m_status_count->SetText("");
  }
}

void viewer_frame_t::on_list_choice(wxCommandEvent& event) { open_file(event.GetString().utf8_string()); }

void viewer_frame_t::on_open(wxCommandEvent&) {
  wxFileDialog dialog(this, "Open log files", wxEmptyString, wxEmptyString,
                      "Logs (*.log;*.txt)|*.log;*.txt|All files|*", wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE);
  if (dialog.ShowModal() != wxID_OK) return;
  wxArrayString paths;
  dialog.GetPaths(paths);
  for (const wxString& path : paths) open_file(path.utf8_string());
}

// Counts still running end before the window does; the layout is kept for
// the next start.
void viewer_frame_t::on_close(wxCloseEvent& event) {
  m_scheduler->CancelAndWait(tasks::dialog_info_t(), true, this);
  save_layout();
  event.Skip();
}
