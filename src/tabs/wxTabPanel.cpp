#include "orvix1/wxTabPanel.h"

#include <algorithm>
#include <climits>
#include <unordered_set>

#include <wx/dcbuffer.h>

#include "core/contract_sites.h"
#include "orvix1/dpi.h"
#include "orvix1/text_utils.h"
#include "orvix1/ui_settings.h"
#include "tabs/tab_accessible.h"
#include "tabs/tab_art.h"
#include "tabs/tab_strip_layout.h"

namespace orvix1 {
namespace {

const char k_font_key[] = "fnNormalBold";
const char k_background_key[] = "clBg";
// Wide enough for any strip: what "all buttons shown" is measured with.
const int k_unbounded_width = INT_MAX / 4;
// At 96 dpi: the gap between buttons, and the room a button needs beside
// its shortest caption.
const int k_default_margin = 2;
const int k_button_room = 30;

}  // namespace

bool ButtonIsInVector(const wxTabButton* button, const std::vector<wxTabButton*>& buttons) {
  return std::find(buttons.begin(), buttons.end(), button) != buttons.end();
}

// --- style --------------------------------------------------------------------

wxTabPanel::default_style_t::default_style_t() { set_style_info(); }

void wxTabPanel::default_style_t::set_style_info() {
  wxTabButton::default_style_t::set_style_info();
  internal_set_color(k_background_key, m_settings->get_color(color_strip_bg));
}

// --- construction -------------------------------------------------------------

wxIMPLEMENT_DYNAMIC_CLASS(wxTabPanel, wxWindow);

wxBEGIN_EVENT_TABLE(wxTabPanel, wxWindow)
  EVT_PAINT(wxTabPanel::OnPaint)
  EVT_SIZE(wxTabPanel::OnResize)
wxEND_EVENT_TABLE()

wxTabPanel::wxTabPanel()
    : m_art(std::make_unique<detail::tab_art_t>(this)),
      m_layout(std::make_unique<detail::tab_strip_layout_t>()) {}

wxTabPanel::wxTabPanel(wxWindow* parent, wxWindowID id, const wxPoint& position,
                       const wxSize& size, long style)
    : wxTabPanel() {
  create(parent, id, position, size, style);
}

// The subscriber base cuts the buttons' connections before the window
// destroys the buttons.
wxTabPanel::~wxTabPanel() = default;

bool wxTabPanel::create(wxWindow* parent, wxWindowID id, const wxPoint& position,
                        const wxSize& size, long style) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  if (!wxWindow::Create(parent, id, position, size, style | wxBORDER_NONE, "wxTabPanel"))
    return false;
  init();
  m_accessible = std::make_unique<detail::tab_strip_accessible_t>(*this);
  return true;
}

void wxTabPanel::init() {
  m_margin = calculate_DPI_scaled_length(k_default_margin);
  SetUiStyle(new default_style_t);
}

void wxTabPanel::MeasureWidths() {
  const int n = GetTextSize(this, "n", GetFont()).x;
  const int dots = 3 * GetTextSize(this, ".", GetFont()).x;
  const int room = calculate_DPI_scaled_length(k_button_room);
  m_min_button_width = 8 * n + dots + room;
  m_equal_width_cap = n + dots + room;
}

// --- look ---------------------------------------------------------------------

void wxTabPanel::ApplyLookTo(wxTabButton* button) const {
  for (int type = wxTabButton::bg_normal; type < wxTabButton::color_types_end; ++type)
    if (m_colors[type].IsOk())
      button->SetColor(static_cast<wxTabButton::color_type_t>(type), m_colors[type]);
  button->ChangeFont(GetFont());
}

