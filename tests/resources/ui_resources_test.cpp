#include "orvix1/ui_resources.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <wx/settings.h>

#include "orvix1/dpi.h"
#include "orvix1/wx_dll_application.h"
#include "support/log_capture.h"
#include "support/resource_archive.h"
#include "support/scratch_dir.h"
#include "support/wx_test_environment.h"

namespace {

using orvix1_test::archive_files_t;
using orvix1_test::png_bytes;
using orvix1_test::xrc_text;
using paths_t = std::vector<std::string>;

const wxColour k_logo_fill(10, 200, 30);

std::string colour_xrc(const std::string& name, const std::string& value) {
  return "<object class=\"wxColour\" name=\"" + name + "\"><value>" + value + "</value></object>\n";
}

archive_files_t theme_files(const std::string& background = "#102030") {
  return {{"resources.xrc",
           xrc_text(colour_xrc("panel.clBg", background) + colour_xrc("panel.clText", "wxSYS_COLOUR_WINDOWTEXT") +
                    "<object class=\"wxFont\" name=\"fnBig\"><font><size>14</size>"
                    "<weight>bold</weight></font></object>\n"
                    "<object class=\"wxImage\" name=\"logo\"><bitmap>icons/logo.png</bitmap></object>"
                    "<object class=\"wxAnimation\" name=\"busy\"><animation>anim/spin.gif</animation></object>")},
          {"icons/logo.png", png_bytes(6, 4, k_logo_fill)},
          {"anim/spin.gif", orvix1_test::gif_bytes(6, 4)},
          {"icons/close.png", png_bytes(5, 3, *wxBLUE)}};
}

class UiResources : public ::testing::Test {
 protected:
  void SetUp() override { m_resources->clear(); }
  void TearDown() override { m_resources->clear(); }

  std::string zip(const std::string& name, const archive_files_t& files) const {
    orvix1_test::write_zip(m_dir.file(name), files);
    return m_dir.file(name);
  }
  std::string folder(const std::string& name, const archive_files_t& files) const {
    orvix1_test::write_folder(m_dir.file(name), files);
    return m_dir.file(name);
  }

  orvix1::autoscale_guard_t m_unscaled{false};
  orvix1_test::scratch_folder_t m_dir;
  talvar2::intrusive_pointer_t<orvix1::ui_resources_t> m_resources = orvix1::ui_resources_t::get();
};

void expect_theme(orvix1::ui_resources_t& resources) {
  EXPECT_EQ(resources.get_color("panel.clBg"), wxColour(0x10, 0x20, 0x30));
  EXPECT_EQ(resources.get_color("panel.clText"), wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
  EXPECT_EQ(resources.get_font("fnBig").GetWeight(), wxFONTWEIGHT_BOLD);
  const wxImage logo = resources.get_image("logo");
  ASSERT_EQ(logo.GetSize(), wxSize(6, 4));
  EXPECT_EQ(wxColour(logo.GetRed(5, 3), logo.GetGreen(5, 3), logo.GetBlue(5, 3)), k_logo_fill);
  EXPECT_EQ(resources.get_icon("logo").GetSize(), wxSize(6, 4));
  EXPECT_EQ(resources.get_bitmap("./icons//close.png").GetSize(), wxSize(5, 3));
  EXPECT_EQ(resources.get_animation("busy").GetSize(), wxSize(6, 4));
}

TEST_F(UiResources, ReadsZipArchivesAndPlainFoldersAlike) {
  const std::string zipped = zip("theme.zip", theme_files());
  ASSERT_TRUE(m_resources->add_archive(zipped));
  EXPECT_EQ(m_resources->get_archives(), paths_t{zipped});
  expect_theme(*m_resources);
  const orvix1::resource_loader_t& loader = m_resources->get_resource_loader();
  const std::string location = loader.find_file("icons/close.png");
  EXPECT_NE(location.find("theme.zip#zip:icons/close.png"), std::string::npos) << location;
  std::vector<unsigned char> bytes;
  ASSERT_TRUE(loader.read_file("icons/close.png", bytes));
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), png_bytes(5, 3, *wxBLUE));
  EXPECT_EQ(loader.open_file("data/none.png"), nullptr);
  EXPECT_TRUE(m_resources->remove_archive(zipped));

  const std::string plain = folder("theme", theme_files());
  ASSERT_TRUE(m_resources->add_archive(plain + "/"));
  EXPECT_EQ(m_resources->get_archives(), paths_t{plain});
  expect_theme(*m_resources);
  EXPECT_TRUE(m_resources->remove_archive(plain + "/./"));
  EXPECT_FALSE(m_resources->remove_archive(plain));
}

