// SPDX-License-Identifier: MIT
#include "tests/faults/calls.h"

#include <sys/syscall.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <stdexcept>

namespace velmora::faults {

const std::vector<CallKind>& callKinds() {
    static const std::vector<CallKind> kinds = {
        {"open",
         {SYS_open, SYS_openat, SYS_openat2, SYS_creat},
         {"EIO", "ENOSPC", "EINTR", "EMFILE", "EACCES", "KILL"}},
        {"read", {SYS_read, SYS_readv}, {"EIO", "EINTR", "KILL"}},
        {"pread", {SYS_pread64, SYS_preadv}, {"EIO", "EINTR", "KILL"}},
        {"write", {SYS_write, SYS_writev}, {"EIO", "ENOSPC", "ENOSPC+", "EINTR", "KILL"}},
        {"pwrite", {SYS_pwrite64, SYS_pwritev}, {"EIO", "ENOSPC", "ENOSPC+", "EINTR", "KILL"}},
        {"copy",
         {SYS_copy_file_range, SYS_sendfile},
         {"EIO", "ENOSPC", "ENOSPC+", "EINTR", "KILL"}},
        {"close", {SYS_close}, {"EIO", "ENOSPC", "EINTR", "KILL"}},
        {"rename", {SYS_rename, SYS_renameat, SYS_renameat2}, {"EIO", "ENOSPC", "EACCES", "KILL"}},
        {"link",
         {SYS_link, SYS_linkat, SYS_symlink, SYS_symlinkat},
         {"EIO", "ENOSPC", "EACCES", "KILL"}},
        {"sync", {SYS_fsync, SYS_fdatasync, SYS_syncfs}, {"EIO", "ENOSPC", "EINTR", "KILL"}},
        {"mmap", {SYS_mmap}, {"ENOMEM", "EACCES", "KILL"}},
        {"unlink", {SYS_unlink, SYS_unlinkat, SYS_rmdir}, {"EIO", "EACCES", "KILL"}},
        {"mkdir", {SYS_mkdir, SYS_mkdirat}, {"EIO", "ENOSPC", "EACCES", "KILL"}},
        {"truncate",
         {SYS_ftruncate, SYS_truncate, SYS_fallocate},
         {"EIO", "ENOSPC", "EINTR", "KILL"}},
        {"lock", {SYS_flock, SYS_fcntl}, {"EIO", "EINTR", "EACCES", "ENOLCK", "KILL"}},
        {"seek", {SYS_lseek}, {"EIO", "KILL"}},
        {"list", {SYS_getdents64}, {"EIO", "EACCES", "KILL"}},
        {"stat",
         {SYS_stat, SYS_lstat, SYS_fstat, SYS_newfstatat, SYS_statx},
         {"EIO", "EACCES", "KILL"}},
        {"chmod", {SYS_chmod, SYS_fchmod, SYS_fchmodat}, {"EIO", "EACCES", "KILL"}},
        {"thread", {SYS_clone, SYS_clone3, SYS_fork, SYS_vfork}, {"EAGAIN", "KILL"}}};
    return kinds;
}

const CallKind& callKind(const std::string& name) {
    for (const CallKind& kind : callKinds()) {
        if (kind.name == name) return kind;
    }
    throw std::runtime_error("no system call is called \"" + name + "\" here");
}

Fault faultOf(const std::string& error) {
    static const std::map<std::string, int> errors = {
        {"EIO", EIO},       {"ENOSPC", ENOSPC}, {"EINTR", EINTR},   {"EMFILE", EMFILE},
        {"EACCES", EACCES}, {"ENOMEM", ENOMEM}, {"ENOLCK", ENOLCK}, {"EAGAIN", EAGAIN}};
    if (error == "KILL") return {0, false, true};
    const bool lasting = error.ends_with('+');
    const auto found = errors.find(lasting ? error.substr(0, error.size() - 1) : error);
    if (found == errors.end())
        throw std::runtime_error("no error is called \"" + error + "\" here");
    return {found->second, lasting, false};
}

bool needsSpace(const CallKind& kind) {
    return kind.name == "write" || kind.name == "pwrite" || kind.name == "copy" ||
           kind.name == "truncate" || kind.name == "mkdir";
}

}  // namespace velmora::faults
