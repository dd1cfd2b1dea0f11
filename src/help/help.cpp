#include "orvix1/help.h"

#include <sys/stat.h>

#include <algorithm>
#include <fstream>

#include <wx/filename.h>
#include <wx/filesys.h>

#include "core/log.h"
#include "help/mailcap.h"
#include "orvix1/external_apps.h"
#include "orvix1/html_help_window.h"

namespace orvix1 {
namespace {

log4cplus::Logger help_logger() { return log::get_logger("orvix.help"); }

// Read on the GUI thread only, like everything here.
std::string g_mailcap_path = "/etc/mailcap";

// The viewers tried when the mailcap file names none that starts.
const char* const k_fallback_pdf_viewers[] = {"kpdf", "gpdf", "evince", "xpdf"};

bool open_with_mailcap_viewer(const talvar2::path_t& file) {
  struct stat info;
  if (::stat(g_mailcap_path.c_str(), &info) != 0) {
    ORVIX_LOG_DEBUG(help_logger(), "no mailcap file at " << g_mailcap_path);
    return false;
  }
  // A FIFO or a device could block for ever or never end.
  if (!S_ISREG(info.st_mode)) {
    ORVIX_LOG_WARNING(help_logger(), "the mailcap file " << g_mailcap_path
                                         << " is not a regular file: not read");
    return false;
  }
  std::ifstream mailcap(g_mailcap_path, std::ios::binary);
  if (!mailcap) {
    ORVIX_LOG_DEBUG(help_logger(), "cannot open the mailcap file " << g_mailcap_path);
    return false;
  }
  for (const std::string& viewer : detail::mailcap_pdf_viewers(mailcap, g_mailcap_path))
    if (run_app_with_file(viewer, file)) return true;
  return false;
}

std::string file_url(const talvar2::path_t& file) {
  wxFileName name(wxString::FromUTF8(file.as_string()));
  name.MakeAbsolute();
  return wxFileSystem::FileNameToURL(name).utf8_string();
}

}  // namespace

talvar2::path_t get_mailcap_path() { return talvar2::path_t(g_mailcap_path); }

void set_mailcap_path(const talvar2::path_t& path) { g_mailcap_path = path.as_string(); }

bool OpenPredefinedPDF(const talvar2::path_t& file, int page) {
  if (!file.exists()) {
    ORVIX_LOG_WARNING(help_logger(), "no PDF file at '" << file.as_string() << "'");
    return false;
  }
  const std::string number = std::to_string(std::max(page, 1));
  if (run_app_with_params("acroread",
                          {"-openInNewInstance", "/a", "page=" + number, file.as_string()}))
    return true;
  // xpdf takes the page after the file.
  return run_app_with_params("xpdf", {file.as_string(), number});
}

bool OpenPDF(const talvar2::path_t& file, int page) {
  if (!talvar2::path_t(file.as_string()).exists()) {
    ORVIX_LOG_WARNING(help_logger(), "no PDF file at '" << file.as_string() << "'");
    return false;
  }
  if (page > 0 && OpenPredefinedPDF(file, page)) return true;
  if (open_with_mailcap_viewer(file)) return true;
  for (const char* viewer : k_fallback_pdf_viewers) {
    if (run_app_with_file(viewer, file)) return true;
  }
  ORVIX_LOG_WARNING(help_logger(), "no PDF viewer could be started for '" << file.as_string()
                                       << "' (mailcap file " << g_mailcap_path
                                       << ", kpdf, gpdf, evince, xpdf)");
  return false;
}

bool OpenHTML(const talvar2::path_t& file) {
  if (!file.exists()) {
    ORVIX_LOG_WARNING(help_logger(), "no HTML file at '" << file.as_string() << "'");
    return false;
  }
  return open_in_default_browser(file_url(file), std::string());
}

bool open_in_default_browser(const std::string& url, const std::string& fallback_title) {
  if (url.empty()) {
    ORVIX_LOG_WARNING(help_logger(), "no page to open");
    return false;
  }
  // The desktop's own choice of browser, as every freedesktop session offers.
  if (run_app_with_params("xdg-open", {url})) return true;
  ORVIX_LOG_INFO(help_logger(), "no browser started; showing " << url << " in the help window");
  return show_html_help_window(url, fallback_title) != nullptr;
}

open_help_helper_t& open_help_helper_t::add_pdf(const talvar2::path_t& file, int page) {
  m_sources.push_back({kind_t::pdf, file.as_string(), page});
  return *this;
}

open_help_helper_t& open_help_helper_t::add_html(const talvar2::path_t& file) {
  m_sources.push_back({kind_t::html, file.as_string(), 0});
  return *this;
}

open_help_helper_t& open_help_helper_t::add_url(const std::string& url) {
  m_sources.push_back({kind_t::url, url, 0});
  return *this;
}

bool open_help_helper_t::try_source(const source_t& source) const {
  switch (source.kind) {
    case kind_t::pdf: {
      const talvar2::path_t file(source.location);
      return file.exists() && OpenPDF(file, source.page);
    }
    case kind_t::html: {
      const talvar2::path_t file(source.location);
      return file.exists() && OpenHTML(file);
    }
    case kind_t::url:
      return open_in_default_browser(source.location, std::string());
  }
  return false;
}

bool open_help_helper_t::try_open_help() const {
  for (const source_t& source : m_sources) {
    if (try_source(source)) return true;
    ORVIX_LOG_DEBUG(help_logger(), "help from '" << source.location << "' did not open");
  }
  ORVIX_LOG_ERROR(help_logger(), (m_sources.empty() ? "no help to open"
                                                    : "none of the help sources could be opened"));
  return false;
}

}  // namespace orvix1
