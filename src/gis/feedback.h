// SPDX-License-Identifier: MIT
// How far a piece of work has come, told to whoever watches, and whether its user wants it to end.
#pragma once

#include <atomic>
#include <string>
#include <vector>

namespace velmora {

// Thrown where work stops that its user has cancelled. It is no std::exception, so that no error
// trap on its way takes it for a failure and goes on.
struct Cancelled {};

// The side of who works: steps, and the platform's loops for them.
class IFeedback {
  public:
    virtual ~IFeedback() = default;

    // What follows is the part of the whole from one fraction to the other; all fractions from 0
    // to 1. Throws Cancelled when the user has cancelled.
    virtual void beginPart(double from, double to) = 0;
    // That much of the part is done. Loops call it many times a second; what would go back is
    // passed over, so each loop of a part may count from 0.
    virtual void advance(double done) = 0;
    virtual void setMessage(const std::string& text) = 0;  // what is being done
    virtual void setStatus(const std::string& text) = 0;   // how it stands with the whole
    virtual void warning(const std::string& text) = 0;     // to know, though nothing failed
    virtual bool cancelled() const = 0;
};

// Throws Cancelled when the user has cancelled. Never in the middle of what must be whole.
void throwIfCancelled(const IFeedback& feedback);

// The side of who watches: the progress monitor, a terminal, a desktop. All calls come on the
// thread that does the work.
class IFeedbackListener {
  public:
    virtual ~IFeedbackListener() = default;
    virtual void begins(const std::string& /*title*/) {}
    virtual void ends() {}
    virtual void fractionChanged(double /*done*/) {}  // of the whole; by a thousandth or more
    virtual void messageChanged(const std::string& /*text*/) {}
    virtual void statusChanged(const std::string& /*text*/) {}
    virtual void warned(const std::string& /*text*/) {}
    virtual void beat() {}  // work goes on
};

// Carries what the work says to its listeners, in the order in which they came.
class Feedback : public IFeedback {
  public:
    // A piece of work of that title, which is at 0 now. `end` belongs to each `begin`.
    void begin(const std::string& title);
    void end();

    void beginPart(double from, double to) override;
    void advance(double done) override;
    void setMessage(const std::string& text) override;
    void setStatus(const std::string& text) override;
    void warning(const std::string& text) override;
    bool cancelled() const override { return cancelled_; }

    // The listener must stay until `ignore`.
    void listen(IFeedbackListener& listener);
    void ignore(IFeedbackListener& listener);

    // Asks the work to end, and takes the wish back. `cancel` may be called by any thread and in
    // the handler of a signal.
    void cancel() { cancelled_ = true; }
    void resume() { cancelled_ = false; }

  private:
    void showFraction(double fraction);
    template <class Telling>
    void tellAll(const Telling& telling);

    std::vector<IFeedbackListener*> listeners_;
    std::atomic<bool> cancelled_ = false;
    double from_ = 0;
    double to_ = 1;
    double shown_ = 0;
};

// Lets a listener listen while it lives.
class Listening {
  public:
    Listening(Feedback& feedback, IFeedbackListener& listener)
        : feedback_(feedback), listener_(listener) {
        feedback_.listen(listener_);
    }
    ~Listening() { feedback_.ignore(listener_); }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;

  private:
    Feedback& feedback_;
    IFeedbackListener& listener_;
};

// Work with a beginning and an end.
class FeedbackScope {
  public:
    FeedbackScope(Feedback& feedback, const std::string& title) : feedback_(feedback) {
        feedback_.begin(title);
    }
    ~FeedbackScope() { feedback_.end(); }
    FeedbackScope(const FeedbackScope&) = delete;
    FeedbackScope& operator=(const FeedbackScope&) = delete;

  private:
    Feedback& feedback_;
};

// The equal parts of some work, one for each month for example, within a stretch of the whole.
class FeedbackParts {
  public:
    FeedbackParts(IFeedback& feedback, std::size_t count, double from = 0, double to = 1)
        : feedback_(feedback), count_(count), from_(from), to_(to) {}
    // Begins the next part, with a message of what it does. Throws Cancelled.
    void next(const std::string& message = {});

  private:
    IFeedback& feedback_;
    std::size_t count_;
    double from_;
    double to_;
    std::size_t begun_ = 0;
};

}  // namespace velmora
