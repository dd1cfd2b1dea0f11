#include "orvix1/resource_loader.h"

#include <algorithm>
#include <set>
#include <utility>

#include <wx/filename.h>
#include <wx/tokenzr.h>
#include <wx/wfstream.h>
#include <wx/xml/xml.h>
#include <wx/xrc/xmlres.h>
#include <wx/zipstrm.h>

#include "core/log.h"
#include "core/read_to_end.h"
#include "orvix1/xrc_handlers.h"
#include "core/wx_log_capture.h"
#include "resources/xrc_check.h"

namespace orvix1 {
namespace {

const char k_logger[] = "orvix.resources";
const char k_declarations_file[] = "resources.xrc";

std::string utf8(const wxString& text) { return text.utf8_string(); }

// A resource set that keeps what its handlers report, so that a failed
// object becomes one warning line of ours instead of a wx error message.
class archive_resources_t : public wxXmlResource {
 public:
  archive_resources_t() : wxXmlResource(wxXRC_USE_LOCALE | wxXRC_NO_RELOADING) {
    AddHandler(new wxColourXmlHandler);
    AddHandler(new wxFontXmlHandler);
    AddHandler(new wxImageXmlHandler);
    AddHandler(new wxAnimationXmlHandler);
  }

  // Reports since the last call, "; "-separated.
  wxString take_reports() {
    wxString reports;
    reports.swap(m_reports);
    return reports;
  }

 protected:
  void DoReportError(const wxString&, const wxXmlNode* position, const wxString& message) override {
    if (!m_reports.empty()) m_reports += "; ";
    if (position != nullptr) m_reports += wxString::Format("line %d: ", position->GetLineNumber());
    m_reports += message;
  }

 private:
  wxString m_reports;
};

// The path the host gave, made absolute and normalised, without a trailing
// separator, so that "res/", "./res/." and "/abs/res" name the same archive.
// Taken as a folder name so that a last "." or ".." is resolved too; for a
// file the text comes out the same.
wxString absolute_path(const std::string& path) {
  const wxString text = wxString::FromUTF8(path);
  if (text.empty()) return text;
  wxFileName name = wxFileName::DirName(text);
  name.Normalize(wxPATH_NORM_DOTS | wxPATH_NORM_ABSOLUTE | wxPATH_NORM_TILDE);
  return name.GetPath();
}

// A resource name as a relative path inside an archive: leading "/" and
// "./" are dropped; names that would climb out of the archive ("..") or
// that are empty give an empty result, which no archive holds.
wxString entry_name(const std::string& name) {
  wxString entry;
  const wxArrayString parts = wxStringTokenize(wxString::FromUTF8(name), "/", wxTOKEN_STRTOK);
  for (const wxString& part : parts) {
    if (part == ".") continue;
    if (part == "..") return wxString();
    if (!entry.empty()) entry += "/";
    entry += part;
  }
  return entry;
}

}  // namespace

struct resource_loader_t::archive_t {
  wxString path;
  bool is_folder = false;
  std::set<wxString> zip_entries;                    // files of a zip; a folder is asked on disk
  std::unique_ptr<archive_resources_t> resources;    // null without resources.xrc
  std::set<std::pair<wxString, wxString>> declared;  // (name, class)

  // The archive at an absolute path; null, with a warning, when it cannot
  // be used.
  static std::unique_ptr<archive_t> open(const wxString& path) {
    auto archive = std::make_unique<archive_t>();
    archive->path = path;
    wxString reason;
    if (wxFileName::DirExists(path))
      archive->is_folder = true;
    else if (!wxFileName::FileExists(path))
      reason = "does not exist";
    else
      archive->read_zip_directory(reason);
    if (reason.empty()) archive->read_declarations(reason);
    if (reason.empty()) return archive;
    ORVIX_LOG_ERROR(orvix1::log::get_logger(k_logger),
                    "resource archive \"" << utf8(path) << "\" not added: " << utf8(reason));
    return nullptr;
  }

  bool holds(const wxString& entry) const {
    if (entry.empty()) return false;
    if (is_folder) return wxFileName::FileExists(path + "/" + entry);
    return zip_entries.count(entry) != 0;
  }

