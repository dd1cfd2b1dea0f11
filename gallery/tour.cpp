#include "tour.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>

#include <gtk/gtk.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/ffile.h>
#include <wx/filefn.h>
#include <wx/gauge.h>
#include <wx/stattext.h>
#include <wx/animate.h>

#include "gallery_view.h"
#include "host_hooks.h"
#include "host_window.h"
#include "orvix1/elements/UIElement.h"
#include "orvix1/ui_resources.h"
#include "orvix1/ui_settings.h"
#include "orvix1/wxAdvancedSplitter.h"
#include "orvix1/wxCustomTooltip.h"
#include "orvix1/wxSplitterElement.h"
#include "orvix1/wxTabPanel.h"
#include "orvix1/testing.h"
#include "pages/elements_page.h"
#include "pages/images_page.h"
#include "pages/palette_page.h"
#include "pages/splitters_page.h"
#include "pages/tabs_page.h"
#include "pages/tasks_page.h"
#include "pages/tooltips_page.h"
#include "pages/welcome_page.h"
#include "pages/workspace_page.h"

namespace gallery {
namespace {

using namespace std::chrono_literals;
using orvix1::wxTabButton;
using orvix1::wxTabPanel;

// A step's outcome: empty when it held, otherwise what went wrong.
using outcome_t = std::string;

// --- input --------------------------------------------------------------

using orvix1::testing::move_pointer;
using orvix1::testing::pump_once;
using orvix1::testing::pump_until;
using orvix1::testing::send_mouse;

void click(wxWindow* window, const wxPoint& at) {
  orvix1::testing::click(window, at);
  pump_once();
}

wxPoint centre_of(const wxRect& rect) { return rect.GetPosition() + rect.GetSize() / 2; }
wxPoint centre_of(const wxWindow* window) { return centre_of(wxRect(window->GetClientSize())); }

// Native controls are driven through GTK, so that they raise their wx events
// the way a user's click would.
void press(wxButton* button) {
  gtk_button_clicked(GTK_BUTTON(button->GetHandle()));
  pump_once();
}

void choose(wxChoice* choice, int index) {
  gtk_combo_box_set_active(GTK_COMBO_BOX(choice->GetHandle()), index);
  pump_once();
}

// A button press and release on the host's own window, through GDK's queue.
void host_click(host_window_t& host, int x, int y) {
  GdkDisplay* display = gdk_display_get_default();
  GdkDevice* pointer = gdk_seat_get_pointer(gdk_display_get_default_seat(display));
  for (GdkEventType type : {GDK_BUTTON_PRESS, GDK_BUTTON_RELEASE}) {
    GdkEvent* event = gdk_event_new(type);
    event->button.window = GDK_WINDOW(g_object_ref(host.gdk_window()));
    event->button.send_event = TRUE;
    event->button.time = GDK_CURRENT_TIME;
    event->button.x = x;
    event->button.y = y;
    event->button.button = 1;
    gdk_event_set_device(event, pointer);
    gdk_event_put(event);
    gdk_event_free(event);
  }
}

template <class T>
T* find(wxWindow* page, const char* name) {
  return page != nullptr ? dynamic_cast<T*>(wxWindow::FindWindowByName(name, page)) : nullptr;
}

std::string text_of(const wxString& text) { return text.utf8_string(); }

wxTabButton* tab_labelled(wxTabPanel* panel, const wxString& label) {
  for (int i = 0; i < panel->GetButtonsCount(); ++i)
    if (panel->GetButton(i) != nullptr && panel->GetButton(i)->GetLabel() == label)
      return panel->GetButton(i);
  return nullptr;
}

bool file_contains(const wxString& path, const wxString& text) {
  wxFFile file(path, "r");
  wxString content;
  return file.IsOpened() && file.ReadAll(&content) && content.Contains(text);
}

// --- the tour -----------------------------------------------------------

class tour_t {
 public:
  tour_t(host_window_t& host, host_hooks_t& hooks, gallery_view_t& view, std::string out_dir)
      : m_host(host), m_hooks(hooks), m_view(view), m_out_dir(std::move(out_dir)) {}

