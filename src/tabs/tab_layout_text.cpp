#include "tabs/tab_layout_text.h"

#include <string_view>
#include <unordered_set>

namespace orvix1 {
namespace detail {
namespace {

const char k_header[] = "orvix1-tab-layout 1";
// Problems quote at most this much of what they could not read.
const size_t k_quoted = 40;

bool plain_byte(unsigned char c) { return c > ' ' && c < 0x7F && c != '%'; }

std::string encode(std::string_view text) {
  static const char digits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(text.size());
  for (const char byte : text) {
    const auto c = static_cast<unsigned char>(byte);
    if (plain_byte(c)) {
      out += byte;
    } else {
      out += '%';
      out += digits[c >> 4];
      out += digits[c & 15];
    }
  }
  return out;
}

int hex_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// False for a token that is empty, holds a raw byte that must be escaped or
// a broken escape.
bool decode(std::string_view token, std::string& out) {
  out.clear();
  for (size_t k = 0; k < token.size(); ++k) {
    const auto c = static_cast<unsigned char>(token[k]);
    if (plain_byte(c)) {
      out += token[k];
      continue;
    }
    if (c != '%' || k + 2 >= token.size()) return false;
    const int high = hex_value(token[k + 1]);
    const int low = hex_value(token[k + 2]);
    if (high < 0 || low < 0) return false;
    out += static_cast<char>(high * 16 + low);
    k += 2;
  }
  return !out.empty();
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  size_t start = 0;
  for (size_t end = text.find(separator); end != std::string_view::npos;
       start = end + 1, end = text.find(separator, start))
    parts.push_back(text.substr(start, end - start));
  parts.push_back(text.substr(start));
  return parts;
}

bool is_digits(std::string_view text) {
  if (text.empty()) return false;
  for (const char c : text)
    if (c < '0' || c > '9') return false;
  return true;
}

bool all_zeros(std::string_view text) { return text.find_first_not_of('0') == std::string_view::npos; }

// A number of the form digits[.digits] in [0, 1], judged from its digits
// (no locale decides what the point is).
bool is_fraction(std::string_view number) {
  const size_t point = number.find('.');
  const std::string_view whole = number.substr(0, point);
  const std::string_view part = point == std::string_view::npos ? "0" : number.substr(point + 1);
  if (!is_digits(whole) || !is_digits(part)) return false;
  const size_t first = whole.find_first_not_of('0');
  const std::string_view units = first == std::string_view::npos ? "" : whole.substr(first);
  return units.empty() || (units == "1" && all_zeros(part));
}

// One line after the header; remembers what it has seen, for duplicates.
class line_reader_t {
 public:
  explicit line_reader_t(tab_layout_reading_t& reading) : m_reading(reading) {}

  void read(int number, std::string_view line) {
    m_number = number;
    const std::vector<std::string_view> tokens = split(line, ' ');
    if (tokens[0] == "tab" && tokens.size() == 3)
      read_tab(tokens[1], tokens[2]);
    else if (tokens[0] == "selected" && tokens.size() == 2)
      read_selected(tokens[1]);
    else if (tokens[0] == "splitter" && tokens.size() == 3)
      read_splitter(tokens[1], tokens[2]);
    else
      ignore("not a line of a tab layout: \"" + encode(line.substr(0, k_quoted)) + "\"");
  }

 private:
  void read_tab(std::string_view strip, std::string_view token) {
    std::string key;
    if (strip != "1" && strip != "2") return ignore("no strip " + encode(strip.substr(0, k_quoted)));
    if (!decode(token, key)) return ignore("a key that cannot be read");
    if (!m_keys.insert(key).second) return ignore("key " + encode(key) + " twice");
    m_reading.layout.tabs.push_back({strip == "1" ? 1 : 2, key});
  }

  void read_selected(std::string_view token) {
    std::string key;
    if (!decode(token, key)) return ignore("a selected key that cannot be read");
    if (!m_reading.layout.selected.empty()) return ignore("a second selection");
    m_reading.layout.selected = key;
  }

  void read_splitter(std::string_view path_token, std::string_view state_token) {
    std::string path;
    std::string state;
    if (!decode(path_token, path) || !decode(state_token, state) || !is_splitter_state(state))
      return ignore("a splitter that cannot be read");
    if (!m_paths.insert(path).second) return ignore("splitter " + encode(path) + " twice");
    m_reading.layout.splitters.push_back({path, state});
  }

  void ignore(const std::string& problem) {
    m_reading.ignore("line " + std::to_string(m_number) + ": " + problem);
  }

  tab_layout_reading_t& m_reading;
  int m_number = 0;
  std::unordered_set<std::string> m_keys;
  std::unordered_set<std::string> m_paths;
};

}  // namespace

void tab_layout_reading_t::ignore(const std::string& problem) {
  if (ignored++ == 0) first_problem = problem;
}

bool is_splitter_state(const std::string& state) {
  const std::string position_key = "position=";
  const std::string closed_key = ";closed=";
  const size_t closed_at = state.find(closed_key);
  if (state.compare(0, position_key.size(), position_key) != 0 || closed_at == std::string::npos)
    return false;
  const std::string_view number(state.data() + position_key.size(), closed_at - position_key.size());
  const std::string_view closed(state.data() + closed_at + closed_key.size(),
                                state.size() - closed_at - closed_key.size());
  // Few digits: the splitter reads the value as a float.
  return number.size() <= 12 && is_fraction(number) && (closed == "0" || closed == "1");
}

std::string layout_token(const std::string& text) { return encode(text); }

std::string write_tab_layout(const saved_tab_layout_t& layout) {
  std::string text = std::string(k_header) + "\n";
  for (const saved_tab_t& tab : layout.tabs)
    text += "tab " + std::to_string(tab.strip) + " " + encode(tab.key) + "\n";
  if (!layout.selected.empty()) text += "selected " + encode(layout.selected) + "\n";
  for (const saved_splitter_t& splitter : layout.splitters)
    text += "splitter " + encode(splitter.path) + " " + encode(splitter.state) + "\n";
  return text;
}

// The header first, then any lines in any order; blank lines and a carriage
// return before each line feed are allowed.
tab_layout_reading_t read_tab_layout(const std::string& text) {
  tab_layout_reading_t reading;
  std::vector<std::string_view> lines = split(text, '\n');
  for (std::string_view& line : lines)
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  if (lines[0] != k_header) {
    reading.ignore("not a tab layout (it does not begin with \"" + std::string(k_header) + "\")");
    return reading;
  }
  reading.recognised = true;
  line_reader_t reader(reading);
  for (size_t number = 1; number < lines.size(); ++number)
    if (!lines[number].empty()) reader.read(static_cast<int>(number + 1), lines[number]);
  return reading;
}

}  // namespace detail
}  // namespace orvix1
