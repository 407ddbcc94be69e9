// SPDX-License-Identifier: MIT
// What it costs that grids reach the disk: grids written without syncing, with every file synced,
// and with the whole file system synced in one pass. The ways take turns, so that they meet the
// same load of the disk. Usage: bench_sync [ROUNDS] [FOLDER]; the folder must lie on the disk in
// question.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/files/posix_file.h"
#include "platform/grid/esri_grid.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {
namespace {

using Clock = std::chrono::steady_clock;

struct Work {
    const char* name;
    int saves;  // one after the other, each synced when it is done
    int grids;  // of each
    int cells;  // each way
};

void writeGrid(const std::string& folder, int cells) {
    EsriGridWriter writer(folder, {cells, cells, 0, 0, 100, ""});
    const GridTiles tiles(writer.geometry());
    std::vector<float> values;
    for (std::size_t t = 0; t < tiles.count(); ++t) {
        values.assign(tiles.block(t, writer.geometry()).cells(), static_cast<float>(t) * 0.37F);
        writer.writeTile(t, values);
    }
    writer.finish();
}

void syncEachFile(const std::string& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        syncToDisk(entry.path().string());
    }
    syncToDisk(folder);
}

// One pass per grid, two threads, as a step saves them.
double seconds(const Work& work, const std::string& folder, bool eachFile, bool onePass) {
    const auto began = Clock::now();
    for (int save = 0; save < work.saves; ++save) {
        const auto name = [&](std::size_t i) {
            return folder + "/g" + std::to_string(save) + "_" + std::to_string(i);
        };
        parallelFor(static_cast<std::size_t>(work.grids), 1,
                    [&](std::size_t begin, std::size_t end) {
                        for (std::size_t i = begin; i < end; ++i) {
                            writeGrid(name(i), work.cells);
                            if (eachFile) syncEachFile(name(i));
                        }
                    });
        if (onePass) syncFileSystemOf(folder);
    }
    const double taken = std::chrono::duration<double>(Clock::now() - began).count();
    std::filesystem::remove_all(folder);
    syncFileSystemOf(std::filesystem::path(folder).parent_path().string());
    std::filesystem::create_directory(folder);
    return taken;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void compare(const Work& work, const std::string& folder, int rounds) {
    std::array<std::vector<double>, 3> times;
    for (int round = 0; round <= rounds; ++round) {
        for (std::size_t way = 0; way < times.size(); ++way) {
            const double taken = seconds(work, folder, way == 1, way == 2);
            if (round > 0) times[way].push_back(taken);  // the first fills the caches
        }
    }
    const double none = median(times[0]);
    std::printf("%-34s not %.3f s, each file %.3f s (%.2f), one pass %.3f s (%.2f)\n", work.name,
                none, median(times[1]), median(times[1]) / none, median(times[2]),
                median(times[2]) / none);
    std::fflush(stdout);
}

}  // namespace
}  // namespace velmora::platform

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
    const std::string base = argc > 2 ? argv[2] : ".";
    const std::string folder = base + "/bench-sync-" + std::to_string(std::rand());
    std::filesystem::create_directory(folder);
    for (const velmora::platform::Work& work :
         {velmora::platform::Work{"one save of 60 grids, 1000 x 1000", 1, 60, 1000},
          velmora::platform::Work{"12 saves of a grid, 1000 x 1000", 12, 1, 1000},
          velmora::platform::Work{"12 saves of a grid, 250 x 250", 12, 1, 250}}) {
        velmora::platform::compare(work, folder, rounds);
    }
    std::filesystem::remove_all(folder);
}
