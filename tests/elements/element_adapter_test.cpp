#include "orvix1/elements/ElementAdapter.h"

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "accessibility/accessible.h"
#include "elements/adapter_fixture.h"
#include "orvix1/elements/ImageElement.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/TextElement.h"
#include "orvix1/testing.h"
#include "orvix1/wxCustomTooltip.h"
#include "support/assert_texts.h"
#include "support/atk_event_log.h"
#include "support/atk_probe.h"

namespace {

using namespace orvix1::elements;
using namespace orvix1_test;

// The widget with the toolkit's keyboard focus inside `frame`.
GtkWidget* toolkit_focus(wxWindow* frame) {
  return gtk_window_get_focus(GTK_WINDOW(frame->GetHandle()));
}

// Without a window manager no frame is active and the toolkit moves no focus
// in it: give the frame the input focus; the sync brings the focus-in first.
bool activate(wxWindow* frame) {
  gtk_window_present(GTK_WINDOW(frame->GetHandle()));
  gdk_display_sync(gtk_widget_get_display(frame->GetHandle()));
  pump_events();
  return gtk_window_is_active(GTK_WINDOW(frame->GetHandle()));
}

// root (200x100) > group (100x100 at 0,0) > { a (40x100 at 0,0), b (40x100 at 40,0) }
class ElementAdapterMouse : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    group = add(root, wxSize(100, 60), "group");
    a = add(group, wxSize(40, 40), "a");
    b = add(group, wxSize(40, 40), "b");
    paint();
    take_log();
  }
  recording_ptr_t group, a, b;
};

TEST_F(ElementAdapterMouse, MovingBetweenSiblingsLeavesOneEntersTheOtherAndSparesTheParent) {
  send_mouse(wxEVT_ENTER_WINDOW, 10, 10);
  EXPECT_EQ(take_log(), (log_t{"a enter", "group enter", "root enter"}));  // deepest first
  EXPECT_EQ(adapter->GetHoveredElement(), a);

  send_mouse(wxEVT_MOTION, 12, 10);  // still over a: no enter or leave
  EXPECT_EQ(take_log(), (log_t{"root move", "group move", "a move"}));

  send_mouse(wxEVT_MOTION, 50, 10);
  EXPECT_EQ(take_log(), (log_t{"a leave", "b enter", "root move", "group move", "b move"}));

  send_mouse(wxEVT_MOTION, 150, 80);  // over the root alone
  EXPECT_EQ(take_log(), (log_t{"b leave", "group leave", "root move"}));

  send_mouse(wxEVT_LEAVE_WINDOW, 250, 80);  // out of the holder
  EXPECT_EQ(take_log(), (log_t{"root leave"}));
  EXPECT_FALSE(adapter->GetHoveredElement());
}

TEST_F(ElementAdapterMouse, PressesAreConsumedEverythingElseGoesOnToTheHolder) {
  const std::pair<wxEventType, bool> skipped[] = {{wxEVT_MOTION, true},     {wxEVT_LEFT_DOWN, false},
                                                  {wxEVT_LEFT_UP, true},    {wxEVT_RIGHT_DOWN, false},
                                                  {wxEVT_LEFT_DCLICK, true}, {wxEVT_MOUSEWHEEL, true}};
  for (const auto& [type, expected] : skipped) {
    wxMouseEvent event(type);
    event.SetPosition(wxPoint(10, 10));
    adapter->OnMouse(event);
    EXPECT_EQ(event.GetSkipped(), expected) << "event type " << type;
  }
}

