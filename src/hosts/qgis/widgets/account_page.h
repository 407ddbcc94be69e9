// SPDX-License-Identifier: MIT
// The water account beside the zone table in the window of Zonal Results.
#pragma once

#include <QDialog>
#include <functional>
#include <string>

#include "gis/application.h"

namespace velmora::qt {

// The account as HTML, or why there is none.
using AccountSource = std::function<std::string(bool metric)>;

// That of the settings' output folder. Throws nothing.
std::string accountPage(IPlatform& platform, bool metric);

// Fills the page of the account, in a window that has one, when its user comes to it or chooses
// other units.
void showAccountIn(QDialog& window, const AccountSource& source);

}  // namespace velmora::qt