  int run() {
    const std::vector<page_t>& pages = all_pages();
    for (size_t index = 0; index < pages.size(); ++index) visit(pages[index], static_cast<int>(index));
    dark_pictures(pages);
    step("host", "every modal dialog closed again", [this]() -> outcome_t {
      if (m_hooks.dialogs_opened() != m_hooks.dialogs_closed() || m_host.is_marked_modal())
        return "opened " + std::to_string(m_hooks.dialogs_opened()) + ", closed " +
               std::to_string(m_hooks.dialogs_closed());
      return std::string();
    });
    std::printf("tour: %d step(s), %d failed; pictures in %s\n", m_steps, m_failures,
                m_out_dir.c_str());
    std::fflush(stdout);
    return m_failures == 0 ? 0 : 1;
  }

 private:
  void visit(const page_t& page, int index) {
    m_page_name = page.name;
    step("select its tab", [&]() -> outcome_t {
      wxTabButton* tab = m_view.strip()->GetButton(index);
      if (tab == nullptr) return "no tab";
      click(tab, centre_of(tab));
      if (m_view.strip()->GetCurrentSelection() != index) return "the tab was not selected";
      m_page = m_view.page(index);
      if (m_page == nullptr || !m_page->IsShown()) return "the page is not shown";
      // A user acts on what is on the screen: the script waits for it too.
      m_view.watch_selected_page();
      if (!pump_until([this] { return m_view.has_painted(); }, 10s)) return "the page did not paint";
      return std::string();
    });
    if (m_page == nullptr || !m_page->IsShown()) return;
    const std::string name = page.name;
    std::function<void()> after;
    if (name == "welcome") welcome();
    else if (name == "palette") after = palette();
    else if (name == "elements") elements();
    else if (name == "tasks") tasks();
    else if (name == "splitters") splitters();
    else if (name == "tabs") tabs();
    else if (name == "workspace") workspace();
    else if (name == "tooltips") tooltips();
    else if (name == "images") images();
    screenshot();
    accessible_tree();
    if (after) after();
  }

  // The workspace pages once more under the dark theme, then light again:
  // every widget follows the palette, and the pictures show it.
  void dark_pictures(const std::vector<page_t>& pages) {
    auto palette = orvix1::ui_settings_configure_t::get();
    m_page_name = "dark theme";
    step("switching every page to the dark theme", [&]() -> outcome_t {
      return palette->apply_theme(ORVIX1_THEMES_DIR "/dark.xml") ? "" : "the theme did not load";
    });
    for (size_t index = 0; index < pages.size(); ++index) {
      const std::string name = pages[index].name;
      if (name != "tabs" && name != "splitters" && name != "elements" && name != "workspace") continue;
      m_page_name = name;
      wxTabButton* tab = m_view.strip()->GetButton(static_cast<int>(index));
      click(tab, centre_of(tab));
      screenshot("-dark");
    }
    m_page_name = "light theme";
    step("switching back to the light theme", [&]() -> outcome_t {
      return palette->apply_theme(ORVIX1_THEMES_DIR "/light.xml") ? "" : "the theme did not load";
    });
  }

  void screenshot(const char* suffix = "") {
    const std::string path = m_out_dir + "/" + m_page_name + suffix + ".png";
    step("picture", [&]() -> outcome_t {
      // The page as the steps left it: panes may have gone, others repaint.
      m_view.watch_selected_page();
      if (!pump_until([this] { return m_view.has_painted(); }, 10s)) return "the page did not paint";
      return orvix1::testing::save_presented_png(&orvix1::testing::save_screen_area_png,
                                                 m_host.gdk_window(), path, 10s);
    });
  }

