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
#include <optional>
#include <thread>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/files/unfinished_file.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

enum class Sharing { alone, withReaders };

// Holds the lock of the file ".velmora-lock" in a folder; the system lets go of it when the process
// ends, however it ends. Whoever lets go last removes the file.
class FolderLock : public IFolderLock {
  public:
    FolderLock(const std::string& folder, Sharing sharing)
        : folder_(folder), path_(joinedPath(folder, ".velmora-lock")) {
        take(sharing == Sharing::alone ? LOCK_EX : LOCK_SH);
    }
    ~FolderLock() override {
        // Readers that stay keep the file: then it is not had alone.
        if (::flock(file_->descriptor(), LOCK_EX | LOCK_NB) == 0 && isTheOneNamed()) {
            ::unlink(path_.c_str());
        }
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    // A run waits a moment for readers, which are soon done, but not for another run.
    void take(int kind) {
        constexpr int kPatience = 200;
        constexpr std::chrono::milliseconds kPause(50);
        for (int i = 0; i < kPatience; ++i) {
            file_.emplace(path_, O_RDWR | O_CREAT, "Cannot write in the folder: creating");
            if (locked(kind)) {
                if (isTheOneNamed()) return;
                continue;  // whoever held it removed the file meanwhile
            }
            if (kind == LOCK_SH || !locked(LOCK_SH)) break;
            file_.reset();
            std::this_thread::sleep_for(kPause);
        }
        throw PlatformError("Another run is working in " + folder_ +
                                ": wait until it ends, or choose another output folder",
                            {.file = folder_});
    }

    // False when others hold it.
    bool locked(int kind) const {
        while (::flock(file_->descriptor(), kind | LOCK_NB) != 0) {
            if (errno == EWOULDBLOCK) return false;
            if (errno != EINTR) throwFileError("Cannot lock the folder with", path_);
        }
        return true;
    }
    bool isTheOneNamed() const {
        struct stat opened {};
        struct stat named {};
        return ::fstat(file_->descriptor(), &opened) == 0 && ::stat(path_.c_str(), &named) == 0 &&
               opened.st_ino == named.st_ino;
    }

    std::string folder_;
    std::string path_;
    std::optional<PosixFile> file_;
};

// What killed runs left behind under names that tell no process. Nobody else works in the folder
// while it is locked.
void removeNameless(const std::string& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with(kUnfinishedPrefix) && !tellsItsProcess(name)) {
            removeTree(entry.path().string());
        }
    }
}

void requireFolder(const FileSystem& files, const std::string& folder) {
    if (!files.folderExists(folder)) {
        throw PlatformError("The output folder " + folder + " does not exist: create it first",
                            {.file = folder});
    }
}

}  // namespace

bool FileSystem::fileExists(const std::string& path) const { return isFile(path); }

bool FileSystem::folderExists(const std::string& path) const { return isFolder(path); }

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
    if (error)
        throw PlatformError("Cannot delete " + path + ": " + error.message(), {.file = path});
}

void FileSystem::createFolder(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error)
        throw PlatformError("Cannot create the folder " + path + ": " + error.message(),
                            {.file = path});
}

void FileSystem::copyFile(const std::string& from, const std::string& to) {
    try {
        UnfinishedFile copy(to);
        fs::copy_file(from, copy.path());
        copy.finish();
    } catch (const std::exception& e) {
        throw PlatformError("Cannot copy " + from + " to " + to + ": " + e.what(), {.file = to});
    }
}

void FileSystem::replaceFile(const std::string& from, const std::string& to) {
    replaceDurably(from, to);
}

void FileSystem::storeFile(const std::string& path, const std::string& bytes) {
    try {
        UnfinishedFile file(path);
        writeWholeFile(file.path(), bytes);
        file.finish();
    } catch (const PlatformError& e) {
        throw PlatformError("Cannot write " + path + ": " + e.what(), {.file = path});
    }
}

std::string FileSystem::readBeginning(const std::string& path, std::size_t most) const {
    if (!fileExists(path)) throw PlatformError("There is no file " + path, {.file = path});
    return readWholeFile(path, most);
}

void FileSystem::writeOver(const std::string& path, const std::string& bytes) {
    const bool isNew = !fileExists(path);
    writeWholeFile(path, bytes, OldContent::overwritten);
    syncToDisk(path);
    const std::string folder = parentFolderName(path);
    if (isNew) syncToDisk(folder.empty() ? "." : folder);
}

std::unique_ptr<IFolderLock> FileSystem::lockFolder(const std::string& folder) {
    requireFolder(*this, folder);
    auto lock = std::make_unique<FolderLock>(folder, Sharing::alone);
    removeNameless(folder);
    sweepUnfinished(folder);
    return lock;
}

std::unique_ptr<IFolderLock> FileSystem::shareFolder(const std::string& folder) {
    requireFolder(*this, folder);
    return std::make_unique<FolderLock>(folder, Sharing::withReaders);
}

void FileSystem::settle(const std::string& folder) { syncFileSystemOf(folder); }

std::optional<std::uint64_t> FileSystem::freeSpace(const std::string& folder) const {
    std::error_code error;
    const auto space = fs::space(folder, error);
    return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
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
