#include "hal/fm.h"

#include "softcard/Funnel.h"

using namespace softcard;

namespace {

int vlan_proto_ctrl_enable(int unit, unsigned short vlan_id) {
  return Call<Named("vlan_proto_ctrl_enable")>(
      Args(unit, vlan_id), [&] { return OnUnit(unit, [&] { return TheTables().protocol.Enable(vlan_id); }); });
}

int vlan_proto_ctrl_disable(int unit, unsigned short vlan_id) {
  return Call<Named("vlan_proto_ctrl_disable")>(
      Args(unit, vlan_id), [&] { return OnUnit(unit, [&] { return TheTables().protocol.Disable(vlan_id); }); });
}

}  // namespace

int fm_init(void) {
  return Call<Named("fm_init")>(Args(), [] { return static_cast<int>(BCM_E_NONE); });
}

fm_slot_t fm_local_slot(void) {
  return Call<Named("fm_local_slot")>(Args(), [] { return Card::Get().description().slot; });
}

// There is one card: it answers for every slot.
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t slot) {
  return Call<Named("fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable")>(Args(slot),
                                                                              [] { return &vlan_proto_ctrl_enable; });
}

fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t slot) {
  return Call<Named("fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable")>(Args(slot),
                                                                               [] { return &vlan_proto_ctrl_disable; });
}
