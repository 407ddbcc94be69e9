// SPDX-License-Identifier: MIT
#include "refet/refet_pass.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <limits>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "gis/errors.h"
#include "refet/cls_models.h"
#include "refet/equations/blaney_criddle.h"
#include "refet/equations/failure.h"
#include "refet/equations/hargreaves.h"
#include "refet/equations/penman_monteith.h"
#include "refet/equations/priestley_taylor.h"
#include "refet/equations/solar_estimate.h"
#include "refet/equations/solar_radiation.h"

namespace velmora {

namespace {

constexpr double kAlbedo = 0.23;
constexpr std::size_t kGrain = 8192;   // records that one piece of a loop takes at least
constexpr std::size_t kAtHand = 2048;  // records whose fields a processor's cache holds

// What depends on latitude and date alone; no value where its equation fails.
using LatitudePart = std::optional<double>;

// One per grid row, from the latitudes of the first grid column's records.
template <class Function>
std::vector<LatitudePart> latitudeParts(IParallelLoop& loop, const CellTable& table,
                                        std::size_t rows, Function function) {
    const auto latitudes = table.values(CellField::Latitude);
    std::vector<LatitudePart> parts(rows);
    loop.run(rows, 16, [&](std::size_t begin, std::size_t end) {
        for (std::size_t row = begin; row < end; ++row) {
            try {
                parts[row] = function(latitudes[row]);
            } catch (const EquationError&) {
                parts[row] = std::nullopt;
            }
        }
    });
    return parts;
}

std::vector<LatitudePart> radiationParts(IParallelLoop& loop, const CellTable& table,
                                         std::size_t rows, const Date& date,
                                         const Conventions& conventions) {
    return latitudeParts(loop, table, rows, [&](double latitude) {
        return ExtraterrestrialRadiation(latitude, date, conventions);
    });
}

std::vector<LatitudePart> daylightParts(IParallelLoop& loop, const CellTable& table,
                                        std::size_t rows, const Date& date) {
    return latitudeParts(loop, table, rows, [&](double latitude) {
        return MonthlyDaylightPercentage(latitude, date.month);
    });
}

// The first cell that failed, in the order of the records, whichever thread met it.
class FirstFailure {
  public:
    void note(std::size_t record, const char* what) {
        const std::lock_guard lock(mutex_);
        if (what_.empty() || record < record_) {
            record_ = record;
            what_ = what;
        }
    }
    void rethrow(std::size_t rows, int month) const {
        if (what_.empty()) return;
        const ErrorPlace place{
            .month = month, .column = record_ / rows + 1, .row = record_ % rows + 1};
        throw EquationError(what_ + " (grid column " + std::to_string(place.column) + ", row " +
                                std::to_string(place.row) + ")",
                            place);
    }

