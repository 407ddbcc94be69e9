// SPDX-License-Identifier: MIT
#include "tests/support/fake_features.h"

#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "tests/support/fake_edit_session.h"
#include "tests/support/fake_table.h"

namespace velmora::test {

namespace {

// A layer's table lies behind its ".dbf"; the ".shp" says that it is one.
std::string tableFile(const std::string& path) {
    return withoutEnding(withoutEnding(path, ".dbf"), ".shp") + ".dbf";
}

std::string shapeFile(const std::string& path) { return withoutEnding(path, ".shp") + ".shp"; }

}  // namespace

std::shared_ptr<IFeatureClass> FakeFeatures::openFeatureClass(const std::string& path) {
    return openFeatureClass(path, {});
}

std::shared_ptr<IFeatureClass> FakeFeatures::openFeatureClass(const std::string& path,
                                                              const std::string& crs) {
    const std::string file = shapeFile(path);
    opens.pass(file);
    if (!tables_.exists(file)) throw PlatformError("There is no shapefile " + file);
    return std::make_shared<FakeFeatureClass>(
        file, std::make_shared<const TableContent>(contentOfLayer(path, crs)), systems_);
}

TableContent FakeFeatures::contentOfLayer(const std::string& path, const std::string& crs) const {
    TableContent content = *tables_.content(tableFile(path));
    if (crs.empty()) return content;
    for (auto& ring : content.rings) ring = systems_.project(ring, content.crs, crs);
    content.crs = crs;
    return content;
}

std::shared_ptr<ITable> FakeFeatures::openTable(const std::string& path) {
    const std::string file = tableFile(path);
    opens.pass(file);
    return std::make_shared<FakeTable>(file, tables_.content(file));
}

std::unique_ptr<IEditSession> FakeFeatures::edit(std::shared_ptr<ITable> table) {
    return std::make_unique<FakeEditSession>(tables_, saves, tableFile(table->path()));
}

bool FakeFeatures::deleteFeatureClass(const std::string& path) {
    const bool there = tables_.exists(shapeFile(path));
    if (there) {
        tables_.remove(shapeFile(path));
        tables_.remove(tableFile(path));
    }
    return there;
}

void FakeFeatures::requireFolderOf(const std::string& path) const {
    if (!tables_.files().folderExists(parentFolderName(path))) {
        throw PlatformError("Cannot write " + path + ": there is no such folder");
    }
}

void FakeFeatures::createFeatureClass(const std::string& path, bool polygons,
                                      const std::string& crs, const std::vector<Field>& fields,
                                      const std::vector<NewFeature>& features) {
    creates.pass(shapeFile(path));
    requireFolderOf(path);
    TableContent content{fields, {}, true, polygons, crs, {}};
    for (const NewFeature& feature : features) {
        content.records.push_back(feature.values);
        content.rings.push_back(feature.ring);
    }
    tables_.store(shapeFile(path), content);
    tables_.store(tableFile(path), std::move(content));
}

void FakeFeatures::createTable(const std::string& path, const std::vector<Field>& fields,
                               const std::vector<std::vector<FieldValue>>& records) {
    creates.pass(tableFile(path));
    requireFolderOf(path);
    tables_.store(tableFile(path), {fields, records, false, false, {}, {}});
}

}  // namespace velmora::test
