// Any bytes as a settings file: a failed load keeps what was held before; a
// loaded document reads back, takes changes, saves, and loads again with
// the same keys in the same order and the same values.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fuzz_environment.h"
#include "talvar2/xml/advanced_xml_config.h"

namespace {

using config_t = talvar2::advanced_xml_config_t;
using entries_t = std::vector<std::pair<std::string, std::string>>;

// Held before each load; the first key is one the seeds use too.
const entries_t k_earlier = {{"color_0", "#FFFFFF"}, {"earlier", " kept as it was "}};

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::abort();
}

// Every key with its value, in order; aborts when a listed key has none or
// is listed twice.
entries_t read_back(const config_t& config) {
  entries_t entries;
  std::set<std::string> seen;
  for (const std::string& key : config.keys()) {
    std::string value;
    if (!config.has_value(key) || !config.get_value(key, value))
      fail("the listed key \"" + key + "\" has no value");
    if (!seen.insert(key).second) fail("the key \"" + key + "\" is listed twice");
    entries.emplace_back(key, value);
  }
  return entries;
}

std::string escaped(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    char code[8];
    std::snprintf(code, sizeof code, "\\x%02x", byte);
    shown += byte >= 0x20 && byte < 0x7f ? std::string(1, c) : std::string(code);
  }
  return shown;
}

// The first entry that differs, for the report.
std::string difference(const entries_t& expected, const entries_t& found) {
  for (std::size_t i = 0; i < std::max(expected.size(), found.size()); ++i) {
    const auto entry = [&](const entries_t& entries) {
      return i < entries.size() ? "\"" + escaped(entries[i].first) + "\" = \"" +
                                      escaped(entries[i].second) + "\""
                                : std::string("nothing");
    };
    if (i >= expected.size() || i >= found.size() || expected[i] != found[i])
      return "entry " + std::to_string(i) + ": " + entry(expected) + " became " + entry(found);
  }
  return "none";
}

void change_some(config_t& config) {
  const std::vector<std::string> keys = config.keys();
  if (!keys.empty()) {
    if (!config.remove_value(keys.back())) fail("a listed key could not be removed");
    if (config.remove_value(keys.back()) || config.has_value(keys.back()))
      fail("a removed key is still there");
  }
  if (keys.size() > 1) config.set_value(keys.front(), "<changed> & \"quoted\"");
  config.set_value("added", "line one\nline two");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  orvix1_fuzz::start_environment(argc, argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  config_t config;
  for (const auto& entry : k_earlier) config.set_value(entry.first, entry.second);
  const talvar2::path_t input(orvix1_fuzz::write_input("settings.xml", data, size));
  std::string error;
  if (!config.load(input, &error)) {
    if (error.empty()) fail("a failed load gave no reason");
    const entries_t kept = read_back(config);
    if (kept != k_earlier)
      fail("a failed load (" + error + ") changed the values: " + difference(k_earlier, kept));
    return 0;
  }
  read_back(config);
  change_some(config);
  const entries_t saved = read_back(config);

  const std::string copy = orvix1_fuzz::write_input("saved.xml", nullptr, 0);
  if (!config.save(talvar2::path_t(copy), &error)) fail("cannot save: " + error);
  config_t reloaded;
  if (!reloaded.load(talvar2::path_t(copy), &error)) fail("a saved file does not load: " + error);
  const entries_t loaded = read_back(reloaded);
  if (loaded != saved) fail("a saved file loads differently: " + difference(saved, loaded));
  return 0;
}
