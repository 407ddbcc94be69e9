// SPDX-License-Identifier: MIT
#pragma once

#include <sys/resource.h>

#include <csignal>

namespace velmora::test {

// Files of this process cannot grow beyond some bytes while it lives, as on a full disk.
class SmallFiles {
  public:
    explicit SmallFiles(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        rlimit now = before_;
        now.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &now);
        handler_ = ::signal(SIGXFSZ, SIG_IGN);
    }
    ~SmallFiles() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        ::signal(SIGXFSZ, handler_);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

  private:
    rlimit before_{};
    void (*handler_)(int) = nullptr;
};

}  // namespace velmora::test
