// SPDX-License-Identifier: MIT
#include "hosts/chain/chain_run.h"

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/chain/copies.h"
#include "irrigation/irrigation_inputs.h"
#include "modelling/old_results.h"

namespace velmora {

namespace {

class ChainRun {
  public:
    ChainRun(IPlatform& platform, IChainHost& host, const ChainPlan& plan)
        : platform_(platform), host_(host), plan_(plan) {}

    std::string run() {
        for (const std::string& step : plan_.steps) {
            host_.begins(step);
            const double began = platform_.clock().seconds();
            const bool done = runOne(step);
            host_.ends(step, platform_.clock().seconds() - began);
            if (!done) return step;
            done_.push_back(step);
        }
        return {};
    }

  private:
    bool runOne(const std::string& step) {
        try {
            host_.prepare(step);
            if (const auto settings = host_.settings()) {
                makeCopies(step, *settings);
                if (!plan_.useOld && readsOld(step, *settings)) return false;
            }
            return host_.carryOut(step);
        } catch (const PlatformError& e) {
            host_.fails(step, e.what());
            return false;
        } catch (const Cancelled&) {
            return false;
        }
    }

    // Grids that this chain has made, or that stand for one that is missing.
    void makeCopies(const std::string& step, const RunSettings& settings) {
        for (const GridCopy& copy : copiesReadBy(platform_, settings, step, done_)) {
            if (copy.isKept()) host_.keeps(copy.names);
            if (!copy.isDue()) continue;
            const std::string& folder = settings.OutputWorkspace;
            const std::string from = copyToName(platform_, folder, copy.names);
            host_.copied(from, joinedPath(folder, copy.names.read));
        }
    }

    bool readsOld(const std::string& step, const RunSettings& settings) {
        const std::vector<std::string> old = oldInputsOf(step, settings);
        if (!old.empty()) host_.refuses(step, old);
        return !old.empty();
    }

    // Grids of earlier runs, and for the efficiencies the copy of an Access file that has changed.
    std::vector<std::string> oldInputsOf(const std::string& step, const RunSettings& settings) {
        if (step != "eff") return oldInputs(platform_, settings, step);
        const std::string database =
            plan_.database.empty() ? irrigationDatabasePath(settings) : plan_.database;
        if (!platform_.files().fileExists(database)) return {};
        const std::string stale = platform_.connections().staleCopy(database);
        return stale.empty() ? std::vector<std::string>() : std::vector{stale};
    }

    IPlatform& platform_;
    IChainHost& host_;
    const ChainPlan& plan_;
    std::vector<std::string> done_;
};

}  // namespace

std::string runChain(IPlatform& platform, IChainHost& host, const ChainPlan& plan) {
    return ChainRun(platform, host, plan).run();
}

}  // namespace velmora
