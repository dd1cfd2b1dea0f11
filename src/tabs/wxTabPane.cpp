#include "orvix1/wxTabPane.h"

#include <algorithm>

#include <wx/dcbuffer.h>
#include <wx/toplevel.h>

#include "tabs/tab_drag.h"
#include "tabs/tab_pages.h"

namespace orvix1 {
namespace {

const char k_background_key[] = "clBg";

// What screen readers call the overflow button, whose face shows only a count.
wxString more_tabs_name(int listed) { return wxString::Format("More tabs (%d)", listed); }

}  // namespace

wxIMPLEMENT_DYNAMIC_CLASS(wxTabPane, wxWindow);

wxBEGIN_EVENT_TABLE(wxTabPane, wxWindow)
  EVT_PAINT(wxTabPane::OnPaint)
  EVT_SIZE(wxTabPane::OnResize)
  EVT_CHAR_HOOK(wxTabPane::OnCharHook)
wxEND_EVENT_TABLE()

wxTabPane::wxTabPane()
    : m_pages(std::make_unique<detail::tab_pages_t>()),
      m_drag(std::make_unique<detail::tab_drag_t>(this)) {}

wxTabPane::wxTabPane(wxWindow* parent, wxWindowID id, const wxPoint& position, const wxSize& size,
                     long style)
    : wxTabPane() {
  create(parent, id, position, size, style);
}

// The children go while the page records and the drag they reach are
// still there.
wxTabPane::~wxTabPane() {
  if (m_key_scope != nullptr) m_key_scope->Unbind(wxEVT_CHAR_HOOK, &wxTabPane::OnCharHook, this);
  m_destroying = true;
  if (HasCapture()) ReleaseMouse();
  DestroyChildren();
}

bool wxTabPane::create(wxWindow* parent, wxWindowID id, const wxPoint& position,
                       const wxSize& size, long style) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  if (!wxWindow::Create(parent, id, position, size, style | wxBORDER_NONE, "wxTabPane"))
    return false;
  m_popup_button = new wxPopupButton(this, wxID_ANY);
  m_popup_button->Hide();
  m_popup_button->SetAccessibleName(more_tabs_name(0));
  m_menu = new wxTabButtonsMenu(m_popup_button);
  m_popup_button->SetPopup(m_menu);
  m_menu->before_popup().connect(this, &wxTabPane::OnBeforePopup);
  m_menu->chosen().connect(this, &wxTabPane::OnShowHiddenButton);
  m_menu->delete_requested().connect(this, &wxTabPane::OnDeleteButton);
  // The keys work wherever the focus is in the pane's window, not only on
  // the (unfocusable) strips.
  m_key_scope = wxGetTopLevelParent(this);
  if (m_key_scope == this) m_key_scope = nullptr;
  if (m_key_scope != nullptr) m_key_scope->Bind(wxEVT_CHAR_HOOK, &wxTabPane::OnCharHook, this);
  // While a tab is dragged the pane has the mouse.
  Bind(wxEVT_MOTION, &wxTabPane::OnMouseWhileDragging, this);
  Bind(wxEVT_LEFT_UP, &wxTabPane::OnMouseWhileDragging, this);
  Bind(wxEVT_MOUSE_CAPTURE_LOST, &wxTabPane::OnCaptureLost, this);
  SetUiStyle(new wxTabPanel::default_style_t);
  return true;
}

// --- panels -------------------------------------------------------------------

wxTabPanel* wxTabPane::AddPanel(int index, const wxSizerFlags& flags, long style) {
  if (index != primary_panel && index != secondary_panel) return nullptr;
  slot_t& slot = m_slots[index];
  if (slot.panel != nullptr) return slot.panel;
  const int border = flags.GetBorderInPixels();
  slot.border_left = (flags.GetFlags() & wxLEFT) != 0 ? border : 0;
  slot.border_right = (flags.GetFlags() & wxRIGHT) != 0 ? border : 0;
  slot.panel = new wxTabPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, style);
  if (index == secondary_panel) {
    slot.panel->SetCrossed(true);
    slot.panel->SetEqualWidth(true);
    slot.panel->SetRightAligned(m_secondary_right_aligned);
  }
  ConnectPanel(slot.panel);
  if (m_slots[primary_panel].panel != nullptr && m_slots[secondary_panel].panel != nullptr)
    ConnectToSlideSignal();
  m_panel_added(slot.panel);
  OnChangeSizes();
  return slot.panel;
}

