// SPDX-License-Identifier: MIT
// Ordinary kriging among a few stations.
#pragma once

#include <Eigen/LU>
#include <span>

#include "gis/envelope.h"
#include "gis/semivariogram.h"

namespace velmora::platform {

// How alike the values of two places are, 1 at one place: (sill - gamma(h)) / sill. The sill must
// be positive.
class Correlation {
  public:
    explicit Correlation(const SphericalModel& model)
        : structured_(model.partialSill / model.sill()), inverseRange_(1 / model.range) {}
    double at(double squaredDistance) const;
    double nuggetShare() const { return 1 - structured_; }  // of the sill
    // sums[i] += coefficient * the correlation of the station with the place (x[i], y[i]).
    void add(double* sums, const double* x, const double* y, std::size_t places, Point station,
             double coefficient) const;

  private:
    double structured_;  // share of the partial sill in the sill
    double inverseRange_;
};

// The kriging system [C 1; 1' 0] of n stations at distinct places, factorised: one factor serves
// every place that is estimated from these stations. Systems one after the other use one memory.
class KrigingSystem {
  public:
    // False when stations stand so close together that the system has no solution.
    [[nodiscard]] bool factorise(std::span<const Point> stations, const Correlation& correlation);

    // The dual coefficients of the values: the estimate at a place x is
    //   coefficients[n] + sum of coefficients[k] * correlation(x, station k).
    // It is unbiased (weights add up to 1) and of least variance. `values` and `coefficients` hold
    // n and n + 1 numbers.
    void solve(std::span<const double> values, std::span<double> coefficients);

  private:
    Eigen::MatrixXd matrix_;
    Eigen::VectorXd right_;
    Eigen::VectorXd solution_;
    Eigen::PartialPivLU<Eigen::MatrixXd> factor_;
};

}  // namespace velmora::platform
