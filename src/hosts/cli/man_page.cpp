// SPDX-License-Identifier: MIT
#include "hosts/cli/man_page.h"

#include <fmt/core.h>

#include "version.h"

namespace velmora::cli {

namespace {

// Text with what roff would take for its own escaped.
std::string roff(const std::string& text) {
    std::string out;
    bool lineStart = true;
    for (const char c : text) {
        if (lineStart && (c == '.' || c == '\'')) out += "\\&";
        if (c == '\\') {
            out += "\\e";
        } else if (c == '-') {
            out += "\\-";
        } else {
            out += c;
        }
        lineStart = c == '\n';
    }
    return out;
}

std::string options(const CLI::App& command) {
    std::string out;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_group().empty()) continue;
        out += fmt::format(".TP\n.B {}\n{}\n", roff(option->get_name(false, true)),
                           roff(option->get_description()));
    }
    return out;
}

std::string section(const CLI::App& command, const std::string& path) {
    const std::string name = path.empty() ? command.get_name() : path + " " + command.get_name();
    std::string out = fmt::format(".SS {}\n{}.\n", roff(name), roff(command.get_description()));
    out += options(command);
    if (!command.get_footer().empty()) {
        out += fmt::format(".PP\n.nf\n{}\n.fi\n", roff(command.get_footer()));
    }
    for (const CLI::App* sub : command.get_subcommands({})) out += section(*sub, name);
    return out;
}

}  // namespace

std::string manPage(const CLI::App& app) {
    std::string page = fmt::format(".TH VELMORA 1 \"\" \"velmora {}\"\n.SH NAME\nvelmora \\- {}\n",
                                   kVersion, roff(app.get_description()));
    page += ".SH SYNOPSIS\n.B velmora\n[options] COMMAND [arguments]\n.SH OPTIONS\n" + options(app);
    page += ".SH COMMANDS\n";
    for (const CLI::App* command : app.get_subcommands({})) page += section(*command, "velmora");
    page += ".SH EXIT STATUS\n0: done. 1: the step reported a failure. 2: bad usage.\n";
    page += ".SH FILES\n.TP\n.I ~/.config/velmora/Zav.inf\nThe settings of the next run.\n";
    page +=
        ".TP\n.I ~/.config/velmora/classes.txt\nThe class registry: where the extension library "
        "lies.\n";
    return page;
}

}  // namespace velmora::cli
