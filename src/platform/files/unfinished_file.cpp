// SPDX-License-Identifier: MIT
#include "platform/files/unfinished_file.h"

#include <utility>

#include "gis/text.h"
#include "platform/files/posix_file.h"

namespace velmora::platform {

UnfinishedFile::UnfinishedFile(std::string target, Leftovers leftovers)
    : target_(std::move(target)), path_(unfinishedPath(target_)) {
    if (leftovers == Leftovers::swept) sweepUnfinished(parentFolderName(target_));
    removeTree(path_);
}

UnfinishedFile::UnfinishedFile(UnfinishedFile&& other) noexcept
    : target_(std::move(other.target_)), path_(std::exchange(other.path_, {})) {}

UnfinishedFile::~UnfinishedFile() {
    if (!path_.empty()) removeTree(path_);
}

void UnfinishedFile::finishAs(const std::string& target) {
    replaceDurably(path_, target);
    path_.clear();
}

void UnfinishedFile::finishTree() {
    replaceTree(path_, target_);
    path_.clear();
}

}  // namespace velmora::platform
