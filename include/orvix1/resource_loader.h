#ifndef ORVIX1_RESOURCE_LOADER_H
#define ORVIX1_RESOURCE_LOADER_H
/// @file
/// Named resources read from an ordered list of resource archives.

#include <memory>
#include <string>
#include <vector>

#include <wx/filesys.h>
#include <wx/object.h>

#include "orvix1/export.h"

namespace orvix1 {

/// An archive is a zip file (read through wxFileSystem "#zip:" locations, so
/// wxArchiveFSHandler must be registered, as initialize_wxwidgets does) or a
/// plain folder. Either may hold a "resources.xrc" at its root whose top-level
/// objects are named resources: colours ("wxColour"), fonts ("wxFont"),
/// images ("wxImage") and animations ("wxAnimation"), with file paths
/// relative to the archive.
///
/// Lookups go from the archive added last to the one added first: a later
/// archive overrides the names and files of earlier ones.
///
/// Failures are logged on the "orvix.resources" logger, one line for each:
/// an archive that is not added is an error; a part of one that is refused,
/// or a file or object that cannot be opened or loaded, is a warning (the
/// caller goes on without it). A query for a name that is simply absent logs
/// nothing here (the caller decides whether absence is an error). GUI thread
/// only.
class ORVIX1_API resource_loader_t {
 public:
  resource_loader_t();
  ~resource_loader_t();
  resource_loader_t(const resource_loader_t&) = delete;
  resource_loader_t& operator=(const resource_loader_t&) = delete;

  /// Adds a zip file or a folder as the newest archive. A path that is
  /// already registered is read again and becomes the newest. False, with an
  /// error logged and nothing changed, for a missing path, a file that is not a
  /// zip archive, or a resources.xrc that cannot be parsed.
  bool add_archive(const std::string& path);
  /// Removes an archive given by the path it was added with (relative paths
  /// are taken against the current folder, as when adding). False when it was
  /// not registered.
  bool remove_archive(const std::string& path);
  void clear();
  /// Absolute paths of the registered archives, oldest first.
  std::vector<std::string> get_archives() const;

  /// The wxFileSystem location of a file inside the newest archive that holds
  /// it ("file:///...pack.zip#zip:icons/close.png"); empty when none does.
  std::string find_file(const std::string& name) const;
  /// Opens that file for reading (seekable); null when no archive holds it.
  std::unique_ptr<wxFSFile> open_file(const std::string& name) const;
  /// All bytes of that file; false (and `bytes` untouched) when no archive
  /// holds it or it cannot be read.
  bool read_file(const std::string& name, std::vector<unsigned char>& bytes) const;

  /// Where the object or file that a lookup of `name` finds comes from: the
  /// position (0 for the oldest) of the newest archive that declares an
  /// object of this name and class, or, when none declares one, of the
  /// newest that holds a file of this name; -1 when neither exists. Tells
  /// which of two names the archive order gives precedence.
  int find_archive(const std::string& name, const std::string& class_name) const;

  /// Whether some archive declares a top-level object of this name and class.
  bool has_object(const std::string& name, const std::string& class_name) const;
  /// Builds the declared object. When the newest declaration cannot be built
  /// (a warning says why) older declarations are tried; null when none
  /// exists or none can be built.
  std::unique_ptr<wxObject> load_object(const std::string& name,
                                        const std::string& class_name) const;

 private:
  struct archive_t;
  std::vector<std::unique_ptr<archive_t>> m_archives;  ///< oldest first
};

}  // namespace orvix1

#endif
