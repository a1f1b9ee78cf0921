// The values the simulated host gives the host's enumerations it models
// (listed in docs/simulated-host.md).
#pragma once

namespace tvsim {

// tvDocumentTypeEnum
namespace document_type {
inline constexpr int kDrawing = 1;   // two-dimensional drawing
inline constexpr int kFragment = 2;  // two-dimensional fragment
inline constexpr int kPart = 3;      // three-dimensional part
inline constexpr int kAssembly = 4;  // three-dimensional assembly
inline constexpr int kReport = 5;    // specification or report
inline bool IsKnown(int type) { return type >= kDrawing && type <= kReport; }
inline bool IsTwoDimensional(int type) { return type == kDrawing || type == kFragment; }
}  // namespace document_type

// tvDrawingObjectTypeEnum
namespace object_type {
inline constexpr int kLineSegment = 1;
}

// tvViewTypeEnum
namespace view_type {
inline constexpr int kSheet = 0;       // the sheet view every drawing starts with
inline constexpr int kSimple = 1;      // a view added by hand
inline constexpr int kProjection = 2;  // a standard view of a model
inline bool IsKnown(int type) { return type >= kSheet && type <= kProjection; }
}  // namespace view_type

// tvVariableTypeEnum
namespace variable_type {
inline constexpr int kReal = 0;
inline constexpr int kInterval = 1;
inline constexpr int kUserFunction = 2;
inline bool IsKnown(int type) { return type >= kReal && type <= kUserFunction; }
}  // namespace variable_type

// tvHyperLinkTypeEnum
namespace link_type {
inline constexpr int kNone = 0;
inline constexpr int kAddress = 1;  // a file or an address, in the reference text
inline constexpr int kObject = 2;   // another drawing object, by its id
inline bool IsKnown(int type) { return type >= kNone && type <= kObject; }
}  // namespace link_type

// tvSelectObjectsModeEnum
namespace select_mode {
inline constexpr int kWindow = 0;    // objects wholly inside the box
inline constexpr int kCrossing = 1;  // objects with any point inside the box
}  // namespace select_mode

// tvObjectsOrderEnum
namespace objects_order {
inline constexpr int kToTop = 0;     // drawn last
inline constexpr int kToBottom = 1;  // drawn first
inline constexpr int kAbove = 2;     // just above the relative object
inline constexpr int kBelow = 3;     // just below the relative object
}  // namespace objects_order

}  // namespace tvsim
