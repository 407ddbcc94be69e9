// SPDX-License-Identifier: MIT
#include "shell/commands.h"

#include <memory>

#include "crop/crop_et_run.h"
#include "crop/frm_kc_editor.h"
#include "crop/kc_maps.h"
#include "gis/errors.h"
#include "irrigation/frm_efficiency.h"
#include "irrigation/irrigation_requirement_run.h"
#include "irrigation/net_irrigation_run.h"
#include "precip/precipitation_run.h"
#include "refet/refet_run.h"
#include "settings/frm_settings.h"
#include "settings/run_gate.h"
#include "settings/run_state.h"
#include "shell/frm_monitor.h"

namespace velmora {

namespace {

// All commands of one application share one form. It goes with the last of them, so that nothing
// outlives the host that shows it.
std::shared_ptr<frmSettings> settingsForm(IApplication& application) {
    static std::weak_ptr<frmSettings> shared;
    static const IApplication* owner = nullptr;
    auto form = shared.lock();
    if (!form || owner != &application) {
        form = std::make_shared<frmSettings>(application);
        shared = form;
        owner = &application;
    }
    return form;
}

}  // namespace

clsSettings::clsSettings() : Command({"", "General Settings", "Make settings for model running"}) {}

void clsSettings::OnClick() {
    form_ = settingsForm(application());
    form_->load();
    application().dialogs().showModal(*form_);
}

void ModelCommand::OnClick() {
    StepOutcome outcome = StepOutcome::failed;
    const std::size_t failuresBefore = application().prompts().failures();
    try {
        const bool ran = passRunGate(application()) && runStep();
        if (ran && application().prompts().failures() == failuresBefore) {
            outcome = StepOutcome::done;
        }
    } catch (const Cancelled&) {
        outcome = StepOutcome::cancelled;
    } catch (...) {
        application().noteOutcome(outcome);
        throw;
    }
    application().noteOutcome(outcome);
}

MonitoredCommand::~MonitoredCommand() { closeMonitor(); }

void MonitoredCommand::closeMonitor() {
    if (monitor_) monitor_->close();
    monitor_.reset();
}

bool MonitoredCommand::runStep() {
    const RunSettings& settings = processState().settings;
    closeMonitor();
    monitor_ = std::make_unique<frmMonitor>();
    monitor_->load();
    if (settings.ShowMonitor) application().dialogs().show(*monitor_);
    struct Ending {
        frmMonitor& monitor;
        ~Ending() { monitor.stepEnded(); }
    } const ending{*monitor_};
    const Listening listening(application().feedback(), *monitor_);
    const FeedbackScope scope(application().feedback(), Caption());
    return runMonitored(settings);
}

clsET_ReferenceET::clsET_ReferenceET()
    : MonitoredCommand({"Velmora_RefET", "Calculate Reference ET", "Estimate Regional RefET"}) {}

bool clsET_ReferenceET::runMonitored(const RunSettings& settings) {
    return ReferenceEtRun(application(), settings).run();
}

clsET_CropCoefficient::clsET_CropCoefficient()
    : ModelCommand(
          {"Velmora_KcMaker", "Make Kc Maps", "Edit Crop Coefficients Curve and Make Kc Map"}) {}

bool clsET_CropCoefficient::runStep() {
    frmKcEditor form(application(), processState().settings);
    form.load();
    application().dialogs().showModal(form);
    if (!processState().mapsMade) {
        application().prompts().failure("Kc Maps will not be generated at this time");
        return false;
    }
    if (!passRunGate(application())) return false;
    try {
        showKcMaps(application(), processState().settings);
    } catch (const PlatformError& e) {
        application().prompts().failure(e.what());
        return false;
    }
    return !form.failed();
}

clsET_CropET::clsET_CropET() : MonitoredCommand({"", "Estimate Crop ET", ""}) {}

bool clsET_CropET::runMonitored(const RunSettings& settings) {
    return runCropEt(application(), settings);
}

clsPPT::clsPPT()
    : MonitoredCommand({"PPTInter", "Precipitation Estimation",
                        "Estimate spatially distributed precipitation"}) {}

bool clsPPT::runMonitored(const RunSettings& settings) {
    return PrecipitationRun(application(), settings).run();
}

clsIR_NIR::clsIR_NIR()
    : MonitoredCommand(
          {"", "Estimate Crop Water Requirement", "Estimate Irrigation Water Requirement"}) {}

bool clsIR_NIR::runMonitored(const RunSettings& settings) {
    return runNetIrrigation(application(), settings);
}

clsIR_EFF::clsIR_EFF()
    : Command({"WaterUseRst", "Estimate Irrigation Efficiency", "Show the Results"}) {}

void clsIR_EFF::OnClick() {
    frmEfficiency form(application());
    const std::size_t failuresBefore = application().prompts().failures();
    form.load();
    if (form.isOpen()) application().dialogs().showModal(form);
    const bool failed = form.failed() || application().prompts().failures() != failuresBefore;
    application().noteOutcome(failed ? StepOutcome::failed : StepOutcome::done);
}

clsIR_IRR::clsIR_IRR()
    : MonitoredCommand({"WaterUseRst", "Estimate Irrigation Water Requirement",
                        "Estimate Irrigation Water Requirement"}) {}

bool clsIR_IRR::runMonitored(const RunSettings& settings) {
    return runIrrigationRequirement(application(), settings);
}

}  // namespace velmora
