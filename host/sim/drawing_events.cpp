#include "sim/drawing_events.h"

#include <algorithm>
#include <utility>

#include "sim/drawing_object.h"

namespace tvsim {

DrawingObjectEvents::DrawingObjectEvents() : Default<tvapi::IDrawingObjectEvents>(this) {
    ExposePrimary<tvapi::IDrawingObjectEvents>(this);
}

// Only the simulated drawing's objects can be listed; anything else is skipped.
void DrawingObjectEvents::AddObjects(const ObjectList& objects) {
    for (const auto& face : objects) {
        const DrawingObject* object = face ? DrawingObject::From(face.get()) : nullptr;
        if (!object || std::find(objects_.begin(), objects_.end(), object) != objects_.end()) continue;
        objects_.push_back(object);
        kept_.push_back(face);
    }
}

void DrawingObjectEvents::RemoveObjects(const ObjectList& objects) {
    for (const auto& face : objects) {
        const DrawingObject* object = face ? DrawingObject::From(face.get()) : nullptr;
        auto it = std::find(objects_.begin(), objects_.end(), object);
        if (it == objects_.end()) continue;
        kept_.erase(kept_.begin() + (it - objects_.begin()));
        objects_.erase(it);
    }
}

void DrawingObjectEvents::AddObjectsTypes(const std::vector<std::int32_t>& types) {
    for (std::int32_t type : types) {
        if (std::find(types_.begin(), types_.end(), type) == types_.end()) types_.push_back(type);
    }
}

void DrawingObjectEvents::RemoveObjectsTypes(const std::vector<std::int32_t>& types) {
    std::erase_if(types_, [&](std::int32_t t) { return std::find(types.begin(), types.end(), t) != types.end(); });
}

ObjectList DrawingObjectEvents::Admitted(const std::vector<DrawingObject*>& objects) const {
    std::vector<DrawingObject*> admitted;
    for (DrawingObject* object : objects) {
        bool listed = objects_.empty() || std::find(objects_.begin(), objects_.end(), object) != objects_.end();
        bool typed = types_.empty() || std::find(types_.begin(), types_.end(), object->Kind()) != types_.end();
        if (listed && typed) admitted.push_back(object);
    }
    return FacesOf(admitted);
}

DrawingObjectEventsResult::DrawingObjectEventsResult(Notification notification)
    : Default<tvapi::IDrawingObjectEventsResult>(this), n_(std::move(notification)) {
    ExposePrimary<tvapi::IDrawingObjectEventsResult>(this);
}

tvapi::SmartPtr<tvapi::IAPIObject> DrawingEvents::For(const tvapi::WString& key) {
    Ref<DrawingObjectEvents>& events = subscribers_[key];
    if (!events) events = New<DrawingObjectEvents>();
    return events.As<tvapi::IAPIObject>();
}

tvapi::SmartPtr<tvapi::IAPIObject> DrawingEvents::Result() const {
    return current_.As<tvapi::IAPIObject>();
}

bool DrawingEvents::Raise(Event event, const std::vector<DrawingObject*>& objects, Notification notification) {
    if (objects.empty() || subscribers_.empty()) return true;
    // A handler may subscribe or close the drawing: raise to those there now.
    std::vector<Ref<DrawingObjectEvents>> subscribers;
    for (const auto& [key, events] : subscribers_) subscribers.push_back(events);
    Ref<DrawingObjectEventsResult> previous = std::exchange(current_, New<DrawingObjectEventsResult>(notification));
    bool allowed = true;
    for (const auto& events : subscribers) {
        ObjectList admitted = events->Admitted(objects);
        if (admitted.empty()) continue;
        for (bool answer : (events->handlers.*event).Raise(admitted)) allowed = allowed && answer;
    }
    current_ = std::move(previous);
    return allowed;
}

void DrawingEvents::Clear() {
    for (auto& [key, events] : subscribers_) {
        events->handlers.Clear();
        events->RemoveAllObjects();
        events->RemoveAllObjectsTypes();
    }
    subscribers_.clear();
}

}  // namespace tvsim
