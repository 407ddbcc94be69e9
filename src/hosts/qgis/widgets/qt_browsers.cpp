// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/qt_browsers.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>

#include "hosts/qgis/widgets/dataset_browser.h"
#include "hosts/qgis/widgets/qt_prompts.h"
#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

constexpr const char* kLocation = "velmora/lastBrowseLocation";

QString pattern(const std::string& filter) { return toQt(filter).section('|', 1, 1); }

}  // namespace

QString qtFilter(const std::string& filter) {
    const QString caption = toQt(filter).section('|', 0, 0).section(" (", 0, 0);
    QStringList patterns = {pattern(filter)};
    for (const QString& other : {pattern(filter).toLower(), pattern(filter).toUpper()}) {
        if (!patterns.contains(other)) patterns << other;
    }
    return caption + " (" + patterns.join(' ') + ")";
}

std::string QtBrowsers::lastBrowseLocation() {
    return QSettings().value(kLocation).toString().toStdString();
}

// Remembers the folder of a choice.
std::string QtBrowsers::chosen(const QString& path) const {
    if (!path.isEmpty()) QSettings().setValue(kLocation, QFileInfo(path).absolutePath());
    return path.toStdString();
}

std::string QtBrowsers::browseFolder(const std::string& title) {
    return chosen(QFileDialog::getExistingDirectory(windowInFront(mainWindow_), toQt(title),
                                                    toQt(lastBrowseLocation())));
}

std::string QtBrowsers::browseDataset(DatasetKind kind, const std::string& title,
                                      const std::string& startFolder,
                                      const std::string& buttonCaption) {
    DatasetBrowser browser(kind, toQt(title), toQt(startFolder), toQt(buttonCaption),
                           windowInFront(mainWindow_));
    browser.exec();
    return chosen(browser.chosen());
}

std::string QtBrowsers::openFile(const std::string& filter) {
    return chosen(QFileDialog::getOpenFileName(windowInFront(mainWindow_), "Open",
                                               toQt(lastBrowseLocation()), qtFilter(filter)));
}

std::string QtBrowsers::saveFile(const std::string& filter) {
    QFileDialog dialog(windowInFront(mainWindow_), "Save As", toQt(lastBrowseLocation()),
                       qtFilter(filter));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(pattern(filter).section('.', -1).toLower());
    if (dialog.exec() != QDialog::Accepted) return {};
    return chosen(dialog.selectedFiles().value(0));
}

}  // namespace velmora::qt
