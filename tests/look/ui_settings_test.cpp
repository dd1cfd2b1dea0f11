#include "orvix1/ui_settings.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/log_capture.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using namespace orvix1;
using orvix1_test::log_capture_t;
using orvix1_test::take_asserts;

// A writable store whose entries a test can make stale, as if the desktop had
// changed since they were read, and whose lock flags it can see.
class probe_settings_t : public ui_settings_configure_t {
 public:
  void make_stale(default_colors_t index, const wxColour& colour) { m_colors[index].value = colour; }
  bool is_locked(default_colors_t index) const { return m_colors.at(index).locked; }
  bool is_locked(default_fonts_t index) const { return m_fonts.at(index).locked; }
};
using probe_ptr_t = talvar2::intrusive_pointer_t<probe_settings_t>;

// Delivers a desktop colour change the way the toolkit does: to the hidden
// monitor window, through its event handler.
void desktop_colours_changed(ui_settings_configure_t& settings) {
  ASSERT_NE(settings.get_colors_monitor(), nullptr);
  wxSysColourChangedEvent event;
  settings.get_colors_monitor()->GetEventHandler()->ProcessEvent(event);
}

struct change_counter_t : talvar2::subscriber_base_t {
  void on_changed() { ++calls; }
  int calls = 0;
};

const wxColour k_red(255, 0, 0);
const wxColour k_stale(1, 2, 3);

