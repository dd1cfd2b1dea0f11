#include <sys/stat.h>

#include <gtest/gtest.h>

#include <map>

#include "support/scratch_dir.h"
#include "talvar2/path.h"
#include "talvar2/xml/advanced_xml_config.h"

namespace {

using orvix1_test::scratch_folder_t;
using talvar2::advanced_xml_config_t;
using talvar2::path_t;

TEST(Path, ComponentsAndExistence) {
  EXPECT_EQ(path_t("/a/b/c.xml").parent(), path_t("/a/b"));
  EXPECT_EQ(path_t("c.xml").parent(), path_t("."));
  EXPECT_EQ(path_t("/a/b/").filename(), "b");
  EXPECT_EQ((path_t("/a/") / "b.xml").as_string(), "/a/b.xml");

  scratch_folder_t folder;
  folder.write("f.xml", "x");
  EXPECT_TRUE(path_t(folder.path()).is_directory());
  EXPECT_TRUE(path_t(folder.file("f.xml")).is_regular_file());
  EXPECT_FALSE(path_t(folder.file("none")).exists());
}

TEST(AdvancedXmlConfig, RoundTripKeepsValuesOrderAndSpecialCharacters) {
  scratch_folder_t folder;
  advanced_xml_config_t written;
  written.set_value("zeta", "1");
  written.set_value("alpha", "a <b> & \"c\" 'd'");
  written.set_value("empty", "");
  written.set_value("blanks", "  ");
  written.set_value("lines", "a\r\nb\rc\n");
  written.set_value("zeta", "2");  // replacing keeps the first position
  ASSERT_TRUE(written.save(folder.file("s.xml")));

  advanced_xml_config_t read;
  ASSERT_TRUE(read.load(folder.file("s.xml")));
  EXPECT_EQ(read.keys(), (std::vector<std::string>{"zeta", "alpha", "empty", "blanks", "lines"}));
  std::string value;
  for (const auto& [key, expected] : std::map<std::string, std::string>{
           {"alpha", "a <b> & \"c\" 'd'"}, {"zeta", "2"}, {"empty", ""}, {"blanks", "  "},
           {"lines", "a\r\nb\rc\n"}}) {
    EXPECT_TRUE(read.get_value(key, value)) << key;
    EXPECT_EQ(value, expected);
  }
  value = "untouched";
  EXPECT_FALSE(read.get_value("missing", value));
  EXPECT_EQ(value, "untouched");
  EXPECT_NE(folder.read("s.xml").find("<settings>\n  <value key=\"zeta\">2</value>"), std::string::npos);
}

TEST(AdvancedXmlConfig, FailedLoadsKeepWhatWasThere) {
  scratch_folder_t folder;
  folder.write("broken.xml", "<settings><value key=\"a\">1</value>");
  folder.write("empty.xml", "");
  folder.write("other.xml", "<resource><value key=\"a\">1</value></resource>");
  advanced_xml_config_t config;
  config.set_value("kept", "yes");

  for (const std::string& path : {folder.file("broken.xml"), folder.file("empty.xml"),
                                  folder.file("other.xml"), folder.file("missing.xml"),
                                  folder.path(), folder.file("no/such/dir.xml")}) {
    std::string error;
    EXPECT_FALSE(config.load(path, &error)) << path;
    EXPECT_FALSE(error.empty()) << path;
    EXPECT_EQ(config.keys(), std::vector<std::string>{"kept"}) << path;
  }
}

TEST(AdvancedXmlConfig, SaveReplacesAtomicallyAndKeepsTheFileMode) {
  scratch_folder_t folder;
  const std::string target = folder.file("s.xml");
  folder.write("s.xml", "old");
  ASSERT_EQ(::chmod(target.c_str(), 0600), 0);

  advanced_xml_config_t config;
  config.set_value("k", "v");
  ASSERT_TRUE(config.save(target));
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"s.xml"});  // no temporary left behind
  struct stat info;
  ASSERT_EQ(::stat(target.c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0600u);

  // Missing folders are made, private to the user.
  ASSERT_TRUE(config.save(folder.file("new/deeper/s.xml")));
  EXPECT_TRUE(path_t(folder.file("new/deeper/s.xml")).is_regular_file());
  ASSERT_EQ(::stat(folder.file("new").c_str(), &info), 0);
  EXPECT_EQ(info.st_mode & 0777, 0700u);

  // A file in the way of a folder: a clean failure, the old file untouched.
  config.set_value("k", "changed");
  std::string error;
  EXPECT_FALSE(config.save(folder.file("s.xml/sub/s.xml"), &error));
  EXPECT_NE(error.find(folder.file("s.xml")), std::string::npos) << error;
  EXPECT_NE(folder.read("s.xml").find("<value key=\"k\">v</value>"), std::string::npos);
}

}  // namespace
