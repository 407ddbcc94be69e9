// SPDX-License-Identifier: MIT
// Watches what a step reports.
#pragma once

#include <string>
#include <vector>

#include "gis/feedback.h"
#include "gis/prompts.h"

namespace velmora::test {

class RecordingMonitor : public IFeedbackListener {
  public:
    void messageChanged(const std::string& text) override { messages.push_back(text); }
    void statusChanged(const std::string& text) override { statuses.push_back(text); }
    void fractionChanged(double done) override { fractions.push_back(done); }
    void begins(const std::string& title) override { begun.push_back(title); }
    void ends() override { ++ended; }
    std::vector<std::string> messages;
    std::vector<std::string> statuses;
    std::vector<double> fractions;
    std::vector<std::string> begun;
    int ended = 0;
};

// Warnings become notices, as hosts have it.
class WarningsAsNotices : public IFeedbackListener {
  public:
    explicit WarningsAsNotices(IPrompts& prompts) : prompts_(prompts) {}
    void warned(const std::string& text) override { prompts_.notice(text); }

  private:
    IPrompts& prompts_;
};

}  // namespace velmora::test
