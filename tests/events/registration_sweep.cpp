#include "events/registration_sweep.h"

namespace eventsweep {

std::vector<std::string> Kept(const tvprobe::EventSink& sink) {
    std::vector<std::string> out;
    for (const auto& r : sink.registrations()) out.push_back(r.event + (r.key ? ":" + tvprobe::Narrow(*r.key) : ""));
    return out;
}

void CheckCalls(Report& r, const char* interface, int calls, const std::function<void(void*, int)>& registration,
                const std::function<void(tvprobe::Object&)>& kept) {
    registration(nullptr, 0);
    tvprobe::Held foreign({});
    registration(foreign.handle(), 0);
    r.Expect(foreign->queries == 1, "a handle without the interface must be asked exactly once");
    r.Expect(foreign->addrefs == 0 && foreign->refs() == 1, "a handle without the interface was referenced");
    tvprobe::Held o(interface);
    for (int i = 0; i < calls; ++i) registration(o.handle(), i);
    const int registered = calls - 1;  // the last call's callback is null
    r.Expect(o->queries == registered, "a registration without a callback must not ask the object");
    r.Expect(o->addrefs == registered && o->releases == registered,
             "each registration must hold the interface once and give it back");
    r.Expect(o->refs() == 1, "the events object's references moved");
    kept(*o.o);
}

}  // namespace eventsweep
