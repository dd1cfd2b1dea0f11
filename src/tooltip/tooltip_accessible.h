#ifndef ORVIX1_SRC_TOOLTIP_TOOLTIP_ACCESSIBLE_H
#define ORVIX1_SRC_TOOLTIP_TOOLTIP_ACCESSIBLE_H

// A tooltip is a tool tip to screen readers, as GTK's own are: the role and
// the text sit on its top-level window's object. While attached, its text
// also describes its target, unless the host described the target itself.

#include <atk/atk.h>

#include <string>

class wxWindow;

namespace orvix1 {
namespace detail {

class tooltip_accessible_t {
 public:
  explicit tooltip_accessible_t(wxWindow& tooltip);
  ~tooltip_accessible_t();
  tooltip_accessible_t(const tooltip_accessible_t&) = delete;
  tooltip_accessible_t& operator=(const tooltip_accessible_t&) = delete;

  void text_changed(const std::string& text);
  void attached(wxWindow& target, const std::string& text);
  // A target on its way out keeps what it has.
  void detached(bool target_stays);

 private:
  void describe_target(const std::string& text);

  wxWindow& m_tooltip;
  AtkObject* m_target = nullptr;  // referenced while attached
  std::string m_description;      // what this tooltip set on the target
};

}  // namespace detail
}  // namespace orvix1

#endif
