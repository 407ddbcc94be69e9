// SPDX-License-Identifier: MIT
// The declarations of the command `velmora`: its subcommands, options and examples. The help and
// the manual page come from them.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/commands.h"

namespace velmora::cli {

class CommandLine {
  public:
    CommandLine();
    // Parses the arguments and runs what they ask for. Returns the exit status.
    int run(int argc, const char* const* argv);
    // Parses the arguments alone. The exit status when that is all there is to do: help, the
    // version, and bad usage, whose error goes to `err`.
    std::optional<int> parse(int argc, const char* const* argv, std::ostream& out,
                             std::ostream& err);
    const CLI::App& app() const { return app_; }

  private:
    using Action = std::function<int(const Session&)>;

    CLI::App* add(CLI::App& parent, const std::string& name, const std::string& description,
                  const std::string& example);
    void whenChosen(CLI::App* command, Action action);
    void addSettings();
    void addRun();
    void addKc();
    void addEfficiency();
    void withDatabase(CLI::App* command);
    // The options --cvef and --default-shares, with --overwrite-shares.
    std::pair<CLI::Option*, CLI::Option*> withShares(CLI::App* command);
    void addZones(CLI::App& eff);
    void addShareSetting(CLI::App& eff);
    void addTable();
    void addRecords();
    void addReport();
    void addAccount();
    void addGrid();
    void addValidate();
    void addDemo();
    int runChosen();

    CLI::App app_;
    Session session_;
    bool yes_ = false;
    bool no_ = false;
    bool noSync_ = false;
    bool manPage_ = false;
    bool diagnose_ = false;
    int bands_ = 2;
    bool newCrop_ = false;
    bool csv_ = false;
    bool inputsOnly_ = false;
    bool all_ = false;
    bool summary_ = false;
    bool markdown_ = false;
    bool departures_ = false;
    bool replaceDatabase_ = false;
    KcOptions kcOptions_;
    EfficiencyOptions efficiency_;
    RowChange change_;
    ChainOptions chain_;
    AccountRequest account_;
    ReportRequest report_;
    Action action_;
    std::vector<std::string> assignments_;
    std::vector<std::string> names_;
    std::string first_;
    std::string second_;
    std::string title_;
};

}  // namespace velmora::cli
