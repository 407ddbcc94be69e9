// SPDX-License-Identifier: MIT
#include "hosts/cli/console.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

namespace velmora::cli {

namespace {

// The first failure of standard output, as errno has it.
int& outputFailure() {
    static int failure = 0;
    return failure;
}

void noteFailure() {
    if (outputFailure() == 0) outputFailure() = errno == 0 ? EIO : errno;
}

void flushOutput() {
    if (std::fflush(stdout) != 0) noteFailure();
}

void write(const std::string& text) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) noteFailure();
}

constexpr const char* kEraseLine = "\r\x1b[K";

bool tellsJson = false;

std::string& statusLine() {
    static std::string line;
    return line;
}

void writeError(const std::string& text) {
    [[maybe_unused]] const auto written = std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

// Columns that a line may fill without a second one.
std::size_t terminalWidth() {
    winsize size = {};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return known ? size.ws_col - 1U : 79U;
}

unsigned byteAt(const std::string& text, std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
}

// The bytes of the UTF-8 character at `i`; 0 for bytes that are none.
std::size_t characterLength(const std::string& text, std::size_t i) {
    const unsigned lead = byteAt(text, i);
    const std::size_t length = lead < 0x80U                     ? 1
                               : lead >= 0xC2U && lead <= 0xDFU ? 2
                               : lead >= 0xE0U && lead <= 0xEFU ? 3
                               : lead >= 0xF0U && lead <= 0xF4U ? 4
                                                                : 0;
    for (std::size_t k = 1; k < length; ++k) {
        if ((byteAt(text, i + k) & 0xC0U) != 0x80U) return 0;
    }
    return length;
}

bool isControl(const std::string& text, std::size_t i, std::size_t length) {
    const unsigned lead = byteAt(text, i);
    if (length == 1) return lead < 0x20U || lead == 0x7FU;
    return length == 2 && lead == 0xC2U && byteAt(text, i + 1) < 0xA0U;
}

// The text with each control character as `escaped` gives it for its number.
template <class Escaped>
std::string withoutControls(const std::string& text, const Escaped& escaped) {
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = characterLength(text, i);
        if (text[i] == '\n' || text[i] == '\t') {
            out += text[i++];
        } else if (length == 0) {
            out += escaped(byteAt(text, i++));
        } else {
            if (isControl(text, i, length)) {
                out += escaped(byteAt(text, i + length - 1));
            } else {
                out.append(text, i, length);
            }
            i += length;
        }
    }
    return out;
}

}  // namespace

std::string visible(const std::string& text) {
    return withoutControls(text, [](unsigned code) { return fmt::format("\\x{:02x}", code); });
}

std::string oneLine(const std::string& text) {
    std::string line = text;
    for (char& c : line) {
        if (c == '\r' || c == '\n' || c == '\t') c = ' ';
    }
    return visible(line);
}

void printText(const std::string& text) { write(visible(text)); }

void printData(const std::string& data) {
    write(isatty(STDOUT_FILENO) != 0 ? visible(data) : data);
}

void printJson(const nlohmann::ordered_json& json) {
    using Json = nlohmann::ordered_json;
    const std::string text = json.dump(2, ' ', false, Json::error_handler_t::replace);
    write(withoutControls(text, [](unsigned code) { return fmt::format("\\u{:04x}", code); }) +
          "\n");
}

void tellText(const std::string& text) {
    if (tellsJson) {
        const std::string told = oneLine(text);
        const auto begin = told.find_first_not_of(' ');
        if (begin == std::string::npos) return;
        tellJson({{"kind", "text"},
                  {"text", told.substr(begin, told.find_last_not_of(' ') + 1 - begin)}});
        return;
    }
    flushOutput();  // so that the two outputs keep their order where they are one
    const std::string& below = statusLine();
    writeError((below.empty() ? "" : kEraseLine) + visible(text) + below);
}

void tellOf(const std::string& kind, const std::string& text) {
    if (tellsJson) {
        tellJson({{"kind", kind == "velmora" ? "error" : kind}, {"text", text}});
    } else {
        tell("{}: {}\n", kind, oneLine(text));
    }
}

void tellAsJson() { tellsJson = true; }

bool tellsAsJson() { return tellsJson; }

void tellJson(const nlohmann::ordered_json& json) {
    using Json = nlohmann::ordered_json;
    flushOutput();
    writeError(json.dump(-1, ' ', true, Json::error_handler_t::replace) + "\n");
}

void setStatusLine(const std::string& text) {
    std::string line = oneLine(text);
    const std::size_t width = terminalWidth();
    // In characters: a byte that goes on with one does not count.
    std::size_t shown = 0;
    std::size_t end = 0;
    while (end < line.size() && shown < width) {
        ++end;
        while (end < line.size() && (byteAt(line, end) & 0xC0U) == 0x80U) ++end;
        ++shown;
    }
    line.resize(end);
    if (line == statusLine()) return;
    statusLine() = line;
    flushOutput();
    writeError(kEraseLine + line);
}

int closeOutput(int status) {
    flushOutput();
    if (std::ferror(stdout) != 0) noteFailure();
    if (std::fclose(stdout) != 0 && errno != EBADF) noteFailure();
    if (outputFailure() == 0) return status;
    const std::string text =
        fmt::format("velmora: standard output cannot be written ({}): what it has is not whole\n",
                    std::strerror(outputFailure()));
    writeError(text);
    return status == 0 ? 1 : status;
}

void holdStandardFiles() {
    for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
        if (fcntl(file, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free number is taken, which is this one.
        [[maybe_unused]] const int opened =
            open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

std::string shellWord(const std::string& text) {
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               (c != '\0' && std::strchr("_./:=,+@%-", c) != nullptr);
    };
    bool quotes = text.empty();
    std::string quoted = "'";
    for (const char c : text) {
        quotes = quotes || !plain(c);
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quotes ? quoted + "'" : text;
}

}  // namespace velmora::cli
