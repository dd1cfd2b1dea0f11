#ifndef ORVIX1_TESTS_RESOURCE_ARCHIVE_H
#define ORVIX1_TESTS_RESOURCE_ARCHIVE_H

// Builds resource archives (zip files and folders) for the registry tests.

#include <string>
#include <utility>
#include <vector>

#include <wx/anidecod.h>
#include <wx/colour.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/imaggif.h>
#include <wx/mstream.h>
#include <wx/quantize.h>
#include <wx/wfstream.h>
#include <wx/zipstrm.h>

namespace orvix1_test {

// (path inside the archive, file content)
using archive_files_t = std::vector<std::pair<std::string, std::string>>;

inline std::string stream_bytes(const wxMemoryOutputStream& stream) {
  std::string bytes(stream.GetSize(), '\0');
  stream.CopyTo(&bytes[0], bytes.size());
  return bytes;
}

inline std::string png_bytes(int width, int height, const wxColour& fill) {
  wxImage image(width, height);
  image.SetRGB(wxRect(0, 0, width, height), fill.Red(), fill.Green(), fill.Blue());
  wxMemoryOutputStream out;
  image.SaveFile(out, wxBITMAP_TYPE_PNG);
  return stream_bytes(out);
}

// A two-frame GIF animation.
inline std::string gif_bytes(int width, int height) {
  wxImageArray frames;
  for (const unsigned char level : {40, 220}) {
    wxImage frame(width, height);
    frame.SetRGB(wxRect(0, 0, width, height), level, level, level);
    wxImage quantized;
    wxQuantize::Quantize(frame, quantized, 16);  // GIF frames carry a palette
    frames.Add(quantized);
  }
  wxMemoryOutputStream out;
  wxGIFHandler().SaveAnimation(frames, &out, false, 50);
  return stream_bytes(out);
}

inline std::string xrc_text(const std::string& objects) {
  return "<?xml version=\"1.0\"?>\n<resource xmlns=\"http://www.wxwidgets.org/wxxrc\" "
         "version=\"2.5.3.0\">\n" +
         objects + "\n</resource>\n";
}

inline void write_zip(const std::string& path, const archive_files_t& files) {
  wxFFileOutputStream file(wxString::FromUTF8(path));
  wxZipOutputStream zip(file);
  for (const auto& entry : files) {
    zip.PutNextEntry(wxString::FromUTF8(entry.first));
    zip.Write(entry.second.data(), entry.second.size());
  }
}

inline void write_folder(const std::string& path, const archive_files_t& files) {
  for (const auto& entry : files) {
    const wxFileName name(wxString::FromUTF8(path + "/" + entry.first));
    wxFileName::Mkdir(name.GetPath(), wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
    wxFFileOutputStream out(name.GetFullPath());
    out.Write(entry.second.data(), entry.second.size());
  }
}

}  // namespace orvix1_test

#endif
