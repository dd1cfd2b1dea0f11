#include "help/mailcap.h"

#include <algorithm>
#include <cstdio>

#include "core/log.h"

namespace orvix1 {
namespace detail {
namespace {

log4cplus::Logger help_logger() { return log::get_logger("orvix.help"); }

const std::string k_marker = "application/pdf;";

std::string trimmed(const std::string& text) {
  const char* blanks = " \t\r\n";
  const std::string::size_type first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return std::string();
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool is_control(unsigned code_point) {
  return code_point < 0x20 || (code_point >= 0x7f && code_point <= 0x9f);
}

// Why `name` must not be started, or null. Overlong forms, surrogates and
// code points past U+10FFFF are not UTF-8 either: they would let a control
// character or a slash hide from a check that looks at bytes.
const char* refusal(const std::string& name) {
  if (name.size() > k_mailcap_longest_viewer) return "is too long";
  std::size_t at = 0;
  while (at < name.size()) {
    const unsigned char lead = static_cast<unsigned char>(name[at]);
    std::size_t length = 0;
    unsigned code_point = 0;
    unsigned smallest = 0;
    if (lead < 0x80) {
      length = 1;
      code_point = lead;
    } else if (lead >= 0xc2 && lead <= 0xdf) {
      length = 2;
      code_point = lead & 0x1f;
      smallest = 0x80;
    } else if (lead >= 0xe0 && lead <= 0xef) {
      length = 3;
      code_point = lead & 0x0f;
      smallest = 0x800;
    } else if (lead >= 0xf0 && lead <= 0xf4) {
      length = 4;
      code_point = lead & 0x07;
      smallest = 0x10000;
    } else {
      return "is not UTF-8";
    }
    if (name.size() - at < length) return "is not UTF-8";
    for (std::size_t i = 1; i < length; ++i) {
      const unsigned char next = static_cast<unsigned char>(name[at + i]);
      if ((next & 0xc0) != 0x80) return "is not UTF-8";
      code_point = (code_point << 6) | (next & 0x3f);
    }
    if (code_point < smallest || code_point > 0x10ffff ||
        (code_point >= 0xd800 && code_point <= 0xdfff))
      return "is not UTF-8";
    if (is_control(code_point)) return "holds a control character";
    at += length;
  }
  return nullptr;
}

// The first bytes of a refused name, printable whatever they are, so that a
// warning never carries the bytes that were refused.
std::string shown(const std::string& name) {
  constexpr std::size_t k_shown = 60;
  std::string text;
  for (const char c : name.substr(0, k_shown)) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7f && byte != '\\') {
      text += c;
    } else {
      char escaped[5];
      std::snprintf(escaped, sizeof escaped, "\\x%02x", byte);
      text += escaped;
    }
  }
  return name.size() > k_shown ? text + "..." : text;
}

class reader_t {
 public:
  explicit reader_t(const std::string& source) : m_source(source) {}

  void add(char c) {
    if (c == '\n') {
      end_line();
      return;
    }
    if (m_too_long) return;
    if (m_line.size() == k_mailcap_longest_line) {
      ORVIX_LOG_WARNING(help_logger(), "mailcap file " << m_source << ", line " << m_number
                                           << ": longer than " << k_mailcap_longest_line
                                           << " bytes, skipped");
      m_too_long = true;
      m_line.clear();
      return;
    }
    m_line += c;
  }

  void end_line() {
    if (!m_too_long) take_viewer();
    m_line.clear();
    m_too_long = false;
    ++m_number;
  }

  std::size_t line_number() const { return m_number; }
  std::vector<std::string>& viewers() { return m_viewers; }

 private:
  void take_viewer() {
    const std::string::size_type at = m_line.find(k_marker);
    if (at == std::string::npos) return;
    const std::string command = trimmed(m_line.substr(at + k_marker.size()));
    std::string viewer = command.substr(0, command.find(' '));
    if (viewer.empty()) return;
    if (const char* why = refusal(viewer)) {
      ORVIX_LOG_WARNING(help_logger(), "mailcap file " << m_source << ", line " << m_number
                                           << ": the viewer \"" << shown(viewer) << "\" " << why
                                           << ", skipped");
      return;
    }
    m_viewers.push_back(std::move(viewer));
  }

  const std::string& m_source;
  std::string m_line;
  bool m_too_long = false;
  std::size_t m_number = 1;
  std::vector<std::string> m_viewers;
};

}  // namespace

std::vector<std::string> mailcap_pdf_viewers(std::istream& in, const std::string& source) {
  reader_t reader(source);
  char buffer[8192];
  std::size_t total = 0;
  bool ended_with_newline = true;
  for (;;) {
    // One byte past the limit tells that the file goes on.
    const std::size_t wanted = std::min(sizeof buffer, k_mailcap_largest_file + 1 - total);
    in.read(buffer, static_cast<std::streamsize>(wanted));
    const std::size_t count = static_cast<std::size_t>(in.gcount());
    if (count == 0) break;
    total += count;
    const bool over = total > k_mailcap_largest_file;
    const std::size_t kept = over ? count - 1 : count;
    for (std::size_t i = 0; i < kept; ++i) reader.add(buffer[i]);
    if (kept > 0) ended_with_newline = buffer[kept - 1] == '\n';
    if (over) {
      // The line the limit cuts is incomplete: it is dropped with the rest.
      ORVIX_LOG_WARNING(help_logger(), "mailcap file " << source << " is larger than "
                                           << k_mailcap_largest_file << " bytes: lines from "
                                           << reader.line_number() << " on are ignored");
      return std::move(reader.viewers());
    }
  }
  if (!ended_with_newline) reader.end_line();
  return std::move(reader.viewers());
}

}  // namespace detail
}  // namespace orvix1
