// SPDX-License-Identifier: MIT
// Records of runs of any content are compared and shown, or refused. What is JSON gets the hash of
// its own text, so that changed records reach the comparison and not its first test alone.
#include <nlohmann/json.hpp>

#include "hosts/results/records/run_records.h"
#include "platform/records/record_parts.h"
#include "platform/records/verification.h"
#include "tests/fuzz/harness.h"

using namespace velmora;

namespace {

// Deep nesting is refused where records are read; here it would only cost the harness its stack.
std::string recordOf(const std::string& text) {
    const auto keep = [](int depth, platform::Json::parse_event_t, const platform::Json&) {
        return depth < 32;
    };
    const auto json = platform::Json::parse(text, keep, false);
    return json.is_object() && !json.empty() ? platform::recordText(json) : text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFolder& folder = fuzz::memoryFolder();
    const std::string record = recordOf(std::string(fuzz::text(data, size)));
    fuzz::require(platform::isAsWritten(record) || record == fuzz::text(data, size));
    folder.write("velmora_record_kc.json", record);
    fuzz::tried([&] {
        const auto found = platform::verifyRecords(folder.file(""), {{"Year", "2023"}});
        fuzz::require(!found.runs.empty() || !found.mismatches.empty());
    });
    fuzz::tried([&] {
        const RunRecords records = readRunRecords(folder.file(""));
        fuzz::require(records.steps.size() + records.unusable.size() == 1);
    });
    return 0;
}
