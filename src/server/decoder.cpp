#include "server/decoder.h"

#include <cstring>
#include <exception>
#include <optional>
#include <type_traits>

#include "server/name_table.h"

namespace tvapic::server {
namespace {

// Walks the bytes field by field. Each read either yields its value or
// records how many bytes the request needs at least.
class Cursor {
public:
    explicit Cursor(std::string_view bytes) : bytes_(bytes) {}

    template <class T>
    std::optional<T> Fixed() {
        if (!Have(sizeof(T))) return std::nullopt;
        T value;
        std::memcpy(&value, bytes_.data() + at_, sizeof value);
        at_ += sizeof value;
        return value;
    }

    // A counted byte string; a count over `limit` is an error.
    std::optional<std::string_view> Counted(std::uint64_t limit, const char* what) {
        std::optional<std::uint64_t> count = Fixed<std::uint64_t>();
        if (!count) return std::nullopt;
        if (*count > limit) return Refuse(what, *count, limit);
        return Bytes(static_cast<std::size_t>(*count));
    }

    // A text argument: refused when it is over the limit alone, or together
    // with the texts before it, as soon as its count is there.
    std::optional<std::string_view> Text() {
        std::optional<std::uint64_t> count = Fixed<std::uint64_t>();
        if (!count) return std::nullopt;
        if (*count > kMaxRequestTextBytes) return Refuse("text", *count, kMaxRequestTextBytes);
        if (*count > kMaxRequestTextBytes - text_bytes_) {
            return Refuse("texts", text_bytes_ + *count, kMaxRequestTextBytes, " in all are");
        }
        std::optional<std::string_view> text = Bytes(static_cast<std::size_t>(*count));
        if (text) text_bytes_ += text->size();
        return text;
    }

    template <class T>
    std::optional<Slot<T>> SlotOf() {
        std::optional<std::uint8_t> flag = Fixed<std::uint8_t>();
        if (!flag) return std::nullopt;
        Slot<T> slot{*flag, T{}};
        if (*flag == 0) {
            std::optional<T> value = Fixed<T>();
            if (!value) return std::nullopt;
            slot.value = *value;
        }
        return slot;
    }

    // What stopped the walk: an error, or the bytes the request needs.
    Decoded Incomplete() const {
        if (error_) return *error_;
        return NeedBytes{needed_};
    }

private:
    std::optional<std::string_view> Bytes(std::size_t n) {
        if (!Have(n)) return std::nullopt;
        std::string_view out = bytes_.substr(at_, n);
        at_ += n;
        return out;
    }

    std::nullopt_t Refuse(const char* what, std::uint64_t count, std::uint64_t limit, const char* verb = " is") {
        error_ = DecodeError{std::string(what) + " of " + std::to_string(count) + " bytes" + verb + " over the limit of " +
                             std::to_string(limit) + " bytes"};
        return std::nullopt;
    }

    bool Have(std::size_t n) {
        if (bytes_.size() - at_ >= n) return true;
        needed_ = at_ + n;
        return false;
    }

    std::string_view bytes_;
    std::size_t at_ = 0;
    std::size_t needed_ = 0;
    std::uint64_t text_bytes_ = 0;  // the request's texts so far
    std::optional<DecodeError> error_;
};

// One argument, with its text still as UTF-8 bytes.
using RawValue = std::variant<std::uint64_t, std::int32_t, double, std::string_view, Slot<std::int32_t>, Slot<double>>;

std::optional<RawValue> ReadArgument(Cursor& in, WireKind kind) {
    auto lift = [](auto value) -> std::optional<RawValue> {
        if (!value) return std::nullopt;
        return RawValue(*value);
    };
    switch (kind) {
        case WireKind::U64: return lift(in.Fixed<std::uint64_t>());
        case WireKind::I32: return lift(in.Fixed<std::int32_t>());
        case WireKind::F64: return lift(in.Fixed<double>());
        case WireKind::Text: return lift(in.Text());
        case WireKind::SlotI32: return lift(in.SlotOf<std::int32_t>());
        case WireKind::SlotF64: return lift(in.SlotOf<double>());
    }
    return std::nullopt;
}

WireValue Own(const RawValue& raw) {
    return std::visit(
        [](const auto& v) -> WireValue {
            if constexpr (std::is_same_v<std::decay_t<decltype(v)>, std::string_view>) return FromUtf8(v.data(), v.size());
            else return v;
        },
        raw);
}

}  // namespace

Decoded Decode(std::string_view bytes) {
    Cursor in(bytes);
    std::optional<std::string_view> name = in.Counted(kMaxNameBytes, "function name");
    if (!name) return in.Incomplete();
    Request request;
    request.name.assign(*name);
    const NameEntry* entry = FindName(*name);
    request.function = entry ? entry->function : nullptr;
    if (!request.function) return request;

    std::vector<RawValue> raw;
    raw.reserve(request.function->arity);
    for (std::size_t i = 0; i < request.function->arity; ++i) {
        std::optional<RawValue> value = ReadArgument(in, request.function->kinds[i]);
        if (!value) return in.Incomplete();
        raw.push_back(*value);
    }
    try {
        request.args.reserve(raw.size());
        for (const RawValue& value : raw) request.args.push_back(Own(value));
    } catch (const std::exception& e) {
        return DecodeError{e.what()};  // text that is not UTF-8
    }
    return request;
}

}  // namespace tvapic::server
