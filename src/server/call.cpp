#include "server/call.h"

#include "check/check.h"
#include "server/handle_registry.h"
#include "core/heap.h"

namespace tvapic::server {

void* Call::Object(std::size_t i) const {
    std::uint64_t admitted = HandleRegistry::Instance().Admit(U64(i));
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(admitted));
}

// The client keeps the reference: checked mode counts it as the clients'.
void Call::ReturnObject(void* r) {
    if (check::On() && r) check::HandedToClient(r);
    result_ = HandleRegistry::Instance().Remember(reinterpret_cast<std::uintptr_t>(r));
}

void Call::Discard(ObjectReferenceVector_t* r) {
    if (!r) return;
    ReleaseElements(*r);
    ObjectReferenceVector_Delete(r);
}

void Call::FreeText::operator()(tvWChar* text) const { heap::Free(text); }

std::string Call::Response() {
    std::string out;
    for (const WireValue& arg : args_) {
        if (const auto* slot = std::get_if<Slot<std::int32_t>>(&arg)) AppendSlot(out, *slot);
        if (const auto* slot = std::get_if<Slot<double>>(&arg)) AppendSlot(out, *slot);
    }
    if (const auto* handle = std::get_if<std::uint64_t>(&result_)) AppendFixed(out, *handle);
    if (const auto* number = std::get_if<std::int32_t>(&result_)) AppendFixed(out, *number);
    if (const auto* text = std::get_if<OwnedText>(&result_)) AppendText(out, text->get());
    if (const auto* texts = std::get_if<OwnedTexts>(&result_)) AppendTextVector(out, texts->get());
    result_ = std::monostate();  // what the export returned is given back now
    return out;
}

}  // namespace tvapic::server
