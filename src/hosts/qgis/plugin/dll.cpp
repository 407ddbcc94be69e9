// SPDX-License-Identifier: MIT
// The functions by which QGIS finds out about the plugin, makes it and lets it go.
#include <qgisplugin.h>

#include "hosts/qgis/plugin/velmora_plugin.h"
#include "plugin_version.h"

extern "C" {

QgisPlugin* classFactory(QgisInterface* desktop) {
    return new velmora::qgis::VelmoraPlugin(*desktop);
}

void unload(QgisPlugin* plugin) { delete plugin; }

const QString* name() {
    static const QString text = "Velmora";
    return &text;
}

const QString* description() {
    static const QString text = "Regional evapotranspiration and irrigation water use";
    return &text;
}

const QString* category() {
    static const QString text = "Analysis";
    return &text;
}

int type() { return QgisPlugin::UI; }

const QString* version() {
    static const QString text = VELMORA_PLUGIN_VERSION;
    return &text;
}

const QString* icon() {
    static const QString none;
    return &none;
}

const QString* experimental() {
    static const QString no = "false";
    return &no;
}
}
