// SPDX-License-Identifier: MIT
#include "platform/records/record_parts.h"

#include <gdal.h>
#include <geos_c.h>
#include <proj.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>
#include <tuple>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/file_hash.h"
#include "platform/files/posix_file.h"
#include "platform/records/dataset_files.h"
#include "platform/records/stored_records.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPrefix = "velmora_record_";
constexpr const char* kTileFile = "/w001001.adf";
constexpr const char* kOwnHash = ",\n \"xxh3\": \"";
constexpr const char* kAfterOwnHash = "\"\n}\n";

// The SHA-256 of a file that has been read in this process, while its size and time stay.
std::string sha256Of(const FileState& file) {
    static std::mutex guard;
    static std::map<std::tuple<std::string, std::uintmax_t, std::string>, std::string> known;
    const std::tuple key(file.path, file.bytes, file.modified);
    {
        const std::lock_guard lock(guard);
        if (const auto found = known.find(key); found != known.end()) return found->second;
    }
    const std::string hash = sha256OfFile(file.path);
    const std::lock_guard lock(guard);
    return known[key] = hash;
}

// What a record says of files in the folder.
class FileEntries {
  public:
    explicit FileEntries(const std::string& folder) : folder_(folder) {}

    Json input(const std::string& path, const std::vector<std::string>& workingFields) const {
        const FileState state = stateOf(path);
        Json json = entry(state);
        if (holdsOneOf(path, workingFields)) {
            json["sha256"] = sha256Without(path, workingFields);
            json["without"] = workingFields;
        } else {
            json["sha256"] = sha256Of(state);
        }
        return json;
    }

    Json outputs(const std::string& path, const std::vector<WrittenFile>& hashed) const {
        Json files = Json::array();
        if (hashed.empty()) {
            for (const std::string& file : filesOfDataset(path)) {
                Json json = entry(stateOf(file));
                json["xxh3"] = xxh3OfFile(file);
                files.push_back(std::move(json));
            }
        }
        for (const WrittenFile& file : hashed) {
            Json json = entry(stateOf(joinedPath(path, file.name)));
            json[file.inPieces ? "xxh3_pieces" : "xxh3"] = file.hash;
            files.push_back(std::move(json));
        }
        return files;
    }

    // Of a grid in the folder: all files with the fast hashes.
    Json grid(const std::string& path) const {
        Json files = Json::array();
        for (const std::string& file : filesOfDataset(path)) {
            Json json = entry(stateOf(file));
            if (file.ends_with(kTileFile)) {
                json["xxh3_pieces"] = piecesHashOfFile(file, kGridHeaderPiece, kGridTilePiece);
            } else {
                json["xxh3"] = xxh3OfFile(file);
            }
            files.push_back(std::move(json));
        }
        return files;
    }

    // Whether the files are still as another run's record lists them.
    bool standAsListed(const Json& files) const {
        return std::ranges::all_of(files, [&](const Json& file) {
            const std::string path = pathOfListed(file.at("path"), folder_);
            if (!isFile(path)) return false;
            const FileState now = stateOf(path);
            return now.bytes == file.at("bytes") && now.modified == file.at("modified");
        });
    }

  private:
    Json entry(const FileState& file) const {
        return {{"path", listedPath(file.path, folder_)},
                {"bytes", file.bytes},
                {"modified", file.modified}};
    }

    const std::string& folder_;
};

// The text behind `key["` up to the next quote; "" when there is none.
std::string quotedAfter(const std::string& wkt, const std::string& key) {
    const auto at = wkt.find(key + "[\"");
    if (at == std::string::npos) return {};
    const std::size_t begin = at + key.size() + 2;
    const auto end = wkt.find('"', begin);
    return end == std::string::npos ? std::string() : wkt.substr(begin, end - begin);
}

std::string firstOf(const std::string& wkt, std::initializer_list<const char*> keys) {
    for (const char* key : keys) {
        if (std::string text = quotedAfter(wkt, key); !text.empty()) return text;
    }
    return {};
}

}  // namespace

std::string recordPath(const std::string& folder, const std::string& step) {
    return joinedPath(folder, kPrefix + step + ".json");
}

std::string recordText(const Json& record) {
    std::string text = record.dump(1, ' ', false, Json::error_handler_t::replace);
    text.resize(text.rfind("\n}"));
    return text + kOwnHash + xxh3Of(text) + kAfterOwnHash;
}

bool isAsWritten(const std::string& text) {
    const auto end = text.rfind(kOwnHash);
    if (end == std::string::npos) return false;
    const std::string written = text.substr(0, end);
    return text == written + kOwnHash + xxh3Of(written) + kAfterOwnHash;
}

std::string stepOfRecord(const std::string& path) {
    const std::string prefix = kPrefix;
    const std::string ending = ".json";
    const std::string name = fs::path(path).filename().string();
    if (!name.starts_with(prefix) || !name.ends_with(ending)) return {};
    return name.substr(prefix.size(), name.size() - prefix.size() - ending.size());
}

