// SPDX-License-Identifier: MIT
// Any bytes are a record or an error; a record that was read is written back the same.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "gis/errors.h"
#include "settings/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const velmora::RunSettings settings =
            velmora::parseSettingsRecord({reinterpret_cast<const char*>(data), size});
        const std::string bytes = velmora::settingsRecord(settings);
        if (bytes.size() > size) std::abort();
    } catch (const velmora::PlatformError&) {
    }
    return 0;
}
