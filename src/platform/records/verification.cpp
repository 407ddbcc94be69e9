// SPDX-License-Identifier: MIT
#include "platform/records/verification.h"

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <set>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/file_hash.h"
#include "platform/files/posix_file.h"
#include "platform/files/unfinished_file.h"
#include "platform/records/dataset_files.h"
#include "platform/records/record_parts.h"
#include "platform/records/stored_records.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr const char* kSealName = "velmora_seal.sha256";
// A setting that no number depends on.
constexpr std::array<const char*, 1> kOfNoWeight = {"ShowMonitor"};

bool hasWeight(const std::string& field) {
    return std::ranges::find(kOfNoWeight, field) == kOfNoWeight.end();
}

// A file as a record lists it.
struct Listed {
    const StoredRecord* record;
    const Json* file;
    bool isInput;
};

// What has become of a listed file; "" when it is as listed.
std::string changeOf(const std::string& path, const Json& file) {
    if (!isFile(path)) return "is missing";
    const auto equals = [&](const char* key, const auto& hash) {
        return !file.contains(key) || file.at(key) == hash();
    };
    if (const auto without = file.find("without"); without != file.end()) {
        const bool same = equals("sha256", [&] {
            return sha256Without(path, without->get<std::vector<std::string>>());
        });
        return same ? "" : "has changed";
    }
    const std::uintmax_t bytes = stateOf(path).bytes;
    if (bytes != file.at("bytes")) {
        return "has changed: it had " + std::to_string(file.at("bytes").get<std::uintmax_t>()) +
               " bytes and has " + std::to_string(bytes);
    }
    const bool same = equals("sha256", [&] { return sha256OfFile(path); }) &&
                      equals("xxh3", [&] { return xxh3OfFile(path); }) &&
                      equals("xxh3_pieces", [&] {
                          return piecesHashOfFile(path, kGridHeaderPiece, kGridTilePiece);
                      });
    return same ? "" : "has changed";
}

// What is asked of a listed file. Steps that read the same bytes, each at its time, ask the same.
std::string questionOf(const Json& file) {
    Json question = file;
    question.erase("modified");
    if (question.contains("without")) question.erase("bytes");  // the other fields' are not asked
    return question.dump();
}

RecordedRun recordedRun(const StoredRecord& record) {
    RecordedRun run{record.step, record.json.at("run"), record.json.at("state") == "complete", {}};
    for (const auto& [field, value] : record.json.at("settings").items()) {
        run.settings.emplace_back(field, value.get<std::string>());
    }
    return run;
}

class Verifier {
  public:
    Verifier(const std::string& folder, std::vector<StoredRecord> records)
        : folder_(folder), records_(std::move(records)) {}

    Verification result(const std::vector<std::pair<std::string, std::string>>& settings) {
        for (const StoredRecord& record : records_) {
            if (record.json.is_null()) {
                tell("", record.path, record.error);
                continue;
            }
            found_.runs.push_back(recordedRun(record));
            byStep_[record.step] = &record;
        }
        checkFiles();
        for (const auto& [step, record] : byStep_) checkChain(*record);
        checkSettings();
        if (!settings.empty()) comparePresent(settings);
        return std::move(found_);
    }

  private:
    void tell(const std::string& step, const std::string& path, const std::string& text) {
        found_.mismatches.push_back({step, path, text});
    }

    // The files of all records. An output that a later run made again is that run's.
    std::vector<Listed> listedFiles() const {
        std::map<std::string, const StoredRecord*> lastMaker;
        for (const StoredRecord& record : records_) {
            if (record.json.is_null()) continue;
            for (const Json& output : record.json.at("outputs")) {
                lastMaker[output.at("path")] = &record;
            }
        }
        std::vector<Listed> files;
        for (const StoredRecord& record : records_) {
            if (record.json.is_null()) continue;
            for (const Json& output : record.json.at("outputs")) {
                if (lastMaker.at(output.at("path")) != &record) continue;
                for (const Json& file : output.at("files"))
                    files.push_back({&record, &file, false});
            }
            for (const Json& input : record.json.at("inputs")) {
                if (!input.contains("files")) continue;
                const bool checkedAsOutput =
                    input.contains("made_by") && lastMaker.contains(input.at("path"));
                if (checkedAsOutput) continue;
                for (const Json& file : input.at("files")) files.push_back({&record, &file, true});
            }
        }
        return files;
    }

