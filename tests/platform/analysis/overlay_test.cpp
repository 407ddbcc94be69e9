// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "gis/errors.h"
#include "gis/polygon_analysis.h"
#include "platform/threads/parallel_loop.h"
#include "tests/support/crop_fixture.h"
#include "tests/support/fake_feedback.h"

namespace velmora::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct Overlay : testing::Test {
    test::CropFixture f;
    IFeatureWorkspaceFactory& features = f.application.platform().features();
    std::string crs = f.geometry().crs;
    std::string path = f.folder.file("out/pieces.shp");

    OverlayResult intersect(const std::string& first = "land", const std::string& second = "zones",
                            const std::string& keptFirst = "Use",
                            const std::string& keptSecond = "ZONE") {
        return f.application.platform().analysis().overlay()->Intersect(
            {features.openFeatureClass(f.folder.file(first), crs), keptFirst},
            {features.openFeatureClass(f.folder.file(second), crs), keptSecond}, path);
    }
    std::shared_ptr<IFeatureClass> pieces() { return features.openFeatureClass(path, crs); }
    void makeRings(const std::string& name, const std::string& field,
                   const std::vector<std::vector<Point>>& rings) {
        std::vector<NewFeature> list;
        for (const auto& ring : rings)
            list.push_back({ring, {"ring " + std::to_string(list.size())}});
        features.createFeatureClass(f.folder.file(name + ".shp"), true, crs,
                                    {{field, FieldType::text, 20, 0}}, list);
    }
    static std::vector<Point> square(double x, double y, double side) {
        return {{x, y}, {x, y + side}, {x + side, y + side}, {x + side, y}, {x, y}};
    }
};

// The part of a convex ring on the left of a line.
std::vector<Point> leftOf(const std::vector<Point>& ring, Point a, Point b) {
    const auto side = [&](Point p) {
        return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    };
    std::vector<Point> kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point p = ring[i];
        const Point q = ring[(i + 1) % ring.size()];
        if (side(p) >= 0) kept.push_back(p);
        if ((side(p) >= 0) != (side(q) >= 0)) {
            const double t = side(p) / (side(p) - side(q));
            kept.push_back({p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)});
        }
    }
    return kept;
}

double ringArea(const std::vector<Point>& ring) { return test::areaOf({"", ring}); }

// The shared area of two convex shapes.
double sharedArea(const test::Shape& a, const test::Shape& b) {
    std::vector<Point> ring = a.ring;
    double turn = 0;
    for (std::size_t i = 0; i < b.ring.size(); ++i) {
        const Point p = b.ring[i];
        const Point q = b.ring[(i + 1) % b.ring.size()];
        turn += p.x * q.y - q.x * p.y;
    }
    for (std::size_t i = 0; i < b.ring.size() && !ring.empty(); ++i) {
        const Point p = b.ring[i];
        const Point q = b.ring[(i + 1) % b.ring.size()];
        ring = turn > 0 ? leftOf(ring, p, q) : leftOf(ring, q, p);
    }
    return ring.size() < 3 ? 0 : ringArea(ring);
}

TEST_F(Overlay, PiecesAgreeWithAPlainClipper) {
    const auto fields = test::CropFixture::fields();
    const auto zones = test::CropFixture::zones();
    const OverlayResult result = intersect();
    EXPECT_TRUE(result.repairs.empty());
    const auto made = pieces();
    const auto areas = made->areas();
    std::size_t piece = 0;
    for (const test::Shape& field : fields) {
        for (const test::Shape& zone : zones) {
            const double expected = sharedArea(field, zone);
            if (expected == 0) continue;
            ASSERT_LT(piece, made->recordCount());
            EXPECT_EQ(keyText(made->value(piece, "Use")), field.key);
            EXPECT_EQ(keyText(made->value(piece, "ZONE")), zone.key);
            EXPECT_NEAR(areas[piece], expected, 1e-3);
            ++piece;
        }
    }
    EXPECT_EQ(made->recordCount(), piece);
    EXPECT_EQ(result.pieces, piece);
    EXPECT_GT(piece, 20U);
}

TEST_F(Overlay, ThreadsMakeTheSamePieces) {
    std::vector<std::vector<Point>> many;
    for (int i = 0; i < 4000; ++i) {
        many.push_back(square(400000 + 37.0 * (i % 100), 4499000 - 41.0 * (i / 100.0), 60));
    }
    makeRings("land", "Use", many);
    useThreads(1);
    intersect();
    const auto areasOfOne = pieces()->areas();
    useThreads(0);
    intersect();
    EXPECT_EQ(pieces()->areas(), areasOfOne);
    EXPECT_GE(areasOfOne.size(), 4000U);
}

