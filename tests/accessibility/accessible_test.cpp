#include "accessibility/accessible.h"

#include <memory>

#include "support/atk_probe.h"
#include "support/tab_fixture.h"

namespace {

using namespace orvix1_test;
namespace a11y = orvix1::accessibility;

// A part whose answers a test sets.
struct fake_part_t : a11y::part_t {
  AtkRole role_value = ATK_ROLE_PAGE_TAB;
  std::string name_value = "Quarterly report.txt";
  std::vector<std::string> action_names{"activate", "close"};
  std::vector<std::string> done;
  double position = 40;
  std::unique_ptr<a11y::node_t> drawn;

  AtkRole role() const override { return role_value; }
  std::string name() const override { return name_value; }
  std::string description() const override { return "a " + name_value; }
  void add_states(AtkStateSet* states) const override {
    atk_state_set_add_state(states, ATK_STATE_SELECTED);
  }
  std::vector<std::string> actions() const override { return action_names; }
  void do_action(const std::string& action) override { done.push_back(action); }
  int drawn_child_count() const override { return drawn ? 1 : 0; }
  AtkObject* drawn_child(int) const override { return drawn ? drawn->object() : nullptr; }
  wxRect bounds() const override { return wxRect(5, 6, 30, 4); }
  double value() const override { return position; }
  bool set_value(double value) override { position = value; return true; }
};

class Accessible : public tab_frame_test_t {
 protected:
  void SetUp() override {
    tab_frame_test_t::SetUp();
    m_window = new wxWindow(m_host, wxID_ANY, wxPoint(10, 20), wxSize(80, 30));
    a11y::attach(m_window, &m_part);
    m_object = a11y::accessible_of(m_window);
    pump_events();
  }
  void TearDown() override {
    a11y::detach(m_window);
    tab_frame_test_t::TearDown();
  }
  fake_part_t m_part;
  wxWindow* m_window = nullptr;
  AtkObject* m_object = nullptr;
};

TEST_F(Accessible, AWindowAnswersFromItsPartAndActionsRunFromTheLoop) {
  EXPECT_EQ(atk_object_get_role(m_object), ATK_ROLE_PAGE_TAB);
  EXPECT_EQ(name_of(m_object), "Quarterly report.txt");
  EXPECT_EQ(description_of(m_object), "a Quarterly report.txt");
  EXPECT_TRUE(has_state(m_object, ATK_STATE_SELECTED));
  EXPECT_TRUE(has_state(m_object, ATK_STATE_VISIBLE));  // what GTK derives stays
  EXPECT_EQ(actions_of(m_object), m_part.action_names);

  m_part.name_value = "Renamed";
  EXPECT_EQ(name_of(m_object), "Renamed");
  atk_object_set_name(m_object, "Named by the host");  // an explicit name wins
  EXPECT_EQ(name_of(m_object), "Named by the host");

  EXPECT_TRUE(run_action(m_object, "close"));
  EXPECT_TRUE(m_part.done.empty());
  pump_events();
  EXPECT_EQ(m_part.done, std::vector<std::string>{"close"});
  EXPECT_FALSE(atk_action_do_action(ATK_ACTION(m_object), 2));

  // A request still queued when the part goes is dropped.
  EXPECT_TRUE(run_action(m_object, "activate"));
  a11y::detach(m_window);
  pump_events();
  EXPECT_EQ(m_part.done.size(), 1u);
  EXPECT_NE(atk_object_get_role(m_object), ATK_ROLE_PAGE_TAB);
  EXPECT_TRUE(actions_of(m_object).empty());
}

TEST_F(Accessible, ADrawnPartIsAChildWithExtentsAValueAndGoesDefunct) {
  m_part.drawn = std::make_unique<a11y::node_t>(m_part, m_window, m_object, a11y::node_t::kind_t::ranged);
  const std::vector<AtkObject*> children = children_of(m_object);
  ASSERT_EQ(children.size(), 1u);
  AtkObject* drawn = children[0];
  EXPECT_EQ(drawn, m_part.drawn->object());
  EXPECT_EQ(atk_object_get_parent(drawn), m_object);
  EXPECT_EQ(atk_object_get_index_in_parent(drawn), 0);
  EXPECT_EQ(name_of(drawn), "Quarterly report.txt");
  EXPECT_TRUE(has_state(drawn, ATK_STATE_SHOWING));
  EXPECT_TRUE(has_state(drawn, ATK_STATE_ENABLED));

  gint x, y, width, height;
  atk_component_get_extents(ATK_COMPONENT(drawn), &x, &y, &width, &height, ATK_XY_SCREEN);
  const wxPoint origin = m_window->ClientToScreen(wxPoint(5, 6));
  EXPECT_EQ(wxRect(x, y, width, height), wxRect(origin, wxSize(30, 4)));

  gdouble value = 0;
  atk_value_get_value_and_text(ATK_VALUE(drawn), &value, nullptr);
  EXPECT_EQ(value, 40);
  atk_value_set_value(ATK_VALUE(drawn), 75);
  EXPECT_EQ(m_part.position, 75);
  AtkRange* range = atk_value_get_range(ATK_VALUE(drawn));
  EXPECT_EQ(atk_range_get_upper_limit(range), 100);
  atk_range_free(range);

  g_object_ref(drawn);
  m_part.drawn.reset();
  EXPECT_TRUE(has_state(drawn, ATK_STATE_DEFUNCT));
  EXPECT_TRUE(children_of(m_object).empty());
  g_object_unref(drawn);
}

}  // namespace
