// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/desktop_application.h"

#include "hosts/qgis/widgets/keep_painted.h"
#include "platform/platform.h"

namespace velmora::qt {

DesktopApplication::DesktopApplication(QWidget* mainWindow, IMxDocument& document,
                                       std::string settingsFolder)
    : document_(document),
      settingsFolder_(std::move(settingsFolder)),
      prompts_(mainWindow),
      browsers_(mainWindow),
      dialogs_(mainWindow, prompts_) {
    platform::setHeartbeat([] { keepPainted(); });
}

DesktopApplication::~DesktopApplication() { platform::setHeartbeat({}); }

}  // namespace velmora::qt
