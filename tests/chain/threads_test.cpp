// SPDX-License-Identifier: MIT
// A run gives the same files whatever the number of threads.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/threads/parallel_loop.h"
#include "tests/support/run_fixture.h"

namespace velmora {
namespace {

std::map<std::string, std::string> filesOf(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (!entry.is_regular_file() || name.starts_with("velmora_made_") ||
            name.starts_with("velmora_record_")) {
            continue;
        }
        files[std::filesystem::relative(entry.path(), folder).string()] =
            test::contentOf(entry.path());
    }
    return files;
}

TEST(Threads, OneAndManyGiveIdenticalFiles) {
    test::RunFixture f;
    f.settings.CellSize = 40;  // several tiles each way
    platform::useThreads(1);
    ASSERT_TRUE(f.run()) << f.allMessages();
    const auto one = filesOf(f.folder.file("out"));
    platform::useThreads(0);
    ASSERT_TRUE(f.run());
    const auto all = filesOf(f.folder.file("out"));
    ASSERT_EQ(one.size(), all.size());
    for (const auto& [name, content] : one) EXPECT_EQ(content, all.at(name)) << name;
    EXPECT_GT(one.size(), 60U);
}

}  // namespace
}  // namespace velmora
