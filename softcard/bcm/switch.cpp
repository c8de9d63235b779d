#include "bcm/switch.h"

#include "softcard/Funnel.h"

using namespace softcard;

int bcm_switch_control_set(int unit, bcm_switch_control_t type, int arg) {
  return Call<Named("bcm_switch_control_set")>(
      Args(unit, type, arg), [&] { return OnUnit(unit, [&] { return TheTables().switch_controls.Set(type, arg); }); });
}
