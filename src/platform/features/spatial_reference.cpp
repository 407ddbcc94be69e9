// SPDX-License-Identifier: MIT
#include "platform/features/spatial_reference.h"

#include <cpl_conv.h>

#include <cmath>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "platform/features/vector_dataset.h"

namespace velmora::platform {

namespace {

// Remembers the answers of a function of texts.
template <class Key, class Value>
class Memory {
  public:
    template <class Function>
    Value get(const Key& key, Function compute) {
        const std::lock_guard lock(mutex_);
        const auto found = answers_.find(key);
        if (found != answers_.end()) return found->second;
        return answers_.emplace(key, compute()).first->second;
    }

  private:
    std::mutex mutex_;
    std::map<Key, Value> answers_;
};

[[noreturn]] void throwUnreadable(const std::string& why) {
    throw PlatformError("The database of coordinate systems (proj.db of PROJ) cannot be read: " +
                        why);
}

std::string exported(const OGRSpatialReference& system, const char* format) {
    char* text = nullptr;
    const std::string option = std::string("FORMAT=") + format;
    const char* const options[] = {option.c_str(), nullptr};
    const OGRErr error = system.exportToWkt(&text, options);
    std::string wkt = text ? text : "";
    CPLFree(text);
    if (error != OGRERR_NONE) return {};
    return wkt;
}

OGRSpatialReference systemOfCode(int code) {
    OGRSpatialReference system;
    OGRErr error = OGRERR_NONE;
    lookUp([&] { error = system.importFromEPSG(code); });
    if (error != OGRERR_NONE) {
        throw PlatformError("PROJ knows no coordinate system EPSG:" + std::to_string(code));
    }
    return system;
}

// Each thread opens the database for itself when it first needs it. Without it PROJ makes do with
// what a text says, and tells nobody.
void requireDatabase() {
    thread_local bool opened = false;
    if (opened) return;
    const GdalFailures failures;
    OGRSpatialReference known;
    if (known.importFromEPSG(4326) != OGRERR_NONE) throwUnreadable(failures.first());
    opened = true;
}

}  // namespace

void lookUp(const std::function<void()>& call) {
    const GdalFailures failures;
    try {
        requireDatabase();
        call();
    } catch (const PlatformError&) {
        if (failures.database().empty()) throw;
    } catch (const std::exception& e) {  // PROJ's own
        throwUnreadable(e.what());
    }
    if (!failures.database().empty()) throwUnreadable(failures.database());
}

std::string wktOf(const OGRSpatialReference* system) {
    return system ? exported(*system, "WKT2_2019") : std::string();
}

OGRSpatialReference spatialReference(const std::string& crs) {
    OGRSpatialReference system;
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRErr error = OGRERR_NONE;
    lookUp([&] { error = system.importFromWkt(crs.c_str()); });
    if (error != OGRERR_NONE) {
        throw PlatformError("This is no coordinate system that PROJ knows: " + crs.substr(0, 80));
    }
    return system;
}

bool sameCoordinateSystem(const std::string& a, const std::string& b) {
    if (a == b) return true;
    static Memory<std::pair<std::string, std::string>, bool> memory;
    return memory.get({a, b}, [&] {
        const OGRSpatialReference first = spatialReference(a);
        const OGRSpatialReference second = spatialReference(b);
        const char* const options[] = {"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES",
                                       "CRITERION=EQUIVALENT", nullptr};
        bool same = false;
        lookUp([&] { same = first.IsSame(&second, options) != 0; });
        return same;
    });
}

std::string esriWkt(const std::string& crs) {
    static Memory<std::string, std::string> memory;
    return memory.get(crs, [&] {
        const OGRSpatialReference system = spatialReference(crs);
        std::string text;
        lookUp([&] { text = exported(system, "WKT1_ESRI"); });
        if (text.empty()) {
            throw PlatformError("The coordinate system has no form for a grid: " +
                                crs.substr(0, 80));
        }
        return text;
    });
}

std::string wktFromEsri(const std::string& text) {
    static Memory<std::string, std::string> memory;
    return memory.get(text, [&] {
        std::string wkt;
        lookUp([&] {
            OGRSpatialReference system;
            system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
            const char* lines[] = {text.c_str(), nullptr};
            if (system.importFromESRI(const_cast<char**>(lines)) != OGRERR_NONE) return;
            // The ESRI form carries no code: the system of the database that means the same has
            // one.
            const std::unique_ptr<OGRSpatialReference> known(system.FindBestMatch(90, "EPSG"));
            wkt = wktOf(known ? known.get() : &system);
        });
        return wkt;
    });
}

std::string SpatialReferenceFactory::createGeographic(int code) {
    const OGRSpatialReference system = systemOfCode(code);
    if (system.IsGeographic() == 0) {
        throw PlatformError("EPSG:" + std::to_string(code) + " is not geographic");
    }
    return wktOf(&system);
}

std::string SpatialReferenceFactory::createProjected(int code) {
    const OGRSpatialReference system = systemOfCode(code);
    if (system.IsProjected() == 0) {
        throw PlatformError("EPSG:" + std::to_string(code) + " is not projected");
    }
    return wktOf(&system);
}

bool SpatialReferenceFactory::isGeographic(const std::string& crs) {
    return spatialReference(crs).IsGeographic() != 0;
}

double SpatialReferenceFactory::metresPerUnit(const std::string& crs) {
    return spatialReference(crs).GetLinearUnits();
}

std::string SpatialReferenceFactory::name(const std::string& crs) {
    const OGRSpatialReference system = spatialReference(crs);
    const char* name = system.GetName();
    const char* authority = system.GetAuthorityName(nullptr);
    const char* code = system.GetAuthorityCode(nullptr);
    std::string text = name ? name : "unnamed";
    if (authority && code) text += std::string(" (") + authority + ":" + code + ")";
    return text;
}

std::vector<Point> SpatialReferenceFactory::project(const std::vector<Point>& points,
                                                    const std::string& from,
                                                    const std::string& to) {
    if (sameCoordinateSystem(from, to)) return points;
    std::vector<double> x;
    std::vector<double> y;
    for (const Point& p : points) {
        x.push_back(p.x);
        y.push_back(p.y);
    }
    const std::lock_guard lock(mutex_);
    auto& transformation = transformations_[{from, to}];
    if (!transformation) {
        const OGRSpatialReference source = spatialReference(from);
        const OGRSpatialReference target = spatialReference(to);
        lookUp([&] { transformation.reset(OGRCreateCoordinateTransformation(&source, &target)); });
    }
    if (!transformation) throw PlatformError("No way from " + name(from) + " to " + name(to));
    std::vector<int> done(points.size(), 0);
    lookUp([&] {
        transformation->Transform(static_cast<int>(points.size()), x.data(), y.data(), nullptr,
                                  done.data());
    });
    std::vector<Point> result;
    result.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!done[i] || !std::isfinite(x[i]) || !std::isfinite(y[i])) {
            throw PlatformError("The point " + numberText(points[i].x) + ", " +
                                numberText(points[i].y) + " has no image in " + name(to));
        }
        result.push_back({x[i], y[i]});
    }
    return result;
}

}  // namespace velmora::platform
