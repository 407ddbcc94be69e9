// SPDX-License-Identifier: MIT
// What it costs that an edited dBASE table is read again and compared before it takes its name: one
// edit of 300,000 records with and without it, in turns. Usage: bench_dbase_edit [ROUNDS] [FOLDER].
// Nothing is synced, which would hide the rest.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/posix_file.h"
#include "platform/platform.h"
#include "platform/tables/dbase_edit.h"

namespace velmora::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kRecords = 300000;

// Edits as ever, but takes what it has written for right.
class UncheckedEdit : public DbaseEdit {
  public:
    using DbaseEdit::DbaseEdit;

  protected:
    void requireRight(const std::string&, const std::string&, const std::string&) const override {}
};

// A table as of stations or pieces of land: texts, numbers and the field that is to be changed.
void makeTable(Platform& platform, const std::string& path) {
    std::vector<std::vector<FieldValue>> records;
    records.reserve(kRecords);
    for (std::size_t r = 0; r < kRecords; ++r) {
        records.push_back({"Piece " + std::to_string(r), std::string("Alfalfa"),
                           static_cast<double>(r) * 0.25, 1.5, 2.5, 0.0});
    }
    platform.features().createTable(path,
                                    {{"NAME", FieldType::text, 20, 0},
                                     {"CROP", FieldType::text, 30, 0},
                                     {"AREA", FieldType::number, 20, 6},
                                     {"A", FieldType::number, 12, 4},
                                     {"B", FieldType::number, 12, 4},
                                     {"TempTTT", FieldType::number, 24, 15}},
                                    records);
}

// Of one edit that changes a number of every record.
double seconds(DbaseEdit& edit, double value) {
    for (std::size_t r = 0; r < kRecords; ++r) {
        edit.setValue(r, "TempTTT", value + static_cast<double>(r) * 0.001);
    }
    const auto began = Clock::now();
    edit.save();
    return std::chrono::duration<double>(Clock::now() - began).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

void compare(const std::string& path, int rounds) {
    Platform platform;
    makeTable(platform, path);
    std::array<std::vector<double>, 2> times;
    for (int round = 0; round <= rounds; ++round) {
        DbaseEdit checked(platform.features().openTable(path));
        UncheckedEdit unchecked(platform.features().openTable(path));
        const std::array<double, 2> taken = {seconds(checked, round), seconds(unchecked, -round)};
        for (std::size_t way = 0; way < taken.size() && round > 0; ++way) {
            times[way].push_back(taken[way]);  // the first round fills the caches
        }
    }
    const double without = median(times[1]);
    std::printf("an edit of %zu records (%ju bytes): read again %.3f s, not %.3f s (%.2f)\n",
                kRecords, static_cast<std::uintmax_t>(std::filesystem::file_size(path)),
                median(times[0]), without, median(times[0]) / without);
}

}  // namespace
}  // namespace velmora::platform

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const std::string base = argc > 2 ? argv[2] : ".";
    const std::string folder = base + "/bench-dbase-edit-" + std::to_string(std::rand());
    velmora::platform::setSyncing(false);
    std::filesystem::create_directory(folder);
    velmora::platform::compare(folder + "/t.dbf", rounds);
    std::filesystem::remove_all(folder);
}
