#include "orvix1/wxAdvancedSplitter.h"

#include <algorithm>
#include <iomanip>
#include <locale>
#include <sstream>

#include <gtk/gtk.h>
#include <wx/dcbuffer.h>
#include <wx/renderer.h>

#include "core/log.h"
#include "orvix1/dpi.h"
#include "splitters/collapse_motion.h"
#include "splitters/sash_focus.h"
#include "splitters/splitter_accessible.h"

namespace orvix1 {
namespace {

log4cplus::Logger splitter_logger() { return log::get_logger("orvix.splitters"); }

// The desktop's rule for drawing the focus: once the keyboard has been used
// in the window, not for a window that took the focus from a click.
bool focus_visible(wxWindow* window) {
  GtkWidget* top = gtk_widget_get_toplevel(window->GetHandle());
  return GTK_IS_WINDOW(top) && gtk_window_get_focus_visible(GTK_WINDOW(top));
}

}  // namespace

wxIMPLEMENT_DYNAMIC_CLASS(wxAdvancedSplitter, wxWindow);

wxBEGIN_EVENT_TABLE(wxAdvancedSplitter, wxWindow)
  EVT_SIZE(wxAdvancedSplitter::OnSize)
  EVT_MOUSE_EVENTS(wxAdvancedSplitter::OnMouseEvent)
  EVT_PAINT(wxAdvancedSplitter::OnPaint)
  EVT_TIMER(wxID_ANY, wxAdvancedSplitter::OnTimer)
  EVT_SYS_COLOUR_CHANGED(wxAdvancedSplitter::OnSysColourChanged)
  EVT_MOUSE_CAPTURE_LOST(wxAdvancedSplitter::OnCaptureLost)
  EVT_KEY_DOWN(wxAdvancedSplitter::OnKeyDown)
  EVT_SET_FOCUS(wxAdvancedSplitter::OnFocusChanged)
  EVT_KILL_FOCUS(wxAdvancedSplitter::OnFocusChanged)
wxEND_EVENT_TABLE()

wxAdvancedSplitter::wxAdvancedSplitter()
    : m_motion(new detail::collapse_motion_t(DefaultAccelerationFactor)) {}

wxAdvancedSplitter::wxAdvancedSplitter(wxWindow* parent, wxWindowID id, const wxPoint& pos,
                                       const wxSize& size, long style, const wxString& name)
    : wxAdvancedSplitter() {
  Create(parent, id, pos, size, style, name);
}

wxAdvancedSplitter::~wxAdvancedSplitter() {
  m_accessible.reset();
  m_timer.Stop();
  Unlink();
  if (m_element) m_element->SashPositionChanged().disconnect(this, &wxAdvancedSplitter::OnSplitterSashPosChanged);
}

bool wxAdvancedSplitter::Create(wxWindow* parent, wxWindowID id, const wxPoint& pos,
                                const wxSize& size, long style, const wxString& name) {
  // The paint handler covers the whole client area.
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  if (!wxWindow::Create(parent, id, pos, size, style | wxFULL_REPAINT_ON_RESIZE, name)) return false;
  m_element = element_ptr_t(new wxSplitterElement(
      this, true, calculate_DPI_scaled_length(wxSplitterElement::DefaultSashSize),
      calculate_DPI_scaled_length(wxSplitterElement::DefaultHitTolerance)));
  m_element->SashPositionChanged().connect(this, &wxAdvancedSplitter::OnSplitterSashPosChanged);
  m_timer.SetOwner(this);
  m_last_extent = Extent();
  UpdateButtonDirection();
  m_accessible = std::make_unique<detail::splitter_accessible_t>(*this);
  detail::order_sash_focus(this);
  return true;
}

// --- panes --------------------------------------------------------------------

bool wxAdvancedSplitter::SplitVertically(wxWindow* panel1, wxWindow* panel2) {
  return Split(panel1, panel2, false);
}

bool wxAdvancedSplitter::SplitHorizontally(wxWindow* panel1, wxWindow* panel2) {
  return Split(panel1, panel2, true);
}

bool wxAdvancedSplitter::Split(wxWindow* panel1, wxWindow* panel2, bool horizontal) {
  if (panel1 == nullptr || panel2 == nullptr || !m_element) {
    ORVIX_LOG_ERROR(splitter_logger(), "a splitter needs two panes and a sash; nothing was split");
    return false;
  }
  AdoptPanel(panel1);
  AdoptPanel(panel2);
  m_panel1 = panel1;
  m_panel2 = panel2;
  m_horizontal = horizontal;
  m_element->SetVertical(!horizontal);
  m_timer.Stop();
  m_motion->settle(false);
  m_panel1->Show();
  m_panel2->Show();
  m_last_extent = Extent();
  UpdateButtonDirection();
  m_element->SetSashPosition(OpenPosition());
  CalcLayout();
  Refresh();
  return true;
}

void wxAdvancedSplitter::AdoptPanel(wxWindow* panel) {
  if (panel != nullptr && panel->GetParent() != this) panel->Reparent(this);
}

void wxAdvancedSplitter::SetPanel1(wxWindow* panel) {
  AdoptPanel(panel);
  m_panel1 = panel;
  CalcLayout();
}

void wxAdvancedSplitter::SetPanel2(wxWindow* panel) {
  AdoptPanel(panel);
  m_panel2 = panel;
  CalcLayout();
}

// A pane destroyed by its owner is forgotten; the other stays where it is.
void wxAdvancedSplitter::RemoveChild(wxWindowBase* child) {
  if (child == m_panel1) m_panel1 = nullptr;
  if (child == m_panel2) m_panel2 = nullptr;
  wxWindow::RemoveChild(child);
}

wxWindow* wxAdvancedSplitter::ClosingPanel() const {
  return m_pane_to_close == ptcSecond ? m_panel2 : m_panel1;
}

// --- geometry -----------------------------------------------------------------

int wxAdvancedSplitter::Extent() const {
  const wxSize client = GetClientSize();
  return m_horizontal ? client.y : client.x;
}

int wxAdvancedSplitter::OpenPosition() const {
  return static_cast<int>(m_element->GetMaxSashPosition() * m_relative_position);
}

int wxAdvancedSplitter::ClosedPosition() const {
  return m_pane_to_close == ptcSecond ? m_element->GetMaxSashPosition()
                                      : m_element->GetSashSize() / 2;
}

int wxAdvancedSplitter::PanelExtentAt(int position) const {
  const int size = m_element->GetSashSize();
  const int start = std::max(0, position - size / 2);
  return m_pane_to_close == ptcSecond ? std::max(0, Extent() - start - size) : start;
}

int wxAdvancedSplitter::MinimumPanelExtent() const {
  return calculate_DPI_scaled_size(AutocloseExtent, 0).x;
}

bool wxAdvancedSplitter::ClosingOrClosed() const { return m_motion->closing_or_closed(); }

bool wxAdvancedSplitter::IsSecondPaneClosed() const { return m_motion->pane_closed(); }

// Stored before the sash moves: linked splitters read it while the move is
// being reported.
void wxAdvancedSplitter::MoveSashKeepingRelative(int position) {
  const int extent = Extent();
  position = m_element->ClampSashPosition(position);
  if (extent > 0) m_relative_position = static_cast<float>(position) / extent;
  m_element->SetSashPosition(position);
}

void wxAdvancedSplitter::CalcLayout() {
  if (m_panel1 == nullptr || m_panel2 == nullptr || !m_element) return;
  PlacePanels(m_element->GetSashRect());
}

// The closing pane keeps the extent it had when it started to close (or
// will have when open): it slides behind the edge instead of squeezing its
// content on every tick.
void wxAdvancedSplitter::PlacePanels(const wxRect& sash) {
  const int extent = Extent();
  const int cross = m_horizontal ? GetClientSize().x : GetClientSize().y;
  int first_start = 0;
  int first_extent = m_horizontal ? sash.y : sash.x;
  const int second_start = m_horizontal ? sash.GetBottom() + 1 : sash.GetRight() + 1;
  int second_extent = std::max(0, extent - second_start);
  if (ClosingOrClosed() || m_timer.IsRunning()) {
    if (m_pane_to_close == ptcSecond) {
      second_extent = std::max(second_extent, m_closing_panel_extent);
    } else {
      first_start = first_extent - std::max(first_extent, m_closing_panel_extent);
      first_extent = std::max(first_extent, m_closing_panel_extent);
    }
  }
  const auto place = [this, cross](wxWindow* panel, int start, int length) {
    if (m_horizontal)
      panel->SetSize(0, start, cross, length);
    else
      panel->SetSize(start, 0, length, cross);
  };
  place(m_panel1, first_start, first_extent);
  place(m_panel2, second_start, second_extent);
}

bool wxAdvancedSplitter::Layout() {
  CalcLayout();
  return true;
}

void wxAdvancedSplitter::CenterSash() {
  if (!m_element || ClosingOrClosed()) return;
  MoveSashKeepingRelative(Extent() / 2);
  CalcLayout();
}

void wxAdvancedSplitter::SetRelativeSashPosition(float relative) {
  if (!m_element || ClosingOrClosed()) return;
  m_relative_position = std::min(1.0f, std::max(0.0f, relative));
  m_element->SetSashPosition(OpenPosition());
}

void wxAdvancedSplitter::OnSize(wxSizeEvent&) { ApplySize(); }

void wxAdvancedSplitter::ApplySize() {
  if (!m_element) return;
  const int extent = Extent();
  const int position = m_element->GetSashPosition();
  if (m_timer.IsRunning()) {
    m_motion->retarget(ClosingOrClosed() ? ClosedPosition() : OpenPosition());
  } else if (m_motion->pane_closed()) {
    m_element->SetSashPosition(ClosedPosition());
  } else if (m_resizing_mode == rmProportional) {
    m_element->SetSashPosition(OpenPosition());
  } else {
    const int growth = m_resizing_mode == rmKeepSecond ? extent - m_last_extent : 0;
    MoveSashKeepingRelative(position + growth);
  }
  m_last_extent = extent;
  CalcLayout();
  Refresh();
}

// --- collapsing ---------------------------------------------------------------

void wxAdvancedSplitter::ChangePaneState(bool open) {
  const bool close = !open;
  if (!m_element || close == ClosingOrClosed()) return;
  // A pane reopened next to the edge would look as if nothing happened.
  if (open && PanelExtentAt(OpenPosition()) < MinimumPanelExtent()) m_relative_position = 0.5f;
  const int target = close ? ClosedPosition() : OpenPosition();
  m_closing_panel_extent = PanelExtentAt(close ? m_element->GetSashPosition() : target);
  if (open && ClosingPanel() != nullptr) ClosingPanel()->Show();
  if (m_animation_enabled && IsShownOnScreen()) {
    StartAnimation(close, target);
  } else {
    // Whoever hears of the jump sees a running motion heading the new way.
    m_motion->turn(close);
    m_element->SetSashPosition(target);
    m_motion->settle(close);
    FinishAnimation();
  }
  UpdateButtonDirection();
  Refresh();
}

void wxAdvancedSplitter::StartAnimation(bool close, int target) {
  if (m_motion->start(close, m_element->GetSashPosition(), target))
    m_timer.Start(AnimationInterval);
  else
    FinishAnimation();
}

void wxAdvancedSplitter::OnTimer(wxTimerEvent&) {
  if (!m_element || !m_motion->moving()) return;
  m_element->SetSashPosition(m_motion->next());
  if (m_motion->arrived()) FinishAnimation();
}

void wxAdvancedSplitter::FinishAnimation() {
  m_timer.Stop();
  m_motion->finish();
  wxWindow* closing = ClosingPanel();
  // A closed pane is hidden so that keyboard navigation skips it.
  if (closing != nullptr) closing->Show(!m_motion->pane_closed());
  UpdateButtonDirection();
  CalcLayout();
  Refresh();
  PaneSettled();
}

void wxAdvancedSplitter::PaneSettled() {
  if (m_accessible) m_accessible->pane_settled();
}

void wxAdvancedSplitter::SetAccelerationFactor(float factor) {
  if (!(factor > 1.0f)) {
    ORVIX_LOG_ERROR(splitter_logger(), "splitter acceleration factor " << factor
                                           << " ignored: it must be above 1");
    return;
  }
  m_motion->set_acceleration(factor);
}

float wxAdvancedSplitter::GetAccelerationFactor() const { return m_motion->acceleration(); }

void wxAdvancedSplitter::EnableCloseButton(bool enable) {
  if (!m_element) return;
  m_element->SetButtonState(enable ? wxSplitterElement::vsNormal : wxSplitterElement::vsDisabled);
  Refresh();
}

void wxAdvancedSplitter::ShowCloseButton(bool show) {
  if (!m_element) return;
  m_element->ShowButton(show);
  Refresh();
}

void wxAdvancedSplitter::SetPaneToClose(PaneToClose pane) {
  m_pane_to_close = pane;
  UpdateButtonDirection();
  Refresh();
}

void wxAdvancedSplitter::UpdateButtonDirection() {
  if (!m_element) return;
  const bool toward_end = (m_pane_to_close == ptcSecond) != ClosingOrClosed();
  if (m_horizontal)
    m_element->SetButtonDirection(toward_end ? wxSplitterElement::bdDown : wxSplitterElement::bdUp);
  else
    m_element->SetButtonDirection(toward_end ? wxSplitterElement::bdRight
                                             : wxSplitterElement::bdLeft);
}

// --- mouse --------------------------------------------------------------------

void wxAdvancedSplitter::OnMouseEvent(wxMouseEvent& event) {
  event.Skip();
  if (!m_element) return;
  const wxPoint point = event.GetPosition();
  if (event.LeftDClick())
    OnDoubleClick(point);
  else if (event.LeftDown())
    OnLeftDown(point);
  else if (event.LeftUp())
    OnLeftUp(point);
  else if (event.Dragging() && m_dragging)
    DoSashMoving(point);
  else if (event.Leaving() && !m_dragging)
    OnLeaveSash();
  else if (!m_dragging && (event.Moving() || event.Entering()))
    UpdateHover(point);
}

bool wxAdvancedSplitter::OnSash(const wxPoint& point) const {
  if (m_element->GetSashSize() == 0) return false;
  return m_element->SashHitTest(point.x, point.y) || m_element->ButtonHitTest(point.x, point.y);
}

bool wxAdvancedSplitter::ButtonTakesClicks() const {
  return m_element->GetButtonState() != wxSplitterElement::vsDisabled;
}

void wxAdvancedSplitter::OnLeftDown(const wxPoint& point) {
  m_down_toggled = false;
  if (!OnSash(point)) return;
  const bool on_button = m_element->ButtonHitTest(point.x, point.y);
  if (ButtonTakesClicks() && (m_motion->pane_closed() || on_button)) {
    TogglePane();
    m_down_toggled = true;
  }
  if (on_button && ButtonTakesClicks()) m_element->SetButtonState(wxSplitterElement::vsPressed);
  m_element->SetSashState(wxSplitterElement::vsPressed);
  m_dragging = true;
  m_last_point = point;
  m_relative_before_drag = m_relative_position;
  if (!HasCapture()) CaptureMouse();
  Refresh();
}

// A double-click toggles the pane once: not again when its first click
// already did.
void wxAdvancedSplitter::OnDoubleClick(const wxPoint& point) {
  if (OnSash(point) && !m_down_toggled && ButtonTakesClicks()) TogglePane();
  m_down_toggled = false;
}

void wxAdvancedSplitter::TogglePane() {
  ChangePaneState(ClosingOrClosed());
  m_modified_by_user = true;
}

void wxAdvancedSplitter::SetPaneOpenByUser(bool open) {
  if (m_element && ButtonTakesClicks() && open == ClosingOrClosed()) TogglePane();
}

void wxAdvancedSplitter::DoSashMoving(const wxPoint& point) {
  const wxPoint movement = point - m_last_point;
  m_last_point = point;
  const int step = m_horizontal ? movement.y : movement.x;
  if (step != 0) MoveSashByUser(m_element->GetSashPosition() + step);
}

bool wxAdvancedSplitter::MoveSashByUser(int position) {
  // The animation owns the sash until it ends.
  if (!m_element || m_timer.IsRunning()) return false;
  if (m_motion->pane_closed()) {  // dragged out by hand
    m_motion->settle(false);
    if (ClosingPanel() != nullptr) ClosingPanel()->Show();
    UpdateButtonDirection();
    PaneSettled();
  }
  MoveSashKeepingRelative(position);
  m_modified_by_user = true;
  return true;
}

void wxAdvancedSplitter::OnLeftUp(const wxPoint& point) {
  if (!m_dragging) return;
  EndDragging();
  if (m_autoclosing && !ClosingOrClosed() &&
      PanelExtentAt(m_element->GetSashPosition()) < MinimumPanelExtent()) {
    // Reopening brings back the size it had before this drag.
    m_relative_position = m_relative_before_drag;
    ChangePaneState(false);
  }
  UpdateHover(point);
}

void wxAdvancedSplitter::EndDragging() {
  m_dragging = false;
  if (HasCapture()) ReleaseMouse();
  if (m_element->GetButtonState() == wxSplitterElement::vsPressed)
    m_element->SetButtonState(wxSplitterElement::vsNormal);
  m_element->SetSashState(m_hovering ? wxSplitterElement::vsHighlighted : wxSplitterElement::vsNormal);
  Refresh();
}

void wxAdvancedSplitter::OnCaptureLost(wxMouseCaptureLostEvent&) { EndDragging(); }

void wxAdvancedSplitter::UpdateHover(const wxPoint& point) {
  const bool over = OnSash(point);
  if (over && !m_hovering)
    OnEnterSash();
  else if (!over && m_hovering)
    OnLeaveSash();
  if (!over) return;
  const bool on_button = m_element->ButtonHitTest(point.x, point.y) && ButtonTakesClicks();
  const wxSplitterElement::VisualState button =
      on_button ? wxSplitterElement::vsHighlighted : wxSplitterElement::vsNormal;
  if (ButtonTakesClicks() && m_element->GetButtonState() != button) {
    m_element->SetButtonState(button);
    Refresh();
  }
  SetCursor(wxCursor(on_button ? wxCURSOR_HAND : m_horizontal ? wxCURSOR_SIZENS : wxCURSOR_SIZEWE));
}

void wxAdvancedSplitter::OnEnterSash() {
  m_hovering = true;
  m_element->SetSashState(wxSplitterElement::vsHighlighted);
  Refresh();
}

void wxAdvancedSplitter::OnLeaveSash() {
  m_hovering = false;
  m_element->SetSashState(wxSplitterElement::vsNormal);
  if (ButtonTakesClicks()) m_element->SetButtonState(wxSplitterElement::vsNormal);
  SetCursor(wxCursor(wxCURSOR_ARROW));
  Refresh();
}

// --- keyboard -----------------------------------------------------------------

void wxAdvancedSplitter::OnKeyDown(wxKeyEvent& event) {
  if (FindFocus() != this || !HandleSashKey(event.GetKeyCode())) event.Skip();
}

// The arrows across the axis are left to the host: they would move nothing.
bool wxAdvancedSplitter::HandleSashKey(int key_code) {
  if (!m_element) return false;
  const int first = m_element->ClampSashPosition(0);
  const int last = m_element->GetMaxSashPosition();
  const int step = std::max(1, (last - first + 50) / 100);
  const int position = m_element->GetSashPosition();
  switch (key_code) {
    case WXK_LEFT:
    case WXK_UP:
      if ((key_code == WXK_UP) != m_horizontal) return false;
      MoveSashByUser(position - step);
      return true;
    case WXK_RIGHT:
    case WXK_DOWN:
      if ((key_code == WXK_DOWN) != m_horizontal) return false;
      MoveSashByUser(position + step);
      return true;
    case WXK_HOME:
      MoveSashByUser(first);
      return true;
    case WXK_END:
      MoveSashByUser(last);
      return true;
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
    case WXK_SPACE:
      if (ButtonTakesClicks()) TogglePane();
      return true;
    default:
      return false;
  }
}

void wxAdvancedSplitter::OnFocusChanged(wxFocusEvent& event) {
  event.Skip();
  Refresh();
  if (m_accessible) m_accessible->focus_changed(event.GetEventType() == wxEVT_SET_FOCUS);
}

// --- painting and colours -----------------------------------------------------

void wxAdvancedSplitter::OnPaint(wxPaintEvent&) {
  wxAutoBufferedPaintDC dc(this);
  // The palette's, whatever an updater set on the window: only the sash
  // area shows it, and it must match the sash.
  const wxColour background = m_element ? m_element->GetUiStyle()->get_color("clSash") : wxColour();
  dc.SetBackground(wxBrush(background.IsOk() ? background : GetBackgroundColour()));
  dc.Clear();
  if (!m_element) return;
  m_element->Draw(dc);
  if (HasFocus() && focus_visible(this))
    wxRendererNative::Get().DrawFocusRect(this, dc, m_element->GetSashRect());
}

void wxAdvancedSplitter::OnSysColourChanged(wxSysColourChangedEvent& event) {
  if (m_element) m_element->InitializeDefaultColors();
  Refresh();
  event.Skip();
}

// --- sash signals and linking -------------------------------------------------

void wxAdvancedSplitter::OnSplitterSashPosChanged(int) {
  CalcLayout();
  Refresh();
  if (m_accessible) m_accessible->sash_moved();
}

void wxAdvancedSplitter::OnLinkedSplitterSashPosChanged(int position) {
  if (!m_element || ClosingOrClosed() || m_timer.IsRunning()) return;
  // The leader's relative position, not this splitter's view of the pixel:
  // while a sizer lays out linked splitters one after the other their sizes
  // differ, and a clamped pixel says nothing about where the user wants it.
  const auto* leader = wxDynamicCast(m_linked->GetHolder(), wxAdvancedSplitter);
  if (leader != nullptr)
    m_relative_position = leader->GetRelativeSashPosition();
  else if (Extent() > 0)
    m_relative_position = static_cast<float>(m_element->ClampSashPosition(position)) / Extent();
  m_element->SetSashPosition(position);
}

void wxAdvancedSplitter::OnLinkedSplitterSashStateChanged(wxSplitterElement::VisualState state) {
  if (!m_element) return;
  m_element->SetSashState(state);
  Refresh();
}

bool wxAdvancedSplitter::SynchronizeWith(element_ptr_t other) {
  if (other.get() != nullptr && other.get() == m_element.get()) {
    ORVIX_LOG_ERROR(splitter_logger(), "a splitter cannot follow its own sash");
    return false;
  }
  Unlink();
  m_linked = other;
  if (!m_linked) return true;
  m_linked->SashPositionChanged().connect(this, &wxAdvancedSplitter::OnLinkedSplitterSashPosChanged);
  m_linked->SashStateChanged().connect(this, &wxAdvancedSplitter::OnLinkedSplitterSashStateChanged);
  OnLinkedSplitterSashPosChanged(m_linked->GetSashPosition());
  return true;
}

void wxAdvancedSplitter::Unlink() {
  if (!m_linked) return;
  m_linked->SashPositionChanged().disconnect(this, &wxAdvancedSplitter::OnLinkedSplitterSashPosChanged);
  m_linked->SashStateChanged().disconnect(this, &wxAdvancedSplitter::OnLinkedSplitterSashStateChanged);
  m_linked = element_ptr_t();
}

// --- saved state --------------------------------------------------------------

std::string wxAdvancedSplitter::SaveState() const {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << "position=" << std::fixed << std::setprecision(4) << m_relative_position
      << ";closed=" << (ClosingOrClosed() ? 1 : 0);
  return out.str();
}

bool wxAdvancedSplitter::RestoreState(const std::string& state) {
  std::istringstream in(state);
  in.imbue(std::locale::classic());
  float relative = 0;
  int closed = -1;
  std::string position_key(9, '\0'), closed_key(8, '\0');
  in.read(&position_key[0], 9);
  in >> relative;
  in.read(&closed_key[0], 8);
  in >> closed;
  const bool readable = in && in.peek() == std::char_traits<char>::eof() &&
                        position_key == "position=" && closed_key == ";closed=" &&
                        (closed == 0 || closed == 1) && relative >= 0 && relative <= 1;
  if (!readable || !m_element) {
    ORVIX_LOG_ERROR(splitter_logger(), "splitter state \"" << state << "\" not restored: "
                                           "expected position=<0..1>;closed=<0|1>");
    return false;
  }
  m_timer.Stop();
  m_motion->halt();
  m_relative_position = relative;
  m_closing_panel_extent = PanelExtentAt(OpenPosition());
  m_element->SetSashPosition(closed == 1 ? ClosedPosition() : OpenPosition());
  m_motion->settle(closed == 1);
  FinishAnimation();
  return true;
}

}  // namespace orvix1
