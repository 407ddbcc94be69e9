// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QString>

#include "gis/map_document.h"

class QgisInterface;
class QgsMapLayer;

namespace velmora::qgis {

// The QGIS project as the map that steps add their results to. A result lies below the vector
// layers and above older rasters; it takes the place of a layer that showed the same dataset, and
// the result added before it is switched off. The first one is zoomed to.
class QgisDocument : public IMxDocument {
  public:
    explicit QgisDocument(QgisInterface& desktop);

    std::unique_ptr<IRasterLayer> createRasterLayer(const std::string& path) override;
    void addLayer(std::unique_ptr<IRasterLayer> layer) override;
    void addTable(std::shared_ptr<ITable> table) override;
    void refreshContents() override;

    // Shows a shapefile on top of the map, `outline` and `fill` as "red,green,blue,alpha". Throws
    // PlatformError.
    void addShapefile(const std::string& path, const QString& outline, const QString& fill);

  private:
    void removeLayersOf(const QString& source);
    void switchOffLatest();
    void zoomTo(QgsMapLayer& layer);

    QgisInterface& desktop_;
    QObject project_;               // hears when the project is cleared
    bool zoomed_ = false;           // to a result of this project
    QPointer<QgsMapLayer> latest_;  // the result added last
};

}  // namespace velmora::qgis
