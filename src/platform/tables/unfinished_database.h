// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/files/unfinished_file.h"

namespace velmora::platform {

// A database file on its way to its name. The journal of a transaction that did not end stands
// beside a file, and whoever opens a file of that name undoes the transaction in it.
class UnfinishedDatabase {
  public:
    explicit UnfinishedDatabase(std::string target);
    ~UnfinishedDatabase();
    UnfinishedDatabase(const UnfinishedDatabase&) = delete;
    UnfinishedDatabase& operator=(const UnfinishedDatabase&) = delete;

    const std::string& path() const { return file_.path(); }
    // Puts the closed file in its place. Throws PlatformError, and then the old file stays.
    void finish();

  private:
    std::string target_;
    UnfinishedFile file_;
    std::string journal_;  // of the unfinished file
};

}  // namespace velmora::platform