wxTabPanel* wxTabPane::GetPanel(int index) const {
  return index == primary_panel || index == secondary_panel ? m_slots[index].panel : nullptr;
}

void wxTabPane::ConnectPanel(wxTabPanel* panel) {
  panel->selection_changed().connect(this, &wxTabPane::OnButtonPressed);
  panel->button_added().connect(this, &wxTabPane::OnPanelChanged);
  panel->button_removed().connect(this, &wxTabPane::OnPanelChanged);
  panel->resized().connect(this, &wxTabPane::OnPanelResized);
  panel->button_removing().connect(this, &wxTabPane::OnTabRemoving);
  m_drag->watch(panel);
  if (m_max_tab_width > 0) panel->SetMaxButtonWidth(m_max_tab_width);
  SetPanelDefaultUiSettings(panel);
}

void wxTabPane::ConnectToSlideSignal() {
  m_slots[primary_panel].panel->slid().connect(this, &wxTabPane::OnPanelSlid);
  m_slots[secondary_panel].panel->slid().connect(this, &wxTabPane::OnPanelSlid);
}

bool wxTabPane::RemovePanel(int index) { return InternalRemovePanel(GetPanel(index)); }

bool wxTabPane::RemovePanel(wxTabPanel* panel) { return InternalRemovePanel(panel); }

bool wxTabPane::InternalRemovePanel(wxTabPanel* panel) {
  if (panel == nullptr) return false;
  slot_t* slot = nullptr;
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel == panel) slot = &m_slots[index];
  if (slot == nullptr) return false;
  *slot = slot_t();
  m_entries.clear();
  m_drag->forget(panel);
  DropPanelPages(panel);
  panel->Destroy();
  UpdateSelectedButton();
  OnChangeSizes();
  return true;
}

void wxTabPane::SetSecondaryPanelRightAligned(bool right_aligned) {
  m_secondary_right_aligned = right_aligned;
  if (wxTabPanel* secondary = GetPanel(secondary_panel)) secondary->SetRightAligned(right_aligned);
  OnChangeSizes();
}

// --- selection ----------------------------------------------------------------

int wxTabPane::GetIndexOfSelectedButton(wxTabPanel* panel) const {
  if (panel == nullptr) return -1;
  return panel->TranslateIndex(panel->GetCurrentSelection(), wxTabPanel::list_all,
                               wxTabPanel::list_shown);
}

bool wxTabPane::InternalSelectNext(wxTabPanel* panel, wxTabPanel* other) {
  if (panel == nullptr) return false;
  const int k = GetIndexOfSelectedButton(panel);
  if (k < 0 || k >= panel->GetShownCount()) return false;
  if (k + 1 < panel->GetShownCount()) {
    panel->SetCurrentSelection(panel->GetShownButton(k + 1)->GetId());
  } else if (other != nullptr && other->GetShownCount() > 0) {
    other->SetCurrentSelection(other->GetShownButton(0)->GetId());
  } else {
    panel->SetCurrentSelection(panel->GetShownButton(0)->GetId());
  }
  return true;
}

bool wxTabPane::InternalSelectPrev(wxTabPanel* panel, wxTabPanel* other) {
  if (panel == nullptr) return false;
  const int k = GetIndexOfSelectedButton(panel);
  if (k < 0 || k >= panel->GetShownCount()) return false;
  if (k > 0) {
    panel->SetCurrentSelection(panel->GetShownButton(k - 1)->GetId());
  } else if (other != nullptr && other->GetShownCount() > 0) {
    other->SetCurrentSelection(other->GetShownButton(other->GetShownCount() - 1)->GetId());
  } else {
    panel->SetCurrentSelection(panel->GetShownButton(panel->GetShownCount() - 1)->GetId());
  }
  return true;
}

