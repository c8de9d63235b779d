#ifndef SOFTCARD_LIM_ID_H
#define SOFTCARD_LIM_ID_H

#include "hal/limid.h"

/// What the card puts into a lim id's word: the type in the top eight bits, the index in the low 24.
namespace softcard {

constexpr unsigned kMaxLimIdIndex = 0xFFFFFF;

constexpr limid_t MakeLimId(limid_type_t type, unsigned index) {
  return {static_cast<uint32_t>(type) << 24 | (index & kMaxLimIdIndex)};
}
constexpr unsigned LimIdType(limid_t limid) { return limid.word >> 24; }
constexpr unsigned LimIdIndex(limid_t limid) { return limid.word & kMaxLimIdIndex; }

}  // namespace softcard

#endif
