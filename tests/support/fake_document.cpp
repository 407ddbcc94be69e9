// SPDX-License-Identifier: MIT
#include "tests/support/fake_document.h"

#include "gis/errors.h"

namespace velmora::test {

void FakeLayer::setStretchedRenderer(const AlgorithmicColorRamp& given) {
    if (fails_) throw PlatformError("no renderer");
    ramp = given;
}

void FakeDocument::addTable(std::shared_ptr<ITable> table) {
    if (tablesFail) throw PlatformError("no room");
    tables.push_back(std::move(table));
}

}  // namespace velmora::test
