#ifndef TESTS_MODEL_SIGNATURES_H
#define TESTS_MODEL_SIGNATURES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace model {

/// What a platform call gives back.
enum class Result {
  kNothing,
  kStatus,     ///< negative is failure
  kId,         ///< a new or kept id, or a negative status
  kNumber,     ///< any value is one
  kFound,      ///< false: not found
  kPredicate,  ///< nonzero: yes
};

/// A platform call as the rules name it and as the call log prints it. In `format`: d signed, u unsigned, h the low 16
/// bits, x hexadecimal, m a MAC address, n an MPLS label, b a truth value, l a lim id, t a kind of lim id, s a switch
/// control, r the label records.
struct Signature {
  const char* name;
  const char* function;
  const char* format;
  Result result;
};

extern const std::vector<Signature> kSignatures;

/// -1 when there is none of that name.
int SignatureIndex(std::string_view name);
const Signature& SignatureOf(std::string_view function);

}  // namespace model

#endif
