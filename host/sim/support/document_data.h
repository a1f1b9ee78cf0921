// A document's state as plain values: what a file holds, what Save writes
// and what Open builds a document from.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/support/geometry.h"
#include "tvapi/core.h"

namespace tvsim {

// What every drawing object keeps, whatever its kind.
struct DrawingObjectData {
    std::uint64_t id = 0;
    int layer = 0;
    int style = 0;
    bool transparent = false, auto_transparent = false;
    int param_type = 0, light_type = 0;
    int link_type = 0;
    tvapi::WString link;
};

struct SegmentData {
    DrawingObjectData common;
    Point start, end;
    double angle = 0.0;  // kept for a segment of zero length, which has no direction of its own
};

struct ViewData {
    int number = 0;
    int type = 0;
    tvapi::WString name, comment;
    double x = 0.0, y = 0.0, scale = 1.0, angle = 0.0;
    int color = 0;
    bool visible = true, printable = true, background = false;
    std::vector<SegmentData> segments;
};

struct LayerData {
    int number = 0;
    tvapi::WString name, comment;
    int color = 0;
    bool visible = true, printable = true, background = false;
};

struct LayerGroupData {
    tvapi::WString name;
    std::vector<int> layers;
};

struct VariableData {
    int type = 0;
    tvapi::WString name, expression, note;
    double value = 0.0, second = 0.0;
    bool read_only = false, external = false, information = false;
};

struct DocumentData {
    int type = 0;
    tvapi::WString type_id, author, comment, organization, metadata, toolbar_set;
    double created = 0.0, last_change = 0.0;
    std::vector<tvapi::WString> load_combinations;
    int active_combination = 0;

    // Two-dimensional content; empty for other document types.
    bool parametric = false, orthogonal = false;
    std::vector<LayerData> layers;
    int current_layer = 0;
    std::vector<LayerGroupData> layer_groups;
    int current_layer_group = 0;  // index
    std::vector<ViewData> views;
    int current_view = 0;  // number
    std::vector<VariableData> variables;
};

}  // namespace tvsim