TEST_F(ElementAdapterMouse, UnderCaptureOnlyTheCapturedElementHearsAndReleaseCatchesUp) {
  send_mouse(wxEVT_MOTION, 10, 10);
  a->CaptureMouse();
  EXPECT_EQ(adapter->GetCaptureElement(), a);
  EXPECT_TRUE(holder->HasCapture());
  take_log();

  send_mouse(wxEVT_MOTION, 50, 10);  // over b
  send_mouse(wxEVT_LEFT_DOWN, 150, 80, true);  // over the root alone
  send_mouse(wxEVT_LEFT_UP, 150, 80);
  EXPECT_EQ(take_log(), (log_t{"a move", "a down", "a up"}));  // a release outside gives no click
  EXPECT_TRUE(a->IsPressed());                                  // and keeps the press
  EXPECT_EQ(adapter->GetHoveredElement(), a);

  send_mouse(wxEVT_MOTION, 50, 10);  // back over b, then let go there
  take_log();
  a->ReleaseMouse();
  EXPECT_FALSE(holder->HasCapture());
  EXPECT_EQ(take_log(), (log_t{"a leave", "b enter"}));
  EXPECT_EQ(adapter->GetHoveredElement(), b);

  // A second capture is reported; b takes over and the window is captured once.
  a->CaptureMouse();
  b->CaptureMouse();
  EXPECT_EQ(taken_conditions(), (texts_t{"m_mouse_capture_element == __null"}));
  EXPECT_EQ(adapter->GetCaptureElement(), b);
  send_mouse(wxEVT_MOTION, 150, 80);  // off the group
  take_log();
  // Losing the capture, as when another application grabs the pointer, catches up too.
  holder->GTKReleaseMouseAndNotify();
  EXPECT_FALSE(holder->HasCapture());
  EXPECT_FALSE(adapter->GetCaptureElement());
  EXPECT_EQ(take_log(), (log_t{"b leave", "group leave"}));
  EXPECT_EQ(adapter->GetHoveredElement(), root);
}

class ElementAdapterTimers : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    fast = add(root, wxSize(10, 10), "fast");
    slow = add(root, wxSize(10, 10), "slow");
    take_log();
  }
  void tick() {
    wxTimerEvent event(*adapter->GetTimer());
    holder->ProcessWindowEvent(event);
  }
  recording_ptr_t fast, slow;
};

TEST_F(ElementAdapterTimers, TheSharedTimerTicksAtTheShortestIntervalAndLongerOnesFireOnTheTickAfter) {
  EXPECT_EQ(adapter->GetTimer(), nullptr);
  fast->SetTimer(300);
  fast->SetTimer(100);  // an element holds one timer: the later request stands
  EXPECT_EQ(taken_conditions(), (texts_t{"m_timers.find(sender) == m_timers.end()"}));
  slow->SetTimer(250);
  wxTimer* timer = adapter->GetTimer();
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->GetId(), ElementAdapter::timer_id);
  EXPECT_EQ(timer->GetInterval(), 100);
  wxTimer other(holder, ElementAdapter::timer_id + 1);
  wxTimerEvent foreign(other);
  holder->ProcessWindowEvent(foreign);
  EXPECT_TRUE(take_log().empty());  // ticks of other timers are left alone

  tick();
  tick();
  EXPECT_EQ(take_log(), (log_t{"fast timer", "fast timer"}));
  tick();  // 300 ms: the first tick at or after 250
  log_t third = take_log();
  std::sort(third.begin(), third.end());
  EXPECT_EQ(third, (log_t{"fast timer", "slow timer"}));

  fast->KillTimer();
  EXPECT_EQ(timer->GetInterval(), 250);
  EXPECT_TRUE(timer->IsRunning());
  tick();  // one tick is now 250 ms
  EXPECT_EQ(take_log(), (log_t{"slow timer"}));
  slow->KillTimer();
  EXPECT_FALSE(timer->IsRunning());
  tick();
  EXPECT_TRUE(take_log().empty());
}

// Focusable a (tab 2), b (tab 0), c (tab 1) and a plain element between them.
class ElementAdapterFocus : public adapter_fixture_t {
 protected:
  void SetUp() override {
    adapter_fixture_t::SetUp();
    a = focusable("a", 2);
    add(root, wxSize(10, 10), "plain")->SetTabOrder(3);
    b = focusable("b", 0);
    c = focusable("c", 1);
    take_log();
  }
  recording_ptr_t focusable(const std::string& name, int tab_order) {
    recording_ptr_t element = add(root, wxSize(10, 10), name);
    element->SetAcceptFocus(true);
    element->SetTabOrder(tab_order);
    return element;
  }
  void press(int key_code, bool shift = false) {
    wxKeyEvent event(wxEVT_KEY_DOWN);
    event.m_keyCode = key_code;
    event.SetShiftDown(shift);
    event.SetEventObject(holder);
    holder->ProcessWindowEvent(event);
  }
  recording_ptr_t a, b, c;
};

