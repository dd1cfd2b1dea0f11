// Relayout of a wide element tree: one root with N fixed leaves, docked one
// after another, laid out again and again as a host does on every resize.
// The cost per child should not grow with N.

#include <benchmark/benchmark.h>

#include "orvix1/elements/OptimalLayout.h"
#include "orvix1/elements/SpacerElement.h"
#include "orvix1/elements/StackLayout.h"
#include "orvix1/elements/UIElement.h"
#include "talvar2/functor/signal.h"

namespace orvix1_bench {
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

void relayout_optimal(benchmark::State& state) { relayout(state, false); }
BENCHMARK(relayout_optimal)->Name("relayout_optimal/orvix")->Arg(100)->Arg(1000)->Arg(10000)
    ->Unit(benchmark::kMicrosecond);

void relayout_stack(benchmark::State& state) { relayout(state, true); }
BENCHMARK(relayout_stack)->Name("relayout_stack/orvix")->Arg(100)->Arg(1000)->Arg(10000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace orvix1_bench
