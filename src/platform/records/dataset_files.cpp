// SPDX-License-Identifier: MIT
#include "platform/records/dataset_files.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <limits>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/file_hash.h"
#include "platform/files/posix_file.h"
#include "platform/tables/dbase_layout.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::array<const char*, 5> kDataParts = {".shp", ".shx", ".dbf", ".prj", ".cpg"};

bool isDataPart(const std::string& extension) {
    return std::ranges::any_of(kDataParts,
                               [&](const char* part) { return sameIgnoringCase(extension, part); });
}

bool isShapefile(const fs::path& path) {
    return sameIgnoringCase(path.extension().string(), ".shp");
}

std::vector<std::string> partsOf(const fs::path& shapefile) {
    std::vector<std::string> files;
    const fs::path folder = shapefile.has_parent_path() ? shapefile.parent_path() : fs::path(".");
    for (const auto& entry : fs::directory_iterator(folder)) {
        const fs::path& path = entry.path();
        if (path.stem() == shapefile.stem() && isDataPart(path.extension().string())) {
            files.push_back((shapefile.parent_path() / path.filename()).string());
        }
    }
    return files;
}

std::vector<std::string> filesIn(const fs::path& folder) {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) files.push_back(entry.path().string());
    }
    return files;
}

std::vector<std::string> withCompanions(const fs::path& file) {
    std::vector<std::string> files = {file.string()};
    fs::path projection = file;
    projection.replace_extension(".prj");
    for (const std::string& beside :
         {projection.string(), file.string() + ".aux.xml", file.string() + ".sqlite"}) {
        if (beside != file.string() && isFile(beside)) files.push_back(beside);
    }
    return files;
}

std::string tableBytes(const std::string& path) {
    return readWholeFile(path, std::numeric_limits<std::size_t>::max());
}

bool isOneOf(const std::string& name, const std::vector<std::string>& fields) {
    return std::ranges::any_of(
        fields, [&](const std::string& field) { return sameIgnoringCase(name, field); });
}

}  // namespace

FileState stateOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) throwFileError("Cannot look at", path);
    return {path, static_cast<std::uintmax_t>(status.st_size),
            timeText(status.st_mtim.tv_sec, status.st_mtim.tv_nsec)};
}

std::vector<std::string> filesOfDataset(const std::string& path) try {
    std::vector<std::string> files;
    if (isFolder(path)) {
        files = filesIn(path);
    } else if (!isFile(path)) {
        throw PlatformError("There is no " + path, {.file = path});
    } else if (isShapefile(path)) {
        files = partsOf(path);
    } else {
        files = withCompanions(path);
    }
    std::ranges::sort(files);
    return files;
} catch (const fs::filesystem_error& e) {
    throw PlatformError("Cannot look at " + path + ": " + e.code().message(), {.file = path});
}

bool holdsOneOf(const std::string& table, const std::vector<std::string>& fields) {
    if (!sameIgnoringCase(fs::path(table).extension().string(), ".dbf")) return false;
    const DbaseLayout layout = dbaseLayout(tableBytes(table), table);
    return std::ranges::any_of(
        layout.columns, [&](const DbaseColumn& column) { return isOneOf(column.name, fields); });
}

std::string sha256Without(const std::string& table, const std::vector<std::string>& fields) {
    const std::string bytes = tableBytes(table);
    const DbaseLayout layout = dbaseLayout(bytes, table);
    std::string content;
    std::vector<const DbaseColumn*> columns;
    for (const DbaseColumn& column : layout.columns) {
        if (isOneOf(column.name, fields)) continue;
        columns.push_back(&column);
        content += column.name + ' ' + column.type + ' ' + std::to_string(column.width) + ' ' +
                   std::to_string(column.decimals) + '\n';
    }
    for (std::size_t record = 0; record < layout.records; ++record) {
        const std::size_t at = layout.headerLength + record * layout.recordLength;
        if (at + layout.recordLength > bytes.size()) break;  // the table is cut short
        content += bytes[at];
        for (const DbaseColumn* column : columns) {
            content.append(bytes, at + column->offset, column->width);
        }
    }
    return sha256Of(content);
}

std::string timeText(std::int64_t seconds, long nanoseconds) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm local{};
    ::localtime_r(&time, &local);
    std::array<char, 32> day{};
    std::array<char, 8> zone{};
    std::strftime(day.data(), day.size(), "%Y-%m-%dT%H:%M:%S", &local);
    std::strftime(zone.data(), zone.size(), "%z", &local);  // "-0600"
    std::string offset = zone.data();
    if (offset.size() == 5) offset.insert(3, ":");
    std::string fraction = std::to_string(nanoseconds);
    fraction.insert(0, 9 - std::min<std::size_t>(9, fraction.size()), '0');
    return day.data() + ("." + fraction) + offset;
}

std::string nowText() {
    struct timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return timeText(now.tv_sec, now.tv_nsec);
}

}  // namespace velmora::platform