  private:
    std::mutex mutex_;
    std::size_t record_ = 0;
    std::string what_;
};

// Calls body(record, row) for every record, in pieces that may run at once.
template <class Body>
void forEachRecord(IParallelLoop& loop, std::size_t records, std::size_t rows, Body body) {
    loop.run(records, kGrain, [&](std::size_t begin, std::size_t end) {
        std::size_t row = begin % rows;
        for (std::size_t record = begin; record < end; ++record) {
            body(record, row);
            if (++row == rows) row = 0;
        }
    });
}

// The same, with each piece shown in parts that are still at hand.
template <class Body>
void forEachRecord(IParallelLoop& loop, std::size_t records, std::size_t rows, Body body,
                   const PieceSeen& seen, const std::vector<LatitudePart>& radiation) {
    if (!seen) return forEachRecord(loop, records, rows, body);
    loop.run(records, kGrain, [&](std::size_t begin, std::size_t end) {
        std::size_t row = begin % rows;
        for (std::size_t part = begin; part < end; part += kAtHand) {
            const std::size_t partEnd = std::min(end, part + kAtHand);
            for (std::size_t record = part; record < partEnd; ++record) {
                body(record, row);
                if (++row == rows) row = 0;
            }
            seen(part, partEnd, radiation);
        }
    });
}

// A latitude part that an equation cannot do without.
double known(const LatitudePart& part) {
    if (!part) throw EquationError("no sunrise or sunset at this latitude");
    return *part;
}

// Runs an equation that stops the month when it fails: depth(record, latitude part), in mm a day.
// The `needed` fields decide where there is data.
template <std::size_t Count, class Depth>
void runEquation(IParallelLoop& loop, CellTable& table, std::size_t rows, double noData,
                 const Date& date, const Conventions& conventions,
                 const std::vector<LatitudePart>& parts,
                 const std::array<std::span<const double>, Count>& needed, const PieceSeen& seen,
                 Depth depth) {
    const std::span<double> result = table.writable(CellField::RefET);
    const int days = daysInMonth(date.month, date.year, conventions);
    FirstFailure failure;
    const auto body = [&](std::size_t record, std::size_t row) {
        for (const auto& input : needed) {
            if (input[record] == noData) {
                result[record] = noData;
                return;
            }
        }
        try {
            result[record] = conventions.depth(inchesOfMonth(depth(record, parts[row]), days));
        } catch (const EquationError& e) {
            failure.note(record, e.what());
            result[record] = noData;
        }
    };
    forEachRecord(loop, table.rowCount(), rows, body, seen, parts);
    failure.rethrow(rows, date.month);
}

std::size_t runBlaneyCriddle(IParallelLoop& loop, CellTable& table, std::size_t rows, double noData,
                             const Conventions& conventions, const std::vector<LatitudePart>& parts,
                             const PieceSeen& seen) {
    const auto elevation = table.values(CellField::Elevation);
    const auto TM = table.values(CellField::TM);
    const auto TN = table.values(CellField::TN);
    const std::span<double> result = table.writable(CellField::RefET);
    std::atomic<std::size_t> failed{0};
    const auto body = [&](std::size_t record, std::size_t row) {
        if (elevation[record] == noData || TM[record] == noData || TN[record] == noData) {
            result[record] = noData;
            return;
        }
        try {
            result[record] = conventions.depth(
                blaneyCriddle(TM[record], TN[record], known(parts[row]), conventions));
        } catch (const EquationError&) {
            result[record] = 0;
            ++failed;
        }
    };
    forEachRecord(loop, table.rowCount(), rows, body, seen, {});
    return failed;
}

void runEnergyMethod(IParallelLoop& loop, CellTable& table, const ElevationParts& elevation,
                     RefEtMethod method, const Date& date, std::size_t rows, double noData,
                     const Conventions& conventions, const PieceSeen& seen) {
    const auto z = table.values(CellField::Elevation);
    const auto TM = table.values(CellField::TM);
    const auto TN = table.values(CellField::TN);
    const auto TD = table.values(CellField::TD);
    const auto SR = table.values(CellField::SR);
    const auto WS = table.values(CellField::WS);
    const auto GG = table.values(CellField::GG);
    const auto weather = [&](std::size_t k) {
        return CellWeather{TM[k], TN[k], TD[k], kMissing, kMissing, SR[k], WS[k], GG[k], z[k]};
    };
    const auto& gamma = elevation.gamma;
    const auto parts = radiationParts(loop, table, rows, date, conventions);
    if (method == RefEtMethod::priestleyTaylor) {
        runEquation(
            loop, table, rows, noData, date, conventions, parts, std::array{z, TM, TN, TD, SR, GG},
            seen, [&](std::size_t k, const LatitudePart& Ra) {
                return priestleyTaylor(weather(k), known(Ra), gamma[k], kAlbedo, conventions);
            });
        return;
    }
    const ReferenceCrop crop = referenceCrop(method == RefEtMethod::asceTall ? 0 : 1);
    runEquation(
        loop, table, rows, noData, date, conventions, parts, std::array{z, TM, TN, TD, SR, WS, GG},
        seen, [&](std::size_t k, const LatitudePart& Ra) {
            return penmanMonteith(weather(k), crop, known(Ra), gamma[k], kAlbedo, conventions);
        });
}

// The fields that a method reads.
std::vector<CellField> inputsOf(RefEtMethod method) {
    using enum CellField;
    if (method == RefEtMethod::hargreaves || method == RefEtMethod::blaneyCriddle) {
        return {Latitude, Elevation, TM, TN};
    }
    return {Latitude, Elevation, TM, TN, TD, SR, WS, GG};
}

}  // namespace

ElevationParts elevationParts(IParallelLoop& loop, const CellTable& table) {
    const auto z = table.values(CellField::Elevation);
    ElevationParts parts;
    parts.gamma.resize(z.size());
    loop.run(z.size(), kGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) {
            try {
                parts.gamma[k] = psychrometricConstant(z[k]);
            } catch (const EquationError&) {
                parts.gamma[k] = std::numeric_limits<double>::quiet_NaN();
            }
        }
    });
    return parts;
}

