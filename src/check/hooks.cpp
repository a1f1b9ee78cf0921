// What the exports tell checked mode, and the findings it makes of it.
#include <iterator>
#include <string>

#include <utf8cpp/utf8.h>

#include "check/check.h"
#include "check/interfaces.h"
#include "check/platform.h"
#include "check/state.h"

namespace tvapic::check {

bool enabled = false;

namespace {

thread_local const Registration* running_handler = nullptr;

using Lock = std::lock_guard<std::mutex>;

// The host's objects belong to its main thread: the thread that loaded the
// library. Each export is reported once per other thread.
void CheckThread(const char* export_name) {
    static thread_local const std::uint64_t self = platform::ThreadNumber();
    State& s = TheState();
    if (self == s.loading_thread) return;
    const std::string thread = std::to_string(self);
    Lock lock(s.mutex);
    Note(s, std::string(export_name) + "@" + thread,
         std::string(export_name) + ": called from thread " + thread + ", not from thread " +
             std::to_string(s.loading_thread) + ", which loaded the library: the host's objects belong to its main thread");
}

// A subscriber key as the lines show it.
std::string Utf8(const tvWChar* key) {
    std::string out;
    const tvWChar* end = key;
    while (end && *end) ++end;
    try {
        utf8::utf16to8(key, end, std::back_inserter(out));
    } catch (const utf8::exception&) {
        return "(a key that is not UTF-16)";
    }
    return out;
}

// Each element of an object list carries one reference. The caller holds the lock.
void ElementsHandedOut(References& references, const ObjectReferenceVector_t& objects, const Origin& origin) {
    for (std::uint64_t i = 0; i < objects.size; ++i) {
        if (objects.data[i]) references.HandedOut(objects.data[i], origin);
    }
}

}  // namespace

State& TheState() {
    static State* state = new State;
    return *state;
}

void Write(const std::string& line) { platform::WriteLine(kPrefix + line); }

void Note(State& state, const std::string& key, const std::string& line) {
    if (!state.findings.First(key)) return;
    state.findings.Describe(key, line);
    Write(line);
}

void Refused(const char* export_name, void* handle, const char* iid) {
    CheckThread(export_name);
    State& s = TheState();
    const std::string name(export_name);
    const std::string key = name + (handle ? ": lacks" : ": null");
    {
        Lock lock(s.mutex);
        if (!s.findings.First(key)) return;
    }
    // Asking for every interface calls into the host: not under the lock.
    const std::string line =
        handle ? name + ": the handle lacks " + InterfaceName(iid) + "; it answers " + InterfacesAnswered(handle) +
                     ". Nothing was called; the default was returned"
               : name + ": null handle. Nothing was called; the default was returned";
    Lock lock(s.mutex);
    s.findings.Describe(key, line);
    Write(line);
}

void NullArgument(const char* export_name) {
    CheckThread(export_name);
    State& s = TheState();
    Lock lock(s.mutex);
    const std::string name(export_name);
    Note(s, name + ": null", name + ": null object. Nothing was called; the default was returned");
}

void Called(const char* export_name) { CheckThread(export_name); }

void ObjectHandedOut(const char* export_name, void* handle, const char* iid) {
    CheckThread(export_name);
    if (!handle) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.references.HandedOut(handle, {export_name, iid});
}

void VectorHandedOut(const char* export_name, const void* vector, const char* family) {
    CheckThread(export_name);
    if (!vector) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.vectors.Made(vector, family, export_name);
}

void ObjectsHandedOut(const char* export_name, const ObjectReferenceVector_t* objects, const char* iid) {
    CheckThread(export_name);
    if (!objects) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.vectors.Made(objects, "ObjectReferenceVector", export_name);
    ElementsHandedOut(s.references, *objects, {export_name, iid});
}

// The inner vectors belong to the outer one, which deletes them: only the
// outer is the caller's to delete, and every element is the caller's to release.
void ObjectListsHandedOut(const char* export_name, const ObjectReferenceVectorVector_t* lists, const char* iid) {
    CheckThread(export_name);
    if (!lists) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.vectors.Made(lists, "ObjectReferenceVectorVector", export_name);
    for (std::uint64_t i = 0; i < lists->size; ++i) {
        if (lists->data[i]) ElementsHandedOut(s.references, *lists->data[i], {export_name, iid});
    }
}

void ReferenceAdded(void* handle) {
    CheckThread("IAPIObject_AddRef");
    State& s = TheState();
    Lock lock(s.mutex);
    s.references.Added(handle);
}

void ReferenceReleased(void* handle) {
    CheckThread("IAPIObject_Release");
    State& s = TheState();
    Lock lock(s.mutex);
    std::string what;
    if (s.references.Released(handle, what)) return;
    const std::string line = "IAPIObject_Release: " + what;
    Note(s, line, line);
}

void NullReference(const char* export_name) {
    CheckThread(export_name);
    State& s = TheState();
    Lock lock(s.mutex);
    const std::string line = std::string(export_name) + ": null handle. Nothing was done; 0 was returned";
    Note(s, line, line);
}

void VectorMade(const void* vector, const char* family) {
    State& s = TheState();
    Lock lock(s.mutex);
    s.vectors.Made(vector, family, nullptr);
}

void VectorDeleted(const void* vector) {
    State& s = TheState();
    Lock lock(s.mutex);
    s.vectors.Deleted(vector);
}

void HandedToClient(void* handle) {
    State& s = TheState();
    Lock lock(s.mutex);
    s.references.MoveToClients(handle);
}

void NullCallback(const char* export_name) {
    CheckThread(export_name);
    State& s = TheState();
    Lock lock(s.mutex);
    const std::string line =
        std::string(export_name) + ": null callback. Not registered: the host is never handed a handler to call";
    Note(s, line, line);
}

Registration* Registered(const char* export_name, const tvWChar* key, bool keyed) {
    CheckThread(export_name);
    std::string text = keyed ? Utf8(key) : std::string();
    State& s = TheState();
    Lock lock(s.mutex);
    return s.registrations.Add(export_name, std::move(text), keyed);
}

void HandlerCopied(Registration* registration) {
    if (registration) ++registration->copies;
}

void HandlerDropped(Registration* registration) {
    if (!registration || --registration->copies != 0) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.registrations.Remove(registration);
}

void Lent(void* handle, const char* iid) {
    if (!handle) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.references.Lent(handle, {running_handler ? running_handler->export_name : "a handler", iid});
}

void LendingEnded(void* handle) {
    if (!handle) return;
    State& s = TheState();
    Lock lock(s.mutex);
    s.references.LendingEnded(handle);
}

HandlerScope::HandlerScope(const Registration* registration) : previous_(running_handler) {
    running_handler = registration;
}

HandlerScope::~HandlerScope() { running_handler = previous_; }

}  // namespace tvapic::check
