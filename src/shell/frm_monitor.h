// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "forms/form.h"
#include "gis/feedback.h"

namespace velmora {

// The progress monitor: a small window that tells what a model step is doing. It cannot be closed
// while the step runs.
class frmMonitor : public Form, public IFeedbackListener {
  public:
    frmMonitor();

    void load() override;  // disables "Close"
    void messageChanged(const std::string& text) override { lblMessage.setText(text); }
    void statusChanged(const std::string& text) override { lblStatus.setText(text); }
    void stepEnded();  // the window tells so and may be closed

    Label lblProgress{*this, "lblProgress", "Progress:"};
    Label lblMessage{*this, "lblMessage"};
    Label lblStatus{*this, "lblStatus", "Velmora is working ..."};
    Label lblWarning{*this, "lblWarning",
                     "Warning:  Using  ArcMap during this  time may cause unexpected problems ..."};
    CommandButton cmdClose{*this, "cmdClose", "Close"};
};

}  // namespace velmora
