// SPDX-License-Identifier: MIT
#include "tests/faults/points.h"

#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>

#include "tests/faults/calls.h"

namespace velmora::faults {

namespace {

// 0 to below n; the standard's distributions differ from library to library.
std::size_t below(std::mt19937& random, std::size_t n) { return random() % n; }

std::vector<Point> kindsOfPoints(const Counts& counts) {
    std::vector<Point> all;
    for (const auto& [step, calls] : counts) {
        for (const auto& [call, count] : calls) {
            if (count < 1) continue;
            for (const std::string& error : callKind(call).errors) {
                all.push_back({step, call, error, count});
            }
        }
    }
    return all;
}

void shuffle(std::vector<Point>& points, std::mt19937& random) {
    for (std::size_t i = points.size(); i > 1; --i)
        std::swap(points[i - 1], points[below(random, i)]);
}

}  // namespace

std::string textOf(const Point& point) {
    return point.step + ":" + point.call + ":" + point.error + ":" + std::to_string(point.number);
}

Point pointFrom(const std::string& text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == ':') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    const bool isNumber =
        parts.size() == 4 && !parts[3].empty() && parts[3].size() < 10 &&
        std::ranges::all_of(parts[3], [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber) throw std::runtime_error("\"" + text + "\" is no point: STEP:CALL:ERROR:NUMBER");
    callKind(parts[1]);
    faultOf(parts[2]);
    return {parts[0], parts[1], parts[2], std::stol(parts[3])};
}

std::vector<Point> draw(const Counts& counts, std::size_t points, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Point> kinds = kindsOfPoints(counts);
    std::vector<Point> drawn;
    std::set<std::string> seen;
    // Few calls have few points; when a whole round gives none that is new, all have been drawn.
    for (bool more = true; more && drawn.size() < points;) {
        more = false;
        shuffle(kinds, random);
        for (const Point& kind : kinds) {
            if (drawn.size() == points) break;
            Point point = kind;
            const auto calls = static_cast<std::size_t>(kind.number);
            for (int attempt = 0; attempt < 20; ++attempt) {
                point.number = 1 + static_cast<long>(below(random, calls));
                if (!seen.insert(textOf(point)).second) continue;
                drawn.push_back(point);
                more = true;
                break;
            }
        }
    }
    return drawn;
}

}  // namespace velmora::faults
