// SPDX-License-Identifier: MIT
#include "platform/analysis/overlay.h"

#include <algorithm>
#include <map>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/analysis/geos_shapes.h"
#include "platform/features/shapefile_writer.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kShapesAtOnce = 1000;  // that one thread cuts before it looks for more
constexpr std::size_t kNameLength = 10;      // of a dBASE field

// A part that a shape of the first layer shares with one of the second.
struct Piece {
    std::size_t second;
    OGRGeometryUniquePtr shape;
};

// Cuts shapes by those of the second layer. Used by one thread; what GEOS prepares for many cuts
// by the same shape is its own.
class Cutter {
  public:
    explicit Cutter(const std::vector<GeosShape>& shapes)
        : shapes_(shapes), tree_(GEOSSTRtree_create_r(context_.get(), 10)) {
        for (std::size_t i = 0; i < shapes.size(); ++i) {
            indices_.push_back(i);
        }
        for (std::size_t& index : indices_) {
            if (shapes[index]) {
                GEOSSTRtree_insert_r(context_.get(), tree_, shapes[index].get(), &index);
            }
        }
    }
    ~Cutter() { GEOSSTRtree_destroy_r(context_.get(), tree_); }
    Cutter(const Cutter&) = delete;
    Cutter& operator=(const Cutter&) = delete;

    std::vector<Piece> cut(const GEOSGeometry& shape) {
        std::vector<std::size_t> near;
        GEOSSTRtree_query_r(
            context_.get(), tree_, &shape,
            [](void* index, void* found) {
                static_cast<std::vector<std::size_t>*>(found)->push_back(
                    *static_cast<std::size_t*>(index));
            },
            &near);
        std::ranges::sort(near);
        std::vector<Piece> pieces;
        for (const std::size_t index : near) {
            if (auto common = commonWith(index, shape)) {
                pieces.push_back({index, std::move(common)});
            }
        }
        return pieces;
    }

  private:
    struct Knife {
        GeosShape shape;  // a copy of this thread's own
        GeosPrepared prepared;
    };

    OGRGeometryUniquePtr commonWith(std::size_t index, const GEOSGeometry& shape) {
        const Knife& knife = knifeOf(index);
        if (GEOSPreparedCovers_r(context_.get(), knife.prepared.get(), &shape) == 1) {
            return ogrShape(context_, shape);
        }
        if (GEOSPreparedIntersects_r(context_.get(), knife.prepared.get(), &shape) != 1) {
            return nullptr;
        }
        const GeosShape common = commonArea(context_, shape, *knife.shape);
        return common ? ogrShape(context_, *common) : nullptr;
    }

    const Knife& knifeOf(std::size_t index) {
        const auto found = knives_.find(index);
        if (found != knives_.end()) return found->second;
        Knife knife{{GEOSGeom_clone_r(context_.get(), shapes_[index].get()), {context_.get()}},
                    {nullptr, {context_.get()}}};
        knife.prepared.reset(GEOSPrepare_r(context_.get(), knife.shape.get()));
        return knives_.emplace(index, std::move(knife)).first->second;
    }

    GeosContext context_;
    const std::vector<GeosShape>& shapes_;
    std::vector<std::size_t> indices_;  // what the tree points at
    GEOSSTRtree* tree_;
    std::map<std::size_t, Knife> knives_;
};

// GEOS computes envelopes when they are first asked for; done beforehand, threads only read them.
void computeEnvelopes(GeosContext& context, const std::vector<GeosShape>& shapes) {
    for (const GeosShape& shape : shapes) {
        double x = 0;
        if (shape) GEOSGeom_getXMin_r(context.get(), shape.get(), &x);
    }
}

