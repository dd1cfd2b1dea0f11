#include "pages/pages.h"

#include "pages/elements_page.h"
#include "pages/help_page.h"
#include "pages/images_page.h"
#include "pages/palette_page.h"
#include "pages/splitters_page.h"
#include "pages/tabs_page.h"
#include "pages/tasks_page.h"
#include "pages/tooltips_page.h"
#include "pages/welcome_page.h"
#include "pages/workspace_page.h"

namespace gallery {

const std::vector<page_t>& all_pages() {
  static const std::vector<page_t> pages = {
      {"welcome", "Welcome", &create_welcome_page},
      {"palette", "Palette", &create_palette_page},
      {"elements", "Elements", &create_elements_page},
      {"tasks", "Tasks", &create_tasks_page},
      {"help", "Help", &create_help_page},
      {"splitters", "Splitters", &create_splitters_page},
      {"tabs", "Tabs", &create_tabs_page},
      {"workspace", "Workspace", &create_workspace_page},
      {"tooltips", "Tooltips", &create_tooltips_page},
      {"images", "Images and DPI", &create_images_page},
  };
  return pages;
}

const page_t* find_page(const std::string& name) {
  const std::vector<page_t>& pages = all_pages();
  if (name.empty()) return &pages.front();
  for (const page_t& page : pages)
    if (name == page.name) return &page;
  return nullptr;
}

}  // namespace gallery
