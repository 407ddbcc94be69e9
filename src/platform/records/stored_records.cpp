// SPDX-License-Identifier: MIT
#include "platform/records/stored_records.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <tuple>

#include "gis/errors.h"
#include "platform/files/posix_file.h"
#include "platform/records/record_parts.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr int kDeepest = 16;

// Throws Json::exception when the record lacks something that readers rely on.
void requireForm(const Json& record) {
    for (const char* text : {"step", "run", "state", "began"}) {
        record.at(text).get_ref<const std::string&>();
    }
    for (const auto& [field, value] : record.at("settings").items()) {
        value.get_ref<const std::string&>();
    }
    for (const auto& [step, run] : record.at("sources").items()) {
        run.get_ref<const std::string&>();
    }
    for (const char* list : {"inputs", "outputs"}) {
        for (const Json& dataset : record.at(list)) {
            dataset.at("path").get_ref<const std::string&>();
            if (dataset.contains("error")) continue;
            for (const Json& file : dataset.at("files")) {
                file.at("path").get_ref<const std::string&>();
                file.at("bytes").get<std::uintmax_t>();
            }
        }
    }
}

StoredRecord storedRecord(const std::string& path) {
    StoredRecord record;
    record.path = path;
    record.step = stepOfRecord(path);
    try {
        const auto keep = [](int depth, Json::parse_event_t, const Json&) {
            return depth < kDeepest;
        };
        const std::string text = readWholeFile(path, std::numeric_limits<std::size_t>::max());
        record.json = Json::parse(text, keep);
        requireForm(record.json);
        if (record.json.at("step") != record.step) record.error = "is of another step";
        if (!isAsWritten(text)) record.error = "has been changed since its run wrote it";
    } catch (const Json::exception& e) {
        record.error = std::string("cannot be understood: ") + e.what();
    }
    if (!record.error.empty()) record.json = nullptr;
    return record;
}

}  // namespace

std::vector<StoredRecord> storedRecords(const std::string& folder) {
    std::vector<StoredRecord> records;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string path = entry.path().string();
        if (!stepOfRecord(path).empty()) records.push_back(storedRecord(path));
    }
    if (error)
        throw PlatformError("Cannot read the folder " + folder + ": " + error.message(),
                            {.file = folder});
    std::ranges::sort(records, {}, [](const StoredRecord& record) {
        const bool known = !record.json.is_null();
        return std::tuple(!known, known ? record.json.at("began").get<std::string>() : "",
                          record.path);
    });
    return records;
}

}  // namespace velmora::platform
