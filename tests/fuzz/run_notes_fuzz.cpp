// SPDX-License-Identifier: MIT
// Notes of runs of any content are read; a run that is noted beside them is the last one read.
#include <cstdlib>

#include "hosts/cli/run_log.h"
#include "platform/files/file_system.h"
#include "settings/settings_file.h"
#include "tests/fuzz/memory_folder.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFolder folder;
    static platform::FileSystem files;
    static const bool settled = [] {
        RunSettings settings;
        settings.OutputWorkspace = folder.file("");
        writeSettings(files, defaultSettingsPath(folder.file("")), settings);
        return true;
    }();
    (void)settled;
    folder.write("velmora_runs.json", fuzz::text(data, size));
    cli::notedRuns(folder.file(""));
    cli::StepRun run;
    run.step = "irr";
    run.done = true;
    run.seconds = 2.5;
    run.messages = {"one", "two"};
    cli::noteRun(files, folder.file(""), run);
    const auto runs = cli::notedRuns(folder.file(""));
    if (runs.empty() || runs.back().step != run.step || runs.back().messages != run.messages) {
        std::abort();
    }
    return 0;
}
