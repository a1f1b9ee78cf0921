// Checked mode: the library tells a plug-in's developer what the plug-in did
// against the rules every export follows.
//
// Off by default. With TVAPIC_CHECK=1 in the environment when the library
// loads, the exports report a null or foreign handle, a Release of a handle
// the caller holds no counted reference to, calls from a thread other than
// the loading one and a null callback as they happen, and at unload every
// reference, vector and handler still held. Each line goes to the standard
// error stream (or the file TVAPIC_CHECK_LOG names) and starts with
// "tvAPIC check: ". Checking changes no result, no host call and no
// reference count.
//
// The exports reach this file only through a test of `enabled`, one branch
// that stays untaken while checking is off; everything behind it is cold.
#pragma once

#include <cstdint>

#include "tvAPIC.h"

#if defined(__GNUC__)
#define TVAPIC_CHECK_COLD __attribute__((cold, noinline))
#else
#define TVAPIC_CHECK_COLD
#endif

namespace tvapic::check {

// Set once, at load, before any export can run.
extern bool enabled;

inline bool On() { return enabled; }

// --- Load and unload ---------------------------------------------------------

// Reads TVAPIC_CHECK and TVAPIC_CHECK_LOG and starts checking when asked.
void StartFromEnvironment();
// Starts checking, the lines on the standard error stream unless the
// environment chose a file; the calling thread is the host's main thread.
void Start();
// Lists what is still held. Runs at most once per load.
void ReportAtExit();

// --- What the exports tell it (each also checks the calling thread) ----------

// The handle was null or lacks the interface named by `iid`.
TVAPIC_CHECK_COLD void Refused(const char* export_name, void* handle, const char* iid);
// An export that takes an object and was given null (the transfer service's).
TVAPIC_CHECK_COLD void NullArgument(const char* export_name);
// A call that hands out nothing to track.
TVAPIC_CHECK_COLD void Called(const char* export_name);
// One reference handed to the caller on a handle of interface `iid`.
TVAPIC_CHECK_COLD void ObjectHandedOut(const char* export_name, void* handle, const char* iid);
// A new vector for the caller; an object list's elements each carry a reference.
TVAPIC_CHECK_COLD void VectorHandedOut(const char* export_name, const void* vector, const char* family);
TVAPIC_CHECK_COLD void ObjectsHandedOut(const char* export_name, const ObjectReferenceVector_t* objects,
                                        const char* iid);
TVAPIC_CHECK_COLD void ObjectListsHandedOut(const char* export_name, const ObjectReferenceVectorVector_t* lists,
                                            const char* iid);

// The handle base. A null handle is reported by NullReference.
TVAPIC_CHECK_COLD void ReferenceAdded(void* handle);
TVAPIC_CHECK_COLD void ReferenceReleased(void* handle);
TVAPIC_CHECK_COLD void NullReference(const char* export_name);

// Vectors made by `_Create` and vectors deleted by `_Delete`.
TVAPIC_CHECK_COLD void VectorMade(const void* vector, const char* family);
TVAPIC_CHECK_COLD void VectorDeleted(const void* vector);

// A reference the API Server sent to a remote client: it leaves the caller's
// count for the clients' summary, since the protocol has no remote release.
TVAPIC_CHECK_COLD void HandedToClient(void* handle);

// --- Event handlers -------------------------------------------------------------

TVAPIC_CHECK_COLD void NullCallback(const char* export_name);

// One registration while the host keeps a copy of its handler: made with the
// first copy, forgotten when the host drops the last one.
struct Registration;
TVAPIC_CHECK_COLD Registration* Registered(const char* export_name, const tvWChar* key, bool keyed);
void HandlerCopied(Registration* registration);
void HandlerDropped(Registration* registration);

// A handle lent to a handler for the length of its call: an AddRef on it
// then counts as kept from that handler's registration.
void Lent(void* handle, const char* iid);
void LendingEnded(void* handle);
// The registration whose handler runs on this thread while `Scope` lives.
class HandlerScope {
public:
    explicit HandlerScope(const Registration* registration);
    ~HandlerScope();
    HandlerScope(const HandlerScope&) = delete;
    HandlerScope& operator=(const HandlerScope&) = delete;

private:
    const Registration* previous_;
};

}  // namespace tvapic::check