  wxString location_of(const wxString& entry) const {
    if (is_folder) return wxFileSystem::FileNameToURL(wxFileName(path + "/" + entry));
    return wxFileSystem::FileNameToURL(wxFileName(path)) + "#zip:" + entry;
  }

  bool declares(const wxString& name, const wxString& class_name) const {
    return declared.count(std::make_pair(name, class_name)) != 0;
  }

 private:
  // Lists the files of a zip archive; false with the reason when the file
  // is not a readable zip archive.
  bool read_zip_directory(wxString& reason) {
    const wx_log_capture_t capture;
    wxFFileInputStream file(path);
    if (!file.IsOk()) {
      reason = "cannot be opened";
      return false;
    }
    wxZipInputStream zip(file);
    for (std::unique_ptr<wxZipEntry> entry(zip.GetNextEntry()); entry;
         entry.reset(zip.GetNextEntry())) {
      if (!entry->IsDir()) zip_entries.insert(entry->GetInternalName());
    }
    if (zip.GetLastError() != wxSTREAM_EOF) {
      reason = "is neither a folder nor a zip archive";
      if (!capture.text().empty()) reason += " (" + capture.text() + ")";
      return false;
    }
    return true;
  }

  // Takes out every object wx must not see (see xrc_check.h), one warning
  // each; the other objects of the archive still load.
  void refuse_unsafe_objects(wxXmlDocument& document) const {
    detail::xrc_rules_t rules;
    rules.classes = {"wxColour", "wxFont", "wxImage", "wxAnimation"};
    rules.names_file = [this](const wxString& file) { return holds(file); };
    wxString ignored;  // the root was checked by the caller
    detail::remove_refused_xrc_objects(
        document, rules,
        [this](const wxString& name, const wxString& class_name, const wxString& problem) {
          ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                            "resource archive \"" << utf8(path) << "\": object \"" << utf8(name)
                                                  << "\" (" << utf8(class_name)
                                                  << ") refused: " << utf8(problem));
        },
        ignored);
  }

  // Reads the archive's resources.xrc, if it has one, and indexes its
  // top-level named objects; false with the reason when it cannot be used.
  bool read_declarations(wxString& reason) {
    if (!holds(k_declarations_file)) return true;
    const wxString location = location_of(k_declarations_file);
    const wx_log_capture_t capture;
    wxFileSystem file_system;
    std::unique_ptr<wxFSFile> file(file_system.OpenFile(location, wxFS_READ | wxFS_SEEKABLE));
    auto document = std::make_unique<wxXmlDocument>();
    if (!file || !document->Load(*file->GetStream())) {
      reason = wxString(k_declarations_file) + " cannot be read";
      if (!capture.text().empty())
        reason += ": " + capture.text();
      else if (!wxFileSystem::HasHandlerForPath(location))
        reason += ": no handler for \"#zip:\" paths (initialize_wxwidgets registers it)";
      return false;
    }
    if (document->GetRoot()->GetName() != "resource") {
      reason = wxString(k_declarations_file) + " has no <resource> root";
      return false;
    }
    refuse_unsafe_objects(*document);
    for (const wxXmlNode* node = document->GetRoot()->GetChildren(); node != nullptr;
         node = node->GetNext()) {
      if (node->GetType() == wxXML_ELEMENT_NODE && node->GetName() == "object" &&
          node->HasAttribute("name"))
        declared.emplace(node->GetAttribute("name"), node->GetAttribute("class"));
    }
    resources = std::make_unique<archive_resources_t>();
    // The document's name is the location its relative file paths start from.
    if (!resources->LoadDocument(document.release(), location)) {
      reason = wxString(k_declarations_file) + " was refused: " + resources->take_reports();
      return false;
    }
    return true;
  }
};

resource_loader_t::resource_loader_t() = default;
resource_loader_t::~resource_loader_t() = default;

bool resource_loader_t::add_archive(const std::string& path) {
  const wxString absolute = absolute_path(path);
  if (absolute.empty()) {
    ORVIX_LOG_ERROR(orvix1::log::get_logger(k_logger),
                    "resource archive not added: the path is empty");
    return false;
  }
  std::unique_ptr<archive_t> archive = archive_t::open(absolute);
  if (!archive) return false;
  remove_archive(path);
  m_archives.push_back(std::move(archive));
  return true;
}

