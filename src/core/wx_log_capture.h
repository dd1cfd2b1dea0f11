#ifndef ORVIX1_SRC_WX_LOG_CAPTURE_H
#define ORVIX1_SRC_WX_LOG_CAPTURE_H

#include <wx/log.h>

namespace orvix1 {

// While alive, takes the errors and warnings that wxWidgets logs on this
// (the GUI) thread instead of letting the active target show them, so that
// a failed load becomes one line of the library's own log with wx's reason
// in it, and never a message box in the host.
class wx_log_capture_t : public wxLog {
 public:
  wx_log_capture_t() : m_previous(wxLog::SetActiveTarget(this)) {}
  ~wx_log_capture_t() override { wxLog::SetActiveTarget(m_previous); }
  wx_log_capture_t(const wx_log_capture_t&) = delete;
  wx_log_capture_t& operator=(const wx_log_capture_t&) = delete;

  // What was captured, "; "-separated; empty when nothing was.
  const wxString& text() const { return m_text; }

 protected:
  void DoLogRecord(wxLogLevel level, const wxString& message, const wxLogRecordInfo&) override {
    if (level > wxLOG_Warning) return;
    if (!m_text.empty()) m_text += "; ";
    m_text += message;
  }

 private:
  wxLog* m_previous;
  wxString m_text;
};

}  // namespace orvix1

#endif
