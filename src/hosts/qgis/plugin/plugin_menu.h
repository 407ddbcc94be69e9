// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/chain/copies.h"
#include "hosts/qgis/plugin/qgis_document.h"
#include "hosts/qgis/widgets/desktop_application.h"

class QMenu;
class QgisInterface;
class QgsMessageBarItem;

namespace velmora::qgis {

// The entry "Velmora" of the Plugins menu, and what the message bar says: the sample basin, the
// copies between names, help and about. The extension's own menu stays as the extension declares
// it.
class PluginMenu : public QObject {
  public:
    // All must outlive the menu. `openSettings` opens General Settings, `captionOf` gives the
    // caption of a command.
    PluginMenu(QgisInterface& desktop, qt::DesktopApplication& application, QgisDocument& document,
               std::function<void()> openSettings,
               std::function<QString(const std::string& progId)> captionOf);
    // Takes the entry and what it says away.
    ~PluginMenu() override;
    PluginMenu(const PluginMenu&) = delete;
    PluginMenu& operator=(const PluginMenu&) = delete;

    // Points a user without settings to where to begin.
    void guide();
    // A command of that ProgID and caption has ended: tells so, and offers the copies that the next
    // step waits for.
    void commandEnded(const std::string& progId, const QString& caption);

  private:
    void add(const QString& name, const QString& text, const QString& statusTip,
             const std::function<void()>& action);
    void attempt(const std::function<void()>& action);
    // Asks for a folder, unless the action carries one already.
    void openSample();
    void openSampleIn(const std::string& folder);
    bool applySample(const std::string& folder);
    void showSample(const std::string& folder);
    // Copies the grids of the product to the names under which they are read.
    void copyGridsOf(const Product& product);
    bool offerCopies(const std::string& progId);
    void copy(const std::vector<StepInputs::Copy>& copies);
    void help();
    void about();

    struct Answer {
        QString text;
        std::function<void()> action;
    };
    void say(const QString& text, const std::vector<Answer>& answers);

    QgisInterface& desktop_;
    qt::DesktopApplication& application_;
    QgisDocument& document_;
    std::function<void()> openSettings_;
    std::function<QString(const std::string& progId)> captionOf_;
    std::unique_ptr<QMenu> menu_;
    QPointer<QgsMessageBarItem> said_;
    QPointer<QWidget> helpWindow_;
};

}  // namespace velmora::qgis
