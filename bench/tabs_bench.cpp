// Layout of a tab strip with many tabs: the positions computed for a size
// that holds every tab, in both width modes, the full relayout a resize of a
// window causes (the tabs that fit shown and moved, the others hidden), and
// measuring every tab again after the font changed. The cost per tab should
// not grow with the number of tabs.

#include <benchmark/benchmark.h>

#include <map>

#include <wx/frame.h>

#include "orvix1/wxTabPanel.h"

namespace {

using orvix1::wxTabPanel;

// A shown frame with one strip of `count` tabs. Made once per count and
// kept: the toolkit takes long to make thousands of child windows, and the
// benchmark library calls each benchmark several times. wx destroys the
// frames when it ends.
class strip_t {
 public:
  static strip_t& get(int count, bool equal_width) {
    static std::map<int, strip_t*> strips;
    strip_t*& strip = strips[count];
    if (strip == nullptr) strip = new strip_t(count);
    strip->m_panel->SetEqualWidth(equal_width);
    return *strip;
  }

  wxTabPanel* panel() const { return m_panel; }
  // A width that holds every tab in the strip's current width mode.
  int width() const {
    if (!m_panel->GetEqualWidth()) return m_panel->GetOptimalSize().x;
    return 2 * m_panel->GetMargin() + m_panel->GetCount() * (m_panel->GetMargin() + m_panel->GetMinButtonWidth());
  }

 private:
  explicit strip_t(int count) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, "tabs", wxPoint(0, 0), wxSize(1200, 100));
    m_panel = new wxTabPanel(frame, wxID_ANY);
    m_panel->Freeze();  // one layout for all additions
    for (int k = 0; k < count; ++k) m_panel->AddButton(wxString::Format("Document %d", k));
    m_panel->Thaw();
    frame->Show();
  }

  wxTabPanel* m_panel;
};

void run_positions(benchmark::State& state, bool equal_width) {
  const strip_t& strip = strip_t::get(static_cast<int>(state.range(0)), equal_width);
  const int width = strip.width();
  int extra = 0;
  wxSize laid_out;
  for (auto _ : state) {
    // A width of its own each time: the strip caches the last result.
    extra ^= 1;
    laid_out = strip.panel()->CalculatePositions(wxSize(width + extra, 30), false);
    benchmark::DoNotOptimize(laid_out);
  }
  // The strip's width shows that every tab was placed.
  state.counters["strip_px"] = laid_out.x;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TabPositionsVariable(benchmark::State& state) { run_positions(state, false); }
void BM_TabPositionsEqual(benchmark::State& state) { run_positions(state, true); }

// What a window resized between 800 and 1200 pixels makes the strip do:
// choose the tabs that fit from the selected one on, show and move them,
// hide the rest.
void BM_TabRelayoutAfterResize(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  const strip_t& strip = strip_t::get(count, false);
  strip.panel()->SetCurrentSelection(count / 2);
  bool wide = false;
  for (auto _ : state) {
    wide = !wide;
    strip.panel()->CalculatePositions(wxSize(wide ? 1200 : 800, 30), true);
  }
  state.counters["shown"] = strip.panel()->GetShownCount();
  state.SetItemsProcessed(state.iterations() * count);
}

// A new font drops every tab's measured size: the next layout measures
// every caption again.
void BM_TabMeasureAfterFontChange(benchmark::State& state) {
  const strip_t& strip = strip_t::get(static_cast<int>(state.range(0)), false);
  const wxFont font = strip.panel()->GetFont();
  const int width = strip.width();
  int extra = 0;
  wxSize laid_out;
  for (auto _ : state) {
    extra ^= 1;
    strip.panel()->ChangeFont(font);
    laid_out = strip.panel()->CalculatePositions(wxSize(width + extra, 30), false);
    benchmark::DoNotOptimize(laid_out);
  }
  state.counters["strip_px"] = laid_out.x;
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_TabPositionsVariable)->Name("tab_positions/orvix_variable")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TabPositionsEqual)->Name("tab_positions/orvix_equal")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TabRelayoutAfterResize)->Name("tab_relayout/orvix_resize")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TabMeasureAfterFontChange)->Name("tab_measure/orvix_font_change")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
