// Drawing-object events of a two-dimensional document: each subscriber has
// its own events object with its object and type filters; the document
// raises an event to every subscriber whose filters let some of the affected
// objects through, and describes the notification in an events result while
// the handlers run.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "sim/defaults_events.h"
#include "sim/model/drawing/object_search.h"
#include "sim/object.h"

namespace tvsim {

class DrawingObject;

// The handler lists of a drawing-object events object, one per event.
using DrawingObjectEventLists = Default<tvapi::IDrawingObjectEvents>::Handlers;

// tvNotifyTypeEnum, as the simulated host reports it in the events result.
namespace notify_type {
inline constexpr int kCreate = 1;
inline constexpr int kPropertyChanged = 2;
inline constexpr int kDelete = 3;
inline constexpr int kMove = 4;
inline constexpr int kRotate = 5;
inline constexpr int kTransform = 6;
inline constexpr int kCopy = 7;
}  // namespace notify_type

// One subscriber's events object; its handlers and filters are the generated
// Default's.
class DrawingObjectEvents final : public Object, public Default<tvapi::IDrawingObjectEvents> {
public:
    DrawingObjectEvents();

    // The objects among `objects` this subscriber's filters let through:
    // all of them when it set no filter; with an object filter, the listed
    // ones; with a type filter, those of the listed types.
    ObjectList Admitted(const std::vector<DrawingObject*>& objects) const;

private:
    ~DrawingObjectEvents() override = default;
};

// What the handlers of the notification under way can ask about it.
struct Notification {
    explicit Notification(int notify_type = 0) : type(notify_type) {}
    int type;
    double angle = 0.0;  // of a rotation
    ObjectList copies;   // of a copy
};

class DrawingObjectEventsResult final : public Object, public Default<tvapi::IDrawingObjectEventsResult> {
public:
    explicit DrawingObjectEventsResult(Notification notification);

    tvapi::tvNotifyTypeEnum GetNotifyType() override { return tvapi::tvNotifyTypeEnum(n_.type); }
    bool IsCopy() override { return n_.type == notify_type::kCopy; }
    double GetAngle() override { return n_.angle; }
    // No operation of the simulated drawing scales objects.
    double GetScale() override { return 1.0; }
    ObjectList GetCopyObjects() override { return n_.copies; }

private:
    ~DrawingObjectEventsResult() override = default;
    Notification n_;
};

// A drawing's subscribers, by the key each asked for its events object with.
class DrawingEvents {
public:
    // Which of the handler lists an event goes to (every event about a list
    // of objects has the same handler type).
    using ObjectsHandler = tvapi::IDrawingObjectEvents::CreateObjectHandler;
    using Event = HandlerList<ObjectsHandler> DrawingObjectEventLists::*;

    // The same object for the same key, made on the first request.
    tvapi::SmartPtr<tvapi::IAPIObject> For(const tvapi::WString& key);
    // The events result of the notification under way; null between them.
    tvapi::SmartPtr<tvapi::IAPIObject> Result() const;

    // Raises `event` about `objects` to every subscriber that admits some
    // of them, with only those. A "Begin…" event's handlers may veto:
    // false when one answered false.
    bool Raise(Event event, const std::vector<DrawingObject*>& objects, Notification notification = Notification());
    // Every subscriber's handlers and filters go: the drawing is closed.
    void Clear();

private:
    std::map<tvapi::WString, Ref<DrawingObjectEvents>> subscribers_;
    Ref<DrawingObjectEventsResult> current_;
};

}  // namespace tvsim
