// A tabbed workspace with many tabs: one step of a drag through a strip of
// N tabs (the pointer crosses a neighbour; the tab moves, the strip lays out
// and repaints), and restoring a saved layout of N tabs in two strips (the
// documents' order reversed, four documents and four tools changing strips,
// the selection and a splitter put back). Neither should cost more than
// linearly in N.
//
// A tab that changes strips changes its parent window, which costs GTK and
// wx work over the strip's other children: a layout that sends a share of
// N tabs to the other strip costs more than linearly.

#include <benchmark/benchmark.h>

#include <map>
#include <string>

#include <wx/app.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/frame.h>

#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxTabPane.h"

namespace {

using orvix1::wxTabButton;
using orvix1::wxTabPane;
using orvix1::wxTabPanel;

// Lets GTK place and show the windows, so that screen positions hold.
void settle() {
  wxGUIEventLoop loop;
  wxEventLoopActivator active(&loop);
  for (int round = 0; round < 1000 && loop.Pending(); ++round) loop.Dispatch();
  wxTheApp->ProcessPendingEvents();
}

wxFrame* shown_frame(const char* title) {
  auto* frame = new wxFrame(nullptr, wxID_ANY, title, wxPoint(0, 0), wxSize(1200, 400));
  frame->Show();
  return frame;
}

void send_mouse(wxWindow* window, wxEventType type, const wxPoint& at) {
  wxMouseEvent event(type);
  event.SetEventObject(window);
  event.SetPosition(at);
  event.m_leftDown = type != wxEVT_LEFT_UP;
  window->GetEventHandler()->ProcessEvent(event);
}

// --- a drag step ----------------------------------------------------------

// A bare pane whose strip has `count` tabs; the shown run starts a few tabs
// before the middle one, the one dragged, at the selection. Made once per
// count: wx destroys it at the end.
wxTabPane* drag_pane(int count) {
  static std::map<int, wxTabPane*> panes;
  wxTabPane*& pane = panes[count];
  if (pane != nullptr) return pane;
  pane = new wxTabPane(shown_frame("drag"), wxID_ANY, wxPoint(0, 0), wxSize(1200, 40));
  pane->EnableTabMoves(true);
  wxTabPanel* strip = pane->AddPanel(wxTabPane::primary_panel);
  pane->Freeze();  // one layout for all tabs
  for (int k = 0; k < count; ++k) strip->AddButton(wxString::Format("Document %d", k));
  pane->Thaw();
  strip->SetCurrentSelection(count / 2 - 4);
  settle();
  return pane;
}

// Where the pointer is, in the pane, over `across` of the tab at `index`.
wxPoint over_tab(wxTabPanel* strip, int index, double across) {
  const wxRect tab = strip->GetButton(index)->GetRect();
  return strip->GetPosition() + wxPoint(tab.x + static_cast<int>(tab.width * across), tab.height / 2);
}

void BM_TabDragStep(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  wxTabPane* pane = drag_pane(count);
  wxTabPanel* strip = pane->GetPanel(wxTabPane::primary_panel);
  wxTabButton* dragged = strip->GetButton(count / 2);
  send_mouse(dragged, wxEVT_LEFT_DOWN, wxPoint(4, 8));
  send_mouse(dragged, wxEVT_MOTION, wxPoint(40, 8));
  if (!pane->IsDragging()) state.SkipWithError("the drag did not start");
  bool rightwards = true;
  for (auto _ : state) {
    // Past the middle of the neighbour on the right, then back over the
    // one that moved to the left.
    const int at = dragged->GetId();
    send_mouse(pane, wxEVT_MOTION, over_tab(strip, rightwards ? at + 1 : at - 1, rightwards ? 0.75 : 0.25));
    strip->Update();
    rightwards = !rightwards;
  }
  state.counters["moved_to"] = dragged->GetId();
  pane->CancelDrag();
  state.SetItemsProcessed(state.iterations());
}

// --- a restored layout ----------------------------------------------------

// `count` keyed pages in a splitter: documents in the primary strip, the
// last few, tools, in the secondary.
struct restore_case_t {
  wxTabPane* pane = nullptr;
  std::string layouts[2];
};

const int k_tools = 8;

// The second layout swaps the first four tools with four documents spread
// over the strip.
bool in_secondary(int key, int count, bool second) {
  const bool tool = key >= count - k_tools;
  const bool swapped = second && (tool ? key < count - k_tools / 2 : key % (count / 4) == 1);
  return tool != swapped;
}

std::string layout_of(int count, bool reversed) {
  std::string text = "orvix1-tab-layout 1\n";
  for (int k = 0; k < count; ++k) {
    const int key = reversed ? count - 1 - k : k;
    text += std::string("tab ") + (in_secondary(key, count, reversed) ? "2" : "1") + " page" +
            std::to_string(key) + "\n";
  }
  text += "selected page" + std::to_string(reversed ? 1 : count / 2) + "\n";
  text += std::string("splitter advancedSplitter position=") + (reversed ? "0.3000" : "0.2000") + ";closed=0\n";
  return text;
}

restore_case_t& restore_case(int count) {
  static std::map<int, restore_case_t> cases;
  restore_case_t& made = cases[count];
  if (made.pane != nullptr) return made;
  wxFrame* frame = shown_frame("restore");
  auto* splitter = new orvix1::wxAdvancedSplitter(frame, wxID_ANY, wxPoint(0, 0), wxSize(1200, 400));
  splitter->EnableAnimation(false);
  made.pane = new wxTabPane(splitter, wxID_ANY);
  splitter->SplitVertically(new wxWindow(splitter, wxID_ANY), made.pane);
  made.pane->Freeze();
  for (int k = 0; k < count; ++k) {
    auto* page = new wxWindow(made.pane->GetPageArea(), wxID_ANY);
    made.pane->AddPage(in_secondary(k, count, false) ? 2 : 1, page, wxString::Format("Page %d", k));
    made.pane->SetPageKey(page, "page" + std::to_string(k));
  }
  made.pane->Thaw();
  made.layouts[0] = layout_of(count, false);
  made.layouts[1] = layout_of(count, true);
  settle();
  return made;
}

void BM_TabLayoutRestore(benchmark::State& state) {
  restore_case_t& restore = restore_case(static_cast<int>(state.range(0)));
  int which = 0;
  bool whole = true;
  for (auto _ : state) {
    which ^= 1;
    whole = restore.pane->RestoreLayout(restore.layouts[which]) && whole;
  }
  if (!whole) state.SkipWithError("a layout was not taken whole");
  state.counters["secondary"] = restore.pane->GetPanel(wxTabPane::secondary_panel)->GetButtonsCount();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_TabDragStep)->Name("tab_drag/orvix_step")->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TabLayoutRestore)->Name("tab_restore/orvix_layout")->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);
