#pragma once
// Where batch and demo find their captures: folders of capture folders and
// manifests that list the three files of each capture.
#include <optional>
#include <string>
#include <vector>

#include "CaptureJob.h"

namespace SentivoTool
{

struct CaptureEntry
{
    CaptureFiles files;
    std::optional<std::string> label; // "live", "fake" or none
};

// The captures of the sources in the order given. A folder: every folder in
// it (itself included) that holds current.bmp is one capture, with
// backlight.bmp and dark.bmp beside it (a missing one is reported when the
// capture is judged), found in byte order of their names; links to folders
// are not followed. Its label is the name of the nearest enclosing folder
// called "live" or "fake". A file ending in .csv: a manifest with the header
// current,backlight,dark[,label]; in .jsonl: one object per line with those
// keys. Manifest paths are relative to the manifest's folder, labels are
// live, fake or empty. Throws InputError naming the source (and line) for a
// missing source, a folder without captures, a malformed manifest.
std::vector<CaptureEntry> CollectCaptures(const std::vector<std::string>& sources);

// The label of a capture folder: the nearest folder on its absolute path,
// itself included, named "live" or "fake".
std::optional<std::string> LabelOfFolder(const std::string& folder);

// A path named in a manifest, relative to the manifest's folder.
std::string ManifestPath(const std::string& manifest, const std::string& path);

} // namespace SentivoTool
