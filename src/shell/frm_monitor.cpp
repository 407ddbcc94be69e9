// SPDX-License-Identifier: MIT
#include "shell/frm_monitor.h"

namespace velmora {

frmMonitor::frmMonitor() : Form("frmMonitor", "Progress  Monitor") {
    cmdClose.onClick = [this] { close(); };
}

void frmMonitor::stepEnded() {
    lblStatus.setText("The step has ended.");
    cmdClose.setEnabled(true);
}

void frmMonitor::load() {
    Form::load();
    cmdClose.setEnabled(false);
}

}  // namespace velmora
