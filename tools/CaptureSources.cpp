#include "CaptureSources.h"

#include <algorithm>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "Csv.h"
#include "JsonLines.h"
#include "ToolOptions.h"

namespace fs = std::filesystem;

namespace SentivoTool
{

namespace
{

std::string Join(const std::string& folder, const char* szName)
{
    return folder.empty() || folder.back() == '/' ? folder + szName : folder + "/" + szName;
}

void WalkFolder(const std::string& folder, std::vector<CaptureEntry>& entries)
{
    std::error_code error;
    if (fs::is_regular_file(Join(folder, "current.bmp"), error))
    {
        CaptureEntry entry;
        entry.files = {Join(folder, "current.bmp"), Join(folder, "backlight.bmp"),
                       Join(folder, "dark.bmp"), ""};
        entry.label = LabelOfFolder(folder);
        entries.push_back(std::move(entry));
    }
    std::vector<std::string> children;
    fs::directory_iterator it(folder, error);
    for (; !error && it != fs::directory_iterator(); it.increment(error))
    {
        std::error_code typeError;
        if (it->is_directory(typeError) && !it->is_symlink(typeError))
            children.push_back(it->path().filename().string());
    }
    if (error)
        throw InputError("cannot read folder " + folder + ": " + error.message());
    std::sort(children.begin(), children.end());
    for (const std::string& child : children)
        WalkFolder(Join(folder, child.c_str()), entries);
}

std::optional<std::string> CheckedLabel(const std::string& manifest, size_t nLine,
                                        const std::string& label)
{
    if (label.empty())
        return std::nullopt;
    if (label != "live" && label != "fake")
        throw InputError(manifest + ":" + std::to_string(nLine) + ": label '" + label +
                         "' is neither live, fake nor empty");
    return label;
}

void ReadCsvManifest(const std::string& manifest, std::vector<CaptureEntry>& entries)
{
    const std::string text = ReadTextFile(manifest);
    CsvReader reader(text);
    std::vector<CsvValue> record;
    try
    {
        if (!reader.Next(record))
            throw InputError(manifest + ": empty, needs the header current,backlight,dark[,label]");
        std::vector<std::string> header;
        for (const CsvValue& value : record)
            header.push_back(value.text);
        const std::vector<std::string> three = {"current", "backlight", "dark"};
        std::vector<std::string> four = three;
        four.push_back("label");
        if (header != three && header != four)
            throw InputError(manifest + ":" + std::to_string(reader.Line()) +
                             ": the header is not current,backlight,dark[,label]");
        while (reader.Next(record))
        {
            const std::string where = manifest + ":" + std::to_string(reader.Line());
            if (record.size() != header.size())
                throw InputError(where + ": " + std::to_string(record.size()) + " fields, not " +
                                 std::to_string(header.size()));
            for (size_t i = 0; i < 3; ++i)
                if (record[i].text.empty())
                    throw InputError(where + ": no path for " + header[i]);
            CaptureEntry entry;
            entry.files = {ManifestPath(manifest, record[0].text),
                           ManifestPath(manifest, record[1].text),
                           ManifestPath(manifest, record[2].text), ""};
            if (record.size() == 4)
                entry.label = CheckedLabel(manifest, reader.Line(), record[3].text);
            entries.push_back(std::move(entry));
        }
    }
    catch (const CsvError& e)
    {
        throw InputError(manifest + ":" + std::to_string(e.Line()) + ": " + e.what());
    }
}

void ReadJsonManifest(const std::string& manifest, std::vector<CaptureEntry>& entries)
{
    ForEachJsonLine(manifest, ReadTextFile(manifest),
                    [&](const nlohmann::json& object, const std::string& where, size_t nLine)
                    {
                        CaptureEntry entry;
                        std::string* apPaths[] = {&entry.files.current, &entry.files.backlight,
                                                  &entry.files.dark};
                        const char* aszKeys[] = {"current", "backlight", "dark"};
                        for (int i = 0; i < 3; ++i)
                        {
                            const auto it = object.find(aszKeys[i]);
                            if (it == object.end() || !it->is_string() ||
                                it->get<std::string>().empty())
                                throw InputError(where + ": no path for " + aszKeys[i]);
                            *apPaths[i] = ManifestPath(manifest, it->get<std::string>());
                        }
                        const auto label = object.find("label");
                        if (label != object.end() && !label->is_null())
                        {
                            if (!label->is_string())
                                throw InputError(where + ": label is not a text");
                            entry.label = CheckedLabel(manifest, nLine, label->get<std::string>());
                        }
                        entries.push_back(std::move(entry));
                    });
}

bool EndsWith(const std::string& text, const char* szEnd)
{
    const std::string end = szEnd;
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

std::optional<std::string> LabelOfFolder(const std::string& folder)
{
    std::error_code error;
    fs::path path = fs::absolute(fs::path(folder), error).lexically_normal();
    std::vector<std::string> parts;
    for (const fs::path& part : path)
        parts.push_back(part.string());
    for (auto it = parts.rbegin(); it != parts.rend(); ++it)
        if (*it == "live" || *it == "fake")
            return *it;
    return std::nullopt;
}

std::string ManifestPath(const std::string& manifest, const std::string& path)
{
    if (!path.empty() && path[0] == '/')
        return path;
    const fs::path folder = fs::path(manifest).parent_path();
    return folder.empty() ? path : (folder / path).string();
}

std::vector<CaptureEntry> CollectCaptures(const std::vector<std::string>& sources)
{
    std::vector<CaptureEntry> entries;
    for (const std::string& source : sources)
    {
        const size_t nBefore = entries.size();
        std::error_code error;
        const fs::file_status status = fs::status(source, error);
        if (!fs::exists(status))
            throw InputError(source + ": no such file or folder");
        if (fs::is_directory(status))
        {
            WalkFolder(source, entries);
            if (entries.size() == nBefore)
                throw InputError(source + ": no captures (no folder in it holds current.bmp)");
            continue;
        }
        if (EndsWith(source, ".csv"))
            ReadCsvManifest(source, entries);
        else if (EndsWith(source, ".jsonl"))
            ReadJsonManifest(source, entries);
        else
            throw InputError(source + ": neither a folder nor a manifest (.csv or .jsonl)");
        if (entries.size() == nBefore)
            throw InputError(source + ": the manifest lists no captures");
    }
    return entries;
}

} // namespace SentivoTool
