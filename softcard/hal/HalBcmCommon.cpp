#include "hal/HalBcmCommon.h"

#include "softcard/Funnel.h"

using namespace softcard;

// The order of the numbers is the order of their bytes, most significant first. Not a call: maps ask it all the time.
bool LimIdLess::operator()(const limid_t& left, const limid_t& right) const { return left.word < right.word; }

HalBcmCommon* HalBcmCommon::GetInstance() {
  return Call<Named("HalBcmCommon::GetInstance")>(Args(), [] { return &Card::Get().common(); });
}

int HalBcmCommon::GetMplsExpMapId() {
  return Call<Named("HalBcmCommon::GetMplsExpMapId")>(Args(), [] { return Card::Get().description().exp_map_id; });
}
