#ifndef GALLERY_PAGES_PAGES_H
#define GALLERY_PAGES_PAGES_H

#include <string>
#include <vector>

class wxWindow;

namespace gallery {

// One topic of the gallery: a window that shows some of the library's parts.
struct page_t {
  const char* name;   // for --page
  const char* title;
  wxWindow* (*create)(wxWindow* parent);
};

// Every page, in the order the gallery offers them.
const std::vector<page_t>& all_pages();

// The page called `name`, the first page for an empty name, null if unknown.
const page_t* find_page(const std::string& name);

}  // namespace gallery

#endif
