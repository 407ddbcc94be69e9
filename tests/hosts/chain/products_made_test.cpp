// SPDX-License-Identifier: MIT
// What the steps leave in the output folder is what the table of products says.
#include <gmock/gmock.h>

#include "gis/text.h"
#include "modelling/products.h"
#include "modelling/step_record.h"
#include "settings/settings_file.h"
#include "tests/support/command_fixture.h"

namespace velmora {
namespace {

struct ProductsMade : test::ChainCommand {};

TEST_F(ProductsMade, EachStepMakesWhatItsRowSays) {
    const auto outcome = run("run all --default-shares zone --cvef 0.9");
    ASSERT_EQ(outcome.status, 0) << outcome.output;
    platform::Platform platform;
    const RunSettings settings = readSettings(platform.files(), folder + "/config/velmora/Zav.inf");
    const auto workspace = platform.rasters().openFromFolder(settings.OutputWorkspace);
    const auto leaves = [&](std::string_view name) {
        return std::filesystem::exists(joinedPath(settings.OutputWorkspace, name));
    };
    for (const Product& product : products()) {
        const std::string step(product.maker);
        const auto record = lastRun(platform.files(), settings.OutputWorkspace, step);
        ASSERT_TRUE(record) << step;
        EXPECT_EQ(record->made, gridNames(product.made, settings));
        for (const std::string& name : gridNames(product.read, settings)) {
            EXPECT_TRUE(workspace->exists(name)) << name;
        }
        std::vector<std::string> sources;
        for (const Product* source : sourcesOf(product)) sources.emplace_back(source->maker);
        std::vector<std::string> used;
        for (const auto& [maker, mark] : record->used) used.push_back(maker);
        EXPECT_THAT(used, testing::UnorderedElementsAreArray(sources)) << step;
        if (!product.table.name.empty()) {
            EXPECT_TRUE(leaves(std::string(product.table.name) + ".dbf")) << step;
        }
        if (!product.onTheWay.empty()) {
            EXPECT_TRUE(leaves(std::string(product.onTheWay) + ".shp")) << step;
        }
        EXPECT_TRUE(leaves(product.beside)) << product.beside;
    }
}

}  // namespace
}  // namespace velmora