RefEtPassResult calculateRefEt(IParallelLoop& loop, CellTable& table, const ElevationParts& parts,
                               RefEtMethod method, const Date& date, std::size_t rows,
                               double noData, const Conventions& conventions,
                               const PieceSeen& seen) {
    for (const CellField field : inputsOf(method)) {
        if (table.values(field).size() == table.rowCount()) continue;
        throw PlatformError(std::string("the field ") + cellFieldName(field) +
                            " of the cell table is empty");
    }
    if (method == RefEtMethod::blaneyCriddle) {
        return {runBlaneyCriddle(loop, table, rows, noData, conventions,
                                 daylightParts(loop, table, rows, date), seen)};
    }
    if (method == RefEtMethod::hargreaves) {
        const auto TM = table.values(CellField::TM);
        const auto TN = table.values(CellField::TN);
        runEquation(loop, table, rows, noData, date, conventions,
                    radiationParts(loop, table, rows, date, conventions),
                    std::array{table.values(CellField::Elevation), TM, TN}, seen,
                    [&](std::size_t k, const LatitudePart& Ra) {
                        // Below the minimum nothing else is computed.
                        return TM[k] < TN[k] ? 0 : hargreaves1985(TM[k], TN[k], known(Ra));
                    });
        return {};
    }
    if (parts.gamma.size() != table.rowCount()) {
        throw PlatformError("the elevation parts of the cells are missing");
    }
    runEnergyMethod(loop, table, parts, method, date, rows, noData, conventions, seen);
    return {};
}

void estimateDewPoint(IParallelLoop& loop, CellTable& table, double Ko, double noData) {
    const auto TN = table.values(CellField::TN);
    const std::span<double> TD = table.writable(CellField::TD);
    loop.run(table.rowCount(), kGrain, [&](std::size_t begin, std::size_t end) {
        for (std::size_t k = begin; k < end; ++k) TD[k] = TN[k] == noData ? noData : TN[k] - Ko;
    });
}

void estimateSolarRadiation(IParallelLoop& loop, CellTable& table, double Ks, const Date& date,
                            std::size_t rows, double noData, const Conventions& conventions) {
    const auto parts = radiationParts(loop, table, rows, date, conventions);
    const auto TM = table.values(CellField::TM);
    const auto TN = table.values(CellField::TN);
    const std::span<double> SA = table.writable(CellField::SA);
    const std::span<double> SR = table.writable(CellField::SR);
    forEachRecord(loop, table.rowCount(), rows, [&](std::size_t k, std::size_t row) {
        SA[k] = parts[row].value_or(0);  // where it has no value the equations fail anyhow
        const bool known = TM[k] != noData && TN[k] != noData;
        SR[k] = known ? solarRadiationFromRange(Ks, TM[k], TN[k], SA[k]) : noData;
    });
}

void estimateWindSpeed(CellTable& table, double windSpeed) {
    std::ranges::fill(table.writable(CellField::WS), windSpeed);
}

}  // namespace velmora
