// SPDX-License-Identifier: MIT
#include "tests/support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace velmora::test {

namespace {

std::string madeFolder() {
    std::string form = (std::filesystem::temp_directory_path() / "velmora-test-XXXXXX").string();
    if (mkdtemp(form.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return form;
}

}  // namespace

TempFolder::TempFolder() : Folder(madeFolder()) {}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path(), ignored);
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::stringstream content;
    content << file.rdbuf();
    return content.str();
}

void write(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

}  // namespace velmora::test
