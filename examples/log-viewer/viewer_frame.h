#ifndef LOG_VIEWER_VIEWER_FRAME_H
#define LOG_VIEWER_VIEWER_FRAME_H

#include <cstdint>
#include <map>
#include <string>

#include <wx/frame.h>
#include <wx/listbox.h>

#include <orvix1/elements/ElementAdapter.h>
#include <orvix1/elements/RectangleElement.h>
#include <orvix1/elements/TextElement.h>
#include <orvix1/tasks/Scheduler.h>
#include <orvix1/wxAdvancedSplitter.h>
#include <orvix1/wxTabPane.h>

struct viewer_options_t {
  std::string themes_dir;   // holds light.xml and dark.xml
  std::string config_path;  // the settings file with the saved layout
};

// What is known about an open file's lines.
struct line_count_t {
  bool finished = false;  // the count ended, complete or not
  bool complete = false;  // `lines` is the whole file's count
  bool canceled = false;
  std::uint64_t lines = 0;
  int progress_reports = 0;
  std::uint64_t done = 0, total = 0;  // bytes, as last reported
};

// The main window: the file list left of a splitter, a page per open file
// right of it, and a status strip at the bottom.
class viewer_frame_t : public wxFrame, public talvar2::subscriber_base_t {
 public:
  viewer_frame_t(orvix1::tasks::SchedulerPtr scheduler, viewer_options_t options);
  ~viewer_frame_t() override;

  // Lists the file and shows it on a page of its own (selecting the page
  // when it is open already); counting its lines starts on a worker.
  bool open_file(const std::string& given);
  // Stops every count still running.
  void cancel_counting();
  // "light" or "dark", from the themes folder.
  bool switch_theme(const std::string& name);
  // The open files, the tab order and selection and the splitter.
  bool save_layout();
  bool restore_layout();

  orvix1::wxTabPane* tabs() const { return m_tabs; }
  orvix1::wxAdvancedSplitter* splitter() const { return m_splitter; }
  // Null for a file without a page.
  const line_count_t* count_of(const std::string& path) const;
  std::string status_text() const;

 private:
  struct page_t {
    std::string path;
    talvar2::intrusive_pointer_t<orvix1::tasks::ITask> task;
    line_count_t count;
  };

  void build_menu();
  void build_status_strip(wxWindow* parent);
  wxWindow* make_page(const std::string& path);
  void start_count(wxWindow* page);
  void show_count(const page_t& page);
  void on_tab_closed(wxWindow* page);
  void on_list_choice(wxCommandEvent& event);
  void on_open(wxCommandEvent& event);
  void on_close(wxCloseEvent& event);

  orvix1::tasks::SchedulerPtr m_scheduler;
  const viewer_options_t m_options;
  orvix1::wxAdvancedSplitter* m_splitter = nullptr;
  wxListBox* m_files = nullptr;
  orvix1::wxTabPane* m_tabs = nullptr;
  std::map<wxWindow*, page_t> m_pages;

  orvix1::elements::ElementAdapter* m_status = nullptr;
  talvar2::intrusive_pointer_t<orvix1::elements::RectangleElement> m_status_root;
  talvar2::intrusive_pointer_t<orvix1::elements::TextElement> m_status_file;
  talvar2::intrusive_pointer_t<orvix1::elements::TextElement> m_status_count;
  talvar2::intrusive_pointer_t<orvix1::elements::TextElement> m_status_theme;
};

#endif
