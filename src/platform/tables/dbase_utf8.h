// SPDX-License-Identifier: MIT
// Puts dBASE tables that are in another encoding into UTF-8.
//
// A ".cpg" beside a table tells its encoding, and without one the language mark in its header; with
// neither the bytes are taken as UTF-8. Two files cannot take their names at once. So the table
// alone tells the right encoding while the ".cpg" is exchanged: the old one gets the mark of its
// encoding and loses its ".cpg", the new one has no mark when it takes its place, and then comes
// the ".cpg" for programs that guess otherwise. Whenever that ends, the texts are read as they are.
#pragma once

#include <functional>
#include <string>

#include "platform/files/unfinished_file.h"

namespace velmora::platform {

// The bytes of the whole table `path` with texts and names of fields in UTF-8 and without a mark.
// Throws PlatformError naming the table when one does not fit into its place any more.
std::string inUtf8(const std::string& bytes, const std::string& encoding, const std::string& path);

// The exchange of what tells the encoding of a table.
class EncodingChange {
  public:
    // From `encoding`. Writes what is to come under unfinished names; `changed` is called whenever
    // a file has taken a name or lost it. Throws PlatformError, with nothing changed, when the
    // ".cpg" tells an encoding that has no mark.
    EncodingChange(
        std::string table, const std::string& encoding, std::function<void()> changed = [] {});

    // Has the table alone tell its old encoding. Throws PlatformError.
    void tellByMark();
    // The ".cpg" that says UTF-8, when the new table has its name. Throws PlatformError.
    void tellUtf8();

  private:
    void writeMarked(const std::string& encoding) const;

    std::string table_;
    std::function<void()> changed_;
    UnfinishedFile newNote_;
    UnfinishedFile markedTable_;  // the old one with its mark
    bool noted_ = false;          // whether a ".cpg" tells the old encoding
};

}  // namespace velmora::platform
