// SPDX-License-Identifier: MIT

#include "gis/text.h"
#include "hosts/chain/chain_run.h"
#include "hosts/chain/steps.h"
#include "hosts/cli/cancelling.h"
#include "hosts/cli/chain_summary.h"
#include "hosts/cli/commands.h"
#include "hosts/cli/console.h"
#include "hosts/cli/input_gate.h"
#include "hosts/cli/step_run.h"
#include "modelling/products.h"
#include "platform/platform.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

// The chain on a terminal.
class TerminalChain : public IChainHost {
  public:
    TerminalChain(const Session& session, const ChainOptions& options)
        : session_(session), options_(options) {}

    int run() {
        ChainPlan plan;
        plan.steps = options_.only.empty() ? stepsFrom(options_.from) : std::vector{options_.only};
        plan.database = wholePath(options_.efficiency.database);
        plan.useOld = options_.useOld;
        const std::string stoppedAt = runChain(platform_, *this, plan);
        const bool done = stoppedAt.empty();
        if (!done) {
            tell("The chain stops at {}. {}o on with:\n  {}\n", stoppedAt,
                 feedback().cancelled() ? "G" : "Mend what its message says, then g",
                 goOnWith(stoppedAt));
        }
        if (session_.json) {
            printSummaryJson(platform_, done ? settings() : std::nullopt, results_, stoppedAt,
                             done ? std::string() : goOnWith(stoppedAt));
        } else if (const auto now = done ? settings() : std::nullopt) {
            printSummary(platform_, *now, results_);
        }
        return done ? kDone : kFailed;
    }

    std::optional<RunSettings> settings() override {
        return storedSettings(platform_.files(), session_.settingsFolder);
    }

    void begins(const std::string& step) override {
        if (!session_.terminal.quiet) tell("== {}\n", step);
        results_.emplace_back().step = step;
    }

    void prepare(const std::string& step) override {
        if (step == "eff") ensureIrrigationDatabase(session_, options_.efficiency);
    }

    bool carryOut(const std::string& step) override {
        results_.back() =
            cli::carryOut(session_, step, diagnoses(step), options_.efficiency, options_.beside);
        return results_.back().done;
    }

    void fails(const std::string& /*step*/, const std::string& why) override {
        tellError(results_.back(), why, placeOfHandled(), session_.json);
    }

    void refuses(const std::string& step, const std::vector<std::string>& old) override {
        for (const std::string& sentence : old) tell("note: {}\n", oneLine(sentence));
        fails(step, "The step would read what is old (" + counted(old.size(), "note") +
                        " above): run the steps that make it first, or say --use-old");
    }

    void ends(const std::string& /*step*/, double seconds) override {
        results_.back().seconds = seconds;
    }

    void copied(const std::string& from, const std::string& to) override {
        sayDone(session_, "{} is copied to {}\n", from, to);
    }

    void keeps(const StepInputs::Copy& names) override {
        tell("note: {} is used as it stands; velmora{} grid copy {} {} renews it\n", names.read,
             repeatedOptions(session_), names.made, names.read);
    }

  private:
    // Only these make surfaces over stations.
    bool diagnoses(const std::string& step) const {
        return options_.diagnose && productMadeBy(step).overStations;
    }

    // The command line that goes on where the chain stopped, with all of its options.
    std::string goOnWith(const std::string& step) const {
        std::string line = "velmora" + repeatedOptions(session_) + " run all" +
                           (options_.only.empty() ? " --from " : " --only ") + step;
        const EfficiencyOptions& efficiency = options_.efficiency;
        for (const auto& [option, value] :
             {std::pair{" --database ", wholePath(efficiency.database)},
              {" --cvef ", efficiency.cvef},
              {" --default-shares ", efficiency.defaultShares}}) {
            if (!value.empty()) line += option + shellWord(value);
        }
        if (efficiency.overwriteShares) line += " --overwrite-shares";
        if (options_.diagnose) line += " --diagnose";
        if (options_.beside.standard) line += " --standard";
        if (options_.beside.quality) line += " --quality";
        if (options_.beside.noWorkDatabase) line += " --no-work-database";
        if (options_.useOld) line += " --use-old";
        if (options_.strict) line += " --strict";
        return line;
    }

    const Session& session_;
    ChainOptions options_;
    platform::Platform platform_;
    std::vector<StepResult> results_;  // of the steps so far, in order
};

}  // namespace

int runAll(const Session& session, const ChainOptions& options) {
    const std::string step = options.only.empty() ? "all" : options.only;
    if (!passInputs(session, step, options.strict)) return kFailed;
    return TerminalChain(session, options).run();
}

}  // namespace velmora::cli
