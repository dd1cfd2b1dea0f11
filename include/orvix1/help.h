#ifndef ORVIX1_HELP_H
#define ORVIX1_HELP_H
/// @file
/// Help documents: PDF manuals in whatever viewer the desktop offers, HTML
/// pages in the desktop's default browser (or, without one, in the library's
/// own HTML help window), and a helper that picks among the help a window
/// offers. GUI thread only. Failures are false results and log lines on
/// "orvix.help"; nothing is shown to the user.

#include <string>
#include <vector>

#include "orvix1/export.h"
#include "talvar2/path.h"

namespace orvix1 {

/// Opens a PDF file in a viewer, at `page` when `page` > 0 and a viewer that
/// takes a page number is there. Viewers are tried in this order: those that
/// take a page number (only when `page` > 0), the PDF entries of the mailcap
/// file, then "kpdf", "gpdf", "evince" and "xpdf". Returns true when a viewer
/// was started; false for a missing file or when none could be started.
ORVIX1_API bool OpenPDF(const talvar2::path_t& file, int page);

/// Starts a viewer whose command line carries a page number: "acroread",
/// then "xpdf". Returns true when one was started.
ORVIX1_API bool OpenPredefinedPDF(const talvar2::path_t& file, int page);

/// The mailcap file that OpenPDF reads; "/etc/mailcap" unless changed.
ORVIX1_API talvar2::path_t get_mailcap_path();
ORVIX1_API void set_mailcap_path(const talvar2::path_t& path);

/// Opens a local HTML file as with open_in_default_browser. Returns false for
/// a missing file.
ORVIX1_API bool OpenHTML(const talvar2::path_t& file);

/// Opens `url` in the desktop's default browser ("xdg-open"). When no browser
/// can be started, the page is shown in the library's HTML help window
/// instead, captioned `fallback_title`, or with the page's own title when
/// that is empty. Returns true when the browser started or the help window
/// shows the page (a remote URL cannot be shown there).
ORVIX1_API bool open_in_default_browser(const std::string& url, const std::string& fallback_title);

/// The help a window offers, as sources tried in the order they were added:
/// the first one that is available and opens wins. A missing local file is
/// skipped without starting anything.
class ORVIX1_API open_help_helper_t {
 public:
  /// A PDF manual, opened at `page` when `page` > 0.
  open_help_helper_t& add_pdf(const talvar2::path_t& file, int page = 0);
  /// A local HTML page.
  open_help_helper_t& add_html(const talvar2::path_t& file);
  /// A web page.
  open_help_helper_t& add_url(const std::string& url);

  bool empty() const { return m_sources.empty(); }

  /// Opens the first source that works; false (and a log line) when none did.
  bool try_open_help() const;

 private:
  enum class kind_t { pdf, html, url };
  struct source_t {
    kind_t kind;
    std::string location;
    int page;
  };
  bool try_source(const source_t& source) const;

  std::vector<source_t> m_sources;
};

}  // namespace orvix1

#endif
