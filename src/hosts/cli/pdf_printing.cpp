// SPDX-License-Identifier: MIT
#include "hosts/cli/pdf_printing.h"

#include <sys/wait.h>
#include <unistd.h>

#include <fmt/format.h>

#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "gis/errors.h"
#include "gis/text.h"
#include "hosts/cli/console.h"

namespace velmora::cli {

namespace {

constexpr std::array<const char*, 3> kBrowsers = {"chromium", "chromium-browser", "google-chrome"};
// From this version on the page's own style prints headings and page numbers, and the browser puts
// the headings beside the pages as an outline.
constexpr int kPrintsPageMargins = 131;

struct Ran {
    int status = -1;
    std::string output;
};

Ran ran(const std::string& command) {
    Ran result;
    std::FILE* pipe = ::popen((command + " 2>/dev/null </dev/null").c_str(), "r");
    if (!pipe) return result;
    std::array<char, 4096> part{};
    while (const std::size_t size = std::fread(part.data(), 1, part.size(), pipe)) {
        result.output.append(part.data(), size);
    }
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

// "Chromium 131.0.6778.85 ..." is 131; 0 for what tells no version.
int majorVersion(const std::string& browser) {
    const std::string text = ran(shellWord(browser) + " --version").output;
    const std::size_t digit = text.find_first_of("0123456789");
    return digit == std::string::npos ? 0 : std::atoi(text.c_str() + digit);
}

// The address of a file, of which characters that mean something else are encoded.
std::string addressOf(const std::string& path) {
    std::string address = "file://";
    for (const char c : path) {
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) || c == '/' || c == '.' ||
                           c == '_' || c == '-';
        address +=
            plain ? std::string(1, c)
                  : fmt::format("%{:02X}", static_cast<unsigned>(static_cast<unsigned char>(c)));
    }
    return address;
}

std::string unfolded(std::string page) {
    const std::string closed = "<details";
    for (std::size_t at = 0; (at = page.find(closed, at)) != std::string::npos;) {
        page.insert(at += closed.size(), " open");
    }
    return page;
}

// Files beside the result that are gone in the end.
struct Passing {
    IFileSystem& files;
    std::string page;
    std::string pdf;
    Passing(IFileSystem& all, const std::string& file)
        : files(all), page(file + ".printing.html"), pdf(file + ".printing.pdf") {}
    Passing(const Passing&) = delete;
    Passing& operator=(const Passing&) = delete;
    ~Passing() {
        std::remove(page.c_str());
        std::remove(pdf.c_str());
    }
};

}  // namespace

std::string printingBrowser() {
    const char* path = std::getenv("PATH");
    for (const char* browser : kBrowsers) {
        std::istringstream folders(path ? path : "");
        for (std::string folder; std::getline(folders, folder, ':');) {
            std::string program = joinedPath(folder, browser);
            if (!folder.empty() && ::access(program.c_str(), X_OK) == 0) return program;
        }
    }
    throw PlatformError("No browser that can print a page into a PDF file is in PATH (" +
                        joinedNames(kBrowsers) +
                        "): install one, or make the report without --pdf and print it from the "
                        "browser that you have");
}

void printPdf(IFileSystem& files, const std::string& browser, const std::string& page,
              const std::string& file) {
    const Passing passing(files, file);
    files.storeFile(passing.page, unfolded(page));
    std::string command = shellWord(browser) + " --headless --disable-gpu";
    if (::geteuid() == 0) command += " --no-sandbox";  // which it demands of root
    if (majorVersion(browser) >= kPrintsPageMargins) {
        command += " --no-pdf-header-footer --generate-pdf-document-outline";
    }
    command += " " + shellWord("--print-to-pdf=" + passing.pdf);
    const Ran result = ran(command + " " + shellWord(addressOf(passing.page)));
    if (result.status != 0 || !files.fileExists(passing.pdf) ||
        files.readBeginning(passing.pdf, 5) != "%PDF-") {
        throw PlatformError(browser + " has not printed the page into " + file + " (status " +
                                std::to_string(result.status) +
                                "): make the report without --pdf and print it from a browser",
                            {.file = file});
    }
    files.replaceFile(passing.pdf, file);
}

}  // namespace velmora::cli
