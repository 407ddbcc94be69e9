// SPDX-License-Identifier: MIT
#include "hosts/qgis/plugin/qgis_document.h"

#include <qgisinterface.h>
#include <qgscolorrampshader.h>
#include <qgsfillsymbol.h>
#include <qgslayertree.h>
#include <qgslayertreegroup.h>
#include <qgslayertreeview.h>
#include <qgsmapcanvas.h>
#include <qgsmarkersymbol.h>
#include <qgsproject.h>
#include <qgsrasterdataprovider.h>
#include <qgsrasterlayer.h>
#include <qgsrastershader.h>
#include <qgssinglebandpseudocolorrenderer.h>
#include <qgssinglesymbolrenderer.h>
#include <qgsvectorlayer.h>

#include <QFileInfo>
#include <cmath>
#include <optional>
#include <utility>

#include "gis/errors.h"
#include "hosts/qgis/widgets/keep_painted.h"
#include "hosts/qgis/widgets/texts.h"
#include "platform/platform.h"

namespace velmora::qgis {

using qt::toQt;

namespace {

// The smallest and largest value of band 0, of all its cells; nothing when none has a value.
std::optional<std::pair<double, double>> rangeOf(QgsRasterLayer& layer) {
    const QgsRasterBandStats all = layer.dataProvider()->QgsRasterInterface::bandStatistics(1);
    if (all.elementCount == 0 || !std::isfinite(all.minimumValue)) return std::nullopt;
    return std::pair{all.minimumValue, all.maximumValue};
}

class QgisRasterLayer : public IRasterLayer {
  public:
    explicit QgisRasterLayer(const QString& path) {
        const platform::WithoutStatisticsFiles none;
        QgsRasterLayer::LayerOptions options;
        options.loadDefaultStyle = false;
        layer_ =
            std::make_unique<QgsRasterLayer>(path, QFileInfo(path).fileName(), "gdal", options);
        if (!layer_->isValid()) {
            throw PlatformError("QGIS cannot show the raster " + path.toStdString());
        }
    }
    std::string name() const override { return layer_->name().toStdString(); }
    std::string path() const override { return layer_->source().toStdString(); }

    void setStretchedRenderer(const AlgorithmicColorRamp& ramp) override {
        const std::vector<Rgb> colors = ramp.colors();
        const auto range = rangeOf(*layer_);
        isEmpty_ = !range;
        const auto [least, most] = range.value_or(std::pair{0.0, 1.0});
        QList<QgsColorRampShader::ColorRampItem> items;
        for (std::size_t i = 0; i < colors.size(); ++i) {
            const double share = static_cast<double>(i) / static_cast<double>(colors.size() - 1);
            const double value = least + share * (most - least);
            items << QgsColorRampShader::ColorRampItem(
                value, QColor(colors[i].red, colors[i].green, colors[i].blue),
                QString::number(value, 'g', 4));
        }
        auto* colorRamp = new QgsColorRampShader(least, most);
        colorRamp->setColorRampItemList(items);
        auto* shader = new QgsRasterShader(least, most);
        shader->setRasterShaderFunction(colorRamp);
        auto* renderer = new QgsSingleBandPseudoColorRenderer(layer_->dataProvider(), 1, shader);
        renderer->setClassificationMin(least);
        renderer->setClassificationMax(most);
        layer_->setRenderer(renderer);
    }

    // No cell has a value, as in a winter month without crops.
    bool isEmpty() const { return isEmpty_; }
    QgsRasterLayer* release() { return layer_.release(); }

