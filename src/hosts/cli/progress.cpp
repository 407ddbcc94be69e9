// SPDX-License-Identifier: MIT
#include "hosts/cli/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string_view>

#include "hosts/cli/console.h"

namespace velmora::cli {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBarWidth = 30;
constexpr auto kBetween = std::chrono::milliseconds(100);  // as often as one can read

}  // namespace

bool showsBar(const TerminalOptions& options) {
    if (options.progress == ProgressForm::bar) return true;
    if (options.progress != ProgressForm::automatic || options.quiet) return false;
    const char* terminal = std::getenv("TERM");
    const bool dumb = terminal == nullptr || std::string_view(terminal) == "dumb";
    return !dumb && isatty(STDERR_FILENO) != 0;
}

Progress::Progress(const TerminalOptions& options, IPrompts& prompts)
    : prompts_(prompts), json_(options.progress == ProgressForm::json), bar_(showsBar(options)) {}

void Progress::begins(const std::string& title) {
    title_ = title;
    message_.clear();
    done_ = 0;
    if (json_) tellJson({{"kind", "begin"}, {"title", title}});
    draw();
}

void Progress::ends() {
    if (json_) tellJson({{"kind", "end"}, {"title", title_}});
    if (bar_) setStatusLine({});
}

void Progress::fractionChanged(double done) {
    done_ = done;
    const Clock::time_point now = Clock::now();
    if (now - told_ < kBetween && done < 1) return;
    told_ = now;
    if (json_) {
        tellJson({{"kind", "progress"}, {"fraction", std::round(done * 1000) / 1000}});
    }
    draw();
}

void Progress::messageChanged(const std::string& text) {
    message_ = text;
    if (json_) tellJson({{"kind", "doing"}, {"text", text}});
    draw();
}

void Progress::draw() {
    if (!bar_) return;
    const int filled = static_cast<int>(std::lround(done_ * kBarWidth));
    setStatusLine(fmt::format("[{:#<{}}{:-<{}}] {:3.0f} %  {}", "", filled, "", kBarWidth - filled,
                              done_ * 100, message_.empty() ? title_ : message_));
}

}  // namespace velmora::cli
