// SPDX-License-Identifier: MIT
// The eight commands. Their properties are constants; each keeps the hook it was created with and
// nothing about a run, but for the windows that stay when a click has ended.
#pragma once

#include <memory>

#include "shell/com_object.h"
#include "shell/interfaces.h"

namespace velmora {

class frmMonitor;
class frmSettings;
struct RunSettings;

// The properties in which the commands differ.
struct CommandTexts {
    const char* name;
    const char* caption;
    const char* message;
};

class Command : public ComObject<ICommand> {
  public:
    explicit Command(const CommandTexts& texts) : texts_(texts) {}
    bool Enabled() override { return true; }
    bool Checked() override { return false; }
    std::string Name() override { return texts_.name; }
    std::string Caption() override { return texts_.caption; }
    std::string Tooltip() override { return {}; }
    std::string Message() override { return texts_.message; }
    std::string HelpFile() override { return {}; }
    std::int32_t HelpContextID() override { return 0; }
    std::intptr_t Bitmap() override { return 0; }
    std::string Category() override { return "Tarnwick"; }
    void OnCreate(IApplication* hook) override { application_ = hook; }

  protected:
    IApplication& application() const { return *application_; }

  private:
    CommandTexts texts_;
    IApplication* application_ = nullptr;
};

// Opens the General Settings form, which exists once per process.
class clsSettings : public Command {
  public:
    clsSettings();
    void OnClick() override;

  private:
    std::shared_ptr<frmSettings> form_;
};

// A command that passes the run gate and then runs its step.
class ModelCommand : public Command {
  public:
    using Command::Command;
    void OnClick() override;

  protected:
    // Runs the step on the settings just read. False when it failed; a failure that it shows makes
    // the click a failed one also when it goes on and gives true. A cancelled step ends here; what
    // else it throws is the click's failure and goes to the host.
    virtual bool runStep() = 0;
};

// A step that the progress monitor shows, when the settings ask for it. The window stays open until
// the user closes it, or the next run begins.
class MonitoredCommand : public ModelCommand {
  public:
    using ModelCommand::ModelCommand;
    ~MonitoredCommand() override;

  protected:
    bool runStep() final;
    virtual bool runMonitored(const RunSettings& settings) = 0;

  private:
    void closeMonitor();
    std::unique_ptr<frmMonitor> monitor_;
};

class clsET_ReferenceET : public MonitoredCommand {
  public:
    clsET_ReferenceET();

  protected:
    bool runMonitored(const RunSettings& settings) override;
};

// Opens the Kc-Map Maker; when it is closed and maps have been made, they are shown in the map.
class clsET_CropCoefficient : public ModelCommand {
  public:
    clsET_CropCoefficient();

  protected:
    bool runStep() override;
};

class clsET_CropET : public MonitoredCommand {
  public:
    clsET_CropET();

  protected:
    bool runMonitored(const RunSettings& settings) override;
};

class clsPPT : public MonitoredCommand {
  public:
    clsPPT();

  protected:
    bool runMonitored(const RunSettings& settings) override;
};

class clsIR_NIR : public MonitoredCommand {
  public:
    clsIR_NIR();

  protected:
    bool runMonitored(const RunSettings& settings) override;
};

// Opens the irrigation efficiency dialog, whose opening passes the run gate.
class clsIR_EFF : public Command {
  public:
    clsIR_EFF();
    void OnClick() override;
};

class clsIR_IRR : public MonitoredCommand {
  public:
    clsIR_IRR();

  protected:
    bool runMonitored(const RunSettings& settings) override;
};

}  // namespace velmora
