#include "orvix1/wxPopupMenu.h"

#include <algorithm>

#include <wx/dcbuffer.h>

#include "look/tab_cross_images.h"
#include "orvix1/dpi.h"
#include "orvix1/text_utils.h"
#include "popups/popup_accessible.h"

namespace orvix1 {
namespace {

// At 96 dpi; each is multiplied by get_DPI_scale() where it is used.
const int k_frame = 2;        // space between the frame and the rows
const int k_padding_x = 8;
const int k_padding_y = 3;
const int k_gap = 6;           // between image column, text and cross
const int k_separator_height = 7;
const int k_min_image = 16;    // rows are at least as high as a small icon
const int k_cross_slack = 3;   // around the small cross: it is easy to miss

int scaled(int length) { return calculate_DPI_scaled_length(length); }

}  // namespace

wxBEGIN_EVENT_TABLE(wxPopupMenu, wxPopupWnd)
  EVT_PAINT(wxPopupMenu::OnPaint)
  EVT_MOTION(wxPopupMenu::OnMotion)
  EVT_LEAVE_WINDOW(wxPopupMenu::OnLeave)
  EVT_LEFT_UP(wxPopupMenu::OnLeftUp)
  EVT_KEY_DOWN(wxPopupMenu::OnKey)
wxEND_EVENT_TABLE()

wxPopupMenu::wxPopupMenu(wxWindow* parent) : wxPopupWnd(parent) {
  SetBackgroundStyle(wxBG_STYLE_PAINT);
  SetUiStyle(new popup_style_t);
  m_accessible = std::make_unique<detail::popup_menu_accessible_t>(*this);
}

wxPopupMenu::~wxPopupMenu() = default;

void wxPopupMenu::on_style_updated() {
  InvalidateBestSize();
  Refresh();
}

int wxPopupMenu::Append(const wxString& text, const wxBitmap& bitmap, bool closable,
                        bool disabled) {
  item_t item;
  item.text = text;
  item.bitmap = bitmap;
  item.closable = closable;
  item.disabled = disabled;
  item.row = m_row_count++;
  m_items.push_back(item);
  InvalidateBestSize();
  m_accessible->rows_changed();
  return item.row;
}

void wxPopupMenu::AppendSeparator() {
  item_t item;
  item.separator = true;
  m_items.push_back(item);
  InvalidateBestSize();
}

void wxPopupMenu::Clear() {
  m_items.clear();
  m_row_count = 0;
  m_hot_row = -1;
  m_hot_cross = false;
  InvalidateBestSize();
  m_accessible->rows_changed();
  Refresh();
}

const wxPopupMenu::item_t* wxPopupMenu::FindRow(int row) const {
  for (const item_t& item : m_items)
    if (!item.separator && item.row == row) return &item;
  return nullptr;
}

wxString wxPopupMenu::GetRowText(int row) const {
  const item_t* item = FindRow(row);
  return item != nullptr ? item->text : wxString();
}

bool wxPopupMenu::IsRowEnabled(int row) const {
  const item_t* item = FindRow(row);
  return item != nullptr && !item->disabled;
}

bool wxPopupMenu::IsRowClosable(int row) const {
  const item_t* item = FindRow(row);
  return item != nullptr && item->closable;
}

int wxPopupMenu::RowHeight() const {
  int image = scaled(k_min_image);
  for (const item_t& item : m_items)
    if (item.bitmap.IsOk()) image = std::max(image, item.bitmap.GetLogicalSize().y);
  return std::max(GetTextSize(this, "Ag", StyleFont("fnPopup")).y, image) + 2 * scaled(k_padding_y);
}

int wxPopupMenu::ItemHeight(const item_t& item) const {
  return item.separator ? scaled(k_separator_height) : RowHeight();
}

wxRect wxPopupMenu::GetRowRect(int row) const {
  const int height = RowHeight();
  const int frame = scaled(k_frame);
  const int separator = scaled(k_separator_height);
  int y = frame;
  for (const item_t& item : m_items) {
    if (!item.separator && item.row == row)
      return wxRect(frame, y, GetClientSize().x - 2 * frame, height);
    y += item.separator ? separator : height;
  }
  return wxRect();
}

wxRect wxPopupMenu::GetCrossRect(int row) const {
  const item_t* item = FindRow(row);
  if (item == nullptr || !item->closable) return wxRect();
  const wxRect rect = GetRowRect(row);
  const wxSize cross = detail::tab_cross_size(get_DPI_scale());
  return wxRect(rect.GetRight() - scaled(k_padding_x) - cross.x,
                rect.y + (rect.height - cross.y) / 2, cross.x, cross.y);
}

// Made again when the scale changes, or the menu opens on a screen of
// another content scale.
const wxBitmap& wxPopupMenu::CrossBitmap(int look) const {
  static const char* const* const k_looks[] = {detail::tab_cross_normal_xpm,
                                               detail::tab_cross_hovered_xpm};
  const double scale = get_DPI_scale();
  const double content_scale = GetContentScaleFactor();
  if (scale != m_cross_scale || content_scale != m_cross_content_scale) {
    m_cross[0] = m_cross[1] = wxBitmap();
    m_cross_scale = scale;
    m_cross_content_scale = content_scale;
  }
  if (!m_cross[look].IsOk())
    m_cross[look] = detail::make_tab_cross(k_looks[look], scale, content_scale, false);
  return m_cross[look];
}

int wxPopupMenu::HitTest(const wxPoint& position, bool* on_cross) const {
  if (on_cross != nullptr) *on_cross = false;
  for (int row = 0; row < m_row_count; ++row) {
    if (!GetRowRect(row).Contains(position)) continue;
    if (on_cross != nullptr)
      *on_cross = GetCrossRect(row).Inflate(scaled(k_cross_slack)).Contains(position);
    return row;
  }
  return -1;
}

void wxPopupMenu::SetHotRow(int row) {
  if (row < -1 || row >= m_row_count || row == m_hot_row) return;
  ChangeHotRow(row, m_hot_cross);
}

void wxPopupMenu::ChangeHotRow(int row, bool on_cross) {
  const int previous = m_hot_row;
  m_hot_row = row;
  m_hot_cross = on_cross;
  if (previous != row) m_accessible->hot_row_changed(previous);
  Refresh();
}

wxSize wxPopupMenu::DoGetBestSize() const {
  int image = 0;
  int text = 0;
  int height = 2 * scaled(k_frame);
  bool closable = false;
  for (const item_t& item : m_items) {
    height += ItemHeight(item);
    if (item.separator) continue;
    if (item.bitmap.IsOk()) image = std::max(image, item.bitmap.GetLogicalSize().x);
    text = std::max(text, GetTextSize(this, item.text, StyleFont("fnPopup")).x);
    closable = closable || item.closable;
  }
  const int gap = scaled(k_gap);
  int width = 2 * scaled(k_frame) + 2 * scaled(k_padding_x) + text;
  if (image > 0) width += image + gap;
  if (closable) width += detail::tab_cross_size(get_DPI_scale()).x + 2 * gap;
  return wxSize(width, height);
}

bool wxPopupMenu::Choose(int row) {
  const item_t* item = FindRow(row);
  if (item == nullptr || item->disabled) return false;
  ClosePopup();
  m_chosen(row);
  return true;
}

bool wxPopupMenu::RequestDelete(int row) {
  const item_t* item = FindRow(row);
  if (item == nullptr || !item->closable) return false;
  m_delete_requested(row);
  return true;
}

void wxPopupMenu::OnPaint(wxPaintEvent&) {
  wxBufferedPaintDC dc(this);
  DrawRows(dc);
}

void wxPopupMenu::DrawRows(wxDC& dc) const {
  const wxSize client = GetClientSize();
  dc.SetBackground(wxBrush(StyleColor("clPopupBg")));
  dc.Clear();
  // Without a live palette the style has no font: the window's stands in.
  const wxFont font = StyleFont("fnPopup");
  dc.SetFont(font.IsOk() ? font : GetFont());
  const int frame = scaled(k_frame);
  const int padding_x = scaled(k_padding_x);
  const int separator = scaled(k_separator_height);
  int image_column = 0;
  for (const item_t& item : m_items)
    if (item.bitmap.IsOk())
      image_column = std::max(image_column, item.bitmap.GetLogicalSize().x + scaled(k_gap));
  const int height = RowHeight();
  int y = frame;
  for (const item_t& item : m_items) {
    if (item.separator) {
      dc.SetPen(wxPen(StyleColor("clPopupBorder")));
      dc.DrawLine(frame + padding_x, y + separator / 2, client.x - frame - padding_x,
                  y + separator / 2);
      y += separator;
      continue;
    }
    const wxRect rect(frame, y, client.x - 2 * frame, height);
    const bool hot = item.row == m_hot_row && !item.disabled;
    if (hot) {
      dc.SetBrush(wxBrush(StyleColor("clPopupSelBg")));
      dc.SetPen(*wxTRANSPARENT_PEN);
      dc.DrawRectangle(rect);
    }
    dc.SetTextForeground(StyleColor(item.disabled ? "clPopupDisabled" : hot ? "clPopupSelText" : "clPopupText"));
    const int left = rect.x + padding_x;
    if (item.bitmap.IsOk())
      dc.DrawBitmap(item.bitmap, left, y + (height - item.bitmap.GetLogicalSize().y) / 2, true);
    dc.DrawLabel(item.text, wxRect(left + image_column, y, rect.width, height),
                 wxALIGN_LEFT | wxALIGN_CENTRE_VERTICAL);
    if (item.closable) {
      const wxRect cross = GetCrossRect(item.row);
      dc.DrawBitmap(CrossBitmap(hot && m_hot_cross ? 1 : 0), cross.x, cross.y, true);
    }
    y += height;
  }
}

void wxPopupMenu::OnMotion(wxMouseEvent& event) {
  bool on_cross = false;
  const int row = HitTest(event.GetPosition(), &on_cross);
  if (row != m_hot_row || on_cross != m_hot_cross) ChangeHotRow(row, on_cross);
  event.Skip();
}

void wxPopupMenu::OnLeave(wxMouseEvent& event) {
  SetHotRow(-1);
  event.Skip();
}

void wxPopupMenu::OnLeftUp(wxMouseEvent& event) {
  bool on_cross = false;
  const int row = HitTest(event.GetPosition(), &on_cross);
  if (row < 0) {
    event.Skip();
    return;
  }
  // The handlers may refill or close the menu; nothing of the row is used after.
  if (on_cross)
    RequestDelete(row);
  else
    Choose(row);
}

void wxPopupMenu::OnKey(wxKeyEvent& event) {
  switch (event.GetKeyCode()) {
    case WXK_DOWN:
      if (m_row_count > 0) SetHotRow((m_hot_row + 1) % m_row_count);
      break;
    case WXK_UP:
      if (m_row_count > 0) SetHotRow(m_hot_row <= 0 ? m_row_count - 1 : m_hot_row - 1);
      break;
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
      Choose(m_hot_row);
      break;
    case WXK_DELETE:
      RequestDelete(m_hot_row);
      break;
    case WXK_ESCAPE:
      ClosePopup();
      break;
    default:
      event.Skip();
  }
}

}  // namespace orvix1