std::vector<std::vector<Piece>> cutAll(const GeosLayer& first, const GeosLayer& second,
                                       const std::string& path) {
    std::vector<std::vector<Piece>> pieces(first.shapes.size());
    parallelFor(first.shapes.size(), kShapesAtOnce, [&](std::size_t begin, std::size_t end) {
        Cutter cutter(second.shapes);
        for (std::size_t r = begin; r < end; ++r) {
            if (!first.shapes[r]) continue;
            try {
                pieces[r] = cutter.cut(*first.shapes[r]);
            } catch (const PlatformError& e) {
                throw PlatformError("Feature " + std::to_string(r + 1) + " of " + path +
                                        " cannot be cut: " + e.what(),
                                    {.file = path, .record = r + 1});
            }
        }
    });
    return pieces;
}

// A name of ten characters at most that none of the fields has.
std::string freeName(const std::string& name, const std::vector<Field>& taken) {
    for (int n = 1;; ++n) {
        const std::string tail = "_" + std::to_string(n);
        std::string candidate = name.substr(0, kNameLength - tail.size()) + tail;
        if (std::ranges::none_of(
                taken, [&](const Field& f) { return sameIgnoringCase(f.name, candidate); })) {
            return candidate;
        }
    }
}

Field* find(std::vector<Field>& fields, const std::string& name) {
    const auto found = std::ranges::find_if(
        fields, [&](const Field& f) { return sameIgnoringCase(f.name, name); });
    return found == fields.end() ? nullptr : &*found;
}

// The fields of both layers, under names of their own.
std::vector<Field> fieldsOf(const OverlayLayer& first, const OverlayLayer& second) {
    std::vector<Field> fields = first.features->fields();
    for (Field field : second.features->fields()) {
        if (Field* clash = find(fields, field.name)) {
            const bool kept = sameIgnoringCase(field.name, second.keptField);
            if (kept && sameIgnoringCase(field.name, first.keptField)) {
                throw PlatformError("Both layers have a field " + field.name +
                                        " that is needed: rename one of them",
                                    {.field = field.name});
            }
            std::vector<Field> taken = fields;
            taken.insert(taken.end(), second.features->fields().begin(),
                         second.features->fields().end());
            (kept ? *clash : field).name = freeName(field.name, taken);
        }
        fields.push_back(field);
    }
    for (Field& field : fields) {  // dates and the like are kept as their texts
        if (field.type == FieldType::other) field = {field.name, FieldType::text, 24, 0};
    }
    return fields;
}

TextEncoding encodingOf(const IFeatureClass& a, const IFeatureClass& b) {
    EncodingChoice choice;
    for (const IFeatureClass* layer : {&a, &b}) {
        choice.add(layer->fields());
        for (const Field& field : layer->fields()) {
            for (std::size_t r = 0; r < layer->recordCount(); ++r) {
                choice.add(layer->value(r, field.name));
            }
        }
    }
    return choice.encoding();
}

}  // namespace

OverlayResult OverlayOp::Intersect(const OverlayLayer& first, const OverlayLayer& second,
                                   const std::string& path) {
    const IFeatureClass& a = *first.features;
    const IFeatureClass& b = *second.features;
    const std::vector<Field> fields = fieldsOf(first, second);
    GeosContext context;
    const GeosLayer shapesA = readShapes(context, a.path(), a.crs(), a.recordCount());
    const GeosLayer shapesB = readShapes(context, b.path(), a.crs(), b.recordCount());
    computeEnvelopes(context, shapesA.shapes);
    computeEnvelopes(context, shapesB.shapes);
    auto pieces = cutAll(shapesA, shapesB, a.path());

    OverlayResult result;
    result.repairs = shapesA.repairs;
    result.repairs.insert(result.repairs.end(), shapesB.repairs.begin(), shapesB.repairs.end());
    writeLayer(path, wkbPolygon, a.crs(), fields, encodingOf(a, b), [&](const LayerWriter& add) {
        for (std::size_t r = 0; r < pieces.size(); ++r) {
            for (Piece& piece : pieces[r]) {
                std::vector<FieldValue> values;
                for (const Field& f : a.fields()) values.push_back(a.value(r, f.name));
                for (const Field& f : b.fields()) values.push_back(b.value(piece.second, f.name));
                add(values, std::move(piece.shape));
                ++result.pieces;
            }
        }
    });
    return result;
}

}  // namespace velmora::platform
