#include "hal/limid.h"

#include <algorithm>

#include "softcard/Funnel.h"
#include "softcard/LimId.h"

using namespace softcard;

namespace {

/// Decodes `limid`, which is refused when it is of type 0: that is no lim id at all.
template <typename Decode>
int Decoded(limid_t limid, const Decode& decode) {
  if (LimIdType(limid) == limid_type_unknown) return BCM_E_PARAM;
  decode();
  return BCM_E_NONE;
}

}  // namespace

int limid_to_type(limid_t limid, unsigned char* type) {
  return Call<Named("limid_to_type")>(
      Args(limid), [&] { return Decoded(limid, [&] { *type = static_cast<unsigned char>(LimIdType(limid)); }); });
}

int limid_to_ifindex(limid_t limid, unsigned int* ifindex) {
  return Call<Named("limid_to_ifindex")>(Args(limid),
                                         [&] { return Decoded(limid, [&] { *ifindex = LimIdIndex(limid); }); });
}

int limid_to_intfname(limid_t limid, char* name, size_t size) {
  return Call<Named("limid_to_intfname")>(Args(limid, size), [&] {
    // A type that the card does not know has no names.
    if (LimIdType(limid) > limid_type_l3_vlan || size == 0) return static_cast<int>(BCM_E_PARAM);
    return Decoded(limid, [&] {
      const std::string text = LimIdName(limid);
      const size_t length = text.copy(name, size - 1);
      name[length] = '\0';
      // Nobody may read behind the NUL: whoever does shall see it.
      std::fill(name + length + 1, name + size, '#');
    });
  });
}

int limid_is_from_type(limid_t limid, limid_type_t type) {
  return Call<Named("limid_is_from_type")>(
      Args(limid, type), [&] { return static_cast<int>(LimIdType(limid) == static_cast<unsigned>(type)); });
}

int limid_is_from_type_ethernet(limid_t limid) {
  return Call<Named("limid_is_from_type_ethernet")>(
      Args(limid), [&] { return static_cast<int>(LimIdType(limid) == limid_type_ethernet); });
}

unsigned int limid_to_l3_vlan_vlanid(limid_t limid) {
  return Call<Named("limid_to_l3_vlan_vlanid")>(Args(limid), [&] { return LimIdIndex(limid); });
}
