// SPDX-License-Identifier: MIT
#include "refet/refet_pass.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <string>

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

// One per row, from the latitudes of the first column's records.
template <class Function>
std::vector<LatitudePart> latitudeParts(const CellTable& table, Function function) {
    const auto latitudes = table.values(CellField::Latitude);
    std::vector<LatitudePart> parts(table.rows());
    for (std::size_t row = 0; row < parts.size(); ++row) {
        try {
            parts[row] = function(latitudes[row]);
        } catch (const EquationError&) {
            parts[row] = std::nullopt;
        }
    }
    return parts;
}

std::vector<LatitudePart> radiationParts(const CellTable& table, const Date& date,
                                         const Conventions& conventions) {
    return latitudeParts(table, [&](double latitude) {
        return ExtraterrestrialRadiation(latitude, date, conventions);
    });
}

std::vector<LatitudePart> daylightParts(const CellTable& table, const Date& date) {
    return latitudeParts(
        table, [&](double latitude) { return MonthlyDaylightPercentage(latitude, date.month); });
}

// Calls body(record, row) for every record.
template <class Body>
void forEachRecord(const CellTable& table, Body body) {
    std::size_t row = 0;
    for (std::size_t record = 0; record < table.rowCount(); ++record) {
        body(record, row);
        if (++row == table.rows()) row = 0;
    }
}

// The first record that failed.
class FirstFailure {
  public:
    void note(std::size_t record, const char* what) {
        if (!what_.empty()) return;
        record_ = record;
        what_ = what;
    }
    void rethrow(const CellTable& table, int month) const {
        if (what_.empty()) return;
        const CellBlock& block = table.block();
        const ErrorPlace place{
            .month = month,
            .column = static_cast<std::size_t>(block.column) + record_ / table.rows() + 1,
            .row = static_cast<std::size_t>(block.row) + record_ % table.rows() + 1};
        throw EquationError(what_ + " (grid column " + std::to_string(place.column) + ", row " +
                                std::to_string(place.row) + ")",
                            place);
    }

  private:
    std::size_t record_ = 0;
    std::string what_;
};

// A latitude part that an equation cannot do without.
double known(const LatitudePart& part) {
    if (!part) throw EquationError("no sunrise or sunset at this latitude");
    return *part;
}

// Runs an equation that stops the month when it fails: depth(record, latitude part), in mm a day.
// The `needed` fields decide where there is data.
template <std::size_t Count, class Depth>
void runEquation(CellTable& table, double noData, const Date& date, const Conventions& conventions,
                 const std::vector<LatitudePart>& parts,
                 const std::array<std::span<const double>, Count>& needed, Depth depth) {
    const std::span<double> result = table.writable(CellField::RefET);
    const int days = daysInMonth(date.month, date.year, conventions);
    FirstFailure failure;
    forEachRecord(table, [&](std::size_t record, std::size_t row) {
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
    });
    failure.rethrow(table, date.month);
}

std::size_t runBlaneyCriddle(CellTable& table, double noData, const Conventions& conventions,
                             const std::vector<LatitudePart>& parts) {
    const auto elevation = table.values(CellField::Elevation);
    const auto TM = table.values(CellField::TM);
    const auto TN = table.values(CellField::TN);
    const std::span<double> result = table.writable(CellField::RefET);
    std::size_t failed = 0;
    forEachRecord(table, [&](std::size_t record, std::size_t row) {
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
    });
    return failed;
}

void runEnergyMethod(CellTable& table, const ElevationParts& elevation, RefEtMethod method,
                     const Date& date, double noData, const Conventions& conventions,
                     const std::vector<LatitudePart>& parts) {
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
    if (method == RefEtMethod::priestleyTaylor) {
        runEquation(table, noData, date, conventions, parts, std::array{z, TM, TN, TD, SR, GG},
                    [&](std::size_t k, const LatitudePart& Ra) {
                        return priestleyTaylor(weather(k), known(Ra), gamma[k], kAlbedo,
                                               conventions);
                    });
        return;
    }
    const ReferenceCrop crop = referenceCrop(method == RefEtMethod::asceTall ? 0 : 1);
    runEquation(table, noData, date, conventions, parts, std::array{z, TM, TN, TD, SR, WS, GG},
                [&](std::size_t k, const LatitudePart& Ra) {
                    return penmanMonteith(weather(k), crop, known(Ra), gamma[k], kAlbedo,
                                          conventions);
                });
}

void runHargreaves(CellTable& table, const Date& date, double noData,
                   const Conventions& conventions, const std::vector<LatitudePart>& parts) {
    const auto TM = table.values(CellField::TM);
    const auto TN = table.values(CellField::TN);
    runEquation(table, noData, date, conventions, parts,
                std::array{table.values(CellField::Elevation), TM, TN},
                [&](std::size_t k, const LatitudePart& Ra) {
                    // Below the minimum nothing else is computed.
                    return TM[k] < TN[k] ? 0 : hargreaves1985(TM[k], TN[k], known(Ra));
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

ElevationParts elevationParts(const CellTable& table) {
    const auto z = table.values(CellField::Elevation);
    ElevationParts parts;
    parts.gamma.resize(z.size());
    for (std::size_t k = 0; k < z.size(); ++k) {
        try {
            parts.gamma[k] = psychrometricConstant(z[k]);
        } catch (const EquationError&) {
            parts.gamma[k] = std::numeric_limits<double>::quiet_NaN();
        }
    }
    return parts;
}

RefEtPassResult calculateRefEt(CellTable& table, const ElevationParts& parts, RefEtMethod method,
                               const Date& date, double noData, const Conventions& conventions) {
    for (const CellField field : inputsOf(method)) {
        if (table.values(field).size() == table.rowCount()) continue;
        throw PlatformError(std::string("the field ") + cellFieldName(field) +
                            " of the cell table is empty");
    }
    if (method == RefEtMethod::blaneyCriddle) {
        return {runBlaneyCriddle(table, noData, conventions, daylightParts(table, date)), {}};
    }
    RefEtPassResult result{0, radiationParts(table, date, conventions)};
    if (method == RefEtMethod::hargreaves) {
        runHargreaves(table, date, noData, conventions, result.radiation);
        return result;
    }
    if (parts.gamma.size() != table.rowCount()) {
        throw PlatformError("the elevation parts of the cells are missing");
    }
    runEnergyMethod(table, parts, method, date, noData, conventions, result.radiation);
    return result;
}

void estimateDewPoint(CellTable& table, double Ko, double noData) {
    const auto TN = table.values(CellField::TN);
    const std::span<double> TD = table.writable(CellField::TD);
    std::ranges::transform(TN, TD.begin(),
                           [&](double tn) { return tn == noData ? noData : tn - Ko; });
}

void estimateSolarRadiation(CellTable& table, double Ks, const Date& date, double noData,
                            const Conventions& conventions) {
    const auto parts = radiationParts(table, date, conventions);
    const auto TM = table.values(CellField::TM);
    const auto TN = table.values(CellField::TN);
    const std::span<double> SA = table.writable(CellField::SA);
    const std::span<double> SR = table.writable(CellField::SR);
    forEachRecord(table, [&](std::size_t k, std::size_t row) {
        SA[k] = parts[row].value_or(0);  // where it has no value the equations fail anyhow
        const bool known = TM[k] != noData && TN[k] != noData;
        SR[k] = known ? solarRadiationFromRange(Ks, TM[k], TN[k], SA[k]) : noData;
    });
}

void estimateWindSpeed(CellTable& table, double windSpeed) {
    std::ranges::fill(table.writable(CellField::WS), windSpeed);
}

}  // namespace velmora
