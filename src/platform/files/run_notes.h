// SPDX-License-Identifier: MIT
// What the platform does while a run goes on, told by those who do it, for the run's record.
// Nothing is kept while nobody wants it.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace velmora::platform {

// A file of a dataset with its hash, which was taken while the file was written.
struct WrittenFile {
    std::string name;  // within the dataset's folder
    std::size_t bytes = 0;
    std::string hash;
    bool inPieces = false;  // the hash of the hashes of its pieces (file_hash.h)
};

struct RunNotes {
    std::mutex guard;
    std::map<std::string, std::string> read;                  // by path: coordinate system, WKT
    std::map<std::string, std::vector<WrittenFile>> written;  // by path; without files: not hashed
    std::vector<std::string> statements;                      // in their order, each once
    std::map<std::string, std::size_t> executed;              // by statement: how often
};

// Where notes go from now on, nullptr for nowhere; the notes must stay until then.
void keepNotes(RunNotes* notes);

// A dataset, table or database that has been opened; its coordinate system (WKT) if it has one.
void noteRead(const std::string& path, const std::string& crs = {});
// One that has been made or changed; what comes without hashes gets them when the run ends.
void noteWritten(const std::string& path, std::vector<WrittenFile> files = {});
// A statement, or an expression of map algebra, that has been executed.
void noteStatement(const std::string& text);

}  // namespace velmora::platform
