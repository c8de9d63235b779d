#include "calls/Functions.h"

#include <unordered_map>

namespace calls {

Kind Function::result_kind() const {
  switch (result) {
    case Result::kStatus:
    case Result::kId:
    case Result::kNumber:
    case Result::kPredicate: return Kind::kStatus;
    case Result::kUnsigned: return Kind::kNumber;
    case Result::kFound: return Kind::kBool;
    case Result::kMac: return Kind::kMac;
    case Result::kTunnelType: return Kind::kTunnelType;
    case Result::kNothing:
    case Result::kObject:
    case Result::kText: break;
  }
  return Kind::kText;
}

bool Function::can_be_refused() const {
  switch (result) {
    case Result::kStatus:
    case Result::kId:
    case Result::kNumber:
    case Result::kUnsigned:
    case Result::kPredicate:
    case Result::kFound:
    case Result::kTunnelType: return true;
    default: return false;
  }
}

const Function* FindFunction(std::string_view name) {
  static const auto by_name = [] {
    std::unordered_map<std::string_view, const Function*> functions;
    for (const Function& function : kFunctions) functions.emplace(function.name, &function);
    return functions;
  }();
  const auto found = by_name.find(name);
  return found == by_name.end() ? nullptr : found->second;
}

}  // namespace calls
