// The simulated host's event sources: objects answering an Events interface
// that keep the handlers subscribers register, for the model to raise.
#pragma once

#include "sim/defaults_events.h"
#include "sim/object.h"

namespace tvsim {

// An Events interface as an object of its own, as the host hands it out.
// Its handlers are the generated Default<I>::handlers.
template <class I>
class EventSource final : public Object, public Default<I> {
public:
    EventSource() : Default<I>(this) { this->template ExposePrimary<I>(this); }

private:
    ~EventSource() override = default;
};

using ApplicationEvents = EventSource<tvapi::IApplicationEvents>;
using DocumentEvents = EventSource<tvapi::ITavraDocumentEvents>;
// Their handler lists, one per event.
using ApplicationEventLists = Default<tvapi::IApplicationEvents>::Handlers;
using DocumentEventLists = Default<tvapi::ITavraDocumentEvents>::Handlers;

}  // namespace tvsim
