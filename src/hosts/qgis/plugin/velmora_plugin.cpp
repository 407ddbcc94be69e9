// SPDX-License-Identifier: MIT
#include "hosts/qgis/plugin/velmora_plugin.h"

#include <qgis.h>
#include <qgisinterface.h>
#include <qgsmessagebar.h>
#include <qgsmessagelog.h>

#include <QMainWindow>
#include <exception>

#include "gis/text.h"
#include "hosts/components/build_state.h"
#include "hosts/components/class_registry.h"
#include "hosts/components/loaded_extension.h"
#include "hosts/qgis/plugin/plugin_menu.h"
#include "hosts/qgis/plugin/qgis_document.h"
#include "hosts/qgis/widgets/command_bar.h"
#include "hosts/qgis/widgets/desktop_application.h"
#include "platform/platform.h"
#include "plugin_version.h"

namespace velmora::qgis {

namespace {

constexpr const char* kToolBar = "Tarnwick.clsToolBar_Zav";
constexpr const char* kSettings = "Tarnwick.clsSettings";

}  // namespace

// In the order in which they come to be; they go in the reverse.
struct VelmoraPlugin::Parts {
    explicit Parts(QgisInterface& desktop)
        : document(desktop),
          application(desktop.mainWindow(), document, parentFolderName(classRegistryPath())),
          menu(
              desktop, application, document, [this] { bar.action(kSettings)->trigger(); },
              [this](const std::string& progId) { return bar.action(progId)->text(); }),
          bar(extension, kToolBar, application, desktop.mainWindow(),
              [this](const std::string& progId) {
                  menu.commandEnded(progId, bar.action(progId)->text());
              }) {
        application.prompts().showLine = [&desktop](qt::QtPrompts::Level level,
                                                    const std::string& text) {
            const bool failed = level == qt::QtPrompts::Level::reason;
            const auto severity = failed ? Qgis::Warning : Qgis::Info;
            const QString line = QString::fromStdString(text);
            QgsMessageLog::logMessage(line, "Velmora", severity, false);
            desktop.messageBar()->pushMessage("Velmora", line, severity);
        };
        desktop.addToolBar(&bar.toolBar());
        menu.guide();
    }

    LoadedExtension extension;
    QgisDocument document;
    qt::DesktopApplication application;
    PluginMenu menu;
    qt::CommandBar bar;
};

VelmoraPlugin::VelmoraPlugin(QgisInterface& desktop)
    : QgisPlugin("Velmora", "Regional evapotranspiration and irrigation water use", "Analysis",
                 VELMORA_PLUGIN_VERSION, QgisPlugin::UI),
      desktop_(desktop) {}

VelmoraPlugin::~VelmoraPlugin() = default;

void VelmoraPlugin::initGui() {
    platform::setOrigin({VELMORA_PLUGIN_VERSION, buildState(),
                         "QGIS " + Qgis::version().toStdString(),
                         qEnvironmentVariableIsSet("VELMORA_ANONYMOUS")});
    try {
        parts_ = std::make_unique<Parts>(desktop_);
    } catch (const std::exception& e) {
        desktop_.messageBar()->pushCritical("Velmora", QString::fromStdString(e.what()));
    }
}

void VelmoraPlugin::unload() { parts_.reset(); }

}  // namespace velmora::qgis
