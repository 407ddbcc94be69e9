// SPDX-License-Identifier: MIT
// The chain of steps: one after the other, each with the copies that it waits for, and none on what
// is old.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gis/application.h"
#include "modelling/step_inputs.h"
#include "settings/run_settings.h"

namespace velmora {

struct ChainPlan {
    std::vector<std::string> steps;  // in their order
    std::string database;            // another irrigation database than the one beside the zones
    bool useOld = false;             // steps may read what is old
};

// What the host of a chain does for it, and hears of it. What it throws as PlatformError ends the
// chain at the step.
class IChainHost {
  public:
    virtual ~IChainHost() = default;
    // As they stand before a step; nothing when there are none, which the steps say.
    virtual std::optional<RunSettings> settings() = 0;

    virtual void begins(const std::string& step) = 0;
    // Before a step, what it needs beside the grids of others.
    virtual void prepare(const std::string& step) = 0;
    // The step itself; true when it is done.
    virtual bool carryOut(const std::string& step) = 0;
    // Why a step was not carried out.
    virtual void fails(const std::string& step, const std::string& why) = 0;
    // The same where it would read what is old, a sentence each.
    virtual void refuses(const std::string& step, const std::vector<std::string>& old) = 0;
    virtual void ends(const std::string& step, double seconds) = 0;

    // A grid has been copied to the name that the step reads; paths.
    virtual void copied(const std::string& from, const std::string& to) = 0;
    // What stands under that name is read as it is.
    virtual void keeps(const StepInputs::Copy& names) = 0;
};

// The step at which the chain stopped, "" when all steps are done.
std::string runChain(IPlatform& platform, IChainHost& host, const ChainPlan& plan);

}  // namespace velmora