bool wxTabPane::SelectNext() {
  if (m_last_pressed == nullptr) return false;
  wxTabPanel* primary = GetPanel(primary_panel);
  wxTabPanel* secondary = GetPanel(secondary_panel);
  return InternalSelectNext(primary, secondary) || InternalSelectNext(secondary, primary);
}

bool wxTabPane::SelectPrev() {
  if (m_last_pressed == nullptr) return false;
  wxTabPanel* primary = GetPanel(primary_panel);
  wxTabPanel* secondary = GetPanel(secondary_panel);
  return InternalSelectPrev(primary, secondary) || InternalSelectPrev(secondary, primary);
}

// The keys belong to the innermost pane around the focus: a pane handles
// them when the focus is among its siblings' windows, or nowhere in
// particular.
bool wxTabPane::IsKeyScope() const {
  const wxWindow* focus = wxWindow::FindFocus();
  if (focus == nullptr || focus == m_key_scope || GetParent() == nullptr) return true;
  for (const wxWindow* window = focus; window != nullptr && window != m_key_scope;
       window = window->GetParent())
    if (window == GetParent()) return true;
  return false;
}

bool wxTabPane::HandleNavigationKey(const wxKeyEvent& event) {
  if (!event.ControlDown() || event.AltDown() || !IsKeyScope()) return false;
  const int key = event.GetKeyCode();
  const bool page_key = key == WXK_PAGEUP || key == WXK_NUMPAD_PAGEUP || key == WXK_PAGEDOWN ||
                        key == WXK_NUMPAD_PAGEDOWN;
  // With Shift the page keys move the selected tab instead, as in GTK.
  if (page_key && event.ShiftDown() && AreTabMovesEnabled())
    return MoveSelectedTab(key == WXK_PAGEUP || key == WXK_NUMPAD_PAGEUP ? -1 : 1);
  switch (key) {
    case WXK_TAB:
      return event.ShiftDown() ? SelectPrev() : SelectNext();
    case WXK_PAGEDOWN:
    case WXK_NUMPAD_PAGEDOWN:
      return SelectNext();
    case WXK_PAGEUP:
    case WXK_NUMPAD_PAGEUP:
      return SelectPrev();
    default:
      return false;
  }
}

void wxTabPane::OnCharHook(wxKeyEvent& event) {
  if (IsDragging() && event.GetKeyCode() == WXK_ESCAPE) {
    CancelDrag();
    return;
  }
  if (!HandleNavigationKey(event)) event.Skip();
}

// One selection over both strips: selecting in one clears the other,
// unless a strip is a set of toggles.
void wxTabPane::OnButtonPressed(wxTabPanel* panel, int index) {
  wxTabButton* button = panel->GetButton(index);
  if (button != nullptr) m_last_pressed = button;
  wxTabPanel* primary = GetPanel(primary_panel);
  wxTabPanel* secondary = GetPanel(secondary_panel);
  wxTabPanel* other = panel == primary ? secondary : primary;
  const bool toggles = (primary != nullptr && primary->GetToggleMode()) ||
                       (secondary != nullptr && secondary->GetToggleMode());
  if (button != nullptr && other != nullptr && !toggles) other->SetCurrentSelection(-1);
  UpdateSelectedButton();
  ShowSelectedPage();
  m_selection_changed(panel, index);
}

bool wxTabPane::OwnsButton(const wxTabButton* button) const {
  for (int index : {primary_panel, secondary_panel}) {
    const wxTabPanel* panel = m_slots[index].panel;
    if (panel == nullptr) continue;
    for (int k = 0; k < panel->GetButtonsCount(); ++k)
      if (panel->GetButton(k) == button) return true;
  }
  return false;
}

