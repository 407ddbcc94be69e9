// SPDX-License-Identifier: MIT
// Any bytes are a record or an error; a record that was read is written back the same.
#include "settings/settings_file.h"

#include "tests/fuzz/harness.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::tried([&] {
        const RunSettings settings = parseSettingsRecord(fuzz::text(data, size));
        fuzz::require(settingsRecord(settings).size() <= size);
    });
    return 0;
}
