// SPDX-License-Identifier: MIT
// Runs the steps of the command while system calls fail or the program is killed in them, and looks
// whether that ends as it must. Exit status: 0 all as it should be, 1 not, 77 programs cannot be
// traced here. scripts/faults.sh starts it.
#include <fmt/core.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/faults/campaign.h"
#include "tests/faults/tables.h"

namespace {

using namespace velmora::faults;
namespace fs = std::filesystem;

// A folder of its own, in memory where the system has such a place; it goes with the program, and
// at the latest when the program is started the next time.
class WorkFolder {
  public:
    WorkFolder() {
        const bool inMemory = ::access("/dev/shm", W_OK | X_OK) == 0;
        const fs::path place = inMemory ? fs::path("/dev/shm") : fs::temp_directory_path();
        for (const auto& entry : fs::directory_iterator(place)) removeStale(entry.path());
        path_ = (place / (kName + std::to_string(::getpid()))).string();
        if (!fs::create_directory(path_)) throw std::runtime_error(path_ + " is there already");
    }
    ~WorkFolder() {
        if (!kept) fs::remove_all(path_);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    const std::string& path() const { return path_; }
    bool kept = false;

  private:
    // The name ends with the number of the process that made it.
    static void removeStale(const fs::path& path) {
        const std::string name = path.filename().string();
        if (!name.starts_with(kName)) return;
        const int process = std::atoi(name.substr(kName.size()).c_str());
        std::error_code ignored;
        if (process > 0 && ::kill(process, 0) != 0 && errno == ESRCH) fs::remove_all(path, ignored);
    }

    inline static const std::string kName = "velmora-faults-";
    std::string path_;
};

int tryOnly(const Campaign& campaign, const std::string& text) {
    const Point point = pointFrom(text);
    const Project project(campaign.program, campaign.folder);
    const Outcome outcome = tryPoint(project, point);
    fmt::print("{}", whole(outcome));
    return outcome.isWrong() ? 1 : 0;
}

int tryMany(const Campaign& campaign, const std::string& list) {
    fmt::print("{} points, seed {}, {} processes\n", campaign.points, campaign.seed,
               campaign.processes);
    const auto outcomes = tryAll(campaign);
    const std::string wrong = wrongOnes(outcomes);
    fmt::print("{}\n{}{}", table(outcomes), summary(outcomes), wrong);
    if (!list.empty()) std::ofstream(list) << wrong;
    return wrong.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    Campaign campaign;
    std::string only;
    std::string list;
    bool keep = false;
    CLI::App app{"Lets system calls of the steps fail, and looks how that ends"};
    app.add_option("program", campaign.program, "The command velmora")->required();
    app.add_option("--points", campaign.points, "How many points are drawn");
    app.add_option("--seed", campaign.seed, "What they are drawn from");
    app.add_option("--processes", campaign.processes, "How many work at once")
        ->check(CLI::Range(1, 64));
    app.add_option("--only", only, "One point: STEP:CALL:ERROR:NUMBER");
    app.add_option("--list", list, "A file for the points that did not end as they should");
    app.add_flag("--keep", keep, "Keep the folder of the runs");
    CLI11_PARSE(app, argc, argv);
    try {
        WorkFolder folder;
        folder.kept = keep;
        const std::string why = whyNoTracing(folder.path());
        if (!why.empty()) {
            fmt::print("Skipped: {}\n", why);
            return 77;
        }
        if (keep) fmt::print("The runs are kept in {}\n", folder.path());
        campaign.program = fs::absolute(campaign.program).string();
        campaign.folder = folder.path();
        return only.empty() ? tryMany(campaign, list) : tryOnly(campaign, only);
    } catch (const std::exception& e) {
        fmt::print(stderr, "{}\n", e.what());
        return 1;
    }
}
