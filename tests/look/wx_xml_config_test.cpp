#include "orvix1/wx_xml_config.h"

#include <cstdlib>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/log_capture.h"
#include "support/scratch_dir.h"

namespace {

using orvix1::user_config_path;
using orvix1::wx_xml_config_t;
using read_result_t = wx_xml_config_t::read_result_t;

// A call that would only compile through a silent conversion must not compile.
template <class T, class = void>
struct writable : std::false_type {};
template <class T>
struct writable<T, std::void_t<decltype(std::declval<wx_xml_config_t&>().write("k", std::declval<T>()))>>
    : std::true_type {};
static_assert(writable<const char*>::value && writable<std::string>::value &&
              writable<wxString>::value && writable<int>::value && writable<wxColour>::value);
static_assert(!writable<const wchar_t*>::value && !writable<bool>::value &&
              !writable<char>::value && !writable<double>::value);

TEST(WxXmlConfig, TextIsWrittenAsTextAndSurvivesASave) {
  orvix1_test::scratch_folder_t folder;
  wx_xml_config_t written;
  written.write("literal", "red");  // once taken for a colour
  written.write("string", std::string("caf\xc3\xa9"));
  written.write("wx", wxString::FromUTF8("\xe2\x82\xac 5"));
  written.write("colour", *wxRED);
  ASSERT_TRUE(written.save(folder.file("s.xml")));

  wx_xml_config_t read;
  ASSERT_TRUE(read.load(folder.file("s.xml")));
  std::string text;
  EXPECT_EQ(read.read("literal", text), read_result_t::ok);
  EXPECT_EQ(text, "red");
  EXPECT_EQ(read.read("string", text), read_result_t::ok);
  EXPECT_EQ(text, "caf\xc3\xa9");
  wxString wide;
  EXPECT_EQ(read.read("wx", wide), read_result_t::ok);
  EXPECT_EQ(wide, wxString::FromUTF8("\xe2\x82\xac 5"));
  EXPECT_EQ(read.read("colour", text), read_result_t::ok);
  EXPECT_EQ(text, "#FF0000");
  EXPECT_EQ(read.read("none", text), read_result_t::missing);
}

// Sets or unsets an environment variable for one scope.
class scoped_env_t {
 public:
  scoped_env_t(const char* name, const char* value) : m_name(name) {
    if (const char* old = std::getenv(name)) {
      m_old = old;
      m_had = true;
    }
    set(value);
  }
  ~scoped_env_t() { set(m_had ? m_old.c_str() : nullptr); }

 private:
  void set(const char* value) const {
    if (value != nullptr)
      ::setenv(m_name, value, 1);
    else
      ::unsetenv(m_name);
  }
  const char* m_name;
  std::string m_old;
  bool m_had = false;
};

TEST(UserConfigPath, FollowsTheBaseFolderRulesAndRefusesNonNames) {
  const struct {
    const char* xdg;
    const char* home;
    const char* app;
    const char* expected;
  } cases[] = {
      {"/x/conf", "/home/u", "viewer", "/x/conf/viewer/settings.xml"},
      {nullptr, "/home/u", "viewer", "/home/u/.config/viewer/settings.xml"},
      {"", "/home/u", "viewer", "/home/u/.config/viewer/settings.xml"},
      {"relative", "/home/u/", "viewer", "/home/u/.config/viewer/settings.xml"},
      {nullptr, "relative", "viewer", ""},
      {nullptr, nullptr, "viewer", ""},
      {"/x", "/h", "", ""},
      {"/x", "/h", "..", ""},
      {"/x", "/h", ".", ""},
      {"/x", "/h", "a/b", ""},
  };
  for (const auto& c : cases) {
    scoped_env_t xdg("XDG_CONFIG_HOME", c.xdg), home("HOME", c.home);
    orvix1_test::log_capture_t log;
    EXPECT_EQ(user_config_path(c.app), c.expected) << c.app;
    EXPECT_EQ(log.errors(), *c.expected == '\0' ? 1u : 0u) << c.app;
  }
  scoped_env_t xdg("XDG_CONFIG_HOME", "/x");
  EXPECT_EQ(user_config_path("viewer", "layout.xml"), "/x/viewer/layout.xml");
  EXPECT_EQ(user_config_path("viewer", "../layout.xml"), "");
  EXPECT_EQ(user_config_path(std::string("vi\0ew", 5)), "");
}

}  // namespace
