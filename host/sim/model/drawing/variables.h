// A drawing's variables: real variables and user functions, whose values
// follow their expressions, and interval variables with two values. Every
// change recalculates the expressions that depend on it.
#pragma once

#include <functional>
#include <vector>

#include "sim/defaults_application.h"
#include "sim/support/document_data.h"

namespace tvsim {

class VariableSet;

class Variable final : public Object, public Default<tvapi::IVariable>, public Default<tvapi::IIntervalVariable> {
public:
    Variable(VariableSet& set, const VariableData& data, int id);

    // IVariable
    bool Delete() override;
    tvapi::WString GetDisplayName() override { return data_.name; }
    tvapi::WString GetExpression() override { return data_.expression; }
    tvapi::WString GetName() override { return data_.name; }
    tvapi::WString GetNote() override { return data_.note; }
    double GetValue() override { return data_.value; }
    int GetVariableId() override { return id_; }
    tvapi::tvVariableTypeEnum GetVariableType() override;
    bool IsExternal() override { return data_.external; }
    bool IsInformation() override { return data_.information; }
    bool IsReadOnly() override { return data_.read_only; }
    void SetExpression(const tvapi::WString& value) override;
    void SetExternal(bool value) override;
    void SetInformation(bool value) override;
    void SetNote(const tvapi::WString& value) override;
    void SetReadOnly(bool value) override;
    void SetValue(double value) override;

    // IIntervalVariable (answered by interval variables only)
    double GetFirstValue() override { return data_.value; }
    double GetSecondValue() override { return data_.second; }
    void SetFirstValue(double value) override;
    void SetSecondValue(double value) override;

    const VariableData& Data() const { return data_; }
    int Type() const { return data_.type; }
    const tvapi::WString& Name() const { return data_.name; }
    VariableSet* Set() const { return set_; }
    // Called by the set only: a value worked out from the expression.
    void Recalculated(double value) { data_.value = value; }
    void Disconnect() { set_ = nullptr; }

private:
    friend class VariableSet;
    VariableSet* set_;
    VariableData data_;
    int id_;
};

class VariableSet {
public:
    // `changed` marks the drawing changed.
    explicit VariableSet(std::function<void()> changed);
    ~VariableSet();
    VariableSet(const VariableSet&) = delete;
    VariableSet& operator=(const VariableSet&) = delete;

    // Replaces the variables; those whose name or type does not hold are left out.
    void Load(const std::vector<VariableData>& variables);
    void Save(std::vector<VariableData>& variables) const;
    void Dispose();

    // An identifier that no variable of the drawing uses yet.
    bool IsNameValid(const tvapi::WString& name) const;
    // Nothing for a name that is not valid or an expression that does not
    // evaluate. An empty expression takes the value as written.
    Ref<Variable> Add(VariableData data);
    std::vector<Variable*> OfType(int type) const;
    Variable* ByName(const tvapi::WString& name) const;
    // Works out every expression again; false when one no longer evaluates
    // (it keeps its last value).
    bool Recalculate();

    // The variable's own changes, checked here against the others.
    bool ChangeExpression(Variable& variable, const tvapi::WString& expression);
    bool ChangeValue(Variable& variable, double value);
    // Refused while another expression refers to it.
    bool Remove(Variable& variable);
    void Changed();

private:
    bool DependsOn(const Variable& from, const Variable& target, int depth = 0) const;
    bool IsReferenced(const Variable& variable) const;

    std::function<void()> changed_;
    std::vector<Ref<Variable>> variables_;
    int next_id_ = 1;
};

}  // namespace tvsim