TEST_F(Overlay, InvalidPolygonsAreRepairedAndTold) {
    // A bow tie: two triangles of 50 x 100 / 2 that touch in a point.
    makeRings("land", "Use",
              {{{401000, 4495000},
                {401100, 4495100},
                {401100, 4495000},
                {401000, 4495100},
                {401000, 4495000}},
               square(402000, 4495000, 100)});
    const OverlayResult result = intersect();
    ASSERT_EQ(result.repairs.size(), 1U);
    EXPECT_THAT(result.repairs[0], HasSubstr("Feature 1 of"));
    EXPECT_THAT(result.repairs[0], HasSubstr("land.shp was invalid (Self-intersection"));
    EXPECT_NEAR(pieces()->areas().at(0), 5000, 1e-6);
    EXPECT_NEAR(pieces()->areas().at(1), 10000, 1e-6);
}

TEST_F(Overlay, PiecesFollowTheOrderOfTheSecondLayer) {
    makeRings("land", "Use", {square(401000, 4494000, 2000)});
    std::vector<std::vector<Point>> many;
    for (int i = 0; i < 60; ++i) {  // scattered, so that no index has them in this order
        many.push_back(square(401000 + 37 * (i * 29 % 53), 4494000 + 31 * (i * 17 % 59), 20));
    }
    makeRings("zones", "ZONE", many);
    intersect();
    const auto made = pieces();
    ASSERT_EQ(made->recordCount(), many.size());
    for (std::size_t i = 0; i < many.size(); ++i) {
        EXPECT_EQ(keyText(made->value(i, "ZONE")), "ring " + std::to_string(i));
    }
}

TEST_F(Overlay, TouchingIsNotSharing) {
    makeRings("land", "Use", {square(400000, 4495000, 100), square(400200, 4495000, 100)});
    makeRings("zones", "ZONE", {square(400100, 4495000, 50), square(400250, 4495050, 10)});
    const OverlayResult result = intersect();
    EXPECT_EQ(result.pieces, 1U);
    EXPECT_EQ(keyText(pieces()->value(0, "Use")), "ring 1");
    EXPECT_EQ(keyText(pieces()->value(0, "ZONE")), "ring 1");
}

TEST_F(Overlay, FieldsOfOneNameAreKeptApart) {
    const auto make = [&](const std::string& name, const std::string& value) {
        features.createFeatureClass(
            f.folder.file(name + ".shp"), true, crs,
            {{"Descriptio", FieldType::text, 20, 0},
             {"NAME", FieldType::text, 20, 0},
             {"Big", FieldType::integer, 18, 0}},
            {{square(401000, 4495000, 100), {name + " d", value, 123456789012.0}}});
    };
    make("land", "field 7");
    make("zones", "Daggett");
    intersect("land", "zones", "Descriptio", "NAME");
    const auto made = pieces();
    std::vector<std::string> names;
    for (const Field& field : made->fields()) names.push_back(field.name);
    EXPECT_THAT(names, ElementsAre("Descriptio", "NAME_1", "Big", "Descript_1", "NAME", "Big_1"));
    EXPECT_EQ(keyText(pieces()->value(0, "NAME")), "Daggett");
    EXPECT_EQ(keyText(pieces()->value(0, "NAME_1")), "field 7");
    EXPECT_EQ(keyText(pieces()->value(0, "Descriptio")), "land d");
    EXPECT_EQ(std::get<double>(pieces()->value(0, "Big")), 123456789012.0);
    EXPECT_THROW(intersect("land", "zones", "NAME", "NAME"), PlatformError);
}

TEST_F(Overlay, LayersAreBroughtIntoOneCoordinateSystem) {
    // The same square in degrees.
    ISpatialReferenceFactory& systems = f.application.platform().spatialReferences();
    const std::string degrees = systems.createGeographic(4269);
    std::vector<Point> ring = systems.project(square(402000, 4495000, 1000), crs, degrees);
    features.createFeatureClass(f.folder.file("zones.shp"), true, degrees,
                                {{"ZONE", FieldType::text, 20, 0}}, {{ring, {std::string("z")}}});
    makeRings("land", "Use", {square(402500, 4495500, 2000)});
    intersect();
    EXPECT_NEAR(pieces()->areas().at(0), 250000, 10);
}

