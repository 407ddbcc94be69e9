// SPDX-License-Identifier: MIT
#include "tests/faults/campaign.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace velmora::faults {

namespace {

using nlohmann::json;

json jsonOf(std::size_t index, const Outcome& outcome) {
    const Ending& e = outcome.ending;
    return {{"point", index},         {"text", textOf(outcome.point)},
            {"status", e.status},     {"signal", e.signal},
            {"hung", e.hung},         {"reached", e.reached},
            {"met", e.met},           {"errors", e.errors},
            {"fault", outcome.fault}, {"nextRun", outcome.nextRun}};
}

Outcome outcomeOf(const json& line, const Point& point) {
    Outcome outcome{point, {}, line.at("fault"), line.at("nextRun")};
    outcome.ending.status = line.at("status");
    outcome.ending.signal = line.at("signal");
    outcome.ending.hung = line.at("hung");
    outcome.ending.reached = line.at("reached");
    outcome.ending.met = line.at("met");
    outcome.ending.errors = line.at("errors");
    return outcome;
}

// Every so manieth point, one line of outcome each.
void work(const Project& project, const std::vector<Point>& points, std::size_t first,
          std::size_t step, const std::string& file) {
    std::ofstream lines(file);
    for (std::size_t i = first; i < points.size(); i += step) {
        const json line = jsonOf(i, tryPoint(project, points[i]));
        lines << line.dump(-1, ' ', false, json::error_handler_t::replace) << '\n';
    }
    if (!lines.flush()) throw std::runtime_error("the outcomes cannot be written: " + file);
}

std::string folderOf(const Campaign& campaign, int process) {
    const std::string folder = campaign.folder + "/" + std::to_string(process);
    std::filesystem::create_directories(folder);
    return folder;
}

pid_t startWork(const Campaign& campaign, int process, const Project* made,
                const std::vector<Point>& points) {
    const pid_t child = ::fork();
    if (child != 0) return child;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // nothing works on when the campaign is stopped
    try {
        std::unique_ptr<Project> own;
        if (!made) own = std::make_unique<Project>(campaign.program, folderOf(campaign, process));
        work(made ? *made : *own, points, static_cast<std::size_t>(process),
             static_cast<std::size_t>(campaign.processes),
             folderOf(campaign, process) + "/outcomes");
        ::_exit(0);
    } catch (const std::exception& e) {
        std::cerr << e.what() << '\n';
        ::_exit(1);
    }
}

void collect(const std::string& file, const std::vector<Point>& points,
             std::vector<Outcome>& outcomes) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const json read = json::parse(line);
        const std::size_t index = read.at("point");
        outcomes.at(index) = outcomeOf(read, points.at(index));
    }
}

}  // namespace

Outcome tryPoint(const Project& project, const Point& point) {
    const Undisturbed& undisturbed = project.stage(point.step).undisturbed;
    const Command command = project.command(point.step);
    const Injection injection{&callKind(point.call), point.number, faultOf(point.error)};
    project.restore(point.step);
    Outcome outcome{point, runWithFault(command, injection), {}, {}};
    outcome.fault = judgeFault(undisturbed, outcome.ending, injection.fault.kills,
                               project.contents(), project.scratch());
    // Files of the installation are not the program's; what the user has must stand all the same.
    // Without the database of coordinate systems results would be others, so that is to be told.
    const std::string& met = outcome.ending.met;
    const bool installed = met.starts_with("/usr/") || met.starts_with("/etc/");
    if (installed && !met.ends_with("/proj.db")) {
        std::erase_if(outcome.fault, [](const std::string& text) {
            return !text.starts_with("input ") && !text.starts_with("old dataset");
        });
    }
    const Ending next = run(command);
    outcome.nextRun = judgeNextRun(undisturbed, next, project.contents(), project.scratch());
    return outcome;
}

std::vector<Outcome> tryAll(const Campaign& campaign) {
    const Project project(campaign.program, folderOf(campaign, 0));
    const std::vector<Point> points = draw(project.count(), campaign.points, campaign.seed);
    std::vector<pid_t> children;
    for (int i = 0; i < campaign.processes; ++i) {
        children.push_back(startWork(campaign, i, i == 0 ? &project : nullptr, points));
    }
    bool done = true;
    for (const pid_t child : children) {
        int state = 0;
        done = ::waitpid(child, &state, 0) == child && state == 0 && done;
    }
    if (!done) throw std::runtime_error("not every point could be tried");
    std::vector<Outcome> outcomes(points.size());
    for (int i = 0; i < campaign.processes; ++i) {
        collect(folderOf(campaign, i) + "/outcomes", points, outcomes);
    }
    return outcomes;
}

}  // namespace velmora::faults