// The last pressed button must still be ours; otherwise the selection of
// the primary strip, else of the secondary, stands in for it.
void wxTabPane::UpdateSelectedButton() {
  if (m_last_pressed != nullptr && OwnsButton(m_last_pressed)) return;
  m_last_pressed = nullptr;
  for (int index : {primary_panel, secondary_panel}) {
    const wxTabPanel* panel = m_slots[index].panel;
    if (panel != nullptr && panel->GetCurrentSelection() >= 0) {
      m_last_pressed = panel->GetButton(panel->GetCurrentSelection());
      return;
    }
  }
}

// --- overflow menu ------------------------------------------------------------

void wxTabPane::SetPopupButtonVisible(bool visible) {
  m_popup_button_visible = visible;
  OnChangeSizes();
}

void wxTabPane::OnBeforePopup(IPopup*) {
  m_menu->ClearButtons();
  m_entries.clear();
  wxTabPanel* primary = GetPanel(primary_panel);
  wxTabPanel* secondary = GetPanel(secondary_panel);
  if (primary != nullptr)
    for (wxTabButton* button : primary->GetHiddenButtons()) {
      m_menu->AddTabButton(button);
      m_entries.emplace_back(primary, button);
    }
  const bool primary_rows = !m_entries.empty();
  if (secondary != nullptr && secondary->GetHiddenCount() > 0) {
    if (primary_rows) m_menu->AppendSeparator();
    for (wxTabButton* button : secondary->GetHiddenButtons()) {
      m_menu->AddTabButton(button);
      m_entries.emplace_back(secondary, button);
    }
  }
}

void wxTabPane::OnShowHiddenButton(int index) {
  if (index < 0 || index >= static_cast<int>(m_entries.size())) return;
  wxTabPanel* panel = m_entries[index].first;
  const auto& hidden = panel->GetHiddenButtons();
  const auto found = std::find(hidden.begin(), hidden.end(), m_entries[index].second);
  if (found == hidden.end()) return;
  panel->ShowAndSelectHiddenButton(static_cast<int>(found - hidden.begin()));
  UpdateButtonHeights();
  UpdateSelectedButton();
  OnChangeSizes();
}

// Exactly what the tab's own close cross does: the strip's veto, then the
// removal. The veto may ask the user in a modal dialog, so the menu first
// lets go of the pointer; it opens again on what is left.
void wxTabPane::OnDeleteButton(int index) {
  if (index >= 0 && index < static_cast<int>(m_entries.size())) {
    wxTabButton* button = m_entries[index].second;
    m_entries.clear();
    const bool was_open = m_menu->IsPoppedUp();
    m_menu->ClosePopup();
    button->delete_requested()(button->GetId());
    if (was_open) m_popup_button->OpenPopup();
  }
  UpdateButtonState();
}

void wxTabPane::UpdateButtonState() {
  wxTabPanel* primary = GetPanel(primary_panel);
  wxTabPanel* secondary = GetPanel(secondary_panel);
  const int buttons = (primary != nullptr ? primary->GetButtonsCount() : 0) +
                      (secondary != nullptr ? secondary->GetButtonsCount() : 0);
  m_popup_button->Show(m_popup_button_visible && buttons > 0);
  if (primary != nullptr && primary->GetHiddenCount() > 0)
    m_popup_button->SetActive(true, primary->GetHiddenCount());
  else if (secondary != nullptr && secondary->GetHiddenCount() > 0)
    m_popup_button->SetActive(true, secondary->GetHiddenCount());
  else
    m_popup_button->SetActive(false);
  // The drawn count is one strip's; the menu lists the hidden tabs of both.
  const int listed = (primary != nullptr ? primary->GetHiddenCount() : 0) +
                     (secondary != nullptr ? secondary->GetHiddenCount() : 0);
  m_popup_button->SetAccessibleName(more_tabs_name(listed));
}

// --- layout -------------------------------------------------------------------

