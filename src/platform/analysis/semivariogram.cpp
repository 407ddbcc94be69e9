// SPDX-License-Identifier: MIT
#include "platform/analysis/semivariogram.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora::platform {

namespace {

constexpr std::size_t kFewestStations = 4;
constexpr std::size_t kLags = 15;
constexpr double kRangeInCutoffs = 10;  // the longest range that is searched
constexpr int kScannedRanges = 500;
constexpr double kRounding = 1e-12;

// The ends of a search for the smallest error, by logarithm of the range.
struct Bracket {
    double low;
    double high;
};

class SphericalFit {
  public:
    SphericalFit(const std::vector<SemivariogramLag>& lags, double longestRange)
        : lags_(lags), shortest_(lags.front().distance), longest_(longestRange) {
        for (const SemivariogramLag& lag : lags) {
            weights_.push_back(static_cast<double>(lag.pairs) / (lag.distance * lag.distance));
        }
    }

    Semivariogram best() const {
        const std::vector<double> ranges = scannedRanges();
        std::vector<double> errors;
        Semivariogram best = atLogarithm(ranges.front());
        for (const double range : ranges) {
            errors.push_back(keepBetter(best, atLogarithm(range), 0));
        }
        for (std::size_t i = 0; i < ranges.size(); ++i) {
            const std::size_t before = i == 0 ? i : i - 1;
            const std::size_t after = std::min(i + 1, ranges.size() - 1);
            if (errors[i] > errors[before] || errors[i] > errors[after]) continue;
            keepBetter(best, refined({ranges[before], ranges[after]}), kRounding);
        }
        best.lags = lags_;
        return best;
    }

  private:
    // Logarithms of ranges, evenly spaced; the lags themselves are among them, since the error
    // bends there.
    std::vector<double> scannedRanges() const {
        const double first = std::log(shortest_);
        const double last = std::log(std::max(shortest_, longest_));
        std::vector<double> ranges;
        for (int i = 0; i <= kScannedRanges; ++i) {
            ranges.push_back(first + (last - first) * i / kScannedRanges);
        }
        for (const SemivariogramLag& lag : lags_) {
            if (lag.distance < longest_) ranges.push_back(std::log(lag.distance));
        }
        std::sort(ranges.begin(), ranges.end());
        return ranges;
    }

    // Of equal models the first stays, so that rounding does not choose. Returns the error of the
    // other.
    static double keepBetter(Semivariogram& best, const Semivariogram& other, double share) {
        if (other.weightedError < best.weightedError * (1 - share)) best = other;
        return other.weightedError;
    }

    // Golden section.
    Semivariogram refined(Bracket bracket) const {
        const double section = (std::sqrt(5.0) - 1) / 2;
        double left = bracket.high - section * (bracket.high - bracket.low);
        double right = bracket.low + section * (bracket.high - bracket.low);
        double leftError = atLogarithm(left).weightedError;
        double rightError = atLogarithm(right).weightedError;
        while (bracket.high - bracket.low > 1e-10) {
            if (leftError <= rightError) {
                bracket.high = right;
                right = std::exchange(left, right - section * (right - bracket.low));
                rightError = std::exchange(leftError, atLogarithm(left).weightedError);
            } else {
                bracket.low = left;
                left = std::exchange(right, left + section * (bracket.high - left));
                leftError = std::exchange(rightError, atLogarithm(right).weightedError);
            }
        }
        return atLogarithm(leftError <= rightError ? left : right);
    }

    Semivariogram atLogarithm(double logarithm) const {
        return at(std::clamp(std::exp(logarithm), shortest_, std::max(shortest_, longest_)));
    }

