// SPDX-License-Identifier: MIT
#include "platform/files/run_notes.h"

#include <atomic>
#include <utility>

namespace velmora::platform {

namespace {

std::atomic<RunNotes*> kept = nullptr;

template <class Add>
void toNotes(Add add) {
    RunNotes* const notes = kept;
    if (!notes) return;
    const std::lock_guard lock(notes->guard);
    add(*notes);
}

}  // namespace

void keepNotes(RunNotes* notes) { kept = notes; }

void noteRead(const std::string& path, const std::string& crs) {
    toNotes([&](RunNotes& notes) { notes.read.try_emplace(path, crs); });
}

void noteWritten(const std::string& path, std::vector<WrittenFile> files) {
    toNotes([&](RunNotes& notes) { notes.written[path] = std::move(files); });
}

void noteStatement(const std::string& text) {
    toNotes([&](RunNotes& notes) {
        if (++notes.executed[text] == 1) notes.statements.push_back(text);
    });
}

}  // namespace velmora::platform
