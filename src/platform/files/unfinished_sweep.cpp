// SPDX-License-Identifier: MIT
#include "platform/files/unfinished_sweep.h"

#include <sys/types.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <string_view>

#include "gis/files.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace {

bool lives(pid_t process) { return ::kill(process, 0) == 0 || errno != ESRCH; }

// The process whose unfinished form of `name` the entry is, 0 when it is none.
pid_t makerOf(std::string_view entry, std::string_view name) {
    const std::string_view prefix = kUnfinishedPrefix;
    if (!entry.starts_with(prefix)) return 0;
    entry.remove_prefix(prefix.size());
    pid_t process = 0;
    const auto [end, error] = std::from_chars(entry.data(), entry.data() + entry.size(), process);
    entry.remove_prefix(static_cast<std::size_t>(end - entry.data()));
    const bool is = error == std::errc() && process > 0 && entry.starts_with('-') &&
                    (entry.substr(1) == name || entry.substr(1) == std::string(name) + "-journal");
    return is ? process : 0;
}

}  // namespace

void sweepUnfinished(const std::string& path) noexcept {
    try {
        const std::string folder = parentFolderName(path);
        const std::string name = fileName(path);
        std::error_code error;
        for (const auto& entry :
             std::filesystem::directory_iterator(folder.empty() ? "." : folder, error)) {
            const pid_t maker = makerOf(entry.path().filename().string(), name);
            if (maker > 0 && !lives(maker)) removeTree(entry.path().string());
        }
    } catch (const std::exception&) {
        return;  // what is left does no harm
    }
}

}  // namespace velmora::platform
