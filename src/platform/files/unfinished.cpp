// SPDX-License-Identifier: MIT
// Names of unfinished files and folders, and the removal of those that nobody will finish:
//   .velmora-unfinished-<process>@<machine>-<name>   something new
//   .velmora-unfinished-<process>@<machine>+<name>   something old that stands aside
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <sstream>

#include "gis/files.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::time_t kDay = 86400;

// A number that tells machines (and containers) apart, as eight digits (FNV-1a of the host's name).
std::string machine() {
    char name[256] = {};
    ::gethostname(name, sizeof name - 1);
    std::uint32_t hash = 2166136261U;
    for (const char* c = name; *c != '\0'; ++c) {
        hash = (hash ^ static_cast<unsigned char>(*c)) * 16777619U;
    }
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", hash);
    return digits;
}

std::string beside(const std::string& path, char mark) {
    return joinedPath(parentFolderName(path), kUnfinishedPrefix + std::to_string(::getpid()) + "@" +
                                                  machine() + mark + fileName(path));
}

// What a name tells; a name without a machine is of this one.
struct Leftover {
    pid_t process = 0;
    std::string machine;
    bool aside = false;
    std::string name;
};

std::optional<Leftover> parsed(const std::string& entry) {
    if (!entry.starts_with(kUnfinishedPrefix)) return std::nullopt;
    const std::string rest = entry.substr(std::string(kUnfinishedPrefix).size());
    Leftover found;
    const char* end = rest.data() + rest.size();
    const auto [after, error] = std::from_chars(rest.data(), end, found.process);
    if (error != std::errc() || after == end || found.process <= 0) return std::nullopt;
    std::size_t at = static_cast<std::size_t>(after - rest.data());
    found.machine = machine();
    if (rest[at] == '@') {
        const std::size_t mark = rest.find_first_of("-+", at);
        if (mark == std::string::npos) return std::nullopt;
        found.machine = rest.substr(at + 1, mark - at - 1);
        at = mark;
    }
    if (rest[at] != '-' && rest[at] != '+') return std::nullopt;
    found.aside = rest[at] == '+';
    found.name = rest.substr(at + 1);
    return found;
}

// When a process of this machine began, in seconds since 1970; nothing when the system does not
// tell.
std::optional<double> beginOf(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text;
    if (!std::getline(file, text)) return std::nullopt;
    const auto command = text.rfind(')');  // the command's name may hold anything
    if (command == std::string::npos) return std::nullopt;
    std::istringstream words(text.substr(command + 1));
    std::string word;
    for (int i = 0; i < 20 && words >> word; ++i) {  // the start is the 20th word after it
    }
    std::ifstream system("/proc/stat");
    double booted = 0;
    for (std::string key; system >> key;) {
        if (key == "btime" && system >> booted) break;
        system.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    if (booted == 0) return std::nullopt;
    return booted + static_cast<double>(std::strtoull(word.c_str(), nullptr, 10)) /
                        static_cast<double>(::sysconf(_SC_CLK_TCK));
}

// Whether the process that wrote it is there. Another process may have got its number meanwhile,
// but that one began after the last change.
bool lives(pid_t process, std::time_t lastChange) {
    if (::kill(process, 0) != 0 && errno == ESRCH) return false;
    const auto began = beginOf(process);
    constexpr double kInexact = 2;  // seconds, of the time of the start
    return !began || static_cast<double>(lastChange) >= *began - kInexact;
}

// What is new was written by its process; what stands aside is older, but was renamed by it.
bool isLeft(const Leftover& leftover, const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return false;
    const std::time_t lastChange = leftover.aside ? status.st_ctime : status.st_mtime;
    if (leftover.machine != machine()) return lastChange + kDay < std::time(nullptr);
    return !lives(leftover.process, lastChange);
}

void sweep(const std::string& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder.empty() ? "." : folder, error)) {
        const auto leftover = parsed(entry.path().filename().string());
        if (!leftover || !isLeft(*leftover, entry.path().string())) continue;
        const fs::path target = entry.path().parent_path() / leftover->name;
        if (leftover->aside && !fs::exists(fs::symlink_status(target, error))) {
            fs::rename(entry.path(), target, error);
        } else {
            removeTree(entry.path().string());
        }
    }
}

}  // namespace

std::string unfinishedPath(const std::string& path) { return beside(path, '-'); }
std::string asidePath(const std::string& path) { return beside(path, '+'); }

bool tellsItsProcess(const std::string& name) { return parsed(name).has_value(); }

void sweepUnfinished(const std::string& folder) noexcept {
    try {
        sweep(folder);
    } catch (const std::exception&) {
    }
}

}  // namespace velmora::platform
