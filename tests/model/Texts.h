#ifndef TESTS_MODEL_TEXTS_H
#define TESTS_MODEL_TEXTS_H

#include <cstdint>
#include <string>

namespace model {

/// A value in a log line. `kind` is one of number, destination, vlan-id, intf-id, capability, tunnel-type, error.
std::string ValueText(const std::string& kind, int value);
/// A lim id in a log line.
std::string LimidText(const std::string& name, int64_t type, int64_t index);
/// An argument in the call log; the letters are those of `Signature::format`.
std::string ArgumentText(char kind, int64_t value);

}  // namespace model

#endif