TEST_F(Overlay, AFailureLeavesNothing) {
    features.createFeatureClass(f.folder.file("points.shp"), false, crs,
                                {{"Use", FieldType::text, 20, 0}},
                                {{{{401000, 4495000}}, {std::string("well")}}});
    EXPECT_THROW(intersect("points"), PlatformError);
    EXPECT_TRUE(std::filesystem::is_empty(f.folder.file("out")));
    intersect();
    intersect();  // replaces the older one
    EXPECT_THROW(intersect("points"), PlatformError);
    EXPECT_GT(pieces()->recordCount(), 20U);
}

// More shapes than are held at a time, in rows across two zones; each is cut where the border runs.
TEST_F(Overlay, ManyShapesAreCutInTheirOrder) {
    constexpr std::size_t kShapes = 40000;
    constexpr std::size_t kBowTie = 33333;  // counted from 0
    constexpr double kSide = 10;
    std::vector<NewFeature> land;
    for (std::size_t i = 0; i < kShapes; ++i) {
        const double x = 400000 + kSide * static_cast<double>(i % 200);
        const std::size_t row = i / 200;
        const double y = 4500000 - kSide * static_cast<double>(row);
        std::vector<Point> ring = square(x, y, kSide);
        if (i == kBowTie) std::swap(ring[1], ring[2]);
        land.push_back({ring, {"field " + std::to_string(i)}});
    }
    features.createFeatureClass(f.folder.file("land.shp"), true, crs,
                                {{"Use", FieldType::text, 20, 0}}, land);
    const double border = 401005;  // through the fields of column 100
    features.createFeatureClass(
        f.folder.file("zones.shp"), true, crs, {{"ZONE", FieldType::text, 20, 0}},
        {rectangle({399000, 4490000, border, 4501000}, {std::string("west")}),
         rectangle({border, 4490000, 403000, 4501000}, {std::string("east")})});
    Feedback feedback;
    test::RecordingMonitor monitor;
    feedback.listen(monitor);
    feedback.begin("cutting");
    IFeedback* const before = watchLoops(&feedback);
    const OverlayResult result = intersect();
    feedback.cancel();
    EXPECT_THROW(intersect(), Cancelled);
    watchLoops(before);
    EXPECT_THAT(monitor.fractions, ElementsAre(0.4096, 0.8192, 1));  // of the shapes
    EXPECT_EQ(result.pieces, kShapes + kShapes / 200);
    ASSERT_EQ(result.repairs.size(), 1U);
    EXPECT_THAT(result.repairs[0], HasSubstr("Feature 33334 of"));
    const auto made = pieces();
    std::size_t r = 0;
    for (std::size_t i = 0; i < kShapes; ++i) {
        const std::size_t column = i % 200;
        for (const char* zone : {"west", "east"}) {
            const bool holds = zone == std::string("west") ? column <= 100 : column >= 100;
            if (!holds) continue;
            ASSERT_EQ(made->value(r, "Use"), FieldValue("field " + std::to_string(i)));
            ASSERT_EQ(made->value(r, "ZONE"), FieldValue(std::string(zone)));
            ++r;
        }
    }
    EXPECT_EQ(r, result.pieces);
}

TEST_F(Overlay, WhatIsWrongWithAnInputIsNoFailureOfTheOutput) {
    const auto message = [&] {
        try {
            intersect();
        } catch (const PlatformError& e) {
            return std::string(e.what());
        }
        return std::string("cut");
    };
    EXPECT_EQ(message(), "cut");
    const std::string shapes = f.folder.file("land.shp");
    std::string bytes = test::contentOf(shapes);
    bytes.replace(100 + 8 + 48, 8, std::string("\0\0\0\0\0\0\xf8\x7f", 8));  // not a number
    test::write(shapes, bytes);
    EXPECT_THAT(message(), testing::StartsWith("Feature 1 of " + shapes));
    EXPECT_EQ(pieces()->recordCount(), pieces()->areas().size());  // the older one
}

TEST_F(Overlay, WithoutItsTableThereIsNoShapefile) {
    std::filesystem::create_directories(f.folder.file("out/pieces.dbf/in the way"));
    EXPECT_THROW(intersect(), PlatformError);
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Overlay, NothingSharedMakesAnEmptyShapefile) {
    makeRings("land", "Use", {square(100, 100, 100)});
    EXPECT_EQ(intersect().pieces, 0U);
    EXPECT_EQ(pieces()->recordCount(), 0U);
}

}  // namespace
}  // namespace velmora::platform
