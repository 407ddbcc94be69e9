// SPDX-License-Identifier: MIT
#include "hosts/components/class_registry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "hosts/components/class_registration.h"
#include "shell/component_ids.h"
#include "tests/support/temp_folder.h"

namespace velmora {
namespace {

struct ClassRegistry : testing::Test {
    test::TempFolder config;
    ClassRegistry() { setenv("XDG_CONFIG_HOME", config.path().c_str(), 1); }
    ~ClassRegistry() override { unsetenv("XDG_CONFIG_HOME"); }
};

TEST_F(ClassRegistry, IdentifiersAsText) {
    const Guid guid{0x5C1E9A40, 0x8D36, 0x4B7F, {0xA2, 0xE4, 0x61, 0x0F, 0xB3, 0x9C, 0x57, 0x01}};
    EXPECT_EQ(guidText(guid), "{5C1E9A40-8D36-4B7F-A2E4-610FB39C5701}");
    Guid back;
    EXPECT_TRUE(parseGuid(guidText(guid), back));
    EXPECT_EQ(back, guid);
    EXPECT_FALSE(parseGuid("{5C1E9A40}", back));
    EXPECT_FALSE(parseGuid("5C1E9A40-8D36-4B7F-A2E4-610FB39C5701", back));
}

TEST_F(ClassRegistry, AllThirteenClassesComeAndGo) {
    EXPECT_FALSE(findRegisteredClass("Tarnwick.clsSettings"));
    ASSERT_TRUE(registerClasses("/a/lib.so"));
    EXPECT_EQ(componentIds().size(), 13U);
    for (const ComponentId& served : componentIds()) {
        const auto found = findRegisteredClass(served.progId);
        ASSERT_TRUE(found) << served.progId;
        EXPECT_EQ(found->clsid, served.clsid);
        EXPECT_EQ(found->module, "/a/lib.so");
    }
    ASSERT_TRUE(registerClasses("/b/lib.so"));  // another copy takes over
    EXPECT_EQ(findRegisteredClass("Tarnwick.clsSettings")->module, "/b/lib.so");
    ASSERT_TRUE(unregisterClasses("/a/lib.so"));  // it has nothing there any more
    EXPECT_TRUE(findRegisteredClass("Tarnwick.clsSettings"));
    ASSERT_TRUE(unregisterClasses("/b/lib.so"));
    EXPECT_FALSE(std::filesystem::exists(classRegistryPath()));
}

TEST_F(ClassRegistry, DamagedLinesAreSkipped) {
    std::filesystem::create_directory(config.file("velmora"));
    test::write(classRegistryPath(), "Tarnwick.clsSettings\tnonsense\t/x\nTarnwick.clsPPT\n");
    EXPECT_FALSE(findRegisteredClass("Tarnwick.clsSettings"));
    EXPECT_FALSE(findRegisteredClass("Tarnwick.clsPPT"));
}

}  // namespace
}  // namespace velmora
