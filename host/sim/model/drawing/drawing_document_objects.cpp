// The drawing's operations on lists of its objects. A list that names
// anything but this drawing's valid objects is refused as a whole: nothing
// changes.
#include <algorithm>
#include <map>

#include "sim/model/drawing/drawing_document.h"
#include "sim/model/drawing/drawing_object.h"
#include "sim/model/drawing/gabarit_object.h"
#include "sim/model/drawing/view.h"
#include "sim/model/enums.h"
#include "sim/support/text.h"

namespace tvsim {

DrawingObject* DrawingDocument::ResolveOne(const tvapi::SmartPtr<tvapi::IDrawingObject>& object) const {
    DrawingObject* ours = object ? DrawingObject::From(object.get()) : nullptr;
    return ours && ours->Document() == this ? ours : nullptr;
}

std::optional<std::vector<DrawingObject*>> DrawingDocument::Resolve(const ObjectList& objects) const {
    std::vector<DrawingObject*> resolved;
    for (const auto& object : objects) {
        DrawingObject* ours = ResolveOne(object);
        if (!ours) return std::nullopt;
        if (std::find(resolved.begin(), resolved.end(), ours) == resolved.end()) resolved.push_back(ours);
    }
    return resolved;
}

// Copies go to the active view, with fresh ids; a layer this drawing lacks
// becomes its current layer. A null source is this drawing.
ObjectList DrawingDocument::CopyObjects(const tvapi::SmartPtr<tvapi::ITavraDocument2D>& sourceDocument,
                                        const ObjectList& objects) {
    const DrawingDocument* source = sourceDocument ? dynamic_cast<DrawingDocument*>(sourceDocument.get()) : this;
    if (!IsOpen() || !active_view_ || !source) return {};
    auto originals = source->Resolve(objects);
    if (!originals) return {};
    std::vector<DrawingObject*> copies;
    for (DrawingObject* original : *originals) {
        DrawingObjectData common = original->Common();
        common.id = NextObjectId();
        if (!layers_.ByNumber(common.layer)) common.layer = layers_.Current();
        copies.push_back(original->CopyInto(*active_view_, common).get());
    }
    ObjectList faces = FacesOf(copies);
    object_events_.Raise(&DrawingObjectEventLists::CreateObject, copies, Notification(notify_type::kCreate));
    Notification copying(notify_type::kCopy);
    copying.copies = faces;
    object_events_.Raise(&DrawingObjectEventLists::Copy, *originals, copying);
    return faces;
}

// An address link keeps its reference text; an object link keeps the
// target's id. There is no dialog to show.
bool DrawingDocument::CreateHyperLink(const ObjectList& objects, tvapi::tvHyperLinkTypeEnum linkType,
                                      const tvapi::WString& reference,
                                      const tvapi::SmartPtr<tvapi::IDrawingObject>& target, bool) {
    auto resolved = Resolve(objects);
    if (!resolved || resolved->empty()) return false;
    tvapi::WString stored;
    if (linkType == link_type::kAddress) {
        if (reference.empty()) return false;
        stored = reference;
    } else if (linkType == link_type::kObject) {
        DrawingObject* to = ResolveOne(target);
        if (!to) return false;
        stored = Widen(std::to_string(to->Id()));
    } else {
        return false;
    }
    for (DrawingObject* object : *resolved) object->SetLink(linkType, stored);
    return true;
}

// Objects linked with that kind of link: to `reference` (any, when empty)
// for addresses, to `target` (any, when null) for objects.
ObjectList DrawingDocument::GetHyperLinkObjects(tvapi::tvHyperLinkTypeEnum linkType,
                                                const tvapi::SmartPtr<tvapi::IDrawingObject>& target,
                                                bool includeInvisible, const tvapi::WString& reference) {
    if (linkType == link_type::kNone || !link_type::IsKnown(linkType)) return {};
    tvapi::WString wanted;
    if (linkType == link_type::kAddress) {
        wanted = reference;
    } else if (target) {
        DrawingObject* to = ResolveOne(target);
        if (!to) return {};
        wanted = Widen(std::to_string(to->Id()));
    }
    std::vector<DrawingObject*> linked;
    for (DrawingObject* object : AllObjects()) {
        if (object->LinkType() != linkType || (!wanted.empty() && object->Link() != wanted)) continue;
        if (includeInvisible || object->IsShown()) linked.push_back(object);
    }
    return FacesOf(linked);
}

bool DrawingDocument::DeleteHyperLinks(const ObjectList& objects) {
    auto resolved = Resolve(objects);
    if (!resolved || resolved->empty()) return false;
    for (DrawingObject* object : *resolved) {
        if (object->LinkType() != link_type::kNone) object->SetLink(link_type::kNone, {});
    }
    return true;
}

// Ids are one number (what GetId answers): a path of nested ids finds nothing here.
tvapi::SmartPtr<tvapi::IDrawingObject> DrawingDocument::GetObjectById(const std::vector<double>& id) {
    if (id.size() != 1) return {};
    for (DrawingObject* object : AllObjects()) {
        if (static_cast<double>(object->Id()) == id[0]) return Share<tvapi::IDrawingObject>(object);
    }
    return {};
}

// Every view's objects, in their own coordinates; the search parameters are
// not modelled.
tvapi::SmartPtr<tvapi::IDrawingObject> DrawingDocument::FindObject(
    double x, double y, double radius, const tvapi::SmartPtr<tvapi::IFindObjectParameters>&) {
    return Share<tvapi::IDrawingObject>(NearestObject(AllObjects(), {x, y}, radius));
}

ObjectList DrawingDocument::FindObjects(double x, double y, double radius,
                                        const tvapi::SmartPtr<tvapi::IFindObjectParameters>&) {
    return FacesOf(ObjectsNear(AllObjects(), {x, y}, radius));
}

ObjectList DrawingDocument::SelectObjects(tvapi::tvSelectObjectsModeEnum mode, double x1, double y1, double x2,
                                          double y2) {
    return FacesOf(ObjectsInBox(AllObjects(), mode, {x1, y1}, {x2, y2}));
}

bool DrawingDocument::DestroyObjects(const ObjectList& objects) {
    auto resolved = Resolve(objects);
    if (!resolved || resolved->empty()) return false;
    if (!object_events_.Raise(&DrawingObjectEventLists::BeginDestroyObject, *resolved)) return false;
    for (DrawingObject* object : *resolved) object->Owner()->Remove(*object);
    object_events_.Raise(&DrawingObjectEventLists::DestroyObject, *resolved, Notification(notify_type::kDelete));
    return true;
}

// To the top or bottom of each object's own view, or just above or below
// the relative object, in whose view they must all be.
bool DrawingDocument::ChangeObjectsOrder(const ObjectList& objects,
                                         const tvapi::SmartPtr<tvapi::IDrawingObject>& relativeObject,
                                         tvapi::tvObjectsOrderEnum order) {
    auto resolved = Resolve(objects);
    if (!resolved || resolved->empty()) return false;
    auto moved = [&](const DrawingObject* o) {
        return std::find(resolved->begin(), resolved->end(), o) != resolved->end();
    };
    std::map<View*, std::vector<Ref<DrawingObject>>> orders;
    if (order == objects_order::kToTop || order == objects_order::kToBottom) {
        for (DrawingObject* object : *resolved) orders[object->Owner()];
        for (auto& [view, arranged] : orders) {
            std::vector<Ref<DrawingObject>> staying, going;
            for (const auto& o : view->Objects()) (moved(o.get()) ? going : staying).push_back(o);
            arranged = order == objects_order::kToTop ? staying : going;
            auto& rest = order == objects_order::kToTop ? going : staying;
            arranged.insert(arranged.end(), rest.begin(), rest.end());
        }
    } else if (order == objects_order::kAbove || order == objects_order::kBelow) {
        DrawingObject* relative = ResolveOne(relativeObject);
        if (!relative || moved(relative)) return false;
        View* view = relative->Owner();
        for (DrawingObject* object : *resolved) {
            if (object->Owner() != view) return false;
        }
        auto& arranged = orders[view];
        std::vector<Ref<DrawingObject>> going;
        for (const auto& o : view->Objects()) {
            if (moved(o.get())) going.push_back(o);
        }
        for (const auto& o : view->Objects()) {
            if (moved(o.get())) continue;
            // Drawn later is above.
            if (o.get() == relative && order == objects_order::kBelow) {
                arranged.insert(arranged.end(), going.begin(), going.end());
            }
            arranged.push_back(o);
            if (o.get() == relative && order == objects_order::kAbove) {
                arranged.insert(arranged.end(), going.begin(), going.end());
            }
        }
    } else {
        return false;
    }
    for (auto& [view, arranged] : orders) view->Reorder(std::move(arranged));
    return true;
}

// An empty list is every object of the drawing.
bool DrawingDocument::GetObjectsGabarit(const ObjectList& objects, double* x1, double* y1, double* x2, double* y2) {
    std::vector<DrawingObject*> chosen;
    if (objects.empty()) {
        chosen = AllObjects();
    } else {
        auto resolved = Resolve(objects);
        if (!resolved) return false;
        chosen = *resolved;
    }
    Box box;
    for (DrawingObject* object : chosen) box.Add(object->Bounds());
    if (box.IsEmpty()) return false;
    *x1 = box.X1();
    *y1 = box.Y1();
    *x2 = box.X2();
    *y2 = box.Y2();
    return true;
}

bool DrawingDocument::MoveObjects(const ObjectList& objects, double dx, double dy) {
    auto resolved = Resolve(objects);
    if (!AllFinite({dx, dy}) || !resolved || resolved->empty()) return false;
    if (!object_events_.Raise(&DrawingObjectEventLists::BeginMove, *resolved)) return false;
    for (DrawingObject* object : *resolved) object->Move(dx, dy);
    object_events_.Raise(&DrawingObjectEventLists::Move, *resolved, Notification(notify_type::kMove));
    return true;
}

bool DrawingDocument::RotateObjects(const ObjectList& objects, double x, double y, double angle) {
    auto resolved = Resolve(objects);
    if (!AllFinite({x, y, angle}) || !resolved || resolved->empty()) return false;
    if (!object_events_.Raise(&DrawingObjectEventLists::BeginRotate, *resolved)) return false;
    for (DrawingObject* object : *resolved) object->Rotate({x, y}, angle);
    Notification rotation(notify_type::kRotate);
    rotation.angle = angle;
    object_events_.Raise(&DrawingObjectEventLists::Rotate, *resolved, rotation);
    return true;
}

// The simulated drawing has no associations: nothing to check, none broken.
bool DrawingDocument::CheckAssociation(bool, int* checkedCount, int* brokenCount) {
    if (!IsOpen()) return false;
    *checkedCount = 0;
    *brokenCount = 0;
    return true;
}

// An empty list is every view; a view of another drawing gives nothing.
tvapi::SmartPtr<tvapi::IGabaritObject> DrawingDocument::ViewGetObjectsArea(
    const std::vector<tvapi::SmartPtr<tvapi::IView>>& views) {
    if (!IsOpen()) return {};
    std::vector<View*> chosen;
    for (const auto& face : views) {
        auto* view = face ? dynamic_cast<View*>(face.get()) : nullptr;
        if (!view || view->Document() != this) return {};
        chosen.push_back(view);
    }
    if (views.empty()) {
        for (const auto& view : views_) chosen.push_back(view.get());
    }
    Box box;
    for (View* view : chosen) {
        for (const auto& object : view->Objects()) box.Add(object->Bounds());
    }
    return New<GabaritObject>(box).As<tvapi::IGabaritObject>();
}

}  // namespace tvsim