std::map<std::string, MadeElsewhere> outputsOfOthers(const std::string& folder,
                                                     const std::string& step) {
    std::map<std::string, MadeElsewhere> made;
    for (const StoredRecord& record : storedRecords(folder)) {
        if (record.json.is_null() || record.step == step) continue;  // verify tells of damaged ones
        for (const Json& output : record.json.at("outputs")) {
            made[output.at("path")] = {record.step, record.json.at("run"), output.at("files")};
        }
    }
    return made;
}

namespace {

// The hash of a grid's cells among its files; "" for what is no grid.
std::string cellsHash(const Json& files) {
    for (const Json& file : files) {
        if (const auto hash = file.find("xxh3_pieces"); hash != file.end()) return *hash;
    }
    return {};
}

// The grid of a source step that has the same cells, "" for none. Several have them where all is
// without data: then it is the one whose name goes on after the grid's own.
std::string originalOf(const std::string& name, const Json& files, const RunHeading& heading,
                       const std::map<std::string, MadeElsewhere>& others) {
    const std::string cells = cellsHash(files);
    std::string found;
    for (const auto& [made, elsewhere] : others) {
        if (!heading.sources.contains(elsewhere.step)) continue;
        if (cellsHash(elsewhere.files) != cells) continue;
        if (made.starts_with(name)) return made;
        if (found.empty()) found = made;
    }
    return found;
}

Json inputOf(const std::string& path, const RunHeading& heading,
             const std::map<std::string, MadeElsewhere>& others) {
    const FileEntries entries(heading.folder);
    const auto other = others.find(listedPath(path, heading.folder));
    if (other != others.end() && entries.standAsListed(other->second.files)) {
        return {{"made_by", {{"step", other->second.step}, {"run", other->second.run}}},
                {"files", other->second.files}};
    }
    if (path.starts_with(joinedPath(heading.folder, {})) && isFile(path + kTileFile)) {
        Json files = entries.grid(path);
        const std::string made =
            originalOf(listedPath(path, heading.folder), files, heading, others);
        if (!made.empty()) {
            const MadeElsewhere& original = others.at(made);
            return {{"made_by", {{"step", original.step}, {"run", original.run}}},
                    {"copy_of", made},
                    {"files", std::move(files)}};
        }
    }
    Json files = Json::array();
    for (const std::string& file : filesOfDataset(path)) {
        files.push_back(entries.input(file, heading.workingFields));
    }
    return {{"files", std::move(files)}};
}

}  // namespace

Json inputsOf(const RunNotes& notes, const RunHeading& heading, RunEnding ending) {
    const auto others = outputsOfOthers(heading.folder, heading.step);
    std::vector<std::string> paths;
    for (const auto& [path, crs] : notes.read) {
        // The table of a shapefile that this run made is read by its own name.
        const bool ownTable = notes.written.contains(withoutExtension(path) + ".shp");
        if (!notes.written.contains(path) && !ownTable) paths.push_back(path);
    }
    std::vector<Json> inputs(paths.size());
    parallelFor(paths.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            const std::string& path = paths[i];
            inputs[i] = {{"path", listedPath(path, heading.folder)},
                         {"crs", crsOf(notes.read.at(path))}};
            try {
                inputs[i].update(inputOf(path, heading, others));
            } catch (const PlatformError& e) {
                if (ending == RunEnding::complete) throw;
                inputs[i]["error"] = e.what();
            }
        }
    });
    return inputs;
}

Json outputsOf(const RunNotes& notes, const std::string& folder) {
    const FileEntries entries(folder);
    Json outputs = Json::array();
    for (const auto& [path, hashed] : notes.written) {
        if (!isFile(path) && !isFolder(path)) continue;  // on the way alone
        outputs.push_back(
            {{"path", listedPath(path, folder)}, {"files", entries.outputs(path, hashed)}});
    }
    return outputs;
}

std::string listedPath(const std::string& path, const std::string& folder) {
    const std::string below = joinedPath(folder, {});
    return path.starts_with(below) && path.size() > below.size() ? path.substr(below.size()) : path;
}

std::string pathOfListed(const std::string& listed, const std::string& folder) {
    return listed.starts_with('/') ? listed : joinedPath(folder, listed);
}

Json libraryVersions() {
    return {{"GDAL", GDALVersionInfo("RELEASE_NAME")},
            {"PROJ", proj_info().version},
            {"GEOS", GEOSversion()},
            {"SQLite", sqlite3_libversion()}};
}

Json crsOf(const std::string& wkt) {
    const std::string name = firstOf(wkt, {"COMPD_CS", "COMPOUNDCRS", "PROJCS", "PROJCRS", "GEOGCS",
                                           "GEOGCRS", "LOCAL_CS", "ENGCRS"});
    if (name.empty()) return nullptr;
    Json json = {{"name", name}};
    if (const std::string datum = firstOf(wkt, {"DATUM", "ENSEMBLE"}); !datum.empty()) {
        json["datum"] = datum;
    }
    return json;
}

}  // namespace velmora::platform
