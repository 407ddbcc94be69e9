// SPDX-License-Identifier: MIT
#include "platform/analysis/kriging_system.h"

#include <algorithm>
#include <cmath>

#include "platform/threads/per_processor.h"

namespace velmora::platform {

namespace {

constexpr double kSmallestReciprocalCondition = 1e-14;
// With so much nugget no system is near that: the smallest eigenvalue of the correlations is at
// least the nugget's share, so that the condition of n stations' system is some n^2 sqrt(n) over
// it. Telling the condition takes as long as the rest.
constexpr double kPlainlySolvable = 1e-6;

double squaredDistance(const Point& a, const Point& b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    return dx * dx + dy * dy;
}

// At distance 0 the nugget is part of the correlation.
inline double correlationAt(double squared, double structured, double inverseRange) {
    const double share = std::sqrt(squared) * inverseRange;
    const double u = share < 1 ? share : 1;
    const double apart = structured * (1 - u * (1.5 - 0.5 * u * u));
    return squared > 0 ? apart : 1;
}

VELMORA_PER_PROCESSOR
void addCorrelations(double* sums, const double* x, const double* y, std::size_t places,
                     Point station, double coefficient, double structured, double inverseRange) {
    for (std::size_t i = 0; i < places; ++i) {
        const double dx = x[i] - station.x;
        const double dy = y[i] - station.y;
        sums[i] += coefficient * correlationAt(dx * dx + dy * dy, structured, inverseRange);
    }
}

}  // namespace

double Correlation::at(double squared) const {
    return correlationAt(squared, structured_, inverseRange_);
}

void Correlation::add(double* sums, const double* x, const double* y, std::size_t places,
                      Point station, double coefficient) const {
    addCorrelations(sums, x, y, places, station, coefficient, structured_, inverseRange_);
}

bool KrigingSystem::factorise(std::span<const Point> stations, const Correlation& correlation) {
    const auto n = static_cast<Eigen::Index>(stations.size());
    matrix_.resize(n + 1, n + 1);
    for (Eigen::Index j = 0; j < n; ++j) {
        const Point& station = stations[static_cast<std::size_t>(j)];
        for (Eigen::Index i = j; i < n; ++i) {
            matrix_(i, j) = matrix_(j, i) =
                correlation.at(squaredDistance(stations[static_cast<std::size_t>(i)], station));
        }
        matrix_(j, n) = matrix_(n, j) = 1;
    }
    matrix_(n, n) = 0;
    factor_.compute(matrix_);
    return correlation.nuggetShare() > kPlainlySolvable ||
           factor_.rcond() > kSmallestReciprocalCondition;
}

void KrigingSystem::solve(std::span<const double> values, std::span<double> coefficients) {
    const auto n = static_cast<Eigen::Index>(values.size());
    right_.resize(n + 1);
    std::copy(values.begin(), values.end(), right_.begin());
    right_(n) = 0;
    solution_ = factor_.solve(right_);
    std::copy(solution_.begin(), solution_.end(), coefficients.begin());
}

}  // namespace velmora::platform
