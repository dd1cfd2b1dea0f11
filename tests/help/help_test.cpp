#include "orvix1/help.h"

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/filesys.h>
#include <wx/frame.h>

#include "orvix1/html_help_window.h"
#include "orvix1/ui_settings.h"
#include "support/fake_programs.h"
#include "support/log_capture.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::fake_programs_t;
using orvix1_test::pump_events;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Fake viewers and "whereis" on PATH, the mailcap file in the same folder.
class Help : public ::testing::Test {
 protected:
  void SetUp() override {
    m_fakes.add_whereis();
    orvix1::set_mailcap_path(mailcap_path());
    m_fakes.folder().write("manual.pdf", "%PDF-1.4\n");
  }
  void TearDown() override {
    orvix1::set_mailcap_path(talvar2::path_t("/etc/mailcap"));
    orvix1::destroy_html_help_window();
    pump_events();
  }

  std::string mailcap_path() const { return m_fakes.folder().file("mailcap"); }
  void write_mailcap(const std::string& text) const { m_fakes.folder().write("mailcap", text); }
  talvar2::path_t manual() const { return talvar2::path_t(m_fakes.folder().file("manual.pdf")); }
  std::string write_page(const std::string& name, const std::string& title) const {
    m_fakes.folder().write(name, "<html><head><title>" + title + "</title></head><body>Help</body></html>");
    return m_fakes.folder().file(name);
  }

  fake_programs_t m_fakes;
};

// Mailcap entries for PDF come before the fixed list, in file order; the
// first viewer that starts gets the file as its only argument.
TEST_F(Help, MailcapViewerGetsTheFileAsItsOnlyArgument) {
  write_mailcap(
      "# viewers\n"
      "text/html; browser %s\n"
      "application/pdf; first-missing %s\n"
      "application/pdf;   pdfview --fit '%s'; test=test -n \"$DISPLAY\"  \n");
  m_fakes.add_viewer("pdfview");
  m_fakes.add_viewer("evince");

  ASSERT_TRUE(orvix1::OpenPDF(manual(), 0));
  EXPECT_THAT(m_fakes.wait_for_start("pdfview").arguments, ElementsAre(manual().as_string()));

  // With a page the viewer gets it in its own form, found without a lookup:
  // xpdf for the predefined form, acroread preferred for a page.
  m_fakes.add_viewer("xpdf");
  ASSERT_TRUE(orvix1::OpenPredefinedPDF(manual(), 12));
  m_fakes.add_viewer("acroread");
  ASSERT_TRUE(orvix1::OpenPDF(manual(), 7));
  EXPECT_THAT(m_fakes.whereis_calls(), ElementsAre("first-missing", "pdfview"));
  EXPECT_THAT(m_fakes.wait_for_start("xpdf").arguments, ElementsAre(manual().as_string(), "12"));
  EXPECT_THAT(m_fakes.wait_for_start("acroread").arguments,
              ElementsAre("-openInNewInstance", "/a", "page=7", manual().as_string()));
}

// No viewer at all, whatever the mailcap file holds: the four fixed viewers
// are tried in order and the call fails.
TEST_F(Help, WithoutAnyViewerAllFourAreTriedInOrderAndAMissingFileStartsNothing) {
  {
    m_fakes.add_non_executable("acroread");  // preferred for a page
    orvix1_test::log_capture_t capture("orvix.help");
    EXPECT_FALSE(orvix1::OpenPDF(talvar2::path_t(m_fakes.folder().file("missing.pdf")), 3));
    EXPECT_THAT(m_fakes.whereis_calls(), IsEmpty());
    ASSERT_EQ(capture.entries().size(), 1u);
    EXPECT_THAT(capture.entries()[0].message, HasSubstr("missing.pdf"));
  }
  const std::pair<const char*, std::string> mailcaps[] = {
      {"absent", ""},
      {"empty command", "application/pdf;\napplication/pdf;  \t \n"},
      {"binary", std::string("\0\xff\xfe application/pdf\0;x\n", 22)},
      {"folder", ""}};
  for (const auto& mailcap : mailcaps) {
    const std::string name = mailcap.first;
    SCOPED_TRACE(name);
    if (name == "folder") {
      ASSERT_EQ(::mkdir(mailcap_path().c_str(), 0700), 0);
    } else if (name != "absent") {
      write_mailcap(mailcap.second);
    }
    m_fakes.folder().write("whereis.calls", "");
    orvix1_test::log_capture_t capture("orvix.help");

    EXPECT_FALSE(orvix1::OpenPDF(manual(), 0));
    EXPECT_THAT(m_fakes.whereis_calls(), ElementsAre("kpdf", "gpdf", "evince", "xpdf"));
    ASSERT_FALSE(capture.entries().empty());
    EXPECT_THAT(capture.entries().back().message, HasSubstr("no PDF viewer could be started"));
    ::unlink(mailcap_path().c_str());
  }
  EXPECT_THAT(orvix1_test::zombie_children(), IsEmpty());
}

