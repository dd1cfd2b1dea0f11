#ifndef ORVIX1_TESTS_ELEMENTS_ADAPTER_FIXTURE_H
#define ORVIX1_TESTS_ELEMENTS_ADAPTER_FIXTURE_H

// A real holder window with an adapter and a tree of recording elements:
// frame > panel > { button "previous" (at 0,110), holder (200x100 at 0,0), button "next" (at 210,0) }

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include "orvix1/elements/ElementAdapter.h"
#include "support/wx_test_environment.h"

namespace orvix1_test {

using log_t = std::vector<std::string>;

// An element of a fixed size that logs "<test id> <what>"; its mouse
// handlers pass events on to the children while `propagate` is set.
class recording_element_t : public orvix1::elements::UIElement {
 public:
  using element_ptr_t = orvix1::elements::element_ptr_t;

  recording_element_t(log_t* log, const std::string& name) : m_log(log) { SetTestID(name); }
  recording_element_t(element_ptr_t parent, wxSize size, log_t* log, const std::string& name,
                      int flags = pfLeft | pfVExpand)
      : UIElement(parent, flags), m_size(size), m_log(log) {
    SetTestID(name);
  }

  wxSize GetSize() const override { return GetParent() != nullptr ? m_size : UIElement::GetSize(); }
  wxSize GetMinSize() const override { return GetSize(); }

  void OnDraw(wxDC&, const wxRect& rect) override {
    drawn.push_back(rect);
    if (log_draws) write("draw");
  }
  void OnTimer() override { write("timer"); }
  void InvalidateColors() override { write("colours"); }
  void OnVisibilityChanged(bool on_screen) override { write(on_screen ? "shown" : "hidden"); }
  void OnMouseEnter(const wxMouseEvent& event) override {
    write("enter");
    UIElement::OnMouseEnter(event);
  }
  void OnMouseLeave(const wxMouseEvent& event) override {
    write("leave");
    UIElement::OnMouseLeave(event);
  }
  void OnMouseMove(const wxMouseEvent&, bool& go_on) override { go_on = write("move"); }
  void OnMouseDown(const wxMouseEvent&, bool& go_on) override { go_on = write("down"); }
  void OnMouseUp(const wxMouseEvent&, bool& go_on) override { go_on = write("up"); }
  void OnMouseClick(const wxMouseEvent& event, bool& go_on) override {
    write("click");
    UIElement::OnMouseClick(event, go_on);
  }
  void OnKeyPress(wxKeyEvent& event) override {
    write("key " + std::to_string(event.GetKeyCode()));
    if (skip_keys) event.Skip();
  }

  std::vector<wxRect> drawn;
  bool log_draws = false;
  bool skip_keys = false;
  bool propagate = true;

 private:
  bool write(const std::string& what) {
    if (m_log != nullptr) m_log->push_back(GetTestID() + " " + what);
    return propagate;
  }

  wxSize m_size;
  log_t* m_log;
};

using recording_ptr_t = talvar2::intrusive_pointer_t<recording_element_t>;

class adapter_fixture_t : public ::testing::Test {
 protected:
  using element_ptr_t = orvix1::elements::element_ptr_t;

  void SetUp() override {
    take_asserts();
    frame = new wxFrame(nullptr, wxID_ANY, "adapter", wxPoint(20, 20), wxSize(400, 200));
    wxPanel* panel = new wxPanel(frame);
    previous = new wxButton(panel, wxID_ANY, "previous", wxPoint(0, 110));
    holder = new wxWindow(panel, wxID_ANY, wxPoint(0, 0), wxSize(200, 100));
    holder->SetBackgroundStyle(wxBG_STYLE_PAINT);
    next = new wxButton(panel, wxID_ANY, "next", wxPoint(210, 0));
    frame->Show();
    gdk_display_sync(gtk_widget_get_display(frame->GetHandle()));
    pump_events();
    adapter = std::make_unique<orvix1::elements::ElementAdapter>(holder);
    root = new recording_element_t(&log, "root");
    adapter->SetRootElement(root);
  }
  void TearDown() override {
    adapter.reset();
    if (holder != nullptr && holder->HasCapture()) holder->ReleaseMouse();
    frame->Destroy();
    pump_events();
  }

  recording_ptr_t add(const element_ptr_t& parent, wxSize size, const std::string& name) {
    return new recording_element_t(parent, size, &log, name);
  }

  // Paints the holder at once, laying the tree out.
  void paint() {
    holder->Refresh();
    holder->Update();
  }

  void send_mouse(wxEventType type, int x, int y, bool left_down = false) {
    wxMouseEvent event(type);
    event.SetPosition(wxPoint(x, y));
    event.SetLeftDown(left_down);
    event.SetEventObject(holder);
    holder->ProcessWindowEvent(event);
  }

  log_t take_log() { return std::exchange(log, log_t()); }

  log_t log;
  wxFrame* frame = nullptr;
  wxWindow* holder = nullptr;
  wxButton* previous = nullptr;
  wxButton* next = nullptr;
  std::unique_ptr<orvix1::elements::ElementAdapter> adapter;
  recording_ptr_t root;
};

}  // namespace orvix1_test

#endif
