// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>

namespace velmora::qt {

// The user guide and the documents beside it, read where they are installed.
class HelpWindow : public QDialog {
  public:
    explicit HelpWindow(QWidget* parent);
};

// The folder of the documents that belong to this program or plugin; empty when there is none.
QString documentFolder();

}  // namespace velmora::qt