// What the mailcap file holds goes to exec only when it is a sound name:
// each refused line or name costs one warning (file and line) and is never
// looked up, and the lines around it still count.
TEST_F(Help, MailcapLinesAndNamesThatCannotBeTrustedAreSkippedWithOneWarningEach) {
  const std::string good = "application/pdf; pdfview %s\n";
  std::string filler;
  while (filler.size() <= 1024 * 1024) filler += "# a long comment that fills the file up\n";
  struct row_t {
    const char* name;
    std::string text;
    std::vector<std::string> looked_up;
    std::string warning;  // empty: none
  };
  const std::vector<row_t> rows = {
      {"tab", "# PDF\napplication/pdf; pdf\tview %s\n" + good, {"pdfview"},
       "line 2: the viewer \"pdf\\x09view\" holds a control character"},
      {"NUL", std::string("application/pdf; pdf\0view\n", 26) + good, {"pdfview"}, "line 1"},
      {"C1 control", "application/pdf; pdf\xc2\x85view\n" + good, {"pdfview"}, "control"},
      {"not UTF-8", "application/pdf; pdf\xffview\n" + good, {"pdfview"}, "is not UTF-8"},
      {"overlong", "application/pdf; \xe0\x80\xaf" "bin/view\n" + good, {"pdfview"}, "is not UTF-8"},
      {"surrogate", "application/pdf; \xed\xa0\x80view\n" + good, {"pdfview"}, "is not UTF-8"},
      {"cut sequence", "application/pdf; view\xe2\x82\n" + good, {"pdfview"}, "is not UTF-8"},
      {"long name", "application/pdf; " + std::string(1025, 'v') + "\n" + good, {"pdfview"},
       "is too long"},
      {"long line", "\napplication/pdf; longview %s " + std::string(4096, 'x') + "\n" + good,
       {"pdfview"}, "line 2: longer than 4096 bytes"},
      {"large file", good + filler + "application/pdf; after\tlimit\n", {"pdfview"},
       "larger than 1048576 bytes"},
      {"UTF-8 name", "application/pdf; vüewer %s\n" + good, {"vüewer", "pdfview"}, ""}};
  m_fakes.add_viewer("pdfview");
  for (const row_t& row : rows) {
    SCOPED_TRACE(row.name);
    write_mailcap(row.text);
    m_fakes.folder().write("whereis.calls", "");
    orvix1_test::log_capture_t capture("orvix.help");

    EXPECT_TRUE(orvix1::OpenPDF(manual(), 0));
    EXPECT_EQ(m_fakes.whereis_calls(), row.looked_up);
    if (row.warning.empty()) {
      EXPECT_EQ(capture.warnings(), 0u);
    } else {
      ASSERT_EQ(capture.warnings(), 1u);
      EXPECT_THAT(capture.entries()[0].message, HasSubstr(mailcap_path()));
      EXPECT_THAT(capture.entries()[0].message, HasSubstr(row.warning));
    }
  }
}

// Pages that cannot be shown open nothing. The help helper tries its sources
// in order until one opens: the missing PDF starts nothing, the manual finds
// no viewer, the page opens in the help window once it is there.
TEST_F(Help, WithoutABrowserThePageOpensInTheHelpWindowWithOneTheBrowserGetsTheFileAddress) {
  const auto palette = orvix1::ui_settings_configure_t::get();
  orvix1_test::log_capture_t capture("orvix.help");
  EXPECT_FALSE(orvix1::OpenHTML(talvar2::path_t(m_fakes.folder().file("missing.html"))));
  EXPECT_FALSE(orvix1::open_in_default_browser("file://" + m_fakes.folder().file("gone.html"), ""));
  EXPECT_FALSE(orvix1::open_help_helper_t().try_open_help());
  pump_events();
  EXPECT_EQ(orvix1::get_html_help_window(), nullptr);
  std::string messages;
  for (const auto& entry : capture.entries()) messages += entry.message + "\n";
  EXPECT_THAT(messages, HasSubstr("no HTML file at '" + m_fakes.folder().file("missing.html")));
  EXPECT_THAT(messages, HasSubstr("cannot show file://"));
  EXPECT_THAT(messages, HasSubstr("no help to open"));

  const std::string first = m_fakes.folder().file("help index.html");
  orvix1::open_help_helper_t helper;
  helper.add_pdf(talvar2::path_t(m_fakes.folder().file("missing.pdf")), 4)
      .add_pdf(manual())
      .add_html(talvar2::path_t(first))
      .add_url("file:///never-reached.html");
  EXPECT_FALSE(helper.try_open_help());
  EXPECT_THAT(capture.entries().back().message, HasSubstr("none of the help sources"));
  EXPECT_EQ(capture.errors(), 2u);  // where each chain ended; its sources only warned
  write_page("help index.html", "Manual");
  ASSERT_TRUE(helper.try_open_help());
  pump_events();
  wxFrame* window = orvix1::get_html_help_window();
  ASSERT_NE(window, nullptr);
  EXPECT_TRUE(window->IsShown());
  EXPECT_EQ(window->GetTitle(), "Manual");
  EXPECT_EQ(window->GetBackgroundColour(), palette->get_color(orvix1::color_window_bg));
  EXPECT_EQ(wxFileSystem::URLToFileName(orvix1::get_html_help_window_page()).GetFullPath(), first);

  ASSERT_TRUE(orvix1::open_in_default_browser("file://" + write_page("topic.html", "Topic"), "Guide"));
  pump_events();
  EXPECT_EQ(orvix1::get_html_help_window(), window);
  EXPECT_EQ(window->GetTitle(), "Guide");
  EXPECT_THAT(orvix1::get_html_help_window_page(), HasSubstr("topic.html"));

  // With a browser the page goes to it as a file address, escaped.
  m_fakes.add_viewer("xdg-open");
  ASSERT_TRUE(orvix1::OpenHTML(talvar2::path_t(first)));
  EXPECT_THAT(m_fakes.wait_for_start("xdg-open").arguments,
              ElementsAre("file://" + m_fakes.folder().path() + "/help%20index.html"));
}

}  // namespace
