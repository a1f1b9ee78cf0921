#include "sim/model/drawing/variables.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "sim/model/enums.h"
#include "sim/support/expression.h"
#include "sim/support/text.h"

namespace tvsim {

// ---- Variable ----

Variable::Variable(VariableSet& set, const VariableData& data, int id)
    : Default<tvapi::IVariable>(this), Default<tvapi::IIntervalVariable>(this), set_(&set), data_(data), id_(id) {
    ExposePrimary<tvapi::IVariable>(this);
    if (data_.type == variable_type::kInterval) Expose<tvapi::IIntervalVariable>(this);
}

bool Variable::Delete() { return set_ && set_->Remove(*this); }

tvapi::tvVariableTypeEnum Variable::GetVariableType() { return static_cast<tvapi::tvVariableTypeEnum>(data_.type); }

// Read-only variables, interval variables (which have two values and no
// expression) and expressions that do not evaluate are refused.
void Variable::SetExpression(const tvapi::WString& value) {
    if (set_ && !data_.read_only && data_.type != variable_type::kInterval) set_->ChangeExpression(*this, value);
}

void Variable::SetValue(double value) {
    if (set_ && !data_.read_only) set_->ChangeValue(*this, value);
}

void Variable::SetFirstValue(double value) { SetValue(value); }

void Variable::SetSecondValue(double value) {
    if (!set_ || data_.read_only || data_.type != variable_type::kInterval || !AllFinite({value})) return;
    data_.second = value;
    set_->Changed();
}

void Variable::SetExternal(bool value) {
    data_.external = value;
    if (set_) set_->Changed();
}

void Variable::SetInformation(bool value) {
    data_.information = value;
    if (set_) set_->Changed();
}

void Variable::SetNote(const tvapi::WString& value) {
    data_.note = value;
    if (set_) set_->Changed();
}

void Variable::SetReadOnly(bool value) {
    data_.read_only = value;
    if (set_) set_->Changed();
}

// ---- VariableSet ----

VariableSet::VariableSet(std::function<void()> changed) : changed_(std::move(changed)) {}

VariableSet::~VariableSet() { Dispose(); }

void VariableSet::Dispose() {
    for (auto& variable : variables_) variable->Disconnect();
    variables_.clear();
}

void VariableSet::Load(const std::vector<VariableData>& variables) {
    Dispose();
    for (const auto& data : variables) {
        if (!variable_type::IsKnown(data.type) || !IsNameValid(data.name)) continue;
        variables_.push_back(New<Variable>(*this, data, next_id_++));
    }
    Recalculate();
}

void VariableSet::Save(std::vector<VariableData>& variables) const {
    for (const auto& variable : variables_) variables.push_back(variable->Data());
}

bool VariableSet::IsNameValid(const tvapi::WString& name) const { return IsIdentifier(name) && !ByName(name); }

namespace {
// Expressions see real variables and user functions by their values, and an
// interval variable by its first value.
NameLookup Values(const VariableSet& set) {
    return [&set](const tvapi::WString& name) -> std::optional<double> {
        Variable* v = set.ByName(name);
        return v ? std::optional<double>(v->Data().value) : std::nullopt;
    };
}
}  // namespace

Ref<Variable> VariableSet::Add(VariableData data) {
    if (!variable_type::IsKnown(data.type) || !IsNameValid(data.name)) return {};
    if (data.type == variable_type::kInterval) {
        if (!AllFinite({data.value, data.second})) return {};
        data.expression = FormatNumberText(data.value);
    } else if (data.expression.empty()) {
        if (!AllFinite({data.value})) return {};
        data.expression = FormatNumberText(data.value);
    } else {
        auto value = Evaluate(data.expression, Values(*this));
        if (!value) return {};
        data.value = *value;
    }
    auto variable = New<Variable>(*this, data, next_id_++);
    variables_.push_back(variable);
    Changed();
    return variable;
}

std::vector<Variable*> VariableSet::OfType(int type) const {
    std::vector<Variable*> found;
    for (const auto& variable : variables_) {
        if (variable->Type() == type) found.push_back(variable.get());
    }
    return found;
}

Variable* VariableSet::ByName(const tvapi::WString& name) const {
    for (const auto& variable : variables_) {
        if (variable->Name() == name) return variable.get();
    }
    return nullptr;
}

bool VariableSet::Recalculate() {
    // Each expression once, after the ones it refers to.
    std::map<const Variable*, std::optional<double>> done;
    std::set<const Variable*> visiting;
    std::function<std::optional<double>(Variable&)> value_of = [&](Variable& v) -> std::optional<double> {
        if (v.Type() == variable_type::kInterval) return v.Data().value;
        if (auto it = done.find(&v); it != done.end()) return it->second;
        if (!visiting.insert(&v).second) return std::nullopt;  // a cycle in a loaded file
        auto value = Evaluate(v.Data().expression, [&](const tvapi::WString& name) -> std::optional<double> {
            Variable* other = ByName(name);
            return other ? value_of(*other) : std::nullopt;
        });
        visiting.erase(&v);
        done[&v] = value;
        return value;
    };
    bool all = true;
    for (auto& variable : variables_) {
        auto value = value_of(*variable);
        if (value) variable->Recalculated(*value);
        else all = false;
    }
    return all;
}

bool VariableSet::DependsOn(const Variable& from, const Variable& target, int depth) const {
    if (&from == &target) return true;
    if (depth > static_cast<int>(variables_.size())) return true;  // a cycle already there: treat as dependent
    auto names = ReferencedNames(from.Data().expression);
    if (!names) return false;
    for (const auto& name : *names) {
        Variable* next = ByName(name);
        if (next && DependsOn(*next, target, depth + 1)) return true;
    }
    return false;
}

bool VariableSet::ChangeExpression(Variable& variable, const tvapi::WString& expression) {
    auto names = ReferencedNames(expression);
    if (!names) return false;
    for (const auto& name : *names) {
        Variable* other = ByName(name);
        if (!other || DependsOn(*other, variable)) return false;
    }
    auto value = Evaluate(expression, Values(*this));
    if (!value) return false;
    variable.data_.expression = expression;
    variable.data_.value = *value;
    Recalculate();
    Changed();
    return true;
}

bool VariableSet::ChangeValue(Variable& variable, double value) {
    if (!AllFinite({value})) return false;
    variable.data_.value = value;
    variable.data_.expression = FormatNumberText(value);
    Recalculate();
    Changed();
    return true;
}

bool VariableSet::IsReferenced(const Variable& variable) const {
    for (const auto& other : variables_) {
        if (other.get() == &variable) continue;
        auto names = ReferencedNames(other->Data().expression);
        if (names && std::find(names->begin(), names->end(), variable.Name()) != names->end()) return true;
    }
    return false;
}

bool VariableSet::Remove(Variable& variable) {
    if (IsReferenced(variable)) return false;
    auto it = std::find_if(variables_.begin(), variables_.end(), [&](const auto& v) { return v.get() == &variable; });
    if (it == variables_.end()) return false;
    Ref<Variable> keep = *it;
    variables_.erase(it);
    variable.Disconnect();
    Changed();
    return true;
}

void VariableSet::Changed() { changed_(); }

}  // namespace tvsim
