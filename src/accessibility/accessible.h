#ifndef ORVIX1_SRC_ACCESSIBILITY_ACCESSIBLE_H
#define ORVIX1_SRC_ACCESSIBILITY_ACCESSIBLE_H

// The library's widgets draw their own tabs, sashes and elements, which GTK
// cannot describe: to a screen reader they would be nameless panels. Each
// such window or drawn part implements `part_t`, answering from its live
// state, and is tied to an ATK object: a window through its GTK widget's own
// accessible object (`attach`), a part drawn inside a window through a
// `node_t` of its own.

#include <atk/atk.h>
#include <wx/gdicmn.h>

#include "orvix1/export.h"

#include <string>
#include <vector>

class wxWindow;

namespace orvix1 {
namespace accessibility {

// The range of a part that has a value (a sash's position, in percent).
struct value_range_t {
  double minimum = 0;
  double maximum = 100;
  double step = 1;
};

class part_t {
 public:
  virtual ~part_t() = default;

  virtual AtkRole role() const = 0;
  // Empty: what GTK says for a window, nothing for a drawn part.
  virtual std::string name() const { return {}; }
  virtual std::string description() const { return {}; }
  // Adds the part's own states. A window's set already holds what GTK derived
  // from the widget (focusable, focused, sensitive, showing, ...); a drawn
  // part's holds enabled, sensitive, visible and showing.
  virtual void add_states(AtkStateSet* states) const { (void)states; }
  // Removes states GTK derived that do not hold for the part.
  virtual void remove_states(AtkStateSet* states) const { (void)states; }

  // The actions, by their ATK names ("activate", "close", ...). An action
  // runs from the main loop after the request has been answered, so that a
  // modal step it takes does not hold up the screen reader.
  virtual std::vector<std::string> actions() const { return {}; }
  virtual void do_action(const std::string& action) { (void)action; }

  // Parts drawn inside this one, after a window's native children.
  virtual int drawn_child_count() const { return 0; }
  virtual AtkObject* drawn_child(int index) const { (void)index; return nullptr; }

  // Drawn parts only: where the part is, in its window's client coordinates,
  // and taking the keyboard's focus.
  virtual wxRect bounds() const { return {}; }
  virtual bool grab_focus() { return false; }

  // Parts with a value only (nodes made with `node_t::kind_t::ranged`).
  virtual double value() const { return 0; }
  virtual value_range_t range() const { return {}; }
  virtual bool set_value(double value) { (void)value; return false; }
};

// Installs the library's accessible type for wx's windows. Idempotent; must
// run before the first library window is made (the host start does it), since
// GTK keeps the accessible object it made first.
ORVIX1_API void install();

// Ties `part` to `window`'s accessible object until `detach`: that of its
// client area, which for a top-level or scrolled window lies inside the
// toolkit's own frame or scroller object. The window's owner keeps `part`
// alive and detaches before it goes.
ORVIX1_API void attach(wxWindow* window, part_t* part);
ORVIX1_API void detach(wxWindow* window);
// The part attached to `window`, or null. A window two owners could describe
// (an element tree's holder that is also a tooltip) asks before it attaches,
// and before it detaches, so as not to drop the other's part.
ORVIX1_API part_t* attached_part(const wxWindow* window);

// The accessible object of the window's client area (made on first use),
// the one `attach` ties parts to; or null.
ORVIX1_API AtkObject* accessible_of(const wxWindow* window);

// A part that describes one window for its whole life: tied to it when made,
// untied when it goes (after the members of the part that derives from it).
class window_part_t : public part_t {
 public:
  explicit window_part_t(wxWindow& window) : m_described(window) { attach(&window, this); }
  ~window_part_t() override { detach(&m_described); }
  window_part_t(const window_part_t&) = delete;
  window_part_t& operator=(const window_part_t&) = delete;

 private:
  wxWindow& m_described;
};

// The accessible object of a part drawn inside `window`.
class ORVIX1_API node_t {
 public:
  enum class kind_t { plain, ranged };

  node_t(part_t& part, wxWindow* window, AtkObject* parent, kind_t kind = kind_t::plain);
  ~node_t();
  node_t(const node_t&) = delete;
  node_t& operator=(const node_t&) = delete;

  AtkObject* object() const { return m_object; }

 private:
  AtkObject* m_object;
};

// The library exports these for its tests and testing helpers; hosts do not
// call them.

// --- events screen readers follow ---------------------------------------
ORVIX1_API void notify_state(AtkObject* object, AtkStateType state, bool value);
ORVIX1_API void notify_name(AtkObject* object);
ORVIX1_API void notify_description(AtkObject* object);
ORVIX1_API void notify_value(AtkObject* object);
ORVIX1_API void notify_child_added(AtkObject* parent, int index, AtkObject* child);
ORVIX1_API void notify_child_removed(AtkObject* parent, int index, AtkObject* child);

}  // namespace accessibility
}  // namespace orvix1

#endif
