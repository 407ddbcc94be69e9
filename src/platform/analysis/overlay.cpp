// SPDX-License-Identifier: MIT
#include "platform/analysis/overlay.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/analysis/geos_shapes.h"
#include "platform/features/polygon_reader.h"
#include "platform/features/shapefile_writer.h"
#include "platform/threads/parallel_loop.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kShapesHeld = 16384;   // of the first layer, cut together
constexpr std::size_t kShapesAtOnce = 1024;  // that one thread cuts before it looks for more
constexpr std::size_t kNameLength = 10;      // of a dBASE field

// A part that a shape of the first layer shares with one of the second.
struct Piece {
    std::size_t second;
    OGRGeometryUniquePtr shape;
};

// A shape of the first layer and what becomes of it.
struct Cut {
    std::size_t record = 0;
    OGRGeometryUniquePtr polygon;
    std::string repair;  // why it had to be repaired, "" for a valid one
    std::vector<Piece> pieces;
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

    void cut(Cut& work, const std::string& path) {
        const GeosShape shape = validShape(context_, *work.polygon, path, work.record, work.repair);
        work.polygon.reset();
        try {
            if (shape) work.pieces = pieces(*shape);
        } catch (const PlatformError& e) {
            throw PlatformError("Feature " + std::to_string(work.record + 1) + " of " + path +
                                    " cannot be cut: " + e.what(),
                                {.file = path, .record = work.record + 1});
        }
    }

  private:
    std::vector<Piece> pieces(const GEOSGeometry& shape) {
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

// A failure on the way through the writer, which would take it for one of its own.
struct InputFailure {
    std::exception_ptr reason;
};

template <class Body>
void passingFailures(Body body) {
    try {
        body();
    } catch (const std::exception&) {
        throw InputFailure{std::current_exception()};
    }
}

// Loops on this thread say nothing of how far they are while it lives.
class Silence {
  public:
    Silence() : feedback_(watching()) {
        if (feedback_) watchLoops(nullptr);
    }
    ~Silence() {
        if (feedback_) watchLoops(feedback_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    void advance(double fraction) const {
        if (!feedback_) return;
        throwIfCancelled(*feedback_);
        feedback_->advance(fraction);
    }

  private:
    IFeedback* feedback_;
};

// Hands over the shapes of the first layer by record, cut by those of the second; holds few of them
// at a time.
void forEachCut(const IFeatureClass& first, const std::vector<GeosShape>& second,
                const std::function<void(Cut& cut)>& visit) {
    const Silence silence;
    const std::string path = first.path();
    std::optional<PolygonReader> reader;
    passingFailures([&] { reader.emplace(path, first.crs()); });
    for (bool more = true; more;) {
        std::vector<Cut> held;
        passingFailures([&] {
            while (more && held.size() < kShapesHeld) {
                auto polygon = reader->next();
                more = polygon.has_value();
                if (more) held.push_back({polygon->record, std::move(polygon->shape), {}, {}});
            }
            parallelFor(held.size(), kShapesAtOnce, [&](std::size_t begin, std::size_t end) {
                Cutter cutter(second);
                for (std::size_t i = begin; i < end; ++i) cutter.cut(held[i], path);
            });
        });
        for (Cut& cut : held) visit(cut);
        if (held.empty()) return;
        silence.advance(static_cast<double>(held.back().record + 1) /
                        static_cast<double>(first.recordCount()));
    }
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

// Numbers have no letters, but are looked at here: what is none must be told before a file is made.
TextEncoding encodingOf(const IFeatureClass& a, const IFeatureClass& b) {
    EncodingChoice choice;
    for (const IFeatureClass* layer : {&a, &b}) {
        choice.add(layer->fields());
        for (const Field& field : layer->fields()) {
            const bool number = field.type == FieldType::number || field.type == FieldType::integer;
            const std::size_t records =
                number ? std::min<std::size_t>(1, layer->recordCount()) : layer->recordCount();
            for (std::size_t r = 0; r < records; ++r) choice.add(layer->value(r, field.name));
        }
    }
    return choice.encoding();
}

std::vector<FieldValue> valuesOf(const IFeatureClass& layer, std::size_t record) {
    std::vector<FieldValue> values;
    for (const Field& field : layer.fields()) values.push_back(layer.value(record, field.name));
    return values;
}

}  // namespace

OverlayResult OverlayOp::Intersect(const OverlayLayer& first, const OverlayLayer& second,
                                   const std::string& path) {
    const IFeatureClass& a = *first.features;
    const IFeatureClass& b = *second.features;
    const std::vector<Field> fields = fieldsOf(first, second);
    GeosContext context;
    const GeosLayer knives = readShapes(context, b.path(), a.crs(), b.recordCount());
    computeEnvelopes(context, knives.shapes);

    OverlayResult result;
    const auto write = [&](const LayerWriter& add, Cut& cut) {
        if (!cut.repair.empty()) result.repairs.push_back(cut.repair);
        if (cut.pieces.empty()) return;
        const std::vector<FieldValue> own = valuesOf(a, cut.record);
        for (Piece& piece : cut.pieces) {
            std::vector<FieldValue> values = own;
            std::ranges::move(valuesOf(b, piece.second), std::back_inserter(values));
            add(values, std::move(piece.shape));
            ++result.pieces;
        }
    };
    try {
        writeLayer(path, wkbPolygon, a.crs(), fields, encodingOf(a, b),
                   [&](const LayerWriter& add) {
                       forEachCut(a, knives.shapes, [&](Cut& cut) { write(add, cut); });
                   });
    } catch (const InputFailure& failure) {
        std::rethrow_exception(failure.reason);
    }
    result.repairs.insert(result.repairs.end(), knives.repairs.begin(), knives.repairs.end());
    return result;
}

}  // namespace velmora::platform
