#include "accessibility/accessible.h"

#include "elements/adapter_fixture.h"
#include "orvix1/elements/ImageElement.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/TextElement.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"

namespace {

using namespace orvix1_test;
using namespace orvix1::elements;
namespace a11y = orvix1::accessibility;

// root > { label (40x20, a long text), picture, gap, group > { button > { caption } } }
class ElementAccessible : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    label = new TextElement(root, UIElement::pfLeft, "Quarterly figures for every branch office");
    label->SetFixedSize(wxSize(40, 20));
    label->SetTestID("figures");
    picture = new ImageElement(root, UIElement::pfLeft, wxImage(16, 16));
    picture->SetAccessibleDescription("company logo");
    gap = new SpacerElement(root, UIElement::pfLeft, wxSize(5, 5));
    group = add(root, wxSize(60, 40), "group");
    button = add(group, wxSize(30, 20), "button");
    button->SetAcceptFocus(true);
    new TextElement(button, UIElement::pfLeft, "Send");
    button->GetTooltip()->SetText("Sends the report");
    paint();
    tree = a11y::accessible_of(holder);
  }
  AtkObject* object_of(const std::string& path) {
    AtkObject* object = tree;
    for (char step : path) object = children_of(object).at(static_cast<std::size_t>(step - '0'));
    return object;
  }

  talvar2::intrusive_pointer_t<TextElement> label;
  talvar2::intrusive_pointer_t<ImageElement> picture;
  talvar2::intrusive_pointer_t<SpacerElement> gap;
  recording_ptr_t group, button;
  AtkObject* tree = nullptr;
};

TEST_F(ElementAccessible, ElementsShowTheirRolesWordsIdsAndPlaces) {
  ASSERT_TRUE(label->IsTruncated());
  const struct {
    const char* path;
    AtkRole role;
    const char* name;
    const char* description;
    const char* id;
  } rows[] = {{"0", ATK_ROLE_LABEL, "Quarterly figures for every branch office", "", "figures"},
              {"1", ATK_ROLE_IMAGE, "", "company logo", ""},
              {"2", ATK_ROLE_FILLER, "", "", ""},
              {"3", ATK_ROLE_PANEL, "", "", "group"},
              {"30", ATK_ROLE_PANEL, "Send", "Sends the report", "button"}};  // named by its text
  ASSERT_EQ(children_of(tree).size(), 4u);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    AtkObject* object = object_of(row.path);
    EXPECT_EQ(atk_object_get_role(object), row.role);
    EXPECT_EQ(name_of(object), row.name);
    EXPECT_EQ(description_of(object), row.description);
    const gchar* id = atk_object_get_accessible_id(object);
    EXPECT_EQ(std::string(id ? id : ""), row.id);
    EXPECT_TRUE(has_state(object, ATK_STATE_SHOWING));
  }
  AtkObject* pressable = object_of("30");
  EXPECT_EQ(atk_object_get_parent(pressable), object_of("3"));
  EXPECT_TRUE(has_state(pressable, ATK_STATE_FOCUSABLE) &&
              !has_state(object_of("3"), ATK_STATE_FOCUSABLE));
  gint x, y, width, height;
  atk_component_get_extents(ATK_COMPONENT(pressable), &x, &y, &width, &height, ATK_XY_PARENT);
  EXPECT_EQ(wxRect(x, y, width, height), button->GetRect());

  group->SetVisible(false);
  EXPECT_FALSE(has_state(object_of("3"), ATK_STATE_VISIBLE));
  EXPECT_FALSE(has_state(pressable, ATK_STATE_SHOWING));
  EXPECT_TRUE(has_state(pressable, ATK_STATE_VISIBLE));  // its own flag is still set
}