void wxTabPanel::SetDefaultUISettings() {
  const talvar2::intrusive_pointer_t<ui_style_t> style = GetUiStyle();
  for (int type = wxTabButton::bg_normal; type < wxTabButton::color_types_end; ++type)
    if (!m_colors_set[type])
      m_colors[type] = style->get_color(wxTabButton::GetColorKey(static_cast<wxTabButton::color_type_t>(type)));
  const wxFont font = style->get_font(k_font_key);
  wxWindow::SetFont(font.IsOk() ? font : wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
  if (m_colors[wxTabButton::panel_bg].IsOk())
    wxWindow::SetBackgroundColour(m_colors[wxTabButton::panel_bg]);
  MeasureWidths();
}

void wxTabPanel::on_style_updated() {
  if (!GetUiStyle()) return;
  SetDefaultUISettings();
  for (wxTabButton* button : m_buttons) ApplyLookTo(button);
  InvalidateBestSizes();
  FullRefresh(true);
}

void wxTabPanel::SetColor(wxTabButton::color_type_t type, const wxColour& colour) {
  if (type < wxTabButton::bg_normal || type >= wxTabButton::color_types_end) return;
  m_colors[type] = colour;
  m_colors_set[type] = true;
  for (wxTabButton* button : m_buttons) button->SetColor(type, colour);
  if (type == wxTabButton::panel_bg) wxWindow::SetBackgroundColour(colour);
  Refresh();
}

wxColour wxTabPanel::GetColor(wxTabButton::color_type_t type) const {
  if (type < wxTabButton::bg_normal || type >= wxTabButton::color_types_end) return wxColour();
  return m_colors[type];
}

bool wxTabPanel::SetBackgroundColour(const wxColour& colour) {
  SetColor(wxTabButton::panel_bg, colour);
  return true;
}

void wxTabPanel::ChangeFont(const wxFont& font) {
  wxWindow::SetFont(font);
  InvalidateBestSizes();
  MeasureWidths();
  for (wxTabButton* button : m_buttons) button->ChangeFont(font);
}

bool wxTabPanel::SetFont(const wxFont& font) {
  ChangeFont(font);
  FullRefresh(true);
  return true;
}

void wxTabPanel::SetBgImage(const wxImage& image, bool refresh) {
  m_bg_image = image;
  if (refresh) Refresh();
}

void wxTabPanel::OnHorzImageSlide(bool sliding, int offset) {
  m_sliding = sliding;
  m_slide_offset = offset;
  Refresh();
}

void wxTabPanel::SendSlideSignal(bool sliding, int offset) {
  OnHorzImageSlide(sliding, offset);
  m_slid(this, sliding ? 1 : 0, offset);
}

// --- buttons ------------------------------------------------------------------

wxTabButton* wxTabPanel::CreateButton(const picture_t& picture, const wxString& caption) {
  auto* button = new wxTabButton(this, wxID_ANY, picture, caption);
  button->Hide();
  return button;
}

void wxTabPanel::InitializeButton(wxTabButton* button) {
  const int index = std::clamp(button->GetId(), 0, GetButtonsCount());
  InvalidateBestSizes();
  ApplyLookTo(button);
  // The strip's flag, given once: a button may carry its own cross later.
  button->SetCrossed(m_crossed);
  ConnectButton(button);
  m_buttons.insert(m_buttons.begin() + index, button);
  Renumber(index);
  if (m_selection >= index) ++m_selection;
  // The new button is hidden until the layout finds room for it; the
  // hidden list stays in the order of all buttons.
  button->Hide();
  m_hidden.push_back(button);
  if (index != GetButtonsCount() - 1) UpdateShowedLists();
  // A frozen strip lays out once, when it thaws.
  if (!IsFrozen()) CalculatePositions(true);
  m_button_added(index);
  Refresh();
}

void wxTabPanel::DoThaw() {
  wxWindow::DoThaw();
  FullRefresh(true);
}

wxTabButton* wxTabPanel::InsertButton(const wxBitmap& bitmap, const wxString& caption, int index) {
  wxTabButton* button = CreateButton(picture_t(bitmap), caption);
  button->SetId(index < 0 || index > GetButtonsCount() ? GetButtonsCount() : index);
  InitializeButton(button);
  return button;
}

wxTabButton* wxTabPanel::InsertButton(int index, const wxString& caption) {
  return InsertButton(wxNullBitmap, caption, index);
}

wxTabButton* wxTabPanel::InsertButton(const wxAnimation& animation, const wxString& caption,
                                      int index) {
  wxTabButton* button = CreateButton(picture_t(), caption);
  button->SetAnimation(animation);
  button->SetId(index < 0 || index > GetButtonsCount() ? GetButtonsCount() : index);
  InitializeButton(button);
  return button;
}

wxTabButton* wxTabPanel::AddButton(const wxString& caption) { return InsertButton(-1, caption); }

wxTabButton* wxTabPanel::AddButton(const wxBitmap& bitmap, const wxString& caption) {
  return InsertButton(bitmap, caption, -1);
}

wxTabButton* wxTabPanel::AddButton(const wxImage& image, const wxString& caption) {
  return AddButton(picture_t(image), caption);
}

wxTabButton* wxTabPanel::AddButton(const picture_t& picture, const wxString& caption) {
  return InsertButton(picture.GetBitmap(), caption, -1);
}

wxTabButton* wxTabPanel::AddButton(const wxAnimation& animation, const wxString& caption) {
  return InsertButton(animation, caption, -1);
}

wxTabButton* wxTabPanel::AddButton(const std::string& image_path, const wxString& caption) {
  return AddButton(picture_t::from_file(wxString::FromUTF8(image_path)), caption);
}

wxTabButton* wxTabPanel::GetButton(int index) const {
  return index >= 0 && index < GetButtonsCount() ? m_buttons[index] : nullptr;
}

void wxTabPanel::SetDisabled(int index, bool disabled) {
  wxTabButton* button = GetButton(index);
  if (button == nullptr) return;
  button->SetDisabled(disabled);
  if (disabled && index == m_selection) SetCurrentSelection(-1);
}

void wxTabPanel::Renumber(int from) {
  for (int k = std::max(from, 0); k < GetButtonsCount(); ++k) m_buttons[k]->SetId(k);
}

bool wxTabPanel::RemoveButton(wxTabButton* button, bool keep_window) {
  const auto found = std::find(m_buttons.begin(), m_buttons.end(), button);
  if (found == m_buttons.end()) return false;
  return RemoveButton(static_cast<int>(found - m_buttons.begin()), keep_window);
}

bool wxTabPanel::RemoveButton(int index, bool keep_window) {
  wxTabButton* button = GetButton(index);
  if (button == nullptr) return false;
  m_button_removing(this, index);
  // A handler may have moved or removed the button.
  const auto found = std::find(m_buttons.begin(), m_buttons.end(), button);
  if (found == m_buttons.end()) return false;
  index = static_cast<int>(found - m_buttons.begin());
  m_buttons.erase(m_buttons.begin() + index);
  InvalidateBestSizes();
  m_shown.erase(std::remove(m_shown.begin(), m_shown.end(), button), m_shown.end());
  m_hidden.erase(std::remove(m_hidden.begin(), m_hidden.end(), button), m_hidden.end());
  DisconnectButton(button);
  if (m_brought_into_view == button) m_brought_into_view = nullptr;
  if (keep_window)
    button->Hide();
  else
    button->Destroy();
  Renumber(index);
  SelectAfterRemoval(index);
  m_button_removed(index);
  CalculatePositions(true);
  Refresh();
  return true;
}

// The selected tab keeps its selection under its new number; when it was
// the one removed, its right neighbour (or else its left one) takes over.
void wxTabPanel::SelectAfterRemoval(int removed) {
  if (m_selection < 0 || removed > m_selection) return;
  const int previous = m_selection;
  m_selection = -1;
  if (removed < previous) {
    SetCurrentSelection(previous - 1);
    return;
  }
  const int next = removed < GetButtonsCount() ? removed : removed - 1;
  if (next >= 0 && !m_buttons[next]->GetDisabled())
    SetCurrentSelection(next);
  else
    m_selection_changed(this, -1);
}

// --- selection ----------------------------------------------------------------

void wxTabPanel::SetCurrentSelection(int index) {
  if (index < -1 || index >= GetButtonsCount()) return;
  if (index >= 0 && m_buttons[index]->GetDisabled()) return;
  if (m_toggle_mode) {
    if (index >= 0) m_buttons[index]->Toggle();
    m_selection = index;
  } else {
    if (index == m_selection) return;
    for (int k = 0; k < GetButtonsCount(); ++k)
      if (k != index && (m_buttons[k]->GetState() & wxTabButton::state_selected) != 0)
        m_buttons[k]->Restore();
    m_selection = index;
    if (index >= 0) m_buttons[index]->Press();
  }
  m_brought_into_view = nullptr;
  m_selection_changed(this, index);
  // A handler may have removed the button or changed the selection again.
  wxTabButton* selected = GetButton(index);
  if (selected == nullptr || ButtonIsInVector(selected, m_shown)) return;
  const int hidden = TranslateIndex(index, list_all, list_hidden);
  if (hidden >= 0) DoShowHiddenButton(hidden);
  FullRefresh(true);
}

// --- signals of the buttons ---------------------------------------------------

void wxTabPanel::on_button_clicked(int id) {
  SetCurrentSelection(id);
  Refresh();
}

void wxTabPanel::on_button_delete(int id) {
  bool allow = true;
  m_delete_requested(this, id, allow);
  if (allow) RemoveButton(id, false);
}

void wxTabPanel::on_button_resized() {
  InvalidateBestSizes();
  if (m_in_layout || IsFrozen()) return;
  CalculatePositions(true);
  m_resized();
}

// --- shown and hidden ---------------------------------------------------------

wxTabButton* wxTabPanel::GetShownButton(int k) const {
  return k >= 0 && k < GetShownCount() ? m_shown[k] : nullptr;
}

int wxTabPanel::TranslateIndex(int index, list_t from, list_t to) const {
  const auto list_of = [this](list_t list) -> const std::vector<wxTabButton*>& {
    return list == list_all ? m_buttons : list == list_shown ? m_shown : m_hidden;
  };
  const std::vector<wxTabButton*>& source = list_of(from);
  if (index < 0 || index >= static_cast<int>(source.size())) return -1;
  const std::vector<wxTabButton*>& target = list_of(to);
  const auto found = std::find(target.begin(), target.end(), source[index]);
  return found == target.end() ? -1 : static_cast<int>(found - target.begin());
}

bool wxTabPanel::FindButtonByHiddenIndex(int hidden_index, int& index) const {
  index = TranslateIndex(hidden_index, list_hidden, list_all);
  return index >= 0;
}

void wxTabPanel::HideButton(int index) {
  wxTabButton* button = GetButton(index);
  if (button == nullptr || !ButtonIsInVector(button, m_shown)) return;
  m_shown.erase(std::find(m_shown.begin(), m_shown.end(), button));
  m_hidden.push_back(button);
  UpdateShowedLists();
  button->Hide();
  FullRefresh(false);
}

// Brings the hidden button into the shown run, making the run start at it
// when it is selected; the layout then decides what else fits.
bool wxTabPanel::DoShowHiddenButton(int hidden_index) {
  int index = -1;
  if (!FindButtonByHiddenIndex(hidden_index, index)) return false;
  wxTabButton* button = m_buttons[index];
  m_hidden.erase(m_hidden.begin() + hidden_index);
  m_shown.push_back(button);
  UpdateShowedLists();
  button->Show();
  m_brought_into_view = button;
  return true;
}

bool wxTabPanel::ShowHiddenButton(int hidden_index) {
  if (!DoShowHiddenButton(hidden_index)) return false;
  FullRefresh(true);
  return true;
}

bool wxTabPanel::ShowAndSelectHiddenButton(int hidden_index) {
  int index = -1;
  if (!FindButtonByHiddenIndex(hidden_index, index)) return false;
  DoShowHiddenButton(hidden_index);
  SetCurrentSelection(index);
  FullRefresh(true);
  return true;
}

// Both lists in the order of all buttons.
void wxTabPanel::UpdateShowedLists() {
  const std::unordered_set<const wxTabButton*> was_shown(m_shown.begin(), m_shown.end());
  std::vector<wxTabButton*> shown;
  std::vector<wxTabButton*> hidden;
  shown.reserve(m_shown.size());
  hidden.reserve(m_buttons.size());
  for (wxTabButton* button : m_buttons)
    (was_shown.count(button) != 0 ? shown : hidden).push_back(button);
  m_shown.swap(shown);
  m_hidden.swap(hidden);
}

void wxTabPanel::ShowOnly(int first, int count) {
  m_shown.assign(m_buttons.begin() + first, m_buttons.begin() + first + count);
  m_hidden.assign(m_buttons.begin(), m_buttons.begin() + first);
  m_hidden.insert(m_hidden.end(), m_buttons.begin() + first + count, m_buttons.end());
}

// The run starts at the button last brought into view from the hidden list,
// else at the selection, unless too few buttons follow it; without either
// it ends at the last button. So the run always holds the selection.
int wxTabPanel::AnchorIndex() const {
  if (m_brought_into_view == nullptr) return m_selection;
  return static_cast<int>(std::find(m_buttons.begin(), m_buttons.end(), m_brought_into_view) -
                          m_buttons.begin());
}

void wxTabPanel::PutButtonsToShown(int count) {
  const int total = GetButtonsCount();
  if (count < 0 || count > total) return;
  ShowOnly(detail::tab_run_start(AnchorIndex(), count, total), count);
}

void wxTabPanel::PutButtonsToHidden(int count) {
  if (count <= 0) return;
  count = std::min(count, GetShownCount());
  // Buttons leave from the end of the run that is farther from the selection.
  for (; count > 0; --count) {
    const bool selection_at_end = !m_shown.empty() && m_shown.back() == GetButton(m_selection);
    const auto leaving = selection_at_end ? m_shown.begin() : m_shown.end() - 1;
    m_hidden.push_back(*leaving);
    m_shown.erase(leaving);
  }
  UpdateShowedLists();
}

// --- splitters ----------------------------------------------------------------

bool wxTabPanel::AddSplitter(const splitter_t& splitter) {
  const int slot = splitter.index == -1 ? GetSplittersCount() - 1 : splitter.index;
  if (slot < 0 || slot >= GetSplittersCount()) return false;
  m_splitters[slot].image = splitter.image;
  m_splitters[slot].index = slot;
  m_splitter_changed(this, slot);
  FullRefresh(true);
  return true;
}

bool wxTabPanel::AddSplitter(const wxImage& image, int slot) {
  splitter_t splitter;
  splitter.image = image;
  splitter.index = slot;
  return AddSplitter(splitter);
}

bool wxTabPanel::AddSplitter(wxBitmap* bitmap, int slot) {
  return AddSplitter(bitmap != nullptr && bitmap->IsOk() ? bitmap->ConvertToImage() : wxImage(), slot);
}

bool wxTabPanel::ChangeSplitter(int slot, const wxImage& image) { return AddSplitter(image, slot); }

bool wxTabPanel::RemoveSplitter(int slot) { return AddSplitter(wxImage(), slot); }

void wxTabPanel::SetSplittersCount(int count) {
  m_splitters.resize(std::max(count, 0));
  for (int slot = 0; slot < GetSplittersCount(); ++slot) m_splitters[slot].index = slot;
  FullRefresh(true);
}

const wxTabPanel::splitter_t* wxTabPanel::GetSplitter(int slot) const {
  return slot >= 0 && slot < GetSplittersCount() ? &m_splitters[slot] : nullptr;
}

std::vector<wxSize> wxTabPanel::SlotSizes() const {
  std::vector<wxSize> sizes;
  sizes.reserve(m_splitters.size());
  for (const splitter_t& splitter : m_splitters)
    sizes.push_back(splitter.image.IsOk() ? splitter.image.GetSize() : wxSize(0, 0));
  return sizes;
}

wxSize wxTabPanel::GetSplittersSize() const {
  const std::vector<wxSize> slots = SlotSizes();
  int height = 0;
  for (const wxSize& slot : slots) height = std::max(height, slot.y);
  return wxSize(detail::tab_slots_width(slots, Margins()), height);
}

// --- layout -------------------------------------------------------------------

detail::tab_margins_t wxTabPanel::Margins() const {
  detail::tab_margins_t margins;
  margins.margin = m_margin;
  margins.front = m_front_margin;
  return margins;
}

int wxTabPanel::GetMargin(int k) const { return Margins().before(k); }

void wxTabPanel::SetMargin(int margin) {
  if (margin < 0 || margin > 100) return;
  m_margin = margin;
  CalculatePositions(true);
}

void wxTabPanel::EnableFrontMargin(bool enable) {
  m_front_margin = enable;
  FullRefresh(true);
}

void wxTabPanel::SetDesiredButtonHeight(int height) {
  if (height == m_desired_height) return;
  m_desired_height = height;
  m_cached_for = wxDefaultSize;
}

void wxTabPanel::SetResizable(bool resizable) {
  m_resizable = resizable;
  FullRefresh(true);
}

void wxTabPanel::SetEqualWidth(bool equal) {
  m_equal_width = equal;
  FullRefresh(true);
}

void wxTabPanel::SetCrossed(bool crossed) {
  m_crossed = crossed;
  m_in_layout = true;  // one relayout for all buttons
  for (wxTabButton* button : m_buttons) button->SetCrossed(crossed);
  m_in_layout = false;
  FullRefresh(true);
}

// The buttons' sizes side by side: a layout reads them all, and reading them
// from thousands of button objects scattered in memory costs more than the
// layout itself. Those not measured yet are measured on one DC.
void wxTabPanel::UpdateBestSizes() const {
  if (m_best_sizes_valid) return;
  detail::tab_measurer_t measurer(*m_art);
  m_best_sizes.resize(m_buttons.size());
  for (size_t k = 0; k < m_buttons.size(); ++k)
    m_best_sizes[k] = m_buttons[k]->CalculateSize(measurer);
  m_best_sizes_valid = true;
}

int wxTabPanel::GetTallestButtonHeight() const {
  UpdateBestSizes();
  int height = -1;
  for (const wxSize& size : m_best_sizes) height = std::max(height, size.y);
  return height;
}

void wxTabPanel::InvalidateBestSizes() {
  m_best_sizes_valid = false;
  m_cached_for = wxDefaultSize;
}

detail::tab_strip_params_t wxTabPanel::LayoutParams(const wxSize& room) const {
  detail::tab_strip_params_t params;
  params.room = room;
  params.margins = Margins();
  params.resizable = m_resizable;
  params.equal_width = m_equal_width;
  params.right_aligned = m_right_aligned;
  params.min_tab_width = m_min_button_width;
  params.equal_width_cap = m_equal_width_cap;
  params.max_tab_width = m_max_button_width;
  params.desired_height = m_desired_height;
  params.selection = m_selection;
  params.anchor = AnchorIndex();
  return params;
}

const detail::tab_strip_layout_t& wxTabPanel::ComputeLayout(const wxSize& room) const {
  UpdateBestSizes();
  detail::layout_tab_strip(m_best_sizes, SlotSizes(), LayoutParams(room), *m_layout);
  return *m_layout;
}

wxSize wxTabPanel::MeasureFor(const wxSize& room) const {
  if (room == m_cached_for) return m_cached_result;
  m_cached_result = ComputeLayout(room).size;
  m_cached_for = room;
  return m_cached_result;
}

wxSize wxTabPanel::CalculatePositions(bool apply) { return CalculatePositions(GetClientSize(), apply); }

wxSize wxTabPanel::CalculatePositions(const wxSize& size, bool apply) {
  if (!apply) return MeasureFor(size);
  const detail::tab_strip_layout_t& layout = ComputeLayout(size);
  ApplyLayout(layout);
  m_cached_for = size;
  m_cached_result = layout.size;
  return layout.size;
}

// Shows and hides only the windows whose place changed: the hidden list may
// be long.
void wxTabPanel::ApplyLayout(const detail::tab_strip_layout_t& layout) {
  std::vector<wxTabButton*> was_shown;
  was_shown.swap(m_shown);
  ShowOnly(layout.first_shown, layout.shown_count);
  m_in_layout = true;
  for (size_t k = 0; k < m_shown.size(); ++k) m_shown[k]->SetSize(layout.tabs[k], wxSIZE_AUTO);
  m_in_layout = false;
  PlaceSlots(layout);
  const std::unordered_set<const wxTabButton*> now_shown(m_shown.begin(), m_shown.end());
  for (wxTabButton* button : was_shown)
    if (now_shown.count(button) == 0 && button->IsShown()) button->Hide();
  for (wxTabButton* button : m_shown)
    if (!button->IsShown()) button->Show();
  wxWindow::SetMinSize(wxSize(-1, layout.size.y));
  SetMaxSize(wxSize(-1, -1));
}

// Slots the layout did not place still move with a right-aligned strip.
void wxTabPanel::PlaceSlots(const detail::tab_strip_layout_t& layout) {
  for (size_t slot = 0; slot < m_splitters.size(); ++slot) {
    if (slot < layout.slots.size()) {
      m_splitters[slot].x = layout.slots[slot].x;
      m_splitters[slot].y = layout.slots[slot].y;
    } else {
      m_splitters[slot].x += layout.shift;
    }
  }
}

void wxTabPanel::SetMaxButtonWidth(int width) {
  m_max_button_width = std::max(width, 0);
  FullRefresh(true);
}

void wxTabPanel::SetRightAligned(bool right_aligned) {
  m_right_aligned = right_aligned;
  FullRefresh(true);
}

wxSize wxTabPanel::GetOptimalSize() const {
  return MeasureFor(wxSize(k_unbounded_width, GetClientSize().y));
}

wxSize wxTabPanel::DoGetBestSize() const { return GetOptimalSize(); }

void wxTabPanel::SetMinSize(const wxSize& size) {
  wxWindow::SetMinSize(size);
  m_cached_for = wxDefaultSize;
}

void wxTabPanel::FullRefresh(bool relayout) {
  m_cached_for = wxDefaultSize;
  if (relayout) CalculatePositions(true);
  InvalidateBestSize();
  Refresh();
}

// --- events -------------------------------------------------------------------

void wxTabPanel::OnResize(wxSizeEvent& event) {
  CalculatePositions(true);
  Refresh();
  event.Skip();
}

void wxTabPanel::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  const wxColour background = GetBackgroundColour();
  dc.SetBrush(wxBrush(background, wxBRUSHSTYLE_SOLID));
  dc.SetPen(wxPen(background, 1, wxPENSTYLE_SOLID));
  dc.DrawRectangle(wxRect(GetClientSize()));
  if (m_bg_image.IsOk()) DrawBgImage(dc);
  DrawSplitters(dc);
}

void wxTabPanel::DrawBgImage(wxDC& dc) const {
  const wxBitmap image(m_bg_image);
  if (m_sliding) {
    // Two copies side by side: the image scrolls through the strip.
    dc.DrawBitmap(image, m_slide_offset, 0, true);
    dc.DrawBitmap(image, m_slide_offset - image.GetWidth(), 0, true);
  } else {
    dc.DrawBitmap(image, 0, 0, true);
  }
}

// Slot k sits before shown button k, the slot after the run behind it.
void wxTabPanel::DrawSplitters(wxDC& dc) const {
  const size_t slots = std::min(m_shown.size() + 1, m_splitters.size());
  for (size_t k = 0; k < slots; ++k) {
    contract_holds(k < m_splitters.size(), contract::site_t::tab_splitter_slot_beyond);
    const splitter_t& splitter = m_splitters[k];
    if (splitter.image.IsOk()) dc.DrawBitmap(wxBitmap(splitter.image), splitter.x, splitter.y, true);
  }
}

}  // namespace orvix1
