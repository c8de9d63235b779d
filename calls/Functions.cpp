#include "calls/Functions.h"

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
  for (const Function& function : kFunctions) {
    if (name == function.name) return &function;
  }
  return nullptr;
}

}  // namespace calls