  // What a screen reader reads as the picture shows it: the gallery's tabs,
  // the page, and any popup over it (popups are top levels of their own for
  // the toolkit, not children of the page).
  void accessible_tree() {
    const std::string path = m_out_dir + "/" + m_page_name + ".a11y.txt";
    step("accessible tree", [&]() -> outcome_t {
      std::string text = orvix1::testing::describe_accessible_tree(m_view.strip()) +
                         orvix1::testing::describe_accessible_tree(m_page);
      GList* windows = gtk_window_list_toplevels();
      for (GList* item = windows; item != nullptr; item = item->next)
        if (gtk_window_get_window_type(GTK_WINDOW(item->data)) == GTK_WINDOW_POPUP &&
            gtk_widget_get_mapped(GTK_WIDGET(item->data)))
          text += orvix1::testing::describe_accessible_tree(gtk_widget_get_accessible(GTK_WIDGET(item->data)));
      g_list_free(windows);
      wxFFile file(path, "w");
      if (!file.IsOpened() || file.Write(text.data(), text.size()) != text.size())
        return "cannot write " + path;
      return std::string();
    });
  }

  // --- page scripts -----------------------------------------------------

  void welcome() {
    step("a click on the host's status line reaches the page", [&]() -> outcome_t {
      auto* line = find<wxStaticText>(m_page, k_welcome_click_line);
      if (line == nullptr) return "no click line";
      const GdkRectangle strip = m_host.status_area();
      const int x = strip.x + 40;
      const int y = strip.y + strip.height / 2;
      const int before = m_hooks.clicks_forwarded();
      host_click(m_host, x, y);
      if (!pump_until([&] { return m_hooks.clicks_forwarded() >= before + 2; }, 5s))
        return "the host did not forward the press and the release";
      pump_once();
      if (m_hooks.clicks_forwarded() != before + 2)
        return "the host forwarded " + std::to_string(m_hooks.clicks_forwarded() - before) + " events";
      const std::string expected = "left button at (" + std::to_string(x) + ", " + std::to_string(y) + ")";
      if (text_of(line->GetLabel()).find(expected) == std::string::npos)
        return "the line says \"" + text_of(line->GetLabel()) + "\"";
      return std::string();
    });
    step("hovering a tab shows its tooltip", [&]() -> outcome_t {
      wxTabButton* tab = m_view.strip()->GetButton(1);
      if (tab == nullptr || tab->GetCustomTooltip() == nullptr) return "the tab has no tooltip";
      orvix1::wxCustomTooltip* tip = tab->GetCustomTooltip();
      move_pointer(tab, centre_of(tab));
      if (!pump_until([tip] { return tip->IsShown(); }, 5s)) return "the tooltip did not show";
      if (tip->GetText() != tab->GetTooltipText()) return "the tooltip shows another text";
      send_mouse(tab, wxEVT_LEAVE_WINDOW, wxPoint(-1, -1));
      if (!pump_until([tip] { return !tip->IsShown(); }, 5s)) return "it stayed after the pointer left";
      return std::string();
    });
  }

  std::function<void()> palette() {
    auto* choice = find<wxChoice>(m_page, k_palette_theme_choice);
    step("switching to the dark theme repaints in its colours", [&]() -> outcome_t {
      if (choice == nullptr) return "no theme choice";
      const wxColour dark(0x1E, 0x1F, 0x22);
      choose(choice, 1);
      if (orvix1::ui_settings_t::get()->get_color(orvix1::color_window_bg) != dark)
        return "the palette's window colour is " +
               text_of(orvix1::ui_settings_t::get()->get_color(orvix1::color_window_bg).GetAsString());
      auto* status = find<wxStaticText>(m_page, k_palette_status);
      if (status == nullptr || !status->GetLabel().StartsWith("Theme: ")) return "the page did not report it";
      return std::string();
    });
    step("save writes the live palette", [&]() -> outcome_t {
      auto* save = find<wxButton>(m_page, k_palette_save_button);
      if (save == nullptr) return "no save button";
      const wxString file = palette_page_file();
      if (wxFileExists(file)) wxRemoveFile(file);
      press(save);
      if (!file_contains(file, "<value key=\"color_0\">#1E1F22</value>"))
        return "the file " + text_of(file) + " does not hold the dark colour";
      return std::string();
    });
    // After the picture: the light theme again for the other pages.
    return [this, choice] {
      step("switching back to the light theme", [&]() -> outcome_t {
        choose(choice, 0);
        if (orvix1::ui_settings_t::get()->get_color(orvix1::color_window_bg) != *wxWHITE)
          return "the palette did not change back";
        return std::string();
      });
    };
  }

