#ifndef ORVIX1_STYLED_H
#define ORVIX1_STYLED_H
/// @file
/// How a widget takes a named style: it holds the style, repaints when the
/// style changes, and tells containers whether it inherits their style.

#include "orvix1/export.h"
#include "orvix1/ui_style.h"
#include "talvar2/functor/signal.h"
#include "talvar2/pointers/intrusive_pointer.h"

namespace orvix1 {
/// The interface of a widget that takes a named style.
class ORVIX1_API IStyled {
 public:
  virtual ~IStyled();
  virtual void SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) = 0;
  virtual talvar2::intrusive_pointer_t<ui_style_t> GetUiStyle() = 0;
  virtual void SetStyleInherited(bool inherited) = 0;
  virtual bool IsStyleInherited() const = 0;
  virtual void on_style_updated() = 0;
};
/// Holds a widget's style and calls on_style_updated() when the style changes.
class ORVIX1_API StyledBase : public IStyled, public talvar2::subscriber_base_t {
 public:
  StyledBase() = default;
  ~StyledBase() override;

  /// Holding the same style again does nothing; a new one is connected and
  /// on_style_updated() runs once so that the widget redraws with it.
  void SetUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style) override;
  talvar2::intrusive_pointer_t<ui_style_t> GetUiStyle() override;
  void SetStyleInherited(bool inherited) override;
  bool IsStyleInherited() const override;
  /// Widgets override this to refresh.
  void on_style_updated() override;

 protected:
  /// The style held, as the widget's own code reads it: GetUiStyle() is the
  /// callers' way to change a style, and a widget may answer it with a copy
  /// of its own (see elements::TextElement).
  ui_style_t* PeekUiStyle() const { return m_style.get(); }
  /// Holds `style` without on_style_updated(): for a widget that takes a
  /// style with the values it already shows. One that hears of the style's
  /// updates another way does not follow them.
  void HoldUiStyle(talvar2::intrusive_pointer_t<ui_style_t> style, bool follow_updates);

  /// The style's colour or font under `key`; invalid or null without a style.
  wxColour StyleColor(const std::string& key) const;
  wxFont StyleFont(const std::string& key) const;

 private:
  talvar2::intrusive_pointer_t<ui_style_t> m_style;
  bool m_inherited = false;
  bool m_follows_updates = false;  ///< connected to m_style's update signal
};

}  // namespace orvix1

#endif
