// SPDX-License-Identifier: MIT
// The application hook: what a host gives to the extension's commands.
#pragma once

#include <string>

#include "gis/analysis.h"
#include "gis/browsers.h"
#include "gis/clock.h"
#include "gis/diagnostics.h"
#include "gis/features.h"
#include "gis/feedback.h"
#include "gis/files.h"
#include "gis/joins.h"
#include "gis/map_document.h"
#include "gis/parallel.h"
#include "gis/projection.h"
#include "gis/prompts.h"
#include "gis/rasters.h"
#include "gis/run_journal.h"
#include "gis/tables.h"

namespace velmora {

class Form;

// The platform's factories and services.
class IPlatform {
  public:
    virtual ~IPlatform() = default;
    virtual IRasterWorkspaceFactory& rasters() = 0;
    virtual IFeatureWorkspaceFactory& features() = 0;
    virtual IConnectionFactory& connections() = 0;
    virtual IAnalysisFactory& analysis() = 0;
    virtual ISpatialReferenceFactory& spatialReferences() = 0;
    virtual IMemoryRelationshipClassFactory& memoryRelationships() = 0;
    virtual ICalculator& calculator() = 0;
    virtual IParallelLoop& loop() = 0;
    virtual IFileSystem& files() = 0;
    virtual IClock& clock() = 0;
    virtual IRunJournal& journal() = 0;
};

// Shows forms. A form lives on while it is shown.
class IDialogs {
  public:
    virtual ~IDialogs() = default;
    virtual void showModal(Form& form) = 0;  // returns when the form is closed
    virtual void show(Form& form) = 0;       // returns at once
};

enum class StepOutcome { done, failed, cancelled };

class IApplication {
  public:
    virtual ~IApplication() = default;
    virtual IPlatform& platform() = 0;
    virtual IPrompts& prompts() = 0;
    virtual IBrowsers& browsers() = 0;
    virtual IDialogs& dialogs() = 0;
    virtual IMxDocument& document() = 0;
    // Where steps report how far they are; the host's loops report there too.
    virtual Feedback& feedback() = 0;
    // The folder that stands for the extension module's own, home of the default settings file.
    virtual std::string extensionFolder() = 0;
    // Where steps send what stands behind their surfaces; none unless the user asked for it.
    virtual IDiagnostics* diagnostics() { return nullptr; }
    // Whether the user asked for the reference ET grids by the papers' own choices as well, beside
    // those of the method.
    virtual bool wantsStandardRun() const { return false; }
    // Whether the user asked for the grids of flags beside the reference ET grids.
    virtual bool wantsQualityGrids() const { return false; }
    // Whether a reference ET run stores its cells in the work database, unless the user forwent it.
    virtual bool wantsWorkDatabase() const { return true; }
    // Told at the end of every click of a model command, and of cancelled work of a form.
    virtual void noteOutcome(StepOutcome outcome) = 0;
};

}  // namespace velmora