TEST_F(ElementAdapterFocus, TabPastTheEndsOrWithNothingFocusableLeavesTheHolderForItsSiblings) {
  ASSERT_TRUE(activate(frame));
  a->SetFocus(true);  // the last in tab order
  ASSERT_EQ(toolkit_focus(frame), holder->GetHandle());
  press(WXK_TAB);
  EXPECT_EQ(toolkit_focus(frame), next->GetHandle());
  pump_events();
  EXPECT_FALSE(a->IsFocused());  // the holder's focus-out took it away
  EXPECT_FALSE(adapter->GetFocusedElement());

  b->SetFocus(true);  // the first in tab order
  ASSERT_EQ(toolkit_focus(frame), holder->GetHandle());
  press(WXK_TAB, true);
  EXPECT_EQ(toolkit_focus(frame), previous->GetHandle());

  // With nothing focusable left, the holder's focus-in passes the focus on.
  for (recording_ptr_t element : {a, b, c}) element->SetAcceptFocus(false);
  holder->SetFocus();
  pump_events();
  EXPECT_EQ(toolkit_focus(frame), next->GetHandle());
  // wx learns of the move from GTK's focus-in, which a loaded machine may
  // deliver a few pumps later.
  EXPECT_TRUE(orvix1::testing::pump_until([&] { return wxWindow::FindFocus() == next; },
                                          std::chrono::seconds(5)));
}

TEST_F(ElementAdapterFocus, FocusInPicksTheFirstAndAnElementThatSkipsTabKeepsIt) {
  wxFocusEvent set_focus(wxEVT_SET_FOCUS, holder->GetId());
  set_focus.SetEventObject(holder);
  holder->ProcessWindowEvent(set_focus);
  EXPECT_EQ(adapter->GetFocusedElement(), a);  // the first in the list that accepts it

  c->SetFocus(true);
  c->skip_keys = true;
  take_log();
  press(WXK_TAB);
  EXPECT_EQ(take_log(), (log_t{"c key 9"}));
  EXPECT_EQ(adapter->GetFocusedElement(), c);
}

// When the holder is the only window that takes the focus, the toolkit's
// navigation hands the focus straight back to it, from inside the call.
TEST_F(ElementAdapterFocus, AHolderThatIsTheOnlyStopKeepsTheFocus) {
  wxFrame* lone = new wxFrame(nullptr, wxID_ANY, "lone", wxPoint(20, 20), wxSize(200, 100));
  wxPanel* only_panel = new wxPanel(lone);
  wxWindow* only = new wxWindow(only_panel, wxID_ANY, wxPoint(0, 0), wxSize(100, 50));
  only->SetBackgroundStyle(wxBG_STYLE_PAINT);
  lone->Show();
  {
    ElementAdapter only_adapter(only);
    only_adapter.SetRootElement(new recording_element_t(&log, "empty"));
    ASSERT_TRUE(activate(lone));
    only->SetFocus();
    pump_events();
    EXPECT_EQ(wxWindow::FindFocus(), only);
  }
  {
    ElementAdapter top_level(lone);  // a top-level holder has nowhere to pass it
    EXPECT_FALSE(top_level.PassFocusToNextWindow(1));
  }
  lone->Destroy();
  pump_events();
}

class ElementAdapterWindowEvents : public adapter_fixture_t {};

// A paint draws the whole tree in the client rectangle; only the holder's own
// size events count; show and colour changes reach every element.
TEST_F(ElementAdapterWindowEvents, PaintSizeShowAndColourEvents) {
  recording_ptr_t child = add(root, wxSize(30, 20), "child");
  holder->SetSize(160, 90);
  root->drawn.clear();
  paint();
  EXPECT_EQ(root->drawn, (std::vector<wxRect>{wxRect(0, 0, 160, 90)}));
  EXPECT_EQ(child->drawn, (std::vector<wxRect>{wxRect(0, 0, 30, 90)}));
  ASSERT_FALSE(root->IsLayoutDirty());
  wxSizeEvent of_button(wxSize(5, 5), next->GetId());
  of_button.SetEventObject(next);
  adapter->OnSize(of_button);
  EXPECT_FALSE(root->IsLayoutDirty());
  wxSizeEvent of_holder(wxSize(200, 100), holder->GetId());
  of_holder.SetEventObject(holder);
  holder->ProcessWindowEvent(of_holder);
  EXPECT_TRUE(root->IsLayoutDirty());

  take_log();
  wxShowEvent shown(holder->GetId(), true);
  shown.SetEventObject(holder);
  holder->ProcessWindowEvent(shown);
  EXPECT_EQ(take_log(), (log_t{"root shown", "child shown"}));

  wxSysColourChangedEvent colours;
  colours.SetEventObject(holder);
  holder->ProcessWindowEvent(colours);
  EXPECT_EQ(take_log(), (log_t{"root colours", "child colours"}));
}

