// Cost of laying out a wide element tree: one root with thousands of fixed
// leaves, docked one after another, relaid out again and again as a host
// does on every resize. The cost per child should not grow with the count.
//
// Run under a display (scripts/xvfb-run-here build/bench/orvix1_bench).

#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdio>

#include <wx/init.h>
#include <wx/log.h>
#include <wx/wx.h>

#include "orvix1/elements/OptimalLayout.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/StackLayout.h"
#include "orvix1/elements/UIElement.h"
#include "talvar2/functor/signal.h"

namespace {

using orvix1::elements::element_ptr_t;
using orvix1::elements::Layout;
using orvix1::elements::SpacerElement;
using orvix1::elements::StackLayout;
using orvix1::elements::UIElement;

constexpr int k_leaf_width = 10;
constexpr int k_leaf_height = 5;

// Answers the root's requests as a window would: a fixed client rectangle
// and no window to repaint.
class fixed_host_t : public talvar2::subscriber_base_t {
 public:
  fixed_host_t(UIElement& root, const wxRect& client) : m_client(client) {
    root.RequestClientRect.connect(this, &fixed_host_t::on_client_rect);
    root.RequestHolderWindow.connect(this, &fixed_host_t::on_holder);
  }

 private:
  void on_client_rect(wxRect& rect) { rect = m_client; }
  void on_holder(wxWindow** window) { *window = nullptr; }

  wxRect m_client;
};

// A root wide enough for all its leaves, so that the relayout measures the
// plain placing and not the shortage passes.
struct wide_tree_t {
  explicit wide_tree_t(int leaves, bool stacked)
      : root(new UIElement()), host(*root, wxRect(0, 0, leaves * k_leaf_width, 20)) {
    if (stacked) {
      talvar2::intrusive_pointer_t<StackLayout> stack(new StackLayout);
      stack->SetOrientation(true);
      root->SetLayoutLogic(stack);
    }
    for (int i = 0; i < leaves; ++i)
      new SpacerElement(root, UIElement::pfLeft | UIElement::pfVCenter,
                        wxSize(k_leaf_width, k_leaf_height));
    layout = root->GetLayoutLogic();
  }

  element_ptr_t root;
  fixed_host_t host;
  talvar2::intrusive_pointer_t<Layout> layout;
};

void relayout(benchmark::State& state, bool stacked) {
  const int leaves = static_cast<int>(state.range(0));
  wide_tree_t tree(leaves, stacked);
  for (auto _ : state) tree.layout->Invalidate();
  const wxRect last = tree.root->GetChildren().back()->GetRect();
  if (last.GetRight() != leaves * k_leaf_width - 1)
    state.SkipWithError("the leaves were not laid out side by side");
  state.SetItemsProcessed(state.iterations() * leaves);
}

void optimal_layout_relayout(benchmark::State& state) { relayout(state, false); }
BENCHMARK(optimal_layout_relayout)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void stack_layout_relayout(benchmark::State& state) { relayout(state, true); }
BENCHMARK(stack_layout_relayout)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

void print_assertion(const wxString& file, int line, const wxString& function,
                     const wxString& condition, const wxString& message) {
  std::fprintf(stderr, "assertion %s in %s (%s:%d) %s\n", condition.utf8_str().data(),
               function.utf8_str().data(), file.utf8_str().data(), line, message.utf8_str().data());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  // Elements need the application object; a failed assertion must not open
  // a dialog in the middle of a measurement.
  wxSetAssertHandler(print_assertion);
  if (!wxEntryStart(argc, argv)) {
    std::fprintf(stderr, "cannot start wxWidgets: is there a display?\n");
    return 2;
  }
  std::setlocale(LC_ALL, "C.UTF-8");
  delete wxLog::SetActiveTarget(new wxLogStderr);
  wxTheApp->CallOnInit();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  wxEntryCleanup();
  return 0;
}
