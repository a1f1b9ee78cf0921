#include "check/registrations.h"

#include <utility>

namespace tvapic::check {

Registration* Registrations::Add(const char* export_name, std::string key, bool keyed) {
    auto* registration = new Registration{export_name, std::move(key), keyed};
    live_.insert(registration);
    return registration;
}

void Registrations::Remove(Registration* registration) {
    live_.erase(registration);
    delete registration;
}

RegisteredCounts Registrations::Live() const {
    RegisteredCounts out;
    for (const Registration* r : live_) ++out[{r->export_name, r->keyed, r->key}];
    return out;
}

}  // namespace tvapic::check