  private:
    bool isEmpty_ = false;
    std::unique_ptr<QgsRasterLayer> layer_;
};

// What a maker of symbols gives away: QGIS 3.22 returns a pointer, later ones own it.
QgsSymbol* released(QgsSymbol* symbol) { return symbol; }
template <class Symbol>
[[maybe_unused]] QgsSymbol* released(std::unique_ptr<Symbol> symbol) {
    return symbol.release();
}

// Where a raster goes in the layer tree: below the vector layers that stand on top.
int rasterPlace(const QgsLayerTreeGroup& root) {
    int place = 0;
    for (const QgsLayerTreeNode* node : root.children()) {
        const auto* shown = qobject_cast<const QgsLayerTreeLayer*>(node);
        if (shown && !qobject_cast<QgsVectorLayer*>(shown->layer())) break;
        if (shown && !shown->layer()->isSpatial()) break;
        ++place;
    }
    return place;
}

}  // namespace

QgisDocument::QgisDocument(QgisInterface& desktop) : desktop_(desktop) {
    QObject::connect(QgsProject::instance(), &QgsProject::cleared, &project_,
                     [this] { zoomed_ = false; });
}

// Layers of the dataset go first: they still show what it held before.
std::unique_ptr<IRasterLayer> QgisDocument::createRasterLayer(const std::string& path) {
    removeLayersOf(toQt(path));
    return std::make_unique<QgisRasterLayer>(toQt(path));
}

void QgisDocument::addLayer(std::unique_ptr<IRasterLayer> layer) {
    auto& result = dynamic_cast<QgisRasterLayer&>(*layer);
    const bool seen = !result.isEmpty();
    QgsRasterLayer* made = result.release();
    if (seen) {
        switchOffLatest();
        latest_ = made;
    }
    QgsProject* project = QgsProject::instance();
    QgsLayerTree* root = project->layerTreeRoot();
    project->addMapLayer(made, false);
    QgsLayerTreeLayer* node = root->insertLayer(rasterPlace(*root), made);
    node->setExpanded(false);
    node->setItemVisibilityChecked(seen);
    qt::paintNow();  // the canvas of a new project gets its size with the first layer
    if (!zoomed_) zoomTo(*made);
    zoomed_ = true;
    qt::paintNow();
}

void QgisDocument::addTable(std::shared_ptr<ITable> table) {
    QString path = toQt(table->path());
    if (!path.endsWith(".dbf", Qt::CaseInsensitive)) path += ".dbf";
    auto layer = std::make_unique<QgsVectorLayer>(path, toQt(table->name()), "ogr");
    if (!layer->isValid()) throw PlatformError("QGIS cannot show the table " + path.toStdString());
    removeLayersOf(layer->source());
    QgsProject* project = QgsProject::instance();
    QgsMapLayer* added = project->addMapLayer(layer.release(), false);
    project->layerTreeRoot()->addLayer(added);
}

void QgisDocument::refreshContents() {
    desktop_.layerTreeView()->viewport()->update();
    desktop_.mapCanvas()->refresh();
    qt::paintNow();
}

void QgisDocument::addShapefile(const std::string& path, const QString& outline,
                                const QString& fill) {
    auto layer =
        std::make_unique<QgsVectorLayer>(toQt(path), QFileInfo(toQt(path)).baseName(), "ogr");
    if (!layer->isValid()) throw PlatformError("QGIS cannot show the shapefile " + path);
    removeLayersOf(layer->source());
    const QVariantMap look = {
        {"color", fill}, {"outline_color", outline}, {"outline_width", "0.2"}};
    const bool points = layer->geometryType() == QgsWkbTypes::PointGeometry;
    layer->setRenderer(
        new QgsSingleSymbolRenderer(points ? released(QgsMarkerSymbol::createSimple(look))
                                           : released(QgsFillSymbol::createSimple(look))));
    QgsMapLayer* added = QgsProject::instance()->addMapLayer(layer.release(), false);
    QgsProject::instance()->layerTreeRoot()->insertLayer(0, added);
}

// Layers that showed what the dataset held before.
void QgisDocument::removeLayersOf(const QString& source) {
    const auto layers = QgsProject::instance()->mapLayers();
    for (QgsMapLayer* layer : layers) {
        if (layer->source() == source) QgsProject::instance()->removeMapLayer(layer);
    }
}

void QgisDocument::switchOffLatest() {
    if (!latest_) return;
    auto* shown = QgsProject::instance()->layerTreeRoot()->findLayer(latest_.data());
    if (shown) shown->setItemVisibilityChecked(false);
}

void QgisDocument::zoomTo(QgsMapLayer& layer) {
    QgsMapCanvas* canvas = desktop_.mapCanvas();
    QgsRectangle extent = canvas->mapSettings().layerExtentToOutputExtent(&layer, layer.extent());
    extent.scale(1.05);
    canvas->setExtent(extent);
    canvas->refresh();
}

}  // namespace velmora::qgis
