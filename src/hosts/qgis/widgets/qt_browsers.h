// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "gis/browsers.h"

namespace velmora::qt {

// Choosers of files, folders and datasets. They begin where something was chosen last; the place is
// kept in the host's settings.
class QtBrowsers : public IBrowsers {
  public:
    explicit QtBrowsers(QWidget* mainWindow) : mainWindow_(mainWindow) {}
    std::string browseFolder(const std::string& title) override;
    std::string browseDataset(DatasetKind kind, const std::string& title,
                              const std::string& startFolder,
                              const std::string& buttonCaption) override;
    std::string openFile(const std::string& filter) override;
    std::string saveFile(const std::string& filter) override;
    std::string lastBrowseLocation() override;

  private:
    std::string chosen(const QString& path) const;
    QWidget* mainWindow_;
};

// "dBase Files (*.DBF)|*.DBF" as Qt takes it, for file systems in which case counts:
// "dBase Files (*.DBF *.dbf)".
QString qtFilter(const std::string& filter);

}  // namespace velmora::qt