  void elements() {
    step("hovering the animation shows its tooltip", [&]() -> outcome_t {
      const wxPoint at = elements_page_tooltip_point(m_page);
      if (at == wxDefaultPosition) return "no animation element";
      move_pointer(m_page, at);
      orvix1::wxCustomTooltip* tip = elements_page_tooltip(m_page);
      if (tip == nullptr) return "the element has no tooltip";
      if (!pump_until([tip] { return tip->IsShown(); }, 5s)) return "the tooltip did not show";
      // Left showing for the picture; the next tab hides it.
      return std::string();
    });
  }

  void tasks() {
    step("a long task reports progress on the GUI thread", [&]() -> outcome_t {
      auto* start = find<wxButton>(m_page, k_tasks_long_task);
      auto* gauge = find<wxGauge>(m_page, k_tasks_long_task_gauge);
      if (start == nullptr || gauge == nullptr) return "no long task row";
      press(start);
      if (!pump_until([gauge] { return gauge->GetValue() > 0; }, 10s)) return "the gauge never moved";
      return std::string();
    });
    step("cancel and wait drains it through the wait dialog", [&]() -> outcome_t {
      auto* cancel = find<wxButton>(m_page, k_tasks_cancel_and_wait);
      auto* status = find<wxStaticText>(m_page, k_tasks_status);
      if (cancel == nullptr || status == nullptr) return "no cancel button";
      const int opened = m_hooks.dialogs_opened();
      const int closed = m_hooks.dialogs_closed();
      press(cancel);  // returns when the dialog has ended itself
      if (m_hooks.dialogs_opened() != opened + 1) return "no wait dialog reached the host";
      if (m_hooks.last_dialog_title() != "Tasks") return "the host saw \"" + m_hooks.last_dialog_title() + "\"";
      if (m_hooks.dialogs_closed() != closed + 1 || m_host.is_marked_modal()) return "the wait dialog did not close";
      if (status->GetLabel() != "Every task of the group has finished.") return "the page says \"" + text_of(status->GetLabel()) + "\"";
      return std::string();
    });
  }

  void splitters() {
    step("the collapse button folds the second pane", [&]() -> outcome_t {
      auto* splitter = find<orvix1::wxAdvancedSplitter>(m_page, k_splitters_collapsible);
      if (splitter == nullptr) return "no collapsible splitter";
      auto* sash = dynamic_cast<orvix1::wxSplitterElement*>(splitter->GetSplitterElement().get());
      if (sash == nullptr) return "no sash element";
      const wxRect button = sash->GetButtonRect();
      if (button.IsEmpty()) return "the button is hidden";
      click(splitter, centre_of(button));
      if (!splitter->IsAnimating() && !splitter->IsSecondPaneClosed()) return "the click started nothing";
      // The animation's ticks, one after another, instead of waiting for them.
      for (int tick = 0; tick < 1000 && splitter->IsAnimating(); ++tick) splitter->GetAnimationTimer().Notify();
      if (splitter->IsAnimating()) return "the animation did not end";
      if (!splitter->IsSecondPaneClosed()) return "the pane is not closed";
      wxWindow* second = splitter->GetPanel2();
      if (second != nullptr && second->IsShown() && second->GetSize().x > 1)
        return "the second pane is still " + std::to_string(second->GetSize().x) + " px wide";
      return std::string();
    });
  }

