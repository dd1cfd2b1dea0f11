#ifndef LOG_VIEWER_SMOKE_RUN_H
#define LOG_VIEWER_SMOKE_RUN_H

#include <string>

class viewer_frame_t;

// A scratch folder for generated logs and for the settings (XDG_CONFIG_HOME
// points into it), removed again at the end.
class smoke_folder_t {
 public:
  smoke_folder_t() = default;
  ~smoke_folder_t();
  smoke_folder_t(const smoke_folder_t&) = delete;
  smoke_folder_t& operator=(const smoke_folder_t&) = delete;

  bool make();
  std::string file(const std::string& name) const { return m_path + "/" + name; }

 private:
  std::string m_path;
};

// Drives the shown frame through its features and closes it: 0 when every
// check held, otherwise 1 after a line saying what failed.
int run_smoke(viewer_frame_t& frame, const smoke_folder_t& folder);

#endif
