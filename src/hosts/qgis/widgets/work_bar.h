// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include "gis/feedback.h"
#include "gis/prompts.h"

namespace velmora::qt {

// While a step works: how far it is, and a button that cancels it, in the status bar of the main
// window; the Esc key cancels it too. Work that is done in a moment shows nothing.
class WorkBar : public IFeedbackListener {
  public:
    // All must outlive it. A main window without a status bar shows no bar.
    WorkBar(QWidget* mainWindow, Feedback& feedback, IPrompts& prompts);
    ~WorkBar() override;
    WorkBar(const WorkBar&) = delete;
    WorkBar& operator=(const WorkBar&) = delete;

    void begins(const std::string& title) override;
    void ends() override;
    void fractionChanged(double done) override;
    void messageChanged(const std::string& text) override;
    void warned(const std::string& text) override { prompts_.notice(text); }
    void beat() override;

  private:
    void show();
    void refresh();

    QPointer<QWidget> mainWindow_;
    Feedback& feedback_;
    IPrompts& prompts_;
    QPointer<QWidget> bar_;
    QElapsedTimer since_;
    QString title_;
    QString message_;
    double done_ = 0;
};

}  // namespace velmora::qt