  void tabs() {
    auto* documents = find<wxTabPanel>(m_page, k_tabs_documents);
    // Closes a document by its cross, answering the question with `answer`
    // when one comes; checks how many questions came and whether the tab went.
    auto close = [&](const wxString& label, int answer, int questions, bool goes) -> outcome_t {
      wxTabButton* tab = documents != nullptr ? tab_labelled(documents, label) : nullptr;
      if (tab == nullptr) return "no tab \"" + text_of(label) + "\"";
      const wxRect cross = tab->CalculateCrossRect();
      if (cross.IsEmpty()) return "the tab has no close cross";
      const int before = documents->GetButtonsCount();
      const int opened = m_hooks.dialogs_opened();
      {
        const orvix1::testing::modal_answer_t answering(answer);
        click(tab, centre_of(cross));
      }
      const int asked = m_hooks.dialogs_opened() - opened;
      if (asked > questions) return "it asked";
      if (asked < questions || (asked > 0 && m_hooks.last_dialog_title() != "Really close?"))
        return "no question was asked";
      const bool gone = tab_labelled(documents, label) == nullptr;
      if (goes && (!gone || documents->GetButtonsCount() != before - 1)) return "the tab is still there";
      if (!goes && (gone || documents->GetButtonsCount() != before)) return "the tab went anyway";
      return std::string();
    };
    step("closing a changed document is refused when the answer is no",
         [&] { return close("Report.txt *", wxID_NO, 1, false); });
    step("and closed when the answer is yes", [&] { return close("Report.txt *", wxID_YES, 1, true); });
    step("an unchanged document closes without a question",
         [&] { return close("Notes.md", wxID_NO, 0, true); });
  }

  void workspace() {
    const auto order = [this] { return workspace_order(m_page); };
    const auto expect = [&order](const std::string& wanted) -> outcome_t {
      return order() == wanted ? std::string() : "the order is \"" + order() + "\"";
    };
    step("dragging a tab to a new place", [&]() -> outcome_t {
      drag_tab(workspace_pane(m_page), 0, 2, 0.75);
      return expect("system.log audit.log app.log kernel-and-services-2026-11-24.log todo.txt | search bookmarks");
    });
    step("dragging a tab to the other strip", [&]() -> outcome_t {
      drag_tab(workspace_pane(m_page), 3, 6, 0.25);
      return expect("system.log audit.log app.log todo.txt | search kernel-and-services-2026-11-24.log bookmarks");
    });
    step("closing from code asks the veto: a pinned log stays, another goes", [&]() -> outcome_t {
      orvix1::wxTabPane* pane = workspace_pane(m_page);
      if (pane->RequestClose(1)) return "the pinned log closed";
      if (!pane->RequestClose(3)) return "the veto kept todo.txt";
      return expect("system.log audit.log app.log | search kernel-and-services-2026-11-24.log bookmarks");
    });
    step("the layout saved, the page rebuilt and the layout restored", [&]() -> outcome_t {
      orvix1::wxAdvancedSplitter* splitter = workspace_splitter(m_page);
      drag_sash(splitter, 40);
      const float sash = splitter->GetRelativeSashPosition();
      const std::string saved = order();
      if (saved != "system.log audit.log app.log | search kernel-and-services-2026-11-24.log bookmarks")
        return "the order before saving is \"" + saved + "\"";
      press(find<wxButton>(m_page, k_workspace_save));
      press(find<wxButton>(m_page, k_workspace_rebuild));
      if (order() == saved) return "the rebuild kept the old order";
      press(find<wxButton>(m_page, k_workspace_restore));
      if (std::abs(workspace_splitter(m_page)->GetRelativeSashPosition() - sash) > 0.001f)
        return "the sash did not come back";
      orvix1::wxTabPane* pane = workspace_pane(m_page);
      if (pane->GetPageKey(pane->GetSelectedPage()) != "kernel-and-services-2026-11-24.log")
        return "the selection did not come back";
      // The rebuild opened todo.txt again; the layout does not name it, so
      // it keeps the place it was given (and the restore says so once).
      return expect("system.log audit.log app.log todo.txt | search kernel-and-services-2026-11-24.log bookmarks");
    });
  }

