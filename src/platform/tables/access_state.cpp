// SPDX-License-Identifier: MIT
#include "platform/tables/access_state.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/tables/sqlite_connection.h"
#include "platform/tables/sqlite_statement.h"

namespace velmora::platform {

namespace {

// Fowler, Noll and Vo's 64-bit hash (FNV-1a) of a whole file.
std::string hashOf(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) throwFileError("Cannot open", path);
    std::uint64_t hash = 14695981039346656037U;
    std::array<char, 65536> buffer{};
    ssize_t got = 0;
    while ((got = ::read(file, buffer.data(), buffer.size())) > 0) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
            hash = (hash ^ static_cast<unsigned char>(buffer[i])) * 1099511628211U;
        }
    }
    const int reason = errno;
    ::close(file);
    errno = reason;
    if (got < 0) throwFileError("Cannot read", path);
    std::array<char, 17> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), hash, 16).ptr;
    return {text.data(), end};
}

std::optional<AccessState> keptState(const std::string& copy) {
    sqlite3* opened = nullptr;
    const int status = sqlite3_open_v2(copy.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const SqliteConnection::Handle database(opened, SqliteConnection::Closer{});
    if (status != SQLITE_OK) return std::nullopt;
    harden(opened);
    sqlite3_busy_timeout(opened, 5000);
    try {
        SqliteStatement row(opened,
                            std::string("SELECT size, modified, hash FROM ") + kAccessStateTable);
        if (!row.step()) return std::nullopt;
        return AccessState{row.integer(0), row.integer(1), row.text(2)};
    } catch (const PlatformError&) {
        return std::nullopt;  // of an older version, or changed by somebody else
    }
}

bool hasChanged(const std::string& path, const std::string& copy) {
    const AccessState now = accessState(path, false);
    const auto kept = keptState(copy);
    if (!kept) return now.modified > accessState(copy, false).modified;
    if (now.size != kept->size) return true;
    return now.modified != kept->modified && hashOf(path) != kept->hash;
}

}  // namespace

AccessState accessState(const std::string& path, bool withHash) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) throwFileError("Cannot find", path);
    return {status.st_size, status.st_mtim.tv_sec * 1'000'000'000LL + status.st_mtim.tv_nsec,
            withHash ? hashOf(path) : std::string()};
}

void keepAccessState(sqlite3* copy, const AccessState& state) {
    runStatements(copy, std::string("CREATE TABLE ") + kAccessStateTable +
                            "(size INTEGER, modified INTEGER, hash TEXT); INSERT INTO " +
                            kAccessStateTable + " VALUES(" + std::to_string(state.size) + "," +
                            std::to_string(state.modified) + "," + quotedText(state.hash) + ")");
}

std::string staleAccessText(const std::string& path, const std::string& copy) {
    if (!hasChanged(path, copy)) return {};
    return "The Access database " + path + " has changed since its copy " + copy +
           " was made, and the copy is what is used: to take the changes over, delete or rename "
           "the copy (with the shares and efficiencies filled in there), and it is made anew";
}

}  // namespace velmora::platform
