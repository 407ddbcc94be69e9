// SPDX-License-Identifier: MIT
#include "platform/analysis/semivariogram.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/analysis/station_pairs.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kFewestStations = 4;
constexpr std::size_t kLags = 15;
constexpr double kRangeInCutoffs = 10;  // the longest range that is searched
constexpr int kScannedRanges = 500;
constexpr double kRounding = 1e-12;
constexpr double kSmallestSpread = 1e-20;  // of the model's shape among the lags
constexpr double kAgreement = 1e-12;       // of the weighted squares: errors this close are equal
constexpr int kRangeDigits = 7;            // significant digits of a range
constexpr double kOneRange = 1 + 1e-2;     // equal fits farther apart than this are told

// The smallest number of kRangeDigits significant digits that is not below the value.
double roundedUp(double value) {
    const double digit = std::pow(10.0, std::floor(std::log10(value)) - (kRangeDigits - 1));
    return digit < 1 ? std::ceil(value * std::round(1 / digit)) / std::round(1 / digit)
                     : std::ceil(value / digit) * digit;
}

class SphericalFit {
  public:
    SphericalFit(const std::vector<SemivariogramLag>& lags, double longestRange)
        : lags_(lags),
          shortest_(lags.front().distance),
          longest_(std::max(lags.front().distance, longestRange)) {
        for (const SemivariogramLag& lag : lags) {
            weights_.push_back(static_cast<double>(lag.pairs) / (lag.distance * lag.distance));
            agreement_ += kAgreement * weights_.back() * lag.semivariance * lag.semivariance;
        }
    }

    Semivariogram best() const {
        const std::vector<Trial> trials = searched();
        const double equal =
            std::ranges::min_element(trials, {}, &Trial::error)->error + agreement_;
        const auto fits = [&](const Trial& trial) { return trial.error <= equal; };
        const auto first = std::ranges::find_if(trials, fits);
        const auto last = std::find_if(trials.rbegin(), trials.rend(), fits);
        const double range =
            first == trials.begin()
                ? shortest_
                : std::min(roundedUp(edge(std::prev(first)->range, first->range, equal)), longest_);
        const double farthest =
            last == trials.rbegin() ? longest_ : edge(std::prev(last)->range, last->range, equal);
        Semivariogram best = at(range);
        if (best.model.partialSill > 0 && farthest > kOneRange * range) {
            best.longestEqualRange = farthest;
        }
        best.lags = lags_;
        return best;
    }

  private:
    struct Trial {
        double range;
        double error;
    };

    Trial tried(double range) const { return {range, at(range).weightedError}; }

    // The errors of ranges from the shortest to the longest: of a scan, with the smallest error
    // near each of its valleys.
    std::vector<Trial> searched() const {
        std::vector<Trial> trials;
        for (const double range : scannedRanges()) trials.push_back(tried(range));
        const std::size_t scanned = trials.size();
        for (std::size_t i = 0; i < scanned; ++i) {
            const Trial& before = trials[i == 0 ? i : i - 1];
            const Trial& after = trials[std::min(i + 1, scanned - 1)];
            if (trials[i].error > before.error || trials[i].error > after.error) continue;
            trials.push_back(bottom(before.range, after.range));
        }
        std::ranges::sort(trials, {}, &Trial::range);
        return trials;
    }

    // Ranges that are evenly spaced by their logarithm; the lags themselves are among them, since
    // the error bends there.
    std::vector<double> scannedRanges() const {
        std::vector<double> ranges;
        for (int i = 0; i <= kScannedRanges; ++i) {
            const double share = static_cast<double>(i) / kScannedRanges;
            ranges.push_back(
                std::clamp(shortest_ * std::pow(longest_ / shortest_, share), shortest_, longest_));
        }
        for (const SemivariogramLag& lag : lags_) {
            if (lag.distance < longest_) ranges.push_back(lag.distance);
        }
        std::sort(ranges.begin(), ranges.end());
        return ranges;
    }

    // The smallest error between two ranges, by golden section.
    Trial bottom(double low, double high) const {
        const double section = (std::sqrt(5.0) - 1) / 2;
        Trial left = tried(high - section * (high - low));
        Trial right = tried(low + section * (high - low));
        while (high - low > 1e-10 * high) {
            if (left.error <= right.error) {
                high = right.range;
                right = std::exchange(left, tried(high - section * (high - low)));
            } else {
                low = left.range;
                left = std::exchange(right, tried(low + section * (high - low)));
            }
        }
        return left.error <= right.error ? left : right;
    }

    // Where the error begins to be at most `equal` on the way from one range, whose error is
    // larger, to another, whose error is not: halved until the two are neighbours.
    double edge(double beyond, double within, double equal) const {
        for (;;) {
            const double middle = beyond + (within - beyond) / 2;
            if (middle == beyond || middle == within) return within;
            (tried(middle).error <= equal ? within : beyond) = middle;
        }
    }

    // The best nugget and partial sill for a range: the weighted least squares line of semivariance
    // over the model's shape; where one of the two would be negative, all is nugget or nothing is.
    Semivariogram at(double range) const {
        double w = 0;
        double wf = 0;
        double wg = 0;
        double wff = 0;
        double wfg = 0;
        for (std::size_t i = 0; i < lags_.size(); ++i) {
            const double f = shapeAt(i, range);
            w += weights_[i];
            wf += weights_[i] * f;
            wg += weights_[i] * lags_[i].semivariance;
            wff += weights_[i] * f * f;
            wfg += weights_[i] * f * lags_[i].semivariance;
        }
        const double shape = wf / w;
        const double mean = wg / w;
        double spread = 0;
        double slope = 0;
        for (std::size_t i = 0; i < lags_.size(); ++i) {
            const double off = shapeAt(i, range) - shape;
            spread += weights_[i] * off * off;
            slope += weights_[i] * off * (lags_[i].semivariance - mean);
        }
        if (spread > kSmallestSpread * wff) {
            const double partialSill = slope / spread;
            const double nugget = mean - partialSill * shape;
            if (nugget >= 0 && partialSill >= 0) return withError({nugget, partialSill, range});
        }
        const Semivariogram allNugget = withError({mean, 0, range});
        const Semivariogram noNugget = withError({0, wfg / wff, range});
        return noNugget.weightedError < allNugget.weightedError - agreement_ ? noNugget : allNugget;
    }

    double shapeAt(std::size_t lag, double range) const {
        return SphericalModel{0, 1, range}.semivariance(lags_[lag].distance);
    }

    Semivariogram withError(const SphericalModel& model) const {
        Semivariogram fitted{{}, model, 0, {}};
        for (std::size_t i = 0; i < lags_.size(); ++i) {
            const double off = lags_[i].semivariance - model.semivariance(lags_[i].distance);
            fitted.weightedError += weights_[i] * off * off;
        }
        return fitted;
    }

    const std::vector<SemivariogramLag>& lags_;
    std::vector<double> weights_;
    double agreement_ = 0;
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
    std::vector<SemivariogramLag> lags;
    for (const PairSums& sums : pairSums(samples, cutoff, kLags)) {
        if (sums.pairs == 0) continue;
        const auto pairs = static_cast<double>(sums.pairs);
        lags.push_back({sums.distance / pairs, sums.squares / (2 * pairs), sums.pairs});
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