// Every button of both strips as high as the highest.
void wxTabPane::UpdateButtonHeights() {
  int height = -1;
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel != nullptr)
      height = std::max(height, m_slots[index].panel->GetTallestButtonHeight());
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel != nullptr) m_slots[index].panel->SetDesiredButtonHeight(height);
}

int wxTabPane::PanelsHeight() const {
  int height = 0;
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel != nullptr)
      height = std::max(height, m_slots[index].panel->GetOptimalSize().y);
  return height;
}

// Laid out first; when space is short the secondary keeps up to half of it.
// An equal-width strip keeps the whole width it is given, so that its next
// layout counts the same room. Returns where the secondary's slot begins.
int wxTabPane::PlacePrimaryPanel(int available, int height) {
  wxTabPanel* primary = GetPanel(primary_panel);
  if (primary == nullptr) return 0;
  const wxTabPanel* secondary = GetPanel(secondary_panel);
  const slot_t& slot = m_slots[primary_panel];
  int limit = available - slot.border_left - slot.border_right;
  if (secondary != nullptr) limit -= std::min(secondary->GetOptimalSize().x, available / 2);
  limit = std::max(limit, 0);
  const wxSize used = primary->CalculatePositions(wxSize(limit, height), false);
  const int width = primary->GetEqualWidth() ? limit : std::min(used.x, limit);
  primary->SetSize(slot.border_left, 0, width, height);
  primary->CalculatePositions(wxSize(width, height), true);
  return slot.border_left + width + slot.border_right;
}

// The rest of the row, its buttons gathered at the right when it is
// right-aligned.
void wxTabPane::PlaceSecondaryPanel(int available, int x, int height) {
  wxTabPanel* secondary = GetPanel(secondary_panel);
  if (secondary == nullptr) return;
  const slot_t& slot = m_slots[secondary_panel];
  const int width = std::max(available - x - slot.border_left - slot.border_right, 0);
  secondary->SetSize(x + slot.border_left, 0, width, height);
  secondary->CalculatePositions(wxSize(width, height), true);
}

// At the right end, centred in the row.
void wxTabPane::PlacePopupButton(const wxSize& popup, int height) {
  m_popup_button->SetSize(GetClientSize().x - popup.x, std::max(height - popup.y, 0) / 2, popup.x,
                          std::min(popup.y, std::max(height, popup.y)));
}

void wxTabPane::OnChangeSizes() {
  // A frozen pane lays out once, when it thaws.
  if (m_in_change_sizes || IsFrozen()) return;
  m_in_change_sizes = true;
  UpdateButtonHeights();
  int buttons = 0;
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel != nullptr) buttons += m_slots[index].panel->GetButtonsCount();
  const bool popup_shown = m_popup_button_visible && buttons > 0;
  const wxSize popup = popup_shown ? m_popup_button->GetBestSize() : wxSize(0, 0);
  const int available = std::max(GetClientSize().x - popup.x, 0);
  const int height = PanelsHeight();
  PlaceSecondaryPanel(available, PlacePrimaryPanel(available, height), height);
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel != nullptr) AlignPanelBackground(m_slots[index].panel);
  if (popup_shown) PlacePopupButton(popup, height);
  PlacePageArea(height);
  UpdateButtonState();
  SetMinSize(wxSize(-1, height));
  InvalidateBestSize();
  m_in_change_sizes = false;
  Refresh();
  m_layout_changed();
}

void wxTabPane::OnPanelChanged(int) {
  UpdateSelectedButton();
  OnChangeSizes();
}

void wxTabPane::OnPanelResized() { OnChangeSizes(); }

wxSize wxTabPane::DoGetBestSize() const {
  wxSize size(0, 0);
  for (int index : {primary_panel, secondary_panel}) {
    wxTabPanel* panel = m_slots[index].panel;
    if (panel == nullptr) continue;
    const wxSize optimal = panel->GetOptimalSize();
    size.x += optimal.x + m_slots[index].border_left + m_slots[index].border_right;
    size.y = std::max(size.y, optimal.y);
  }
  if (m_popup_button->IsShown()) size.x += m_popup_button->GetBestSize().x;
  if (m_page_area != nullptr) {
    const wxSize pages = m_page_area->GetBestSize();
    size.x = std::max(size.x, pages.x);
    size.y += pages.y;
  }
  return size;
}

