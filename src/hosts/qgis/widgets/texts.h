// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <string>

namespace velmora::qt {

// A text of the system as Qt's. Line ends of any kind become newlines.
inline QString toQt(const std::string& text) {
    return QString::fromStdString(text).replace("\r\n", "\n").replace('\r', '\n');
}

// Without the mark of the letter that the keyboard reaches a button or label by.
inline QString withoutMnemonic(QString text) { return text.remove('&'); }

}  // namespace velmora::qt
