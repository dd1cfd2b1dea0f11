#include "accessibility/accessible.h"

#include <gtk/gtk.h>

#include <string>
#include <vector>

#include "orvix1/ui_settings.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
using orvix1::wxCustomTooltip;
using orvix1::accessibility::accessible_of;

class TooltipAccessible : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_target = new wxWindow(m_host, wxID_ANY, wxPoint(10, 10), wxSize(100, 40));
    m_tooltip = new wxCustomTooltip;
    m_tooltip->SetText("Save the document");
  }
  void TearDown() override {
    m_tooltip->Destroy();
    tab_frame_test_t::TearDown();
  }
  AtkObject* tip() const { return gtk_widget_get_accessible(m_tooltip->GetHandle()); }
  AtkObject* target() const { return accessible_of(m_target); }
  talvar2::intrusive_pointer_t<orvix1::ui_settings_configure_t> m_settings =
      orvix1::ui_settings_configure_t::get();
  wxWindow* m_target = nullptr;
  wxCustomTooltip* m_tooltip = nullptr;
  atk_event_log_t m_log;
};

TEST_F(TooltipAccessible, AToolTipNamedByItsTextThatDescribesItsTargetWhileAttached) {
  EXPECT_EQ(atk_object_get_role(tip()), ATK_ROLE_TOOL_TIP);
  EXPECT_EQ(name_of(tip()), "Save the document");
  EXPECT_EQ(description_of(target()), "");

  m_log.watch(tip(), "tip");
  m_log.watch(target(), "target");
  m_tooltip->Attach(m_target);
  m_tooltip->SetText("Save all documents");
  m_tooltip->Detach(m_target);
  EXPECT_EQ(m_log.take(), (std::vector<std::string>{"target description=Save the document",
                                                    "tip name=Save all documents",
                                                    "target description=Save all documents",
                                                    "target description="}));
  EXPECT_EQ(description_of(target()), "");
}

TEST_F(TooltipAccessible, ADescriptionTheHostSetStays) {
  atk_object_set_description(target(), "Stores the file");
  m_tooltip->Attach(m_target);
  m_tooltip->SetText("Save all documents");
  EXPECT_EQ(description_of(target()), "Stores the file");
  m_tooltip->Detach(m_target);
  EXPECT_EQ(description_of(target()), "Stores the file");
}

}  // namespace
