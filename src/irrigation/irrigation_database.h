// SPDX-License-Identifier: MIT
// The irrigation database: which share of each crop's land in each zone is irrigated by which
// method, and how efficient the methods are.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "gis/application.h"
#include "irrigation/irrigation_inputs.h"

namespace velmora {

std::string irrigationConnection(const std::string& databasePath);

// Which default shares a zone's crops take: those of the zone for all crops alike (IR_Dis_1), or
// those of zone and crop (IR_Dis_2).
enum class DefaultShares { ofZone, ofZoneAndCrop };

class IrrigationDatabase {
  public:
    // Opens the database. Throws PlatformError.
    IrrigationDatabase(IPlatform& platform, const std::string& path);

    // The rows of a query, which may be changed. Throws PlatformError.
    std::unique_ptr<IRecordset> query(const std::string& text) const;

    std::unique_ptr<ITransaction> beginTransaction() { return connection_->beginTransaction(); }

    bool hasTable(const std::string& name) const;
    void createTable(const std::string& name, const std::vector<ColumnDefinition>& columns);
    bool hasEfficiencyTable() const { return hasTable("IREF"); }
    void dropEfficiencyTable();
    // Copies table IREF into a new one. Throws PlatformError when the name is taken.
    void copyEfficiencyTable(const std::string& name);
    // Makes table IREF: zone, crop, a share per method in the order of the default method list,
    // then FAEF, CVEF and IREF (fractions). Throws PlatformError.
    void createEfficiencyTable();
    // Gives table IREF the column in which rows are declared not irrigated, unless it has it.
    void ensureNotIrrigatedColumn();
    // The statement that makes table IREF. Throws PlatformError for methods that cannot be columns.
    std::string efficiencyTableStatement() const;

    // The queries of a zone's method list and of its shares and efficiencies.
    static std::string methodsOf(const std::string& zone);
    static std::string efficienciesOf(const std::string& zone);

    // Gives a zone without methods the default method list.
    void ensureMethods(const std::string& zone);
    // Gives a zone without rows in IREF one per crop, and all its rows the conveyance efficiency.
    void ensureCrops(const std::string& zone, const std::vector<std::string>& crops, double cvef);
    // Copies default shares into those of the zone's rows that `takes` accepts, or into all that
    // are not declared not irrigated; rows without defaults get shares of 0.
    void addDefaultShares(const std::string& zone, DefaultShares source,
                          const std::function<bool(const IRecordset& row)>& takes = {});

    // For every row of the zone whose shares are not all 0, and which is not declared not
    // irrigated: FAEF = 1 / sum(share / efficiency of
    // the method), methods of efficiency 0 left out, and IREF = FAEF x CVEF. Shares are taken as
    // they are. Throws PlatformError at a row none of whose methods has an efficiency; the rows
    // before it are stored. `onBadEfficiency` hears of a method whose efficiency is no number,
    // which counts as 0.
    void estimateEfficiencies(const std::string& zone,
                              const std::function<void()>& onBadEfficiency);

  private:
    void AddDefaultPM1(IRecordset& row, const std::vector<std::string>& methods,
                       const std::string& zone) const;
    void AddDefaultPM2(IRecordset& row, const std::vector<std::string>& methods,
                       const std::string& zone) const;

    std::string path_;
    std::unique_ptr<IConnection> connection_;
};

// A column of table IREF of the user's own, behind the others: 1 in rows of land that is declared
// not irrigated. A table without such rows need not have it.
constexpr const char* kNotIrrigatedColumn = "NotIrrigated";

bool hasColumn(const IRecordset& rows, const std::string& name);
// Whether the current row of table IREF says so in that column.
bool isMarkedNotIrrigated(const IRecordset& efficiencies);

// The method columns of table IREF, which stand between CropType and FAEF.
std::vector<std::string> methodColumns(const IRecordset& efficiencies);

// The efficiency of the first of the zone's methods with that code, 0 when none has it. Throws
// PlatformError when it is no number.
double GetMethodEfficiency(IRecordset& methods, const std::string& code);

}  // namespace velmora
