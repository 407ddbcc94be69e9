# SPDX-License-Identifier: MIT
# Run by QGIS when it has started: opens the sample basin in the folder VELMORA_SAMPLE through the
# plugin's own menu entry.
import os

from qgis.utils import iface

for entry in iface.pluginMenu().actions():
    if entry.menu() and entry.text() == "Velmora":
        for action in entry.menu().actions():
            if action.objectName() == "velmora.openSample":
                action.setData(os.environ["VELMORA_SAMPLE"])
                action.trigger()
                action.setData(None)