class ElementAdapterLifetime : public adapter_fixture_t {};

TEST_F(ElementAdapterLifetime, AHolderDestroyedFirstDetachesTheAdapter) {
  recording_ptr_t child = add(root, wxSize(10, 10), "child");
  child->SetTimer(100);
  child->CaptureMouse();
  ASSERT_TRUE(holder->HasCapture());

  holder->Destroy();
  holder = nullptr;
  EXPECT_EQ(adapter->GetHolder(), nullptr);
  EXPECT_EQ(adapter->GetTimer(), nullptr);
  EXPECT_FALSE(adapter->GetCaptureElement());
  EXPECT_EQ(wxWindow::GetCapture(), nullptr);

  // Later requests find no window and do nothing.
  child->KillTimer();
  child->SetTimer(50);
  child->CaptureMouse();
  EXPECT_EQ(adapter->GetTimer(), nullptr);
  EXPECT_FALSE(adapter->GetCaptureElement());
  EXPECT_TRUE(take_asserts().empty());
}

// A new root takes over the requests; the old tree keeps no connection.
TEST_F(ElementAdapterLifetime, ANewRootOrTheAdaptersEndLetsGoOfTheTreeAndTheWindow) {
  recording_ptr_t child = add(root, wxSize(10, 10), "child");
  child->SetTimer(100);
  child->CaptureMouse();
  send_mouse(wxEVT_MOTION, 5, 5);
  element_ptr_t other = new UIElement();
  adapter->SetRootElement(other);
  const auto no_request_connected = [](const UIElement& tree) {
    const auto none = [](const auto&... signals) { return (!signals.has_connections() && ...); };
    return none(tree.RequestClientRect, tree.RequestHolderWindow, tree.RequestSetTimer,
                tree.RequestKillTimer, tree.RequestCaptureMouse, tree.RequestReleaseMouse,
                tree.RequestSetTooltip, tree.RequestClearTooltip, tree.RequestChangeFocus);
  };
  EXPECT_TRUE(no_request_connected(*root));
  EXPECT_EQ(other->GetRect(), wxRect(0, 0, 200, 100));
  EXPECT_FALSE(adapter->GetHoveredElement());
  EXPECT_FALSE(adapter->GetTimer()->IsRunning());  // the old tree's timers went with it
  EXPECT_FALSE(holder->HasCapture());
  EXPECT_EQ(child->ref_count(), 2u);  // the test's and the parent's; no adapter's

  adapter.reset();
  EXPECT_TRUE(no_request_connected(*other));
  take_log();
  send_mouse(wxEVT_MOTION, 5, 5);  // the holder's events no longer reach a tree
  EXPECT_TRUE(take_log().empty());
}

TEST_F(ElementAdapterLifetime, BrokenPreconditionsAreReportedWithTheirTexts) {
  ElementAdapter(nullptr);
  EXPECT_EQ(taken_conditions(), (texts_t{"holder != __null"}));

  element_ptr_t docked = new UIElement();
  docked->SetPositionFlags(UIElement::pfLeft | UIElement::pfVCenter);
  take_asserts();  // without a host the element cannot ask for a repaint
  ElementAdapter(holder).SetRootElement(docked);
  EXPECT_EQ(taken_conditions(),
            (texts_t{"(element->GetPositionFlags()&(UIElement::pfVCenter|UIElement::"
                                      "pfHCenter)) == (UIElement::pfVCenter|UIElement::pfHCenter)"}));

  adapter->SetRootElement(element_ptr_t());
  wxKeyEvent tab(wxEVT_KEY_DOWN);
  tab.m_keyCode = WXK_TAB;
  adapter->OnKeyPress(tab);
  EXPECT_EQ(taken_conditions(), (texts_t{"m_root_element != 0"}));

  adapter->OnRequestSetTooltip(nullptr);
  EXPECT_EQ(taken_conditions(), (texts_t{"m_holder && tip"}));
}

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
