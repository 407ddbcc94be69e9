// SPDX-License-Identifier: MIT
// Keeps what a step tells its user, and answers its questions.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "gis/prompts.h"

namespace velmora::test {

class FakePrompts : public IPrompts {
  public:
    using IPrompts::message;
    void message(const std::string& text, const std::string& title) override {
        messages.push_back(text);
        titles.push_back(title);
    }
    bool confirm(const std::string& question, const std::string& title) override {
        questions.push_back(question);
        questionTitles.push_back(title);
        return answers ? answers(question) : answer;
    }
    std::vector<std::string> messages;
    std::vector<std::string> titles;
    std::vector<std::string> questions;
    std::vector<std::string> questionTitles;
    bool answer = false;  // unless `answers` is set
    std::function<bool(const std::string&)> answers;
    std::vector<std::string> reasons;
    std::vector<std::string> notices;

  protected:
    void showReason(const std::string& text) override { reasons.push_back(text); }
    void showNotice(const std::string& text) override { notices.push_back(text); }
};

}  // namespace velmora::test