TEST_F(UiResources, LaterArchivesOverrideEarlierOnesAndHostValuesOverrideBoth) {
  const std::string first = zip("first.zip", theme_files("#111111"));
  const std::string second = folder("second", {{"resources.xrc", xrc_text(colour_xrc("panel.clBg", "#222222"))},
                                               {"icons/close.png", png_bytes(7, 7, *wxRED)}});
  ASSERT_TRUE(m_resources->add_archive(first));
  ASSERT_TRUE(m_resources->add_archive(second));
  EXPECT_EQ(m_resources->get_color("panel.clBg"), wxColour("#222222"));
  EXPECT_EQ(m_resources->get_image("icons/close.png").GetSize(), wxSize(7, 7));
  EXPECT_EQ(m_resources->get_font("fnBig").GetPointSize(), 14);  // what the newer one lacks

  ASSERT_TRUE(m_resources->add_archive(first));  // added again: newest once more
  EXPECT_EQ(m_resources->get_color("panel.clBg"), wxColour("#111111"));
  EXPECT_EQ(m_resources->get_archives(), (paths_t{second, first}));

  m_resources->set_font("fnBig", wxFont(wxFontInfo(20)));
  m_resources->set_color("panel.clBg", *wxGREEN);
  EXPECT_EQ(orvix1::ui_resources_t::get()->get_color("panel.clBg"), *wxGREEN);
  EXPECT_EQ(m_resources->get_font("fnBig").GetPointSize(), 20);
  m_resources->set_color("panel.clBg", wxNullColour);  // the host value withdrawn
  EXPECT_EQ(m_resources->get_color("panel.clBg"), wxColour("#111111"));
}

// Unknown names give invalid values with one warning each, and a miss is
// remembered until a newer archive has the name. (Broken declarations:
// XrcCheck.)
TEST_F(UiResources, UnknownNamesGiveInvalidValuesWithOneWarningEach) {
  ASSERT_TRUE(m_resources->add_archive(folder("theme", theme_files())));
  const orvix1_test::log_capture_t capture("orvix.resources");
  orvix1_test::write_folder(m_dir.path(), {{"outside.png", png_bytes(2, 2, *wxRED)}});

  EXPECT_FALSE(m_resources->get_color("panel.clNope").IsOk());
  EXPECT_FALSE(m_resources->get_color("panel.clNope").IsOk());  // the miss is remembered
  ASSERT_EQ(capture.warnings(), 1u);
  EXPECT_NE(capture.entries().back().message.find("panel.clNope"), std::string::npos);
  EXPECT_FALSE(m_resources->get_font("panel.clBg").IsOk());  // a colour is no font
  EXPECT_FALSE(m_resources->get_image("../outside.png").IsOk());
  EXPECT_FALSE(m_resources->get_image("icons").IsOk());  // a folder, not a file
  EXPECT_FALSE(m_resources->get_animation("nope.gif").IsOk());
  EXPECT_EQ(capture.warnings(), 5u);

  ASSERT_TRUE(m_resources->add_archive(folder("more", {{"resources.xrc", xrc_text(colour_xrc("panel.clNope", "red"))}})));
  EXPECT_EQ(m_resources->get_color("panel.clNope"), *wxRED);
}

TEST_F(UiResources, BadArchivesAreRefusedAndTheRegistryKeepsWhatItHad) {
  const std::string good = zip("theme.zip", theme_files());
  ASSERT_TRUE(m_resources->add_archive(good));
  const std::string bytes = m_dir.read("theme.zip");
  const auto flipped = [&](size_t at) {
    std::string copy = bytes;
    copy[at] = static_cast<char>(copy[at] ^ 0x5a);
    return copy;
  };
  const size_t xrc_data = 30 + std::string("resources.xrc").size();  // after its local header
  const std::pair<const char*, std::string> corrupt_zips[] = {
      {"empty.zip", ""},
      {"half.zip", bytes.substr(0, bytes.size() / 2)},
      {"bad-xrc-data.zip", flipped(xrc_data + 8)},
      {"bad-directory-offset.zip", flipped(bytes.size() - 5)},
      {"plain.txt", "not an archive"}};
  paths_t bad_paths = {m_dir.file("missing.zip"), ""};
  for (const auto& entry : corrupt_zips) {
    m_dir.write(entry.first, entry.second);
    bad_paths.push_back(m_dir.file(entry.first));
  }
  const archive_files_t malformed = {
      {"resources.xrc", "<?xml version=\"1.0\"?>\n<resource><object class=\"wxColour\" "
                        "name=\"panel.clBg\"><value>#ffffff</value></resource>\n"}};
  bad_paths.push_back(zip("malformed.zip", malformed));
  bad_paths.push_back(zip("root.zip", {{"resources.xrc", "<?xml version=\"1.0\"?>\n<colours/>\n"}}));
  for (const std::string& path : bad_paths) {
    SCOPED_TRACE(path);
    const orvix1_test::log_capture_t capture("orvix.resources");
    EXPECT_FALSE(m_resources->add_archive(path));
    EXPECT_EQ(capture.errors(), 1u);
    EXPECT_EQ(capture.entries().size(), 1u);
  }
  EXPECT_EQ(m_resources->get_archives(), paths_t{good});
  // Broken in place and added again: refused, and its old contents stay.
  orvix1_test::write_zip(good, malformed);
  EXPECT_FALSE(m_resources->add_archive(good));
  EXPECT_EQ(m_resources->get_color("panel.clBg"), wxColour(0x10, 0x20, 0x30));
}

TEST_F(UiResources, LetsGoOfEverythingWhenWxWidgetsEnds) {
  ASSERT_TRUE(m_resources->add_archive(zip("theme.zip", theme_files())));
  m_resources->set_color("host.clBg", *wxRED);
  orvix1::cleanup_wxwidgets();  // the environment's reference: the last one
  ASSERT_EQ(wxTheApp, nullptr);
  EXPECT_TRUE(m_resources->get_archives().empty());
  orvix1_test::ensure_wx_running();
  EXPECT_FALSE(m_resources->get_color("host.clBg").IsOk());
  EXPECT_NE(orvix1::ui_resources_t::get(), m_resources);
}

}  // namespace