void wxTabPane::DoThaw() {
  wxWindow::DoThaw();
  OnChangeSizes();
}

void wxTabPane::OnResize(wxSizeEvent& event) {
  OnChangeSizes();
  event.Skip();
}

// --- look ---------------------------------------------------------------------

void wxTabPane::ApplyBackground(bool to_panels) {
  m_bg_to_panels = to_panels;
  for (int index : {primary_panel, secondary_panel}) {
    wxTabPanel* panel = m_slots[index].panel;
    if (panel == nullptr) continue;
    panel->SetBgImage(to_panels ? m_bg_image : wxImage(), false);
    AlignPanelBackground(panel);
  }
  Refresh();
}

// A strip shows the part of the common image that lies behind it.
void wxTabPane::AlignPanelBackground(wxTabPanel* panel) {
  if (!panel->GetBgImage().IsOk()) return;
  const int x = panel->GetPosition().x;
  panel->OnHorzImageSlide(x != 0, -x);
}

void wxTabPane::OnPanelSlid(wxTabPanel* panel, int sliding, int offset) {
  for (wxTabPanel* other : {GetPanel(primary_panel), GetPanel(secondary_panel)})
    if (other != nullptr && other != panel)
      other->OnHorzImageSlide(sliding != 0, offset - (other->GetPosition().x - panel->GetPosition().x));
}

void wxTabPane::SetBgImage(const wxImage& image, bool to_panels) {
  m_bg_image = image;
  ApplyBackground(to_panels);
}

void wxTabPane::SetBgBitmap(const wxBitmap& bitmap, bool to_panels) {
  m_bg_bitmap = bitmap;
  SetBgImage(bitmap.IsOk() ? bitmap.ConvertToImage() : wxImage(), to_panels);
}

void wxTabPane::SetBgStaticPicture(const static_picture_t& picture, bool to_panels) {
  m_bg_picture = picture;
  SetBgImage(picture.GetImage(), to_panels);
}

bool wxTabPane::SetBackgroundColour(const wxColour& colour) {
  wxWindow::SetBackgroundColour(colour);
  m_popup_button->GetUiStyle()->lock_color("clPopupBg", colour);
  m_popup_button->Refresh();
  for (int index : {primary_panel, secondary_panel})
    if (m_slots[index].panel != nullptr) m_slots[index].panel->SetBackgroundColour(colour);
  Refresh();
  return true;
}

void wxTabPane::SetPanelImage(wxTabPanel* panel, const wxBitmap& bitmap) {
  if (panel != nullptr) panel->SetBgImage(bitmap.IsOk() ? bitmap.ConvertToImage() : wxImage());
}

void wxTabPane::SetPanelDefaultUiSettings(wxTabPanel* panel) {
  if (panel == nullptr) return;
  panel->SetBackgroundColour(GetBackgroundColour());
  if (m_new_panels_image.IsOk())
    panel->SetBgImage(m_new_panels_image, false);
  else if (m_bg_to_panels && m_bg_image.IsOk())
    panel->SetBgImage(m_bg_image, false);
}

void wxTabPane::SetDefaultUiSettings() {
  const wxColour background = GetUiStyle()->get_color(k_background_key);
  if (background.IsOk()) SetBackgroundColour(background);
}

void wxTabPane::on_style_updated() {
  if (!GetUiStyle()) return;
  SetDefaultUiSettings();
}

void wxTabPane::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  dc.SetBackground(wxBrush(GetBackgroundColour()));
  dc.Clear();
  if (m_bg_image.IsOk()) dc.DrawBitmap(wxBitmap(m_bg_image), 0, 0, true);
}

}  // namespace orvix1
