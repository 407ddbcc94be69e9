// SPDX-License-Identifier: MIT
#include "platform/files/file_system.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <limits>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

// Holds the lock of the file ".velmora-lock" in a folder; the system lets go of it when the process
// ends, however it ends.
class FolderLock : public IFolderLock {
  public:
    explicit FolderLock(const std::string& folder) : path_(joinedPath(folder, ".velmora-lock")) {
        file_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (file_ < 0) throwFileError("Cannot write in the folder: creating", path_);
        struct stat opened {};
        struct stat named {};
        const bool held = ::flock(file_, LOCK_EX | LOCK_NB) == 0 && ::fstat(file_, &opened) == 0 &&
                          ::stat(path_.c_str(), &named) == 0 && opened.st_ino == named.st_ino;
        if (!held) {
            ::close(file_);
            throw PlatformError("Another run is working in " + folder +
                                ": wait until it ends, or choose another output folder");
        }
    }
    ~FolderLock() override {
        ::unlink(path_.c_str());
        ::close(file_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    std::string path_;
    int file_ = -1;
};

// What killed runs left behind. Nobody else works in the folder while it is locked.
void removeUnfinished(const std::string& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().filename().string().starts_with(kUnfinishedPrefix)) {
            removeTree(entry.path().string());
        }
    }
}

std::uint64_t numberIn(const std::string& path, const std::string& key) {
    std::ifstream file(path);
    std::string word;
    while (file >> word) {
        if (key.empty()) {
            return std::all_of(word.begin(), word.end(),
                               [](char c) { return c >= '0' && c <= '9'; })
                       ? std::stoull(word)
                       : 0;
        }
        std::uint64_t number = 0;
        if (word == key && file >> number) return number;
    }
    return 0;
}

}  // namespace

bool FileSystem::fileExists(const std::string& path) const {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool FileSystem::folderExists(const std::string& path) const {
    std::error_code error;
    return fs::is_directory(path, error);
}

std::string FileSystem::specialFolder(SpecialFolder) const {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    return error ? std::string("/tmp") : folder.string();
}

std::string FileSystem::lastModified(const std::string& path) const {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) throwFileError("Cannot find", path);
    std::tm local{};
    ::localtime_r(&status.st_mtime, &local);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
    return text.data();
}

void FileSystem::deleteFile(const std::string& path) {
    std::error_code error;
    fs::remove(path, error);
    if (error) throw PlatformError("Cannot delete " + path + ": " + error.message());
}

void FileSystem::createFolder(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) throw PlatformError("Cannot create the folder " + path + ": " + error.message());
}

void FileSystem::copyFile(const std::string& from, const std::string& to) {
    const std::string unfinished = unfinishedPath(to);
    std::error_code error;
    fs::copy_file(from, unfinished, error);
    if (!error) fs::rename(unfinished, to, error);
    if (error) {
        removeTree(unfinished);
        throw PlatformError("Cannot copy " + from + " to " + to + ": " + error.message());
    }
}

void FileSystem::replaceFile(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) throw PlatformError("Cannot replace " + to + ": " + error.message());
}

void FileSystem::storeFile(const std::string& path, const std::string& bytes) {
    const std::string unfinished = unfinishedPath(path);
    try {
        writeWholeFile(unfinished, bytes);
        replaceFile(unfinished, path);
    } catch (const PlatformError& e) {
        removeTree(unfinished);
        throw PlatformError("Cannot write " + path + ": " + e.what());
    }
}

std::string FileSystem::readBeginning(const std::string& path, std::size_t most) const {
    if (!fileExists(path)) throw PlatformError("There is no file " + path);
    return readWholeFile(path, most);
}

void FileSystem::writeOver(const std::string& path, const std::string& bytes) {
    writeWholeFile(path, bytes, OldContent::overwritten);
}

std::unique_ptr<IFolderLock> FileSystem::lockFolder(const std::string& folder) {
    if (!folderExists(folder)) {
        throw PlatformError("The output folder " + folder + " does not exist: create it first");
    }
    auto lock = std::make_unique<FolderLock>(folder);
    removeUnfinished(folder);
    return lock;
}

std::uint64_t FileSystem::freeMemory() const {
    std::uint64_t free = numberIn("/proc/meminfo", "MemAvailable:") * 1024;
    if (free == 0) return std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t limit = numberIn("/sys/fs/cgroup/memory.max", "");
    const std::uint64_t used = numberIn("/sys/fs/cgroup/memory.current", "");
    if (limit > used) free = std::min(free, limit - used);
    return free;
}

double SystemClock::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

int SystemClock::currentYear() const {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_year + 1900;
}

}  // namespace velmora::platform