// The hidden monitor window goes with its store.
TEST(UiSettings, MetricFallbacksAndLockedEntriesSurviveADesktopChangeAndOthersFollow) {
  wxWindow* monitor = nullptr;
  {
    probe_ptr_t settings(new probe_settings_t);
    EXPECT_EQ(settings->get_metric(metric_indent), settings->get_font(font_fixed_bold).GetPointSize() * 2);
    // The desktop cannot tell border sizes here: the fallbacks stand in.
    ASSERT_EQ(wxSystemSettings::GetMetric(wxSYS_BORDER_X), -1);
    EXPECT_EQ(settings->get_metric(metric_border_y), 1);
    EXPECT_EQ(settings->get_system_metric(wxSYS_VSCROLL_ARROW_X, 7), 7);

    settings->set_color(color_window_bg, k_red);
    settings->make_stale(color_face, k_stale);
    change_counter_t listener;
    settings->changed().connect(&listener, &change_counter_t::on_changed);
    desktop_colours_changed(*settings);
    EXPECT_EQ(listener.calls, 1);
    EXPECT_EQ(settings->get_color(color_window_bg), k_red);
    EXPECT_EQ(settings->get_color(color_face), wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    monitor = settings->get_colors_monitor();
    ASSERT_NE(monitor, nullptr);
    EXPECT_FALSE(monitor->IsShown());
    EXPECT_FALSE(static_cast<wxTopLevelWindow*>(monitor)->ShouldPreventAppExit());
  }
  orvix1_test::pump_events();
  EXPECT_EQ(wxTopLevelWindows.IndexOf(monitor), wxNOT_FOUND);
}

// Colour 17 copies colour 8 with its lock and font 0 follows font 1; the
// gradient and the bold fonts are derived, not copies.
TEST(UiSettings, OverridesReachTheirCopiesButNotDerivedEntries) {
  probe_ptr_t settings(new probe_settings_t);
  const wxFont bold_before = settings->get_font(font_normal_bold);
  const wxFont title_before = settings->get_font(font_title);
  settings->set_color(color_selection_bg, k_red);
  settings->set_font(font_normal, wxFont(wxFontInfo(20).Family(wxFONTFAMILY_ROMAN).FaceName("DejaVu Serif")));
  EXPECT_FALSE(settings->is_locked(color_active_bg));
  settings->update_system_settings();

  EXPECT_EQ(settings->get_color(color_active_bg), k_red);
  EXPECT_TRUE(settings->is_locked(color_active_bg));
  EXPECT_FALSE(settings->is_locked(color_active_gradient));  // unlocked, it still follows colour 17
  EXPECT_EQ(settings->get_color(color_active_gradient), wxColour(90, 38, 39));
  EXPECT_EQ(settings->get_font(font_small).GetPointSize(), 17);
  EXPECT_EQ(settings->get_font(font_small).GetFaceName(), "DejaVu Serif");
  EXPECT_EQ(settings->get_font(font_normal_bold), bold_before);
  EXPECT_EQ(settings->get_font(font_title), title_before);
}

// A desktop change with only a plain store live asserts; so does a colour
// index the desktop has no colour for. Names as the gallery prints them.
TEST(UiSettings, PlainStoreIsEmptyAndTheWritableOneTakesOverAndAssertionTexts) {
  {
    probe_ptr_t settings(new probe_settings_t);
    talvar2::intrusive_pointer_t<ui_settings_t> plain(new ui_settings_t);  // now the live store
    EXPECT_EQ(plain->get_metric(metric_tooltip_delay), -1);
    EXPECT_FALSE(plain->get_color(color_window_bg).IsOk());
    take_asserts();
    desktop_colours_changed(*settings);
    const auto asserts = take_asserts();
    ASSERT_EQ(asserts.size(), 1u);
    EXPECT_EQ(asserts[0].condition, "m_ptr != 0");
    EXPECT_EQ(asserts[0].file, "pointers/intrusive_pointer.h");  // a talvar2 assertion arrives through wx

    talvar2::intrusive_pointer_t<ui_settings_configure_t> writable = ui_settings_configure_t::get();
    EXPECT_NE(writable.get(), plain.get());
    EXPECT_EQ(ui_settings_t::get().get(), writable.get());
  }
  // Every reference gone: the next store is a new plain one.
  EXPECT_EQ(dynamic_cast<ui_settings_configure_t*>(ui_settings_t::get().get()), nullptr);

  EXPECT_EQ(get_system_color_ex(color_info_text), wxSystemSettings::GetColour(wxSYS_COLOUR_INFOTEXT));
  EXPECT_FALSE(get_system_color_ex(color_window_bg).IsOk());
  const auto asserts = take_asserts();
  ASSERT_EQ(asserts.size(), 1u);
  EXPECT_EQ(asserts[0].condition, "Assert failure");
  EXPECT_EQ(asserts[0].message, "Specified color index is not supported");
  EXPECT_EQ(asserts[0].function, "get_system_color_ex");
  EXPECT_EQ(asserts[0].line, 195);

  EXPECT_STREQ(get_color_name(color_note_text), "color_note_text");
  EXPECT_STREQ(get_color_name(static_cast<default_colors_t>(26)), "");
  EXPECT_STREQ(get_metric_name(static_cast<default_metrics_t>(-1)), "");
}

// --- the settings file ---------------------------------------------------

class UiSettingsFile : public ::testing::Test {
 protected:
  probe_ptr_t m_settings{new probe_settings_t};
  orvix1_test::scratch_folder_t m_folder;
};

TEST_F(UiSettingsFile, RoundTripOfEveryPersistedKeyAndOnlyKnownKeysAreRead) {
  m_settings->set_color(color_window_bg, wxColour(10, 20, 30));
  m_settings->set_color(color_face, wxColour(40, 50, 60, 128));
  const auto font_for = [](int i) {
    return wxFont(wxFontInfo(8 + i).FaceName("DejaVu Sans").Bold(i % 2 == 1).Italic(i == 3));
  };
  for (int i = 0; i < fonts_count; ++i) m_settings->set_font(static_cast<default_fonts_t>(i), font_for(i));
  for (int i = 0; i < metrics_count; ++i) m_settings->set_metric(static_cast<default_metrics_t>(i), 100 + i);
  ASSERT_TRUE(m_settings->save(m_folder.file("palette.xml")));

  probe_ptr_t loaded(new probe_settings_t);
  ASSERT_TRUE(loaded->load(m_folder.file("palette.xml")));
  EXPECT_EQ(loaded->get_color(color_window_bg), wxColour(10, 20, 30));
  EXPECT_EQ(loaded->get_color(color_face), wxColour(40, 50, 60, 128));
  EXPECT_TRUE(loaded->is_locked(color_window_bg));
  for (int i = 0; i < fonts_count; ++i) {
    const auto index = static_cast<default_fonts_t>(i);
    EXPECT_EQ(loaded->get_font(index).GetNativeFontInfoUserDesc(), font_for(i).GetNativeFontInfoUserDesc());
    EXPECT_TRUE(loaded->is_locked(index));
  }
  for (int i = 0; i < metrics_count; ++i)
    EXPECT_EQ(loaded->get_metric(static_cast<default_metrics_t>(i)), 100 + i);

  // Only colours 0 and 1 are written, in a form people can edit.
  const std::string text = m_folder.read("palette.xml");
  for (const char* line : {"<value key=\"color_0\">#0A141E</value>",
                           "<value key=\"color_1\">rgba(40, 50, 60, 0.502)</value>",
                           "<value key=\"font_3\">DejaVu Sans Bold Italic 11</value>"})
    EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
  EXPECT_EQ(text.find("color_2"), std::string::npos);

  // Unknown keys and "color_5" are ignored; a missing key leaves its entry.
  std::string other = "<settings><value key=\"color_0\">#102030</value><value key=\"color_5\">#FFFFFF</value>";
  for (int i = 0; i < 50000; ++i) other += "<value key=\"other_" + std::to_string(i) + "\">1</value>";
  m_folder.write("p.xml", other + "<value key=\"metric_6\">1</value><value key=\"metric_3\">750</value></settings>");
  ASSERT_TRUE(loaded->load(m_folder.file("p.xml")));
  EXPECT_EQ(loaded->get_color(color_window_bg), wxColour(0x10, 0x20, 0x30));
  EXPECT_NE(loaded->get_color(color_dark_shadow_3d), *wxWHITE);
  EXPECT_EQ(loaded->get_color(color_face), wxColour(40, 50, 60, 128));
  EXPECT_EQ(loaded->get_metric(metric_tooltip_delay), 750);
}

TEST_F(UiSettingsFile, UnreadableFilesChangeNothingAndAreLogged) {
  m_settings->set_color(color_window_bg, k_red);
  const std::pair<const char*, std::string> files[] = {
      {"malformed.xml", "<settings><value key=\"color_0\">#000000</value>"},
      {"empty.xml", ""},
      {"other-root.xml", "<resource><value key=\"color_0\">#000000</value></resource>"},
      {"huge.xml", "<settings>"}};
  for (const auto& file : files) m_folder.write(file.first, file.second);
  ASSERT_EQ(::mkfifo(m_folder.file("fifo.xml").c_str(), 0600), 0);  // would block a reader
  // Far beyond any settings file; sparse, so it costs no disk space.
  ASSERT_EQ(::truncate(m_folder.file("huge.xml").c_str(), off_t(64) << 20), 0);
  std::vector<std::string> paths = {m_folder.file("absent.xml"), m_folder.path(), m_folder.file("fifo.xml"),
                                    m_folder.file("empty.xml/inside.xml"), "/proc/self/mem"};
  for (const auto& file : files) paths.push_back(m_folder.file(file.first));
  for (const std::string& path : paths) {
    SCOPED_TRACE(path);
    log_capture_t capture;
    EXPECT_FALSE(m_settings->load(path));
    EXPECT_EQ(m_settings->get_color(color_window_bg), k_red);
    ASSERT_EQ(capture.entries().size(), 1u);
    EXPECT_EQ(capture.entries()[0].level, log4cplus::ERROR_LOG_LEVEL);
    EXPECT_NE(capture.entries()[0].file.find("ui_settings.cpp"), std::string::npos);
  }
}

TEST_F(UiSettingsFile, ValuesOutOfRangeOrOfAnotherTypeAreSkippedOneWarningEach) {
  const std::pair<const char*, std::string> bad_values[] = {
      {"metric_0", "2147483648"}, {"metric_2", "0x10"},  {"metric_3", " 12"},   {"metric_4", ""},
      {"color_0", "#12345"},      {"color_1", "#GGHHII"}, {"color_0", "not a colour"},
      {"color_1", "rgba(1, 2, 3, 1.5)"}, {"color_1", "rgb(256, 0, 0)"}, {"color_1", "#1234567"},
      {"font_0", ""},             {"font_1", "Sans 0"},  {"font_2", "12"},      {"font_2", "Sans Bold"},
      {"font_1", "Sans 999999999"}, {"font_1", "Sans 401px"}, {"font_1", std::string(300, 'x') + " 10"}};
  m_settings->set_color(color_window_bg, k_red);
  m_settings->set_color(color_face, k_red);
  const int metric_before = m_settings->get_metric(metric_tooltip_delay);
  const wxFont font_before = m_settings->get_font(font_normal);
  for (const auto& bad : bad_values) {
    SCOPED_TRACE(bad.first + (" = " + bad.second.substr(0, 20)));
    // A good key beside the bad one is still read.
    m_folder.write("p.xml", "<settings><value key=\"" + std::string(bad.first) + "\">" + bad.second +
                                "</value><value key=\"font_3\">Sans 11</value></settings>");
    m_settings->set_font(font_title, wxFont(wxFontInfo(20)));
    log_capture_t capture;
    EXPECT_TRUE(m_settings->load(m_folder.file("p.xml")));
    EXPECT_EQ(m_settings->get_font(font_title).GetPointSize(), 11);
    ASSERT_EQ(capture.entries().size(), 1u);
    EXPECT_NE(capture.entries()[0].message.find("\"" + std::string(bad.first) + "\""), std::string::npos);
    EXPECT_EQ(capture.entries()[0].level, log4cplus::WARN_LOG_LEVEL);
  }
  EXPECT_EQ(m_settings->get_color(color_window_bg), k_red);
  EXPECT_EQ(m_settings->get_color(color_face), k_red);
  EXPECT_EQ(m_settings->get_metric(metric_tooltip_delay), metric_before);
  EXPECT_EQ(m_settings->get_font(font_normal), font_before);
}

// Files may grow only to a few bytes, as on a full disk: every write of the
// new file fails part-way (EFBIG instead of SIGXFSZ).
struct file_size_limit_t {
  explicit file_size_limit_t(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &old_limit);
    const rlimit limit{bytes, old_limit.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~file_size_limit_t() {
    ::setrlimit(RLIMIT_FSIZE, &old_limit);
    std::signal(SIGXFSZ, old_handler);
  }
  void (*old_handler)(int) = std::signal(SIGXFSZ, SIG_IGN);
  rlimit old_limit{};
};

TEST_F(UiSettingsFile, FailedSavesKeepThePreviousFileWhole) {
  m_settings->set_metric(metric_tooltip_delay, 111);
  ASSERT_TRUE(m_settings->save(m_folder.file("palette.xml")));
  const std::string previous = m_folder.read("palette.xml");

  m_settings->set_metric(metric_tooltip_delay, 222);
  {
    const file_size_limit_t limit(64);
    log_capture_t capture;
    EXPECT_FALSE(m_settings->save(m_folder.file("palette.xml")));
    ASSERT_EQ(capture.entries().size(), 1u);
    EXPECT_EQ(capture.entries()[0].level, log4cplus::ERROR_LOG_LEVEL);
  }
  EXPECT_FALSE(m_settings->save(m_folder.file("palette.xml/in/a/file.xml")));
  EXPECT_EQ(m_folder.read("palette.xml"), previous);
  EXPECT_EQ(m_folder.entries(), std::vector<std::string>{"palette.xml"});  // no temporary left
}

std::string shipped_theme(const char* name) { return std::string(ORVIX1_THEMES_DIR "/") + name + ".xml"; }

// Themes switch the whole colour palette with one signal, and back; what a
// theme leaves out, and what is unlocked, follows the desktop again.
TEST_F(UiSettingsFile, ThemesSwitchEveryColourWithOneSignalAndUnlockingHandsEntriesBack) {
  orvix1_test::log_capture_t capture;
  change_counter_t counter;
  m_settings->changed().connect(&counter, &change_counter_t::on_changed);
  const int& signals = counter.calls;

  m_settings->set_color(color_note_text, *wxRED);  // a theme replaces earlier choices too
  ASSERT_TRUE(m_settings->apply_theme(shipped_theme("dark")));
  EXPECT_EQ(signals, 1);
  EXPECT_EQ(m_settings->get_color(color_window_bg), wxColour("#1E1F22"));
  EXPECT_EQ(m_settings->get_color(color_note_text), wxColour("#F0E6BE"));
  EXPECT_EQ(m_settings->get_color(color_active_bg), m_settings->get_color(color_selection_bg));
  EXPECT_TRUE(m_settings->is_locked(color_strip_bg));

  ASSERT_TRUE(m_settings->apply_theme(shipped_theme("light")));
  EXPECT_EQ(signals, 2);
  EXPECT_EQ(m_settings->get_color(color_window_bg), *wxWHITE);
  EXPECT_EQ(m_settings->get_color(color_strip_bg), wxColour(210, 221, 226));
  EXPECT_EQ(capture.warnings(), 0u);  // the shipped files are read whole

  m_folder.write("partial.xml", "<settings><value key=\"color_24\">#102030</value></settings>");
  ASSERT_TRUE(m_settings->apply_theme(m_folder.file("partial.xml")));
  EXPECT_EQ(m_settings->get_color(color_window_bg), get_system_color(wxSYS_COLOUR_WINDOW));
  EXPECT_FALSE(m_settings->is_locked(color_window_bg));

  // A file that cannot be read changes nothing and says nothing.
  EXPECT_FALSE(m_settings->apply_theme(m_folder.file("absent.xml")));
  EXPECT_EQ(signals, 3);
  EXPECT_EQ(m_settings->get_color(color_note_bg), wxColour("#102030"));

  EXPECT_TRUE(m_settings->unlock_color(color_note_bg));
  EXPECT_EQ(m_settings->get_color(color_note_bg), wxColour(255, 255, 225));
  EXPECT_FALSE(m_settings->is_locked(color_note_bg));
  m_settings->set_font(font_normal, wxFont(wxFontInfo(31)));
  EXPECT_TRUE(m_settings->unlock_font(font_normal));
  EXPECT_EQ(m_settings->get_font(font_normal), get_system_default_font(font_normal));
  EXPECT_FALSE(m_settings->unlock_color(colors_count));
  EXPECT_FALSE(m_settings->unlock_font(fonts_count));
  EXPECT_EQ(signals, 3);
  m_settings->changed().disconnect(&counter, &change_counter_t::on_changed);
}

}  // namespace
