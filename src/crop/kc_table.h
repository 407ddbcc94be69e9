// SPDX-License-Identifier: MIT
// The crop coefficient table: a dBASE table with one record per crop type (first field) and one
// coefficient per month, "Kc_Jan" to "Kc_Dec".
#pragma once

#include <string>

#include "gis/application.h"

namespace velmora {

constexpr int kCropTypeWidth = 75;

// "Kc_Jan" ... for months 1 to 12.
std::string kcFieldName(int month);

bool isKcField(const std::string& field);

// What keeps the Kc maps from taking the month's coefficients of the table, "" for nothing.
std::string coefficientFault(const ITable& table, int month);  // of any month, in capitals or not

// Makes an empty table `name` in `folder`, replacing one of that name: through a work database
// "TEMP.MDB" in the folder, which is replaced and deleted. Throws PlatformError.
void createKcTable(IPlatform& platform, const std::string& folder, const std::string& name);

// Copies the table with what says its encoding. Throws PlatformError, also when the new name is
// that of a shapefile's attributes.
void copyKcTable(IFileSystem& files, const std::string& from, const std::string& to);

// The query that shows all records of the table of that path, ".dbf" optional.
std::string kcQuery(const std::string& path);

// The path as connections want it: without the extension of a dBASE file.
std::string withoutDbf(const std::string& path);

// The record that a land use type gets when the table lacks it: coefficients of 0.75 from March to
// October and 0 in the other months. In a table of exactly thirteen fields they are placed by
// position, in any other by the fields' names. `records` must show all fields; the record is
// stored.
void addDefaultCrop(IRecordset& records, const std::string& cropType);

}  // namespace velmora
