// SPDX-License-Identifier: MIT
// Any text is an expression that evaluates, or an error.
#include <cstdint>
#include <string>
#include <vector>

#include "gis/errors.h"
#include "platform/analysis/expression.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const velmora::platform::Expression expression(
            std::string(reinterpret_cast<const char*>(data), size));
        const std::vector<double> values = {1, -2, 0};
        const std::vector<const double*> operands(expression.names().size(), values.data());
        std::vector<double> results(3);
        expression.evaluate(operands, 3, results.data());
    } catch (const velmora::PlatformError&) {
    }
    return 0;
}
