// SPDX-License-Identifier: MIT
#include "modelling/products.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "gis/errors.h"
#include "gis/month_names.h"
#include "modelling/old_results.h"
#include "modelling/step_inputs.h"

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

RunSettings june() {
    RunSettings settings;
    settings.RefETMethod = "4";
    settings.BeginMonth = "Jun";
    settings.EndMonth = "Jul";
    return settings;
}

std::vector<std::string> made(const std::string& step) {
    return gridNames(productMadeBy(step).made, june());
}

std::vector<std::string> read(const std::string& step) {
    return gridNames(productMadeBy(step).read, june());
}

TEST(Products, EachIsWholeAndMadeAfterItsSources) {
    std::set<std::string_view> makers;
    for (const Product& product : products()) {
        for (const std::string_view text :
             {product.maker, product.made.stem, product.read.stem, product.title, product.quantity,
              product.unit, product.meaning}) {
            EXPECT_FALSE(text.empty()) << product.maker;
        }
        for (const Product* source : sourcesOf(product)) {
            EXPECT_TRUE(makers.contains(source->maker)) << source->maker << ' ' << product.maker;
        }
        EXPECT_TRUE(makers.insert(product.maker).second) << product.maker;
        EXPECT_EQ(product.ramp.colors().size(), 256U);
        EXPECT_EQ(product.charted != Charted::none, product.lineColor.starts_with('#'));
        EXPECT_EQ(product.table.name.empty(), product.table.entry.empty());
        EXPECT_EQ(product.table.name.empty(), product.table.title.empty());
        EXPECT_EQ(product.table.name.empty(), product.table.column.empty());
    }
    EXPECT_EQ(makers.size(), 7U);
}

TEST(Products, GridsAreNamedByMonthAndMethod) {
    EXPECT_THAT(made("refet"), ElementsAre("RefET_Jun_4", "RefET_Jul_4"));
    EXPECT_THAT(made("kc"), ElementsAre("Kc_Jun_4", "Kc_Jul_4"));
    EXPECT_THAT(made("cropet"), ElementsAre("ET_Jun_4", "ET_Jul_4"));
    EXPECT_THAT(made("ppt"), ElementsAre("PPT_Jun", "PPT_Jul"));
    EXPECT_THAT(made("nir"), ElementsAre("NIR_Jun", "NIR_Jul"));
    EXPECT_THAT(made("eff"), ElementsAre("IREF"));
    EXPECT_THAT(made("irr"), ElementsAre("IRR_Jun", "IRR_Jul"));
    EXPECT_EQ(namePattern(productMadeBy("kc").made), "Kc_<month>_<method>");
    EXPECT_EQ(namePattern(productMadeBy("ppt").made), "PPT_<month>");
    EXPECT_EQ(namePattern(productMadeBy("eff").made), "IREF");
}

TEST(Products, KcMapsAndEfficienciesAreReadUnderOtherNames) {
    for (const Product& product : products()) {
        const std::string step(product.maker);
        if (step == "kc" || step == "eff") continue;
        EXPECT_EQ(read(step), made(step));
        EXPECT_THAT(copiesOf(product, june()), IsEmpty());
    }
    EXPECT_THAT(read("kc"), ElementsAre("Kc_Jun", "Kc_Jul"));
    EXPECT_THAT(read("eff"), ElementsAre("faef_500"));
    using Copy = StepInputs::Copy;
    EXPECT_THAT(copiesOf(productMadeBy("kc"), june()),
                ElementsAre(Copy{"Kc_Jun_4", "Kc_Jun"}, Copy{"Kc_Jul_4", "Kc_Jul"}));
    EXPECT_THAT(copiesOf(productMadeBy("eff"), june()), ElementsAre(Copy{"IREF", "faef_500"}));
}

TEST(Products, ANameFindsItsProduct) {
    for (const Product& product : products()) {
        for (const GridNaming& naming : {product.made, product.read}) {
            for (const std::string& name : gridNames(naming, june())) {
                EXPECT_EQ(productOf(name), &product) << name;
            }
        }
    }
    EXPECT_EQ(productOf("ET_mean"), &productMadeBy("cropet"));
    for (const char* name : {"", "dem", "ET", "Kc", "RefE", "StatIRR", "IREF_20260101", "faef_5000",
                             "kc_Jul", "Lu_Intersected", "_ET_Jul"}) {
        EXPECT_EQ(productOf(name), nullptr) << name;
    }
}

TEST(Products, AStepThatMakesNoneIsAnError) {
    EXPECT_THROW(productMadeBy("rain"), PlatformError);
    EXPECT_THROW(productMadeBy(""), PlatformError);
    EXPECT_THROW(inputsOf(june(), "rain"), PlatformError);
}

TEST(Products, StepsReadTheirSourcesUnderTheNamesThatAreRead) {
    EXPECT_THAT(namesReadBy(june(), "refet"), IsEmpty());
    EXPECT_THAT(namesReadBy(june(), "cropet"),
                ElementsAre("RefET_Jun_4", "RefET_Jul_4", "Kc_Jun", "Kc_Jul"));
    EXPECT_THAT(namesReadBy(june(), "nir"),
                ElementsAre("ET_Jun_4", "ET_Jul_4", "PPT_Jun", "PPT_Jul"));
    EXPECT_THAT(namesReadBy(june(), "irr"),
                ElementsAre("ET_Jun_4", "ET_Jul_4", "PPT_Jun", "PPT_Jul", "faef_500"));
    EXPECT_THAT(inputsOf(june(), "irr").sources.back().grids, ElementsAre("IREF"));
}

TEST(Products, WhereNamesDifferADesktopCanCopy) {
    std::vector<std::string_view> entries;
    for (const Product& product : products()) {
        EXPECT_EQ(product.copying.empty(), product.made == product.read) << product.maker;
        if (!product.copying.empty()) entries.push_back(product.copying);
    }
    EXPECT_THAT(entries, ElementsAre("Copy Kc Maps for Crop ET",
                                     "Copy Efficiency Map for Irrigation Requirement"));
    EXPECT_EQ(firstMadeOf(productMadeBy("kc")), &productMadeBy("cropet"));
    EXPECT_EQ(firstMadeOf(productMadeBy("eff")), &productMadeBy("irr"));
    EXPECT_EQ(firstMadeOf(productMadeBy("irr")), nullptr);
}

TEST(Products, ThreeHaveZoneTables) {
    EXPECT_THAT(zoneTableNames(), ElementsAre("StatCET", "StatNIR", "StatIRR"));
    EXPECT_THAT(tabledProducts(), ElementsAre(&productMadeBy("cropet"), &productMadeBy("nir"),
                                              &productMadeBy("irr")));
}

}  // namespace
}  // namespace velmora
