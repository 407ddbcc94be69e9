// SPDX-License-Identifier: MIT
// Any text is an expression that evaluates, or an error.
#include "gis/expression.h"

#include <vector>

#include "tests/fuzz/harness.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::tried([&] {
        const Expression expression(std::string(fuzz::text(data, size)));
        const std::vector<double> values = {1, -2, 0};
        const std::vector<const double*> operands(expression.names().size(), values.data());
        std::vector<double> results(3);
        expression.evaluate(operands, 3, results.data());
    });
    return 0;
}