  // Presses on the pane's tab `from` and drags it over tab `over`, at
  // `across` of that tab's width, then lets go: as the pointer does.
  static void drag_tab(orvix1::wxTabPane* pane, int from, int over, double across) {
    wxTabButton* tab = pane->GetTab(from);
    wxTabButton* target = pane->GetTab(over);
    const wxPoint press_at(4, tab->GetSize().y / 2);
    send_mouse(tab, wxEVT_LEFT_DOWN, press_at);
    send_mouse(tab, wxEVT_MOTION, press_at + wxPoint(24, 0), true);
    wxWindow* capture = wxWindow::GetCapture();
    if (capture == nullptr) return;
    const wxPoint at(static_cast<int>(target->GetSize().x * across), target->GetSize().y / 2);
    const wxPoint end = capture->ScreenToClient(target->ClientToScreen(at));
    send_mouse(capture, wxEVT_MOTION, end, true);
    send_mouse(capture, wxEVT_LEFT_UP, end);
    pump_once();
  }

  // Off the collapse button, which would fold the pane instead.
  static void drag_sash(orvix1::wxAdvancedSplitter* splitter, int dx) {
    const wxRect rect = splitter->GetSplitterElement()->GetSashRect();
    wxPoint sash(rect.x + rect.width / 2, rect.y + 5);
    if (splitter->GetSplitterElement()->GetButtonRect().Contains(sash)) sash.y = rect.GetBottom() - 5;
    send_mouse(splitter, wxEVT_LEFT_DOWN, sash);
    send_mouse(splitter, wxEVT_MOTION, sash + wxPoint(dx, 0), true);
    send_mouse(splitter, wxEVT_LEFT_UP, sash + wxPoint(dx, 0));
    pump_once();
  }

  void tooltips() {
    step("hovering a card shows its tooltip", [&]() -> outcome_t {
      wxWindow* card = wxWindow::FindWindowByName(k_tooltips_first_target, m_page);
      orvix1::wxCustomTooltip* tip = card != nullptr ? orvix1::wxCustomTooltip::GetAssociatedTooltip(card) : nullptr;
      if (tip == nullptr) return "no card with a tooltip";
      move_pointer(card, centre_of(card));
      if (!pump_until([tip] { return tip->IsShown(); }, 5s)) return "the tooltip did not show";
      if (!tip->GetScreenRect().Intersects(card->GetScreenRect().Inflate(64)))
        return "the tooltip is far from the card";
      return std::string();
    });
  }

  void images() {
    step("pictures and the animation come from the archive", [&]() -> outcome_t {
      const auto resources = orvix1::ui_resources_t::get();
      if (resources->get_archives().empty()) return "no archive registered";
      if (!images_page_shows_every_picture(m_page)) return "a picture is missing";
      auto* animation = find<wxAnimationCtrl>(m_page, k_images_animation);
      if (animation == nullptr || !animation->GetAnimation().IsOk()) return "no animation";
      if (!animation->IsPlaying()) return "the animation is not playing";
      return std::string();
    });
  }

  // --- bookkeeping --------------------------------------------------------

  void step(const char* what, const std::function<outcome_t()>& body) {
    step(m_page_name.c_str(), what, body);
  }

  void step(const char* page, const char* what, const std::function<outcome_t()>& body) {
    ++m_steps;
    const outcome_t failure = body();
    if (failure.empty()) {
      std::printf("tour: %s: %s ok\n", page, what);
    } else {
      ++m_failures;
      std::printf("tour: %s: %s FAILED: %s\n", page, what, failure.c_str());
    }
    std::fflush(stdout);
  }

  host_window_t& m_host;
  host_hooks_t& m_hooks;
  gallery_view_t& m_view;
  std::string m_out_dir;
  std::string m_page_name;
  wxWindow* m_page = nullptr;
  int m_steps = 0;
  int m_failures = 0;
};

}  // namespace

int run_tour(host_window_t& host, host_hooks_t& hooks, gallery_view_t& view,
             const std::string& out_dir) {
  return tour_t(host, hooks, view, out_dir).run();
}

}  // namespace gallery
