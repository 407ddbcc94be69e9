// SPDX-License-Identifier: MIT
#include "tests/support/plain_kriging.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace velmora::test {

namespace {

using Matrix = std::vector<std::vector<double>>;

// Gauss-Jordan elimination with pivots, the right side in the last column.
std::vector<double> eliminated(Matrix m) {
    const std::size_t n = m.size();
    for (std::size_t c = 0; c < n; ++c) {
        std::size_t pivot = c;
        for (std::size_t r = c; r < n; ++r) {
            if (std::fabs(m[r][c]) > std::fabs(m[pivot][c])) pivot = r;
        }
        std::swap(m[c], m[pivot]);
        for (std::size_t r = 0; r < n; ++r) {
            if (r == c) continue;
            const double factor = m[r][c] / m[c][c];
            for (std::size_t k = c; k <= n; ++k) m[r][k] -= factor * m[c][k];
        }
    }
    std::vector<double> x;
    for (std::size_t r = 0; r < n; ++r) x.push_back(m[r][n] / m[r][r]);
    return x;
}

double distanceBetween(Point a, Point b) {
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

struct Class {
    double distance = 0;
    double squares = 0;
    double pairs = 0;
};

}  // namespace

double plainKriging(const std::vector<Sample>& samples, Point at, const SphericalModel& model,
                    std::size_t nearest) {
    std::vector<std::pair<double, std::size_t>> order;
    for (std::size_t i = 0; i < samples.size(); ++i)
        order.emplace_back(distanceBetween(at, samples[i].at), i);
    std::sort(order.begin(), order.end());
    order.resize(std::min(nearest, order.size()));
    const std::size_t n = order.size();
    Matrix m(n + 1, std::vector<double>(n + 2, 1.0));
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            m[i][j] = model.semivariance(
                distanceBetween(samples[order[i].second].at, samples[order[j].second].at));
        }
        m[i][n + 1] = model.semivariance(order[i].first);
    }
    m[n][n] = 0;
    const std::vector<double> weights = eliminated(m);
    double sum = 0;
    for (std::size_t i = 0; i < n; ++i) sum += weights[i] * samples[order[i].second].value;
    return sum;
}

SphericalModel plainModel(const std::vector<Sample>& samples) {
    double west = samples[0].at.x;
    double east = west;
    double south = samples[0].at.y;
    double north = south;
    for (const Sample& s : samples) {
        west = std::min(west, s.at.x);
        east = std::max(east, s.at.x);
        south = std::min(south, s.at.y);
        north = std::max(north, s.at.y);
    }
    const double cutoff = distanceBetween({west, south}, {east, north}) / 3;
    std::map<int, Class> classes;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        for (std::size_t j = i + 1; j < samples.size(); ++j) {
            const double d = distanceBetween(samples[i].at, samples[j].at);
            if (d > cutoff) continue;
            Class& c = classes[static_cast<int>(std::ceil(d / (cutoff / 15)))];
            c.distance += d;
            c.squares += std::pow(samples[i].value - samples[j].value, 2);
            ++c.pairs;
        }
    }
    std::vector<double> h;
    std::vector<double> gamma;
    std::vector<double> weight;
    for (const auto& [number, c] : classes) {
        h.push_back(c.distance / c.pairs);
        gamma.push_back(c.squares / c.pairs / 2);
        weight.push_back(c.pairs / h.back() / h.back());
    }
    SphericalModel best;
    double smallest = HUGE_VAL;
    constexpr int kTries = 40000;
    for (int t = 0; t <= kTries; ++t) {
        const double range = h[0] * std::pow(10 * cutoff / h[0], static_cast<double>(t) / kTries);
        const SphericalModel shape{0, 1, range};
        double s1 = 0;
        double sf = 0;
        double sff = 0;
        double sg = 0;
        double sfg = 0;
        for (std::size_t i = 0; i < h.size(); ++i) {
            const double f = shape.semivariance(h[i]);
            s1 += weight[i];
            sf += weight[i] * f;
            sff += weight[i] * f * f;
            sg += weight[i] * gamma[i];
            sfg += weight[i] * f * gamma[i];
        }
        const double det = s1 * sff - sf * sf;
        const std::vector<std::pair<double, double>> candidates = {
            {sg / s1, 0.0},
            {0.0, sfg / sff},
            {(sff * sg - sf * sfg) / det, (s1 * sfg - sf * sg) / det}};
        for (const auto& [nugget, sill] : candidates) {
            if (!(nugget >= 0) || !(sill >= 0)) continue;
            double error = 0;
            for (std::size_t i = 0; i < h.size(); ++i) {
                error +=
                    weight[i] * std::pow(gamma[i] - nugget - sill * shape.semivariance(h[i]), 2);
            }
            if (error < smallest * (1 - 1e-12)) {
                smallest = error;
                best = {nugget, sill, range};
            }
        }
    }
    return best;
}

}  // namespace velmora::test
