// A holder of N text labels, made of TextElements on one ElementAdapter,
// against the same labels as native wxStaticText children in a wxBoxSizer:
// - labels_build: create the labels, lay them out and paint the holder once;
//   the heap they hold is reported as bytes_per_label;
// - labels_relayout: resize the holder and paint it again.
// The frame is shown so that painting really happens, and it is flushed to
// the X server before each measurement ends.

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <memory>
#include <string>

#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include "orvix1/elements/ElementAdapter.h"
#include "orvix1/elements/StackLayout.h"
#include "orvix1/elements/TextElement.h"
#include "orvix1/elements/UIElement.h"

namespace orvix1_bench {
namespace {

using orvix1::elements::element_ptr_t;
using orvix1::elements::ElementAdapter;
using orvix1::elements::StackLayout;
using orvix1::elements::TextElement;
using orvix1::elements::UIElement;

const wxSize k_small(400, 300);
const wxSize k_large(640, 480);

std::string label_text(long index) { return "Label " + std::to_string(index); }

std::size_t heap_in_use() { return mallinfo2().uordblks; }

// One shown frame for every measurement: creating top-level windows is not
// what is measured.
wxFrame& frame() {
  static wxFrame* shown = [] {
    auto* created = new wxFrame(nullptr, wxID_ANY, "labels", wxDefaultPosition, k_small);
    created->Show();
    return created;
  }();
  return *shown;
}

// Paints `holder` now and waits until the X server has the result.
void paint_now(wxWindow& holder) {
  holder.Refresh();
  holder.Update();
  wxYieldIfNeeded();
}

// A holder whose labels are elements.
class element_labels_t {
 public:
  explicit element_labels_t(long count) : m_holder(new wxPanel(&frame())) {
    m_holder->SetBackgroundStyle(wxBG_STYLE_PAINT);
    m_holder->SetSize(k_small);
    m_adapter = std::make_unique<ElementAdapter>(m_holder);
    m_root = new UIElement();
    talvar2::intrusive_pointer_t<StackLayout> column(new StackLayout);
    column->SetOrientation(false);
    m_root->SetLayoutLogic(column);
    m_adapter->SetRootElement(m_root);
    // Fixed at their natural size like the sizer's labels (proportion 0):
    // what does not fit runs past the bottom instead of being squeezed.
    for (long i = 0; i < count; ++i) {
      auto* label = new TextElement(m_root, UIElement::pfTop | UIElement::pfLeft, label_text(i));
      label->SetResizable(false);
    }
  }
  ~element_labels_t() {
    m_root->Destroy();
    m_adapter.reset();
    m_holder->Destroy();
  }
  wxWindow& holder() { return *m_holder; }

 private:
  wxPanel* m_holder;
  std::unique_ptr<ElementAdapter> m_adapter;
  element_ptr_t m_root;
};

// A holder whose labels are native child windows.
class native_labels_t {
 public:
  explicit native_labels_t(long count) : m_holder(new wxPanel(&frame())) {
    m_holder->SetSize(k_small);
    auto* column = new wxBoxSizer(wxVERTICAL);
    for (long i = 0; i < count; ++i)
      column->Add(new wxStaticText(m_holder, wxID_ANY, label_text(i)), 0, wxALIGN_LEFT);
    m_holder->SetSizer(column);
    m_holder->Layout();
  }
  ~native_labels_t() { m_holder->Destroy(); }
  wxWindow& holder() { return *m_holder; }

 private:
  wxPanel* m_holder;
};

template <class Labels>
void labels_build(benchmark::State& state) {
  const long count = state.range(0);
  double bytes = 0;
  for (auto _ : state) {
    const std::size_t before = heap_in_use();
    auto labels = std::make_unique<Labels>(count);
    paint_now(labels->holder());
    bytes = static_cast<double>(heap_in_use() - before);
    state.PauseTiming();  // tearing down is not what is measured
    labels.reset();
    state.ResumeTiming();
  }
  state.counters["bytes_per_label"] = bytes / static_cast<double>(count);
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK_TEMPLATE(labels_build, element_labels_t)->Name("labels_build/orvix")
    ->Arg(100)->Arg(1000)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(labels_build, native_labels_t)->Name("labels_build/wx_native")
    ->Arg(100)->Arg(1000)->Arg(10000)->UseRealTime()->Unit(benchmark::kMillisecond);

template <class Labels>
void labels_relayout(benchmark::State& state) {
  Labels labels(state.range(0));
  bool large = false;
  for (auto _ : state) {
    large = !large;
    labels.holder().SetSize(large ? k_large : k_small);
    labels.holder().Layout();
    paint_now(labels.holder());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_TEMPLATE(labels_relayout, element_labels_t)->Name("labels_relayout/orvix")
    ->Arg(100)->Arg(1000)->Arg(10000)->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(labels_relayout, native_labels_t)->Name("labels_relayout/wx_native")
    ->Arg(100)->Arg(1000)->Arg(10000)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace orvix1_bench