    void checkFiles() {
        const std::vector<Listed> files = listedFiles();
        std::map<std::string, std::size_t> asked;  // place of the question
        std::vector<const Json*> questions;
        std::vector<std::size_t> places;
        for (const Listed& file : files) {
            const auto [place, isNew] = asked.try_emplace(questionOf(*file.file), questions.size());
            if (isNew) questions.push_back(file.file);
            places.push_back(place->second);
        }
        std::vector<std::string> changes(questions.size());
        parallelFor(questions.size(), 1, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) changes[i] = changed(*questions[i]);
        });
        for (std::size_t i = 0; i < files.size(); ++i) {
            const Listed& file = files[i];
            const std::string& change = changes[places[i]];
            (file.isInput ? found_.inputs : found_.outputs) += 1;
            if (change.empty()) continue;
            tell(file.record->step, file.file->at("path"),
                 (file.isInput ? "input of " : "made by ") + file.record->step + ", " + change);
        }
    }

    std::string changed(const Json& file) const {
        try {
            return changeOf(pathOfListed(file.at("path"), folder_), file);
        } catch (const std::exception& e) {
            return std::string("cannot be compared: ") + e.what();
        }
    }

    void checkChain(const StoredRecord& record) {
        const Json& json = record.json;
        if (json.at("state") != "complete") {
            tell(record.step, record.path,
                 "the run of " + record.step + " did not come to its end (" +
                     json.at("state").get<std::string>() + ")");
        }
        std::map<std::string, std::set<std::string>> read;  // runs by step
        for (const auto& [step, run] : json.at("sources").items()) read[step].insert(run);
        for (const Json& input : json.at("inputs")) {
            if (!input.contains("made_by")) continue;
            const Json& maker = input.at("made_by");
            read[maker.at("step")].insert(maker.at("run").get<std::string>());
        }
        for (const auto& [step, runs] : read) checkSource(record, step, runs);
    }

    void checkSource(const StoredRecord& record, const std::string& step,
                     const std::set<std::string>& runs) {
        const auto source = byStep_.find(step);
        if (source == byStep_.end()) {
            tell(record.step, recordPath(folder_, step),
                 record.step + " read grids of " + step + ", of which there is no record");
            return;
        }
        const Json& json = source->second->json;
        if (runs.size() > 1 || !runs.contains(json.at("run"))) {
            tell(record.step, source->second->path,
                 record.step + " read another run of " + step + " than the last one");
        } else if (json.at("ended").is_string() && json.at("ended") > record.json.at("began")) {
            tell(record.step, source->second->path,
                 record.step + " began before " + step + ", whose grids it read, had ended");
        }
    }

    // Every field must be the same in all records; one that was empty was not needed yet.
    void checkSettings() {
        std::map<std::string, std::map<std::string, std::vector<std::string>>> values;
        for (const auto& [step, record] : byStep_) {
            for (const auto& [field, value] : record->json.at("settings").items()) {
                const auto& text = value.get_ref<const std::string&>();
                if (hasWeight(field) && !text.empty()) values[field][text].push_back(step);
            }
        }
        for (const auto& [field, steps] : values) {
            if (steps.size() < 2) continue;
            std::string text = "the runs were made with different settings:";
            for (const auto& [value, makers] : steps) {
                text += " " + field + "=" + value + " (" + joinedNames(makers) + ")";
            }
            tell("", field, text);
        }
    }

    void comparePresent(const std::vector<std::pair<std::string, std::string>>& settings) {
        for (const auto& [field, now] : settings) {
            if (!hasWeight(field)) continue;
            std::map<std::string, std::vector<std::string>> then;
            for (const auto& [step, record] : byStep_) {
                const auto value = record->json.at("settings").find(field);
                if (value == record->json.at("settings").end()) continue;
                const auto& text = value->get_ref<const std::string&>();
                if (text != now && !text.empty()) then[text].push_back(step);
            }
            for (const auto& [value, steps] : then) {
                tell("", field,
                     joinedNames(steps) + " ran with " + field + "=" + value +
                         ", and the settings now say " + (now.empty() ? "nothing" : now));
            }
        }
    }

    const std::string& folder_;
    std::vector<StoredRecord> records_;
    std::map<std::string, const StoredRecord*> byStep_;
    Verification found_;
};

std::vector<StoredRecord> requiredRecords(const std::string& folder) {
    if (!isFolder(folder)) throw PlatformError("There is no folder " + folder, {.file = folder});
    auto records = storedRecords(folder);
    if (records.empty()) {
        throw PlatformError("The folder " + folder +
                                " holds no record of a run: every step leaves one "
                                "(velmora_record_STEP.json)",
                            {.file = folder});
    }
    return records;
}

}  // namespace

Verification verifyRecords(const std::string& folder,
                           const std::vector<std::pair<std::string, std::string>>& settings) {
    return Verifier(folder, requiredRecords(folder)).result(settings);
}

std::pair<std::string, std::size_t> sealRecords(const std::string& folder) {
    std::set<std::string> paths;
    for (const StoredRecord& record : requiredRecords(folder)) {
        if (record.json.is_null())
            throw PlatformError("The record " + record.path + " is damaged: " + record.error,
                                {.file = record.path});
        paths.insert(listedPath(record.path, folder));
        for (const Json& output : record.json.at("outputs")) {
            for (const Json& file : output.at("files")) paths.insert(file.at("path"));
        }
    }
    const std::vector<std::string> files(paths.begin(), paths.end());
    std::vector<std::string> hashes(files.size());
    parallelFor(files.size(), 1, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            hashes[i] = sha256OfFile(pathOfListed(files[i], folder));
        }
    });
    std::string text;
    for (std::size_t i = 0; i < files.size(); ++i) text += hashes[i] + "  " + files[i] + "\n";
    const std::string path = joinedPath(folder, kSealName);
    UnfinishedFile file(path);
    writeWholeFile(file.path(), text);
    file.finish();
    return {path, files.size()};
}

}  // namespace velmora::platform
