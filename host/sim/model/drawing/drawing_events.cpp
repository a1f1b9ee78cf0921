#include "sim/model/drawing/drawing_events.h"

#include <utility>

#include "sim/model/drawing/drawing_object.h"

namespace tvsim {

DrawingObjectEvents::DrawingObjectEvents() : Default<tvapi::IDrawingObjectEvents>(this) {
    ExposePrimary<tvapi::IDrawingObjectEvents>(this);
}

ObjectList DrawingObjectEvents::Admitted(const std::vector<DrawingObject*>& objects) const {
    std::vector<DrawingObject*> admitted;
    for (DrawingObject* object : objects) {
        if (filters.objects.Admits(object) && filters.types.Admits(object->Kind())) admitted.push_back(object);
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
    Ref<DrawingObjectEventsResult> previous = std::exchange(current_, New<DrawingObjectEventsResult>(std::move(notification)));
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
        events->filters.objects.Clear();
        events->filters.types.Clear();
    }
    subscribers_.clear();
}

}  // namespace tvsim
