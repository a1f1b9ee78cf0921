#include "tvapi/values.h"

#include <charconv>
#include <climits>
#include <cstdint>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace tvapi {

namespace {

// Numbers travel through ASCII: the text forms are pure ASCII, so widening
// and narrowing unit by unit is exact whatever the wide unit type is.
WString Widen(std::string_view s) { return WString(s.begin(), s.end()); }

std::optional<std::string> NarrowAscii(const WString& s) {
    std::string out;
    out.reserve(s.size());
    for (WChar c : s) {
        if (static_cast<std::uint32_t>(c) > 0x7f) return std::nullopt;
        out.push_back(static_cast<char>(c));
    }
    return out;
}

std::string_view Trim(std::string_view s) {
    constexpr std::string_view space = " \t\r\n\f\v";
    const auto first = s.find_first_not_of(space);
    if (first == std::string_view::npos) return {};
    return s.substr(first, s.find_last_not_of(space) - first + 1);
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

// A whole decimal number (sign, fraction and exponent allowed, surrounding
// blanks ignored), read without regard to the process locale.
std::optional<double> ParseNumber(const WString& text) {
    const auto ascii = NarrowAscii(text);
    if (!ascii) return std::nullopt;
    std::string_view s = Trim(*ascii);
    if (!s.empty() && s.front() == '+') s.remove_prefix(1);
    if (s.empty()) return std::nullopt;
    double d = 0.0;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), d);
    if (ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
    return d;
}

// The words written by ToString of a flag, in any case.
std::optional<bool> ParseFlagWord(const WString& text) {
    const auto ascii = NarrowAscii(text);
    if (!ascii) return std::nullopt;
    const std::string_view s = Trim(*ascii);
    if (EqualsIgnoringCase(s, "true")) return true;
    if (EqualsIgnoringCase(s, "false")) return false;
    return std::nullopt;
}

// Towards zero, saturating at the int range; NaN is 0. A plain cast would be
// undefined outside the range.
int TruncateToInt(double d) {
    if (std::isnan(d)) return 0;
    if (d >= static_cast<double>(INT_MAX)) return INT_MAX;
    if (d <= static_cast<double>(INT_MIN)) return INT_MIN;
    return static_cast<int>(d);
}

// The shortest text that reads back as the same double: no trailing zeros,
// no decimal point for whole numbers.
WString DoubleText(double d) {
    char buffer[64];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, d);
    (void)ec;  // 64 characters hold any double
    return Widen(std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
}

WString IntText(int i) {
    char buffer[16];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, i);
    (void)ec;
    return Widen(std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
}

}  // namespace

PropertyValue::PropertyValue() = default;
PropertyValue::PropertyValue(const PropertyValue&) = default;
PropertyValue& PropertyValue::operator=(const PropertyValue&) = default;
PropertyValue::~PropertyValue() = default;

// A moved-from value is empty rather than a String tag over an emptied text.
PropertyValue::PropertyValue(PropertyValue&& o) noexcept
    : type_(std::exchange(o.type_, Empty)),
      bool_(std::exchange(o.bool_, false)),
      int_(std::exchange(o.int_, 0)),
      double_(std::exchange(o.double_, 0.0)),
      string_(std::move(o.string_)) {
    o.string_.clear();
}

PropertyValue& PropertyValue::operator=(PropertyValue&& o) noexcept {
    if (this != &o) {
        type_ = std::exchange(o.type_, Empty);
        bool_ = std::exchange(o.bool_, false);
        int_ = std::exchange(o.int_, 0);
        double_ = std::exchange(o.double_, 0.0);
        string_ = std::move(o.string_);
        o.string_.clear();
    }
    return *this;
}

bool PropertyValue::GetBool() const { return type_ == Bool && bool_; }
int PropertyValue::GetInt() const { return type_ == Int ? int_ : 0; }
double PropertyValue::GetDouble() const { return type_ == Double ? double_ : 0.0; }
WString PropertyValue::GetString() const { return type_ == String ? string_ : WString(); }
PropertyValue::PropertyValueType PropertyValue::GetValueType() const { return type_; }

// A value holds one thing at a time. Storing another type gives back the old
// text's buffer at once (clear() would keep the capacity): the library
// releases a value's storage without running its destructor.
void PropertyValue::SetBool(bool b) {
    type_ = Bool;
    bool_ = b;
    WString().swap(string_);
}

void PropertyValue::SetInt(int i) {
    type_ = Int;
    int_ = i;
    WString().swap(string_);
}

void PropertyValue::SetDouble(double d) {
    type_ = Double;
    double_ = d;
    WString().swap(string_);
}

void PropertyValue::SetString(const WString& s) {
    type_ = String;
    string_ = s;
}

bool PropertyValue::ToBool() const {
    switch (type_) {
    case Bool: return bool_;
    case Int: return int_ != 0;
    case Double: return double_ != 0.0;
    case String:
        if (const auto word = ParseFlagWord(string_)) return *word;
        if (const auto number = ParseNumber(string_)) return *number != 0.0;
        return false;
    case Empty: break;
    }
    return false;
}

int PropertyValue::ToInt() const {
    switch (type_) {
    case Bool: return bool_ ? 1 : 0;
    case Int: return int_;
    case Double: return TruncateToInt(double_);
    case String:
        if (const auto number = ParseNumber(string_)) return TruncateToInt(*number);
        if (const auto word = ParseFlagWord(string_)) return *word ? 1 : 0;
        return 0;
    case Empty: break;
    }
    return 0;
}

double PropertyValue::ToDouble() const {
    switch (type_) {
    case Bool: return bool_ ? 1.0 : 0.0;
    case Int: return int_;
    case Double: return double_;
    case String:
        if (const auto number = ParseNumber(string_)) return *number;
        if (const auto word = ParseFlagWord(string_)) return *word ? 1.0 : 0.0;
        return 0.0;
    case Empty: break;
    }
    return 0.0;
}

WString PropertyValue::ToString() const {
    switch (type_) {
    case Bool: return Widen(bool_ ? "true" : "false");
    case Int: return IntText(int_);
    case Double: return DoubleText(double_);
    case String: return string_;
    case Empty: break;
    }
    return WString();
}

AttributeValue::AttributeValue() = default;
AttributeValue::AttributeValue(const WString& text) : text_(text) {}
AttributeValue::AttributeValue(const AttributeValue&) = default;
AttributeValue::AttributeValue(AttributeValue&&) noexcept = default;
AttributeValue& AttributeValue::operator=(const AttributeValue&) = default;
AttributeValue& AttributeValue::operator=(AttributeValue&&) noexcept = default;
AttributeValue::~AttributeValue() = default;

StorageValue::StorageValue() = default;
StorageValue::StorageValue(const WString& text) : text_(text) {}
StorageValue::StorageValue(const StorageValue&) = default;
StorageValue::StorageValue(StorageValue&&) noexcept = default;
StorageValue& StorageValue::operator=(const StorageValue&) = default;
StorageValue& StorageValue::operator=(StorageValue&&) noexcept = default;
StorageValue::~StorageValue() = default;

}  // namespace tvapi