bool resource_loader_t::remove_archive(const std::string& path) {
  const wxString absolute = absolute_path(path);
  const auto found = std::find_if(
      m_archives.begin(), m_archives.end(),
      [&](const std::unique_ptr<archive_t>& archive) { return archive->path == absolute; });
  if (found == m_archives.end()) return false;
  m_archives.erase(found);
  return true;
}

void resource_loader_t::clear() { m_archives.clear(); }

std::vector<std::string> resource_loader_t::get_archives() const {
  std::vector<std::string> paths;
  for (const auto& archive : m_archives) paths.push_back(utf8(archive->path));
  return paths;
}

std::string resource_loader_t::find_file(const std::string& name) const {
  const wxString entry = entry_name(name);
  for (auto archive = m_archives.rbegin(); archive != m_archives.rend(); ++archive) {
    if ((*archive)->holds(entry)) return utf8((*archive)->location_of(entry));
  }
  return std::string();
}

std::unique_ptr<wxFSFile> resource_loader_t::open_file(const std::string& name) const {
  const std::string location = find_file(name);
  if (location.empty()) return nullptr;
  const wx_log_capture_t capture;
  wxFileSystem file_system;
  std::unique_ptr<wxFSFile> file(
      file_system.OpenFile(wxString::FromUTF8(location), wxFS_READ | wxFS_SEEKABLE));
  if (!file) {
    // The archive changed on disk after it was added.
    ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                      "cannot open \"" << location << "\"" << (capture.text().empty() ? "" : ": ")
                                       << utf8(capture.text()));
  }
  return file;
}

bool resource_loader_t::read_file(const std::string& name,
                                  std::vector<unsigned char>& bytes) const {
  const std::unique_ptr<wxFSFile> file = open_file(name);
  if (!file) return false;
  if (file->GetStream() == nullptr || !detail::read_to_end(*file->GetStream(), bytes)) {
    ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                      "cannot read resource file \"" << name << "\"");
    return false;
  }
  return true;
}

int resource_loader_t::find_archive(const std::string& name, const std::string& class_name) const {
  const wxString object_name = wxString::FromUTF8(name);
  const wxString object_class = wxString::FromUTF8(class_name);
  for (size_t k = m_archives.size(); k-- > 0;)
    if (m_archives[k]->declares(object_name, object_class)) return static_cast<int>(k);
  const wxString entry = entry_name(name);
  for (size_t k = m_archives.size(); k-- > 0;)
    if (m_archives[k]->holds(entry)) return static_cast<int>(k);
  return -1;
}

bool resource_loader_t::has_object(const std::string& name, const std::string& class_name) const {
  const wxString object_name = wxString::FromUTF8(name);
  const wxString object_class = wxString::FromUTF8(class_name);
  return std::any_of(m_archives.begin(), m_archives.end(),
                     [&](const std::unique_ptr<archive_t>& archive) {
                       return archive->declares(object_name, object_class);
                     });
}

std::unique_ptr<wxObject> resource_loader_t::load_object(const std::string& name,
                                                         const std::string& class_name) const {
  const wxString object_name = wxString::FromUTF8(name);
  const wxString object_class = wxString::FromUTF8(class_name);
  for (auto archive = m_archives.rbegin(); archive != m_archives.rend(); ++archive) {
    if (!(*archive)->declares(object_name, object_class)) continue;
    const wx_log_capture_t capture;
    std::unique_ptr<wxObject> object(
        (*archive)->resources->LoadObject(nullptr, object_name, object_class));
    wxString reasons = (*archive)->resources->take_reports();
    if (object) return object;
    if (!capture.text().empty()) reasons += (reasons.empty() ? "" : "; ") + capture.text();
    ORVIX_LOG_WARNING(orvix1::log::get_logger(k_logger),
                      "cannot load " << class_name << " \"" << name << "\" declared in \""
                                     << utf8((*archive)->path) << "\": " << utf8(reasons));
  }
  return nullptr;
}

}  // namespace orvix1
