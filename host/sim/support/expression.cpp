#include "sim/support/expression.h"

#include <cmath>
#include <numbers>
#include <string>

#include "sim/support/text.h"

namespace tvsim {
namespace {

bool IsNameStart(tvapi::WChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' || static_cast<char16_t>(c) >= 0x80;
}
bool IsDigit(tvapi::WChar c) { return c >= u'0' && c <= u'9'; }
bool IsNamePart(tvapi::WChar c) { return IsNameStart(c) || IsDigit(c); }

// Recursive descent; every rule answers nothing on failure.
class Parser {
public:
    // With `syntax_only`, arithmetic never fails (division by zero and the
    // like): only the text's form and the names' lookups decide.
    Parser(const tvapi::WString& text, const NameLookup& lookup, bool syntax_only = false)
        : text_(text), lookup_(lookup), syntax_only_(syntax_only) {}

    std::optional<double> Whole() {
        auto value = Sum();
        Skip();
        if (!value || at_ != text_.size() || (!syntax_only_ && !std::isfinite(*value))) return std::nullopt;
        return value;
    }

private:
    void Skip() {
        while (at_ < text_.size() && (text_[at_] == u' ' || text_[at_] == u'\t')) ++at_;
    }
    bool Take(tvapi::WChar c) {
        Skip();
        if (at_ < text_.size() && text_[at_] == c) {
            ++at_;
            return true;
        }
        return false;
    }

    std::optional<double> Sum() {
        auto left = Product();
        while (left) {
            if (Take(u'+')) left = Combine(left, Product(), [](double a, double b) { return a + b; });
            else if (Take(u'-')) left = Combine(left, Product(), [](double a, double b) { return a - b; });
            else break;
        }
        return left;
    }

    std::optional<double> Product() {
        auto left = Power();
        while (left) {
            if (Take(u'*')) {
                left = Combine(left, Power(), [](double a, double b) { return a * b; });
            } else if (Take(u'/')) {
                auto right = Power();
                if (!right || (*right == 0.0 && !syntax_only_)) return std::nullopt;
                left = *right == 0.0 ? 0.0 : *left / *right;
            } else {
                break;
            }
        }
        return left;
    }

    std::optional<double> Power() {
        auto base = Unary();
        if (base && Take(u'^')) return Combine(base, Power(), [](double a, double b) { return std::pow(a, b); });
        return base;
    }

    std::optional<double> Unary() {
        if (Take(u'-')) {
            auto v = Unary();
            return v ? std::optional<double>(-*v) : std::nullopt;
        }
        if (Take(u'+')) return Unary();
        return Primary();
    }

    std::optional<double> Primary() {
        Skip();
        if (at_ >= text_.size()) return std::nullopt;
        if (Take(u'(')) {
            auto inner = Sum();
            return inner && Take(u')') ? inner : std::nullopt;
        }
        if (IsDigit(text_[at_]) || text_[at_] == u'.') return Number();
        if (IsNameStart(text_[at_])) return NameOrCall();
        return std::nullopt;
    }

    std::optional<double> Number() {
        std::size_t start = at_;
        while (at_ < text_.size() && (IsDigit(text_[at_]) || text_[at_] == u'.')) ++at_;
        if (at_ < text_.size() && (text_[at_] == u'e' || text_[at_] == u'E')) {
            std::size_t mark = at_++;
            if (at_ < text_.size() && (text_[at_] == u'+' || text_[at_] == u'-')) ++at_;
            if (at_ < text_.size() && IsDigit(text_[at_])) {
                while (at_ < text_.size() && IsDigit(text_[at_])) ++at_;
            } else {
                at_ = mark;  // an "e" that starts no exponent
            }
        }
        std::string digits(text_.begin() + static_cast<std::ptrdiff_t>(start),
                           text_.begin() + static_cast<std::ptrdiff_t>(at_));
        double value;
        return ParseNumber(digits, value) ? std::optional<double>(value) : std::nullopt;
    }

    std::optional<double> NameOrCall() {
        std::size_t start = at_;
        while (at_ < text_.size() && IsNamePart(text_[at_])) ++at_;
        tvapi::WString name = text_.substr(start, at_ - start);
        if (!Take(u'(')) return lookup_(name);
        auto argument = Sum();
        if (!argument || !Take(u')')) return std::nullopt;
        return Call(name, syntax_only_ ? 1.0 : *argument);
    }

    static std::optional<double> Call(const tvapi::WString& name, double x) {
        constexpr double kRadians = std::numbers::pi / 180.0;
        if (name == TVAPI_TEXT("sqrt")) return x < 0.0 ? std::nullopt : std::optional<double>(std::sqrt(x));
        if (name == TVAPI_TEXT("abs")) return std::fabs(x);
        if (name == TVAPI_TEXT("sin")) return std::sin(x * kRadians);
        if (name == TVAPI_TEXT("cos")) return std::cos(x * kRadians);
        if (name == TVAPI_TEXT("tan")) return std::tan(x * kRadians);
        return std::nullopt;
    }

    template <class F>
    static std::optional<double> Combine(std::optional<double> a, std::optional<double> b, F f) {
        if (!a || !b) return std::nullopt;
        return f(*a, *b);
    }

    const tvapi::WString& text_;
    const NameLookup& lookup_;
    bool syntax_only_;
    std::size_t at_ = 0;
};

}  // namespace

std::optional<double> Evaluate(const tvapi::WString& expression, const NameLookup& lookup) {
    return Parser(expression, lookup).Whole();
}

std::optional<std::vector<tvapi::WString>> ReferencedNames(const tvapi::WString& expression) {
    std::vector<tvapi::WString> names;
    NameLookup record = [&](const tvapi::WString& name) -> std::optional<double> {
        names.push_back(name);
        return 1.0;
    };
    if (!Parser(expression, record, true).Whole()) return std::nullopt;
    return names;
}

bool IsIdentifier(const tvapi::WString& name) {
    if (name.empty() || !IsNameStart(name[0])) return false;
    for (tvapi::WChar c : name) {
        if (!IsNamePart(c)) return false;
    }
    return true;
}

}  // namespace tvsim
