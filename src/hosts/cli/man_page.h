// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace velmora::cli {

// The manual page velmora(1) in roff, from the declarations of the command line.
std::string manPage(const CLI::App& app);

}  // namespace velmora::cli
