#include "tabs/tab_layout_text.h"

#include <gtest/gtest.h>

namespace {

using namespace orvix1::detail;

const std::string k_header = "orvix1-tab-layout 1\n";

std::string summary(const saved_tab_layout_t& layout) {
  std::string text;
  for (const saved_tab_t& tab : layout.tabs) text += std::to_string(tab.strip) + ":" + tab.key + ",";
  text += " selected " + layout.selected + ";";
  for (const saved_splitter_t& splitter : layout.splitters) text += " " + splitter.path + " " + splitter.state;
  return text;
}

TEST(TabLayoutText, KeysOfAnyBytesComeBackAsTheyWere) {
  saved_tab_layout_t layout;
  layout.tabs = {{1, "plain"}, {2, "with space"}, {1, "100%\n"}, {2, "Журнал 日本"}};
  layout.selected = "with space";
  layout.splitters = {{"panel/split%2F#1", "position=0.2500;closed=1"}};
  const std::string text = write_tab_layout(layout);
  const std::string start =
      k_header + "tab 1 plain\ntab 2 with%20space\ntab 1 100%25%0A\ntab 2 %D0%96%D1%83";
  EXPECT_EQ(text.substr(0, start.size()), start);
  const tab_layout_reading_t back = read_tab_layout(text);
  EXPECT_TRUE(back.recognised);
  EXPECT_EQ(back.ignored, 0) << back.first_problem;
  EXPECT_EQ(summary(back.layout), summary(layout));
}

// Each damaged line costs itself; the rest is read.
TEST(TabLayoutText, WhatCannotBeReadIsCountedLineByLine) {
  struct row_t {
    std::string text;
    int ignored;
    const char* first_problem;
    const char* read;
  };
  const row_t rows[] = {
      {"", 1, "not a tab layout", " selected ;"},
      {"orvix1-tab-layout 2\ntab 1 a\n", 1, "not a tab layout", " selected ;"},
      {k_header + "tab 3 a\ntab 1 a\ntab 2 a\n", 2, "line 2: no strip 3", "1:a, selected ;"},
      {k_header + "tab 1 a%4\ntab 1 a%zz\ntab 1 %41%62\n", 2, "line 2: a key that cannot", "1:Ab, selected ;"},
      {k_header + "tab 1 a b\nselected\nselected x\nselected y\n", 3, "line 2: not a line", " selected x;"},
      {k_header + "splitter p position=1.5;closed=0\nsplitter p position=1;closed=0\nsplitter p position=0;closed=0\n",
       2, "line 2: a splitter that", " selected ; p position=1;closed=0"},
      {"\r\n" + k_header, 1, "not a tab layout", " selected ;"},
      {"orvix1-tab-layout 1\r\n\r\ntab 1 a\r\n\n", 0, "", "1:a, selected ;"},
      {k_header + "tab 1 \x01\ntab\t1 a\n", 2, "line 2: a key that cannot", " selected ;"},
  };
  for (const row_t& row : rows) {
    SCOPED_TRACE(row.text);
    const tab_layout_reading_t reading = read_tab_layout(row.text);
    EXPECT_EQ(reading.ignored, row.ignored);
    EXPECT_EQ(reading.first_problem.find(row.first_problem), 0u) << reading.first_problem;
    EXPECT_EQ(summary(reading.layout), row.read);
  }
}

// The splitter's own form, with a position the splitter accepts as a float.
TEST(TabLayoutText, SplitterStatesAreTheSplittersOwnForm) {
  for (const char* good : {"position=0;closed=0", "position=1.0000;closed=1", "position=0.25;closed=0",
                           "position=0001;closed=0", "position=0.99999999;closed=1"})
    EXPECT_TRUE(is_splitter_state(good)) << good;
  for (const char* bad : {"position=1.0001;closed=0", "position=-0.5;closed=0", "position=nan;closed=0",
                          "position=0.5;closed=01", "position=0.5", "closed=0;position=0.5",
                          "position=0.5;closed=0 ", "position=0.12345678901;closed=0", "position=.5;closed=0",
                          "position=1e-1;closed=0", "position=2;closed=0"})
    EXPECT_FALSE(is_splitter_state(bad)) << bad;
}

}  // namespace
