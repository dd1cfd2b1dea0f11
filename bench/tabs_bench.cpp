// Layout of a tab strip with many tabs: the positions computed for a size,
// in both width modes, and the full relayout a resize causes (every shown
// tab moved). The cost per tab should not grow with the number of tabs.

#include <benchmark/benchmark.h>

#include <memory>

#include <wx/frame.h>

#include "orvix1/wxTabPanel.h"

namespace {

using orvix1::wxTabPanel;

// A shown frame with one strip of `count` tabs, wide enough for all of
// them, so that every tab is measured and placed.
class strip_t {
 public:
  strip_t(int count, bool equal_width)
      : m_frame(new wxFrame(nullptr, wxID_ANY, "tabs", wxPoint(0, 0), wxSize(400, 100))) {
    m_panel = new wxTabPanel(m_frame, wxID_ANY);
    m_panel->SetEqualWidth(equal_width);
    m_panel->Freeze();  // one layout for all additions
    for (int k = 0; k < count; ++k) m_panel->AddButton(wxString::Format("Document %d", k));
    m_panel->Thaw();
    m_frame->Show();
    const int equal = 2 * m_panel->GetMargin() + count * (m_panel->GetMargin() + m_panel->GetMinButtonWidth());
    m_width = equal_width ? equal : m_panel->GetOptimalSize().x;
  }
  ~strip_t() { m_frame->Destroy(); }
  strip_t(const strip_t&) = delete;
  strip_t& operator=(const strip_t&) = delete;

  wxTabPanel* panel() const { return m_panel; }
  int width() const { return m_width; }

 private:
  wxFrame* m_frame;
  wxTabPanel* m_panel;
  int m_width;
};

void run_positions(benchmark::State& state, bool equal_width) {
  const strip_t strip(static_cast<int>(state.range(0)), equal_width);
  int extra = 0;
  for (auto _ : state) {
    // A width of its own each time: the strip caches the last result.
    extra ^= 1;
    benchmark::DoNotOptimize(strip.panel()->CalculatePositions(wxSize(strip.width() + extra, 30), false));
  }
  if (strip.panel()->GetHiddenCount() != 0) state.SkipWithError("not every tab was laid out");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_TabPositionsVariable(benchmark::State& state) { run_positions(state, false); }
void BM_TabPositionsEqual(benchmark::State& state) { run_positions(state, true); }

// What a resize makes the strip do: lay out and move every shown tab.
void BM_TabRelayoutAfterResize(benchmark::State& state) {
  const strip_t strip(static_cast<int>(state.range(0)), false);
  int extra = 0;
  for (auto _ : state) {
    extra ^= 1;
    strip.panel()->CalculatePositions(wxSize(strip.width() + extra, 30), true);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_TabPositionsVariable)->Name("tab_positions/orvix_variable")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TabPositionsEqual)->Name("tab_positions/orvix_equal")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TabRelayoutAfterResize)->Name("tab_relayout/orvix_resize")->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
