// SPDX-License-Identifier: MIT
// The command `velmora` as a user types it, in a folder with a small domain.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/irrigation_fixture.h"

namespace velmora::test {

struct Outcome {
    int status = -1;
    std::string output;   // standard output, then standard error; or both in their order (run)
    std::string results;  // standard output alone
    std::string told;     // standard error alone
};

struct Command : testing::Test {
    RunFixture fixture;
    std::string folder = fixture.folder.path();

    // Runs the program with a home of its own; both outputs together in `output`.
    Outcome run(const std::string& arguments) {
        Outcome outcome = shell(arguments + " >both 2>both.err");
        outcome.results = contentOf(folder + "/both");
        outcome.told = contentOf(folder + "/both.err");
        outcome.output = outcome.results + outcome.told;
        std::filesystem::remove(folder + "/both");
        std::filesystem::remove(folder + "/both.err");
        return outcome;
    }
    // The same with redirections of the shell's.
    Outcome shell(const std::string& arguments, const std::string& before = "") {
        const std::string line = "cd '" + folder + "' && " + before + " XDG_CONFIG_HOME='" +
                                 folder + "/config' '" VELMORA_PROGRAM "' " + arguments +
                                 " </dev/null";
        const int status = std::system(line.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : 128, {}, {}, {}};
    }
    Outcome apply(const std::string& more = "") {
        return run(
            "settings apply DEM=dem WeatherStations=stations.shp WeatherData=weather.dbf "
            "OutputWorkspace=out ExtentProvider=domain.shp CellSize=400 RefETMethod=2 "
            "BeginMonth=Jun EndMonth=Jul Year=2006 " +
            more);
    }
};

// The command on a domain with fields, zones and coefficients.
struct CropCommand : Command {
    CropFixture crops;
    CropCommand() {
        folder = crops.folder.path();
        EXPECT_EQ(apply("RefETMethod=4 LandCover=land.shp KcTable=crops.dbf Zones=zones.shp "
                        "ZoneField=ZONE")
                      .status,
                  0);
    }
};

// The whole chain, with an irrigation database that is yet to be made.
struct ChainCommand : Command {
    IrrigationFixture crops;
    ChainCommand() {
        folder = crops.folder.path();
        crops.makeCropLand(crops.fields());
        crops.makeWeather(RunFixture::stations(), RunFixture::usualWeather, {"TM_", "TN_", "P_"});
        EXPECT_EQ(apply("RefETMethod=4 KcTable=crops.dbf LandCover=land.shp Zones=zones.shp "
                        "ZoneField=ZONE PrecipitationMethod=EDK")
                      .status,
                  0);
    }
};

// With the sample basin made, in the folder "basin".
struct BasinCommand : Command {
    void SetUp() override {
        Command::SetUp();
        const Outcome made = run("--quiet demo basin");
        ASSERT_EQ(made.status, 0) << made.output;
    }

    std::string basin(const std::string& name) const { return folder + "/basin/" + name; }
    Outcome inBasin(const std::string& words) {
        return run("--settings-folder basin/settings " + words);
    }
};

}  // namespace velmora::test
