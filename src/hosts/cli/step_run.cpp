// SPDX-License-Identifier: MIT
#include "hosts/cli/step_run.h"

#include <exception>

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/chain/steps.h"
#include "hosts/cli/failure.h"
#include "hosts/cli/headless_application.h"
#include "hosts/cli/input_gate.h"
#include "hosts/results/run_log.h"
#include "modelling/products.h"
#include "settings/stored_settings.h"

namespace velmora::cli {

namespace {

using Json = nlohmann::ordered_json;

// Writes the diagnostics into the output folder and shows them.
Json showDiagnostics(const Session& session, HeadlessApplication& application,
                     const std::string& step) {
    const DiagnosticsReport& report = application.report();
    if (report.surfaces().empty()) {
        tell("There are no diagnostics: the step made no surface over stations\n");
        return Json::array();
    }
    if (!session.json) print("{}\n", report.table());
    IFileSystem& disk = application.platform().files();
    const std::string folder = requiredSettings(disk, session.settingsFolder).OutputWorkspace;
    const auto files =
        report.write(disk, folder, std::string(productMadeBy(step).made.stem) + "diagnostics");
    const std::string pictures =
        files.size() > 1
            ? ", with " + counted(files.size() - 1, "picture") + " *_semivariogram.png beside it"
            : std::string();
    sayDone(session, "{} is written{}\n", files.front(), pictures);
    return Json::parse(report.json());
}

// Uses the dialogs that steps open.
void drive(const Session& session, HeadlessApplication& application, Form& form,
           const EfficiencyOptions& efficiency) {
    if (form.name() == "frmKcEditor") pressMakeKcMaps(session, form, {});
    if (form.name() == "frmEfficiency") useEfficiencyDialog(application, form, efficiency);
    if (form.name() == "frmStatistics" && !session.terminal.quiet) {
        tell("{}; velmora table StatIRR shows them\n", form.control<Label>("lblNote").text());
    }
}

}  // namespace

void tellError(StepResult& result, const std::string& text, const ErrorPlace& place, bool json) {
    tellFailure(text, place, json);
    result.told.push_back({"error", text, true, place});
    result.done = false;
}

StepResult carryOut(const Session& session, const std::string& step, bool diagnose,
                    const EfficiencyOptions& efficiency, const BesideRefEt& beside) {
    StepResult result;
    result.step = step;
    HeadlessApplication application(session.settingsFolder, session.terminal);
    if (diagnose) application.askForDiagnostics();
    if (beside.standard && step == "refet") application.askForStandardRun();
    if (beside.quality && step == "refet") application.askForQualityGrids();
    if (beside.noWorkDatabase) application.forgoWorkDatabase();
    application.dialogs().driver = [&](Form& form) {
        drive(session, application, form, efficiency);
    };
    const IClock& clock = application.platform().clock();
    const double began = clock.seconds();
    std::string failure;
    ErrorPlace place;
    try {
        if (step == "eff") requireShares(session, efficiency);
        clickStep(application, step);
        result.done = application.outcome() == StepOutcome::done;
        if (diagnose) result.diagnostics = showDiagnostics(session, application, step);
    } catch (const std::exception& e) {
        failure = e.what();
        place = placeOfHandled();
    } catch (const Cancelled&) {
        result.done = false;  // between two parts of the step
    }
    result.seconds = clock.seconds() - began;
    result.told = application.prompts().told();
    if (!failure.empty()) tellError(result, failure, place, session.json);
    result.made = application.document().paths();
    StepRun run{step, result.done, result.seconds, {}, {}};
    for (const Told& told : result.told) run.messages.push_back(told.text);
    const std::string unnoted =
        noteRun(application.platform().files(), session.settingsFolder, run);
    if (!unnoted.empty()) tellError(result, unnoted, {}, session.json);
    return result;
}

Json jsonOf(const StepResult& result) {
    Json json = {{"step", result.step}, {"done", result.done}, {"seconds", result.seconds}};
    for (const auto& [kind, name] : {std::pair{"error", "errors"},
                                     {"message", "messages"},
                                     {"reason", "reasons"},
                                     {"note", "notices"}}) {
        json[name] = Json::array();
        for (const Told& told : result.told) {
            if (told.kind == kind) json[name].push_back(told.text);
        }
    }
    json["failures"] = Json::array();
    for (const Told& told : result.told) {
        if (told.failed) json["failures"].push_back(failureJson(told.text, told.place));
    }
    json["made"] = result.made;
    if (!result.diagnostics.is_null()) json["diagnostics"] = result.diagnostics;
    return json;
}

int runStep(const Session& session, const std::string& step, const ChainOptions& options) {
    if (!passInputs(session, step, options.strict)) return kFailed;
    const StepResult result =
        carryOut(session, step, options.diagnose, options.efficiency, options.beside);
    if (session.json) printJson(jsonOf(result));
    return result.done ? kDone : kFailed;
}

}  // namespace velmora::cli
