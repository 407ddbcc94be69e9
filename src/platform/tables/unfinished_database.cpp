// SPDX-License-Identifier: MIT
#include "platform/tables/unfinished_database.h"

#include <utility>

#include "platform/files/posix_file.h"

namespace velmora::platform {

namespace {

std::string journalOf(const std::string& path) { return path + "-journal"; }

}  // namespace

UnfinishedDatabase::UnfinishedDatabase(std::string target)
    : target_(std::move(target)), file_(target_), journal_(journalOf(file_.path())) {
    removeTree(journal_);
}

UnfinishedDatabase::~UnfinishedDatabase() { removeTree(journal_); }

void UnfinishedDatabase::finish() {
    removeTree(journalOf(target_));  // of the old file
    file_.finish();
}

}  // namespace velmora::platform