TEST_F(ElementAccessible, FocusAndWordsThatChangeAreAnnounced) {
  AtkObject* pressable = object_of("30");
  AtkObject* text = object_of("0");
  atk_event_log_t events;
  events.watch(pressable, "pressable");
  events.watch(text, "text");
  ASSERT_TRUE(atk_component_grab_focus(ATK_COMPONENT(pressable)));
  // The holder's focus-in, when its window is active, gives it to the same element again.
  wxFocusEvent focus_in(wxEVT_SET_FOCUS, holder->GetId());
  focus_in.SetEventObject(holder);
  holder->ProcessWindowEvent(focus_in);
  EXPECT_TRUE(button->IsFocused() && has_state(pressable, ATK_STATE_FOCUSED));
  EXPECT_EQ(events.take(), std::vector<std::string>{"pressable focused=1"});

  recording_ptr_t other = add(root, wxSize(10, 10), "other");
  other->SetAcceptFocus(true);
  other->SetFocus(true);  // an element reached for the first time by its focus
  EXPECT_EQ(events.take(), std::vector<std::string>{"pressable focused=0"});
  EXPECT_TRUE(has_state(children_of(tree).back(), ATK_STATE_FOCUSED));

  label->SetText("Yearly figures");
  button->GetTooltip()->SetText("Prints the report");
  paint();
  EXPECT_EQ(events.take(), (std::vector<std::string>{"pressable description=Prints the report",
                                                     "text name=Yearly figures"}));
  EXPECT_EQ(name_of(text), "Yearly figures");
}

TEST_F(ElementAccessible, TreeChangesAreAnnouncedWhereTheyHaveBeenSeen) {
  atk_event_log_t holder_events;
  holder_events.watch(tree);
  add(button, wxSize(5, 5), "unseen");  // no one has read the button's children
  EXPECT_TRUE(holder_events.take().empty());

  ASSERT_EQ(children_of(tree).size(), 4u);
  recording_ptr_t added = add(root, wxSize(10, 10), "added");
  EXPECT_EQ(holder_events.take(), std::vector<std::string>{"child+ 4"});
  EXPECT_EQ(holder_events.take_children(), std::vector<AtkObject*>{children_of(tree).at(4)});

  AtkObject* group_object = object_of("3");
  AtkObject* button_object = object_of("30");
  atk_event_log_t group_events;
  group_events.watch(group_object);
  g_object_ref(button_object);
  button->Destroy();
  EXPECT_EQ(group_events.take(), std::vector<std::string>{"child- -1"});
  EXPECT_EQ(group_events.take_children(), std::vector<AtkObject*>{button_object});
  EXPECT_TRUE(has_state(button_object, ATK_STATE_DEFUNCT));
  g_object_unref(button_object);

  // A new tree: the former one's objects go, the new root's children come.
  AtkObject* former = object_of("0");
  g_object_ref(former);
  recording_ptr_t other_root = new recording_element_t(&log, "other root");
  add(other_root, wxSize(10, 10), "only child");
  adapter->SetRootElement(other_root);
  EXPECT_TRUE(has_state(former, ATK_STATE_DEFUNCT));
  g_object_unref(former);
  const std::vector<std::string> events = holder_events.take();
  EXPECT_EQ(std::count(events.begin(), events.end(), "child- -1"), 5);
  EXPECT_EQ(events.back(), "child+ 0");
  ASSERT_EQ(children_of(tree).size(), 1u);
  EXPECT_EQ(atk_object_get_accessible_id(children_of(tree)[0]), std::string("only child"));
}

TEST_F(ElementAccessible, AHolderDescribedByItsOwnClassKeepsItsPart) {
  struct own_part_t : a11y::part_t {
    AtkRole role() const override { return ATK_ROLE_TOOL_TIP; }
  } own;
  wxWindow* described = new wxWindow(frame, wxID_ANY);
  a11y::attach(described, &own);
  {
    ElementAdapter second(described);
    second.SetRootElement(new recording_element_t(&log, "tip root"));
    EXPECT_EQ(a11y::attached_part(described), &own);
  }
  EXPECT_EQ(a11y::attached_part(described), &own);  // not detached by the adapter
  a11y::detach(described);
  adapter.reset();  // an adapter detaches the part it attached
  EXPECT_EQ(a11y::attached_part(holder), nullptr);
}

}  // namespace