    // The best nugget and partial sill for a range: the weighted least squares line of semivariance
    // over the model's shape, moved to the nearer edge where one of the two would be negative.
    Semivariogram at(double range) const {
        double w = 0;
        double wf = 0;
        double wff = 0;
        double wg = 0;
        double wfg = 0;
        for (std::size_t i = 0; i < lags_.size(); ++i) {
            const double f = SphericalModel{0, 1, range}.semivariance(lags_[i].distance);
            w += weights_[i];
            wf += weights_[i] * f;
            wff += weights_[i] * f * f;
            wg += weights_[i] * lags_[i].semivariance;
            wfg += weights_[i] * f * lags_[i].semivariance;
        }
        const double spread = w * wff - wf * wf;
        if (spread > kRounding * w * wff) {
            const double nugget = (wff * wg - wf * wfg) / spread;
            const double partialSill = (w * wfg - wf * wg) / spread;
            if (nugget >= 0 && partialSill >= 0) return withError({nugget, partialSill, range});
        }
        Semivariogram allNugget = withError({wg / w, 0, range});
        keepBetter(allNugget, withError({0, wfg / wff, range}), kRounding);
        return allNugget;
    }

    Semivariogram withError(const SphericalModel& model) const {
        Semivariogram fitted{{}, model, 0};
        for (std::size_t i = 0; i < lags_.size(); ++i) {
            const double off = lags_[i].semivariance - model.semivariance(lags_[i].distance);
            fitted.weightedError += weights_[i] * off * off;
        }
        return fitted;
    }

    const std::vector<SemivariogramLag>& lags_;
    std::vector<double> weights_;
    double shortest_;
    double longest_;
};

bool withoutVariance(std::span<const Sample> samples) {
    const auto [low, high] = std::ranges::minmax(samples, {}, &Sample::value);
    const double largest = std::max(std::fabs(low.value), std::fabs(high.value));
    return high.value - low.value <= kRounding * largest;
}

}  // namespace

double semivariogramCutoff(std::span<const Sample> samples) {
    const auto [west, east] =
        std::ranges::minmax(samples, {}, [](const Sample& s) { return s.at.x; });
    const auto [south, north] =
        std::ranges::minmax(samples, {}, [](const Sample& s) { return s.at.y; });
    return std::hypot(east.at.x - west.at.x, north.at.y - south.at.y) / 3;
}

std::vector<SemivariogramLag> empiricalSemivariogram(std::span<const Sample> samples,
                                                     double cutoff) {
    const double width = cutoff / static_cast<double>(kLags);
    std::vector<SemivariogramLag> lags(kLags);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const double distance =
                std::hypot(samples[i].at.x - samples[j].at.x, samples[i].at.y - samples[j].at.y);
            if (distance > cutoff) continue;
            const double place = std::ceil(distance / width) - 1;
            SemivariogramLag& lag = lags[std::min(static_cast<std::size_t>(place), kLags - 1)];
            const double difference = samples[i].value - samples[j].value;
            lag.distance += distance;
            lag.semivariance += difference * difference;
            ++lag.pairs;
        }
    }
    std::erase_if(lags, [](const SemivariogramLag& lag) { return lag.pairs == 0; });
    for (SemivariogramLag& lag : lags) {
        lag.distance /= static_cast<double>(lag.pairs);
        lag.semivariance /= 2 * static_cast<double>(lag.pairs);
    }
    return lags;
}

Semivariogram fitSpherical(const std::vector<SemivariogramLag>& lags, double longestRange) {
    return SphericalFit(lags, longestRange).best();
}

std::optional<Semivariogram> semivariogramOf(std::span<const Sample> samples) {
    if (samples.size() < kFewestStations || withoutVariance(samples)) return std::nullopt;
    const double cutoff = semivariogramCutoff(samples);
    const std::vector<SemivariogramLag> lags = empiricalSemivariogram(samples, cutoff);
    if (lags.empty()) return std::nullopt;
    Semivariogram fitted = fitSpherical(lags, kRangeInCutoffs * cutoff);
    if (!(fitted.model.sill() > 0)) return std::nullopt;
    return fitted;
}

}  // namespace velmora::platform
