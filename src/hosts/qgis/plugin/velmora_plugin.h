// SPDX-License-Identifier: MIT
#pragma once

#include <qgisplugin.h>

#include <memory>

class QgisInterface;

namespace velmora::qgis {

// Velmora in QGIS: the extension's toolbar with its menus and commands, and an entry under Plugins.
// Unloading leaves nothing behind.
class VelmoraPlugin : public QgisPlugin {
  public:
    // The desktop must outlive the plugin.
    explicit VelmoraPlugin(QgisInterface& desktop);
    ~VelmoraPlugin() override;
    VelmoraPlugin(const VelmoraPlugin&) = delete;
    VelmoraPlugin& operator=(const VelmoraPlugin&) = delete;

    void initGui() override;
    void unload() override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
    QgisInterface& desktop_;
};

}  // namespace velmora::qgis
