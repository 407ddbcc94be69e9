// SPDX-License-Identifier: MIT
#include "platform/tables/access_import.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <exception>
#include <filesystem>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/tables/access_reader.h"
#include "platform/tables/access_state.h"
#include "platform/tables/unfinished_database.h"

namespace velmora::platform {

namespace {

constexpr rlim_t kMostSeconds = 300;  // of processor time; a damaged file may lead in circles

// What the reader of Access files does in a process of its own: writes the tables into the new
// file and says what failed, if anything, through `tell`.
[[noreturn]] void readAndExit(const std::string& path, const std::string& made, int tell) {
    const rlimit seconds{kMostSeconds, kMostSeconds};
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CPU, &seconds);
    ::setrlimit(RLIMIT_CORE, &noCore);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) ::dup2(nowhere, STDERR_FILENO);  // the library complains there
    std::string failure;
    try {
        const AccessState state = accessState(path, true);
        SqliteConnection::create(made);
        sqlite3* database = nullptr;
        sqlite3_open(made.c_str(), &database);
        copyAccessTables(path, database);
        keepAccessState(database, state);
        if (sqlite3_close(database) != SQLITE_OK) throw PlatformError("its copy cannot be stored");
    } catch (const std::exception& e) {
        failure = e.what();
    }
    const bool told = failure.empty() || ::write(tell, failure.data(), failure.size()) > 0;
    ::_exit(told && failure.empty() ? 0 : 1);
}

std::string allThatIsTold(int pipe) {
    std::string text;
    std::array<char, 1024> buffer{};
    ssize_t got = 0;
    while ((got = ::read(pipe, buffer.data(), buffer.size())) != 0) {
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) break;
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return text;
}

// Reads in a child process, which a damaged file may bring down. What failed, "" for nothing.
std::string readApart(const std::string& path, const std::string& made) {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) throwFileError("Cannot read", path);
    const pid_t child = ::fork();
    if (child < 0) throwFileError("Cannot read", path);
    if (child == 0) readAndExit(path, made, pipe[1]);
    ::close(pipe[1]);
    std::string failure = allThatIsTold(pipe[0]);
    ::close(pipe[0]);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (failure.empty() && !(WIFEXITED(status) && WEXITSTATUS(status) == 0)) {
        failure = "it is damaged: reading it fails";
    }
    return failure;
}

std::string copyOf(const std::string& path) { return path + ".sqlite"; }

// One import of a file at a time. Where the file system has no locks there is none.
class ImportLock {
  public:
    explicit ImportLock(const std::string& path)
        : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        while (file_ >= 0 && ::flock(file_, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    ~ImportLock() {
        if (file_ >= 0) ::close(file_);
    }
    ImportLock(const ImportLock&) = delete;
    ImportLock& operator=(const ImportLock&) = delete;

  private:
    int file_;
};

}  // namespace

bool isAccessFile(const std::string& path) {
    const std::string beginning = readWholeFile(path, 32);
    return beginning.size() > 19 && (beginning.compare(4, 15, "Standard Jet DB") == 0 ||
                                     beginning.compare(4, 15, "Standard ACE DB") == 0);
}

std::string importedDatabase(const std::string& path) {
    std::string sidecar = copyOf(path);
    if (std::filesystem::exists(sidecar)) return sidecar;
    const ImportLock lock(path);
    if (std::filesystem::exists(sidecar)) return sidecar;  // made while we waited
    UnfinishedDatabase copy(sidecar);
    const std::string failure = readApart(path, copy.path());
    if (!failure.empty()) {
        throw PlatformError("The Access database " + path + " cannot be imported: " + failure,
                            {.file = path});
    }
    copy.finish();
    return sidecar;
}

bool needsImport(const std::string& path) {
    return std::filesystem::is_regular_file(path) && isAccessFile(path) &&
           !std::filesystem::exists(copyOf(path));
}

std::string staleAccessCopy(const std::string& path) {
    const std::string copy = copyOf(path);
    if (!std::filesystem::is_regular_file(copy) || !std::filesystem::is_regular_file(path) ||
        !isAccessFile(path)) {
        return {};
    }
    return staleAccessText(path, copy);
}

}  // namespace velmora::platform
