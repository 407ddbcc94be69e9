// SPDX-License-Identifier: MIT
// Notes of runs of any content are read; a run that is noted beside them is the last one read.
#include "hosts/results/run_log.h"
#include "platform/files/file_system.h"
#include "settings/settings_file.h"
#include "tests/fuzz/harness.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFolder& folder = fuzz::memoryFolder();
    static platform::FileSystem files;
    static const bool settled = [&] {
        RunSettings settings;
        settings.OutputWorkspace = folder.file("");
        writeSettings(files, defaultSettingsPath(folder.file("")), settings);
        return true;
    }();
    (void)settled;
    folder.write("velmora_runs.json", fuzz::text(data, size));
    notedRuns(folder.file(""));
    StepRun run;
    run.step = "irr";
    run.done = true;
    run.seconds = 2.5;
    run.messages = {"one", "two"};
    noteRun(files, folder.file(""), run);
    const auto runs = notedRuns(folder.file(""));
    fuzz::require(!runs.empty() && runs.back().step == run.step &&
                  runs.back().messages == run.messages);
    return 0;
}
