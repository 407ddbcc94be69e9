// SPDX-License-Identifier: MIT
#include "tests/faults/contents.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "tests/faults/database_text.h"

namespace velmora::faults {

namespace fs = std::filesystem;

namespace {

std::string bytesOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void copyTimes(const fs::path& from, const fs::path& to) {
    struct stat known {};
    if (::stat(from.c_str(), &known) != 0) return;
    const std::array<timespec, 2> times = {known.st_atim, known.st_mtim};
    ::utimensat(AT_FDCWD, to.c_str(), times.data(), 0);
}

std::string withoutTimes(const std::string& text) {
    static const std::regex time(
        R"(\d\d\d\d-\d\d-\d\d \d\d:\d\d(:\d\d)?|[\d.]+ s\b|[\d.]* Minutes)");
    return std::regex_replace(text, time, "(time)");
}

enum class Messages { kept, dropped };

std::string runNotes(const std::string& bytes, Messages messages) {
    auto notes = nlohmann::json::parse(bytes, nullptr, false);
    if (!notes.is_array()) return bytes;
    for (auto& run : notes) {
        if (!run.is_object()) return bytes;
        run.erase("seconds");
        run.erase("ended");
        if (messages == Messages::dropped) run.erase("messages");
    }
    return withoutTimes(notes.dump(1));
}

// A record without what tells one run from another.
std::string recordText(const std::string& bytes) {
    auto record = nlohmann::json::parse(bytes, nullptr, false);
    if (!record.is_object()) return bytes;
    for (const char* key : {"run", "began", "ended", "xxh3"}) record.erase(key);
    for (auto& [step, run] : record["sources"].items()) run = "";
    for (const char* list : {"inputs", "outputs"}) {
        for (auto& dataset : record[list]) {
            if (dataset.contains("made_by")) dataset["made_by"].erase("run");
            // The history in the irrigation database tells times.
            const bool database = dataset.value("path", "").ends_with("IrDB.mdb");
            for (auto& file : dataset["files"]) {
                file.erase("modified");
                if (!database) continue;
                file.erase("bytes");
                file.erase("sha256");
            }
        }
    }
    return record.dump(1);
}

std::string withExtension(const std::string& path, const char* extension) {
    return path.substr(0, path.rfind('.')) + extension;
}

// What a step made, without the numbers that mark its run and those before it.
std::string withoutMarks(const std::string& bytes) {
    std::istringstream lines(bytes);
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("run ")) continue;
        kept += line.starts_with("used ") ? line.substr(0, line.find('=')) : line;
        kept += '\n';
    }
    return kept;
}

}  // namespace

Contents contentsOf(const std::string& folder) {
    Contents all;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file()) continue;
        all[entry.path().lexically_relative(folder).string()] = bytesOf(entry.path());
    }
    return all;
}

void copyFolder(const std::string& from, const std::string& to) {
    fs::remove_all(to);
    fs::copy(from, to, fs::copy_options::recursive);
    for (const auto& entry : fs::recursive_directory_iterator(from)) {
        copyTimes(entry.path(), to / entry.path().lexically_relative(from));
    }
}

std::string comparable(const std::string& path, const std::string& bytes) {
    if (path.ends_with("velmora_runs.json")) return runNotes(bytes, Messages::kept);
    if (path.find("velmora_made_") != std::string::npos) return withoutMarks(bytes);
    if (path.find("velmora_record_") != std::string::npos) return recordText(bytes);
    if (path.ends_with(".html")) return withoutTimes(bytes);
    std::string masked = bytes;
    if (path.ends_with(".dbf") && bytes.size() > 4) masked.replace(1, 3, "day");
    return masked;
}

bool same(const std::string& path, const Contents& a, const Contents& b,
          const std::string& folder) {
    const auto inA = a.find(path);
    const auto inB = b.find(path);
    if (inA == a.end() || inB == b.end()) return inA == a.end() && inB == b.end();
    if (inA->second == inB->second) return true;
    if (path.ends_with(".mdb")) {
        return databaseText(path, a, folder) == databaseText(path, b, folder);
    }
    return comparable(path, inA->second) == comparable(path, inB->second);
}

std::string datasetOf(const std::string& path, const Contents& all) {
    const std::string grids = "output/";
    if (path.starts_with(grids)) {
        const auto slash = path.find('/', grids.size());
        if (slash != std::string::npos) return path.substr(0, slash + 1);
    }
    if (path.rfind('.') == std::string::npos) return path;
    for (const char* part : {".shp", ".shx", ".dbf", ".prj", ".cpg", ".sbn", ".sbx"}) {
        const std::string shapes = withExtension(path, ".shp");
        if (path.ends_with(part) && all.contains(shapes)) return shapes;
    }
    return path;
}

bool sameRuns(const std::string& notes, const std::string& others) {
    return runNotes(notes, Messages::dropped) == runNotes(others, Messages::dropped);
}

bool isUnfinished(const std::string& path) {
    return path.find(".velmora-unfinished-") != std::string::npos ||
           path.find(".velmora-lock") != std::string::npos;
}

}  // namespace velmora::faults
