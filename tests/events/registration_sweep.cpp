#include "events/registration_sweep.h"

namespace eventsweep {

std::string At(int position) { return " at " + std::to_string(position); }

std::string Key(const std::optional<tvapi::WString>& key) {
    if (!key) return "";
    return ":" + tvprobe::Narrow(*key);
}

std::vector<std::string> Kept(const tvprobe::EventSink& sink) {
    std::vector<std::string> out;
    for (const auto& r : sink.registrations()) out.push_back(r.event + Key(r.key));
    return out;
}

void CheckForeign(Report& r, const std::function<void(void*)>& registration) {
    tvprobe::Object* foreign = tvprobe::Object::Create({});
    registration(foreign->Handle());
    r.Expect(foreign->queries == 1, "a handle without the interface must be asked exactly once");
    r.Expect(foreign->addrefs == 0 && foreign->refs() == 1, "a handle without the interface was referenced");
    foreign->Release();
}

void CheckBalanced(Report& r, tvprobe::Object& o, int registrations) {
    r.Expect(o.addrefs == registrations && o.releases == registrations,
             "each registration must hold the interface once and give it back");
    r.Expect(o.refs() == 1, "the events object's references moved");
}

}  // namespace eventsweep
