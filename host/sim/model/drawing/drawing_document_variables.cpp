// The drawing's variables through ITavraDocument2D: real variables, interval
// variables and user functions (tvVariableTypeEnum 0, 1 and 2).
#include "sim/model/drawing/drawing_document.h"
#include "sim/model/enums.h"

namespace tvsim {

namespace {
template <class I>
std::vector<tvapi::SmartPtr<I>> VariableFaces(const std::vector<Variable*>& variables) {
    std::vector<tvapi::SmartPtr<I>> faces;
    for (Variable* v : variables) faces.push_back(Share<I>(v));
    return faces;
}

Variable* At(const std::vector<Variable*>& variables, int index) {
    return index >= 0 && index < static_cast<int>(variables.size()) ? variables[static_cast<std::size_t>(index)]
                                                                   : nullptr;
}
}  // namespace

std::vector<tvapi::SmartPtr<tvapi::IVariable>> DrawingDocument::GetVariables(tvapi::tvVariableTypeEnum variableType) {
    return VariableFaces<tvapi::IVariable>(variables_.OfType(variableType));
}

tvapi::SmartPtr<tvapi::IVariable> DrawingDocument::GetVariable(tvapi::tvVariableTypeEnum variableType, int index) {
    return Share<tvapi::IVariable>(At(variables_.OfType(variableType), index));
}

tvapi::SmartPtr<tvapi::IVariable> DrawingDocument::GetVariableByName(tvapi::tvVariableTypeEnum variableType,
                                                                     const tvapi::WString& name) {
    Variable* found = variables_.ByName(name);
    return Share<tvapi::IVariable>(found && found->Type() == variableType ? found : nullptr);
}

int DrawingDocument::GetVariablesCount(tvapi::tvVariableTypeEnum variableType) {
    return static_cast<int>(variables_.OfType(variableType).size());
}

bool DrawingDocument::UpdateVariables() { return IsOpen() && variables_.Recalculate(); }

bool DrawingDocument::IsVariableNameValid(const tvapi::WString& name) { return variables_.IsNameValid(name); }

tvapi::SmartPtr<tvapi::IVariable> DrawingDocument::AddVariable(const tvapi::WString& name, double value,
                                                               const tvapi::WString& expression) {
    if (!IsOpen()) return {};
    VariableData data;
    data.type = variable_type::kReal;
    data.name = name;
    data.value = value;
    data.expression = expression;
    return variables_.Add(data).As<tvapi::IVariable>();
}

// Rebuilding the simulated drawing is working its variables out again.
bool DrawingDocument::RebuildDocument() { return UpdateVariables(); }
bool DrawingDocument::CompleteRebuildDocument() { return UpdateVariables(); }

std::vector<tvapi::SmartPtr<tvapi::IIntervalVariable>> DrawingDocument::GetIntervalVariables() {
    return VariableFaces<tvapi::IIntervalVariable>(variables_.OfType(variable_type::kInterval));
}

tvapi::SmartPtr<tvapi::IIntervalVariable> DrawingDocument::AddIntervalVariable(const tvapi::WString& name,
                                                                               double firstValue,
                                                                               double secondValue) {
    if (!IsOpen()) return {};
    VariableData data;
    data.type = variable_type::kInterval;
    data.name = name;
    data.value = firstValue;
    data.second = secondValue;
    return variables_.Add(data).As<tvapi::IIntervalVariable>();
}

tvapi::SmartPtr<tvapi::IIntervalVariable> DrawingDocument::GetIntervalVariable(int index) {
    return Share<tvapi::IIntervalVariable>(At(variables_.OfType(variable_type::kInterval), index));
}

tvapi::SmartPtr<tvapi::IIntervalVariable> DrawingDocument::GetIntervalVariableByName(const tvapi::WString& name) {
    Variable* found = variables_.ByName(name);
    return Share<tvapi::IIntervalVariable>(found && found->Type() == variable_type::kInterval ? found : nullptr);
}

std::vector<tvapi::SmartPtr<tvapi::IVariable>> DrawingDocument::GetUserFuncVariables() {
    return VariableFaces<tvapi::IVariable>(variables_.OfType(variable_type::kUserFunction));
}

// A user function is its expression; it must not be empty.
tvapi::SmartPtr<tvapi::IVariable> DrawingDocument::AddUserFuncVariable(const tvapi::WString& name,
                                                                       const tvapi::WString& expression) {
    if (!IsOpen() || expression.empty()) return {};
    VariableData data;
    data.type = variable_type::kUserFunction;
    data.name = name;
    data.expression = expression;
    return variables_.Add(data).As<tvapi::IVariable>();
}

tvapi::SmartPtr<tvapi::IVariable> DrawingDocument::GetUserFuncVariable(int index) {
    return Share<tvapi::IVariable>(At(variables_.OfType(variable_type::kUserFunction), index));
}

tvapi::SmartPtr<tvapi::IVariable> DrawingDocument::GetUserFuncVariableByName(const tvapi::WString& name) {
    Variable* found = variables_.ByName(name);
    return Share<tvapi::IVariable>(found && found->Type() == variable_type::kUserFunction ? found : nullptr);
}

}  // namespace tvsim
