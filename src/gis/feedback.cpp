// SPDX-License-Identifier: MIT
#include "gis/feedback.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr double kSmallestStep = 0.001;

}  // namespace

void throwIfCancelled(const IFeedback& feedback) {
    if (feedback.cancelled()) throw Cancelled();
}

template <class Telling>
void Feedback::tellAll(const Telling& telling) {
    for (IFeedbackListener* listener : listeners_) telling(*listener);
}

void Feedback::begin(const std::string& title) {
    from_ = 0;
    to_ = 1;
    shown_ = 0;
    tellAll([&](IFeedbackListener& listener) { listener.begins(title); });
}

void Feedback::end() {
    tellAll([](IFeedbackListener& listener) { listener.ends(); });
}

void Feedback::beginPart(double from, double to) {
    throwIfCancelled(*this);
    from_ = from;
    to_ = to;
    showFraction(from);
}

void Feedback::advance(double done) {
    showFraction(from_ + (to_ - from_) * std::clamp(done, 0.0, 1.0));
    tellAll([](IFeedbackListener& listener) { listener.beat(); });
}

void Feedback::showFraction(double fraction) {
    if (fraction < shown_ + kSmallestStep && (fraction < 1 || shown_ >= 1)) return;
    shown_ = fraction;
    tellAll([&](IFeedbackListener& listener) { listener.fractionChanged(fraction); });
}

void Feedback::setMessage(const std::string& text) {
    tellAll([&](IFeedbackListener& listener) { listener.messageChanged(text); });
}

void Feedback::setStatus(const std::string& text) {
    tellAll([&](IFeedbackListener& listener) { listener.statusChanged(text); });
}

void Feedback::warning(const std::string& text) {
    tellAll([&](IFeedbackListener& listener) { listener.warned(text); });
}

void Feedback::listen(IFeedbackListener& listener) { listeners_.push_back(&listener); }

void Feedback::ignore(IFeedbackListener& listener) { std::erase(listeners_, &listener); }

void FeedbackParts::next(const std::string& message) {
    const auto at = [&](std::size_t part) {
        return from_ + (to_ - from_) * static_cast<double>(part) / static_cast<double>(count_);
    };
    feedback_.beginPart(at(begun_), at(begun_ + 1));
    ++begun_;
    if (!message.empty()) feedback_.setMessage(message);
}

}  // namespace velmora
