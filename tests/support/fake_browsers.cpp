// SPDX-License-Identifier: MIT
#include "tests/support/fake_browsers.h"

#include "gis/errors.h"

namespace velmora::test {

std::string FakeBrowsers::lastBrowseLocation() {
    if (locationFails) throw PlatformError("no such value");
    return "/last";
}

std::string FakeBrowsers::next(const std::string& what) {
    asked.push_back(what);
    if (answers.empty()) return {};
    std::string answer = answers.front();
    answers.pop_front();
    return answer;
}

}  // namespace velmora::test
