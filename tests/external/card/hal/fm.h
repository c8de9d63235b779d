#pragma once

#include <stdint.h>

typedef int fm_slot_t;
typedef int (*fm_vlan_proto_ctrl_t)(int unit, uint16_t vlan);

extern "C" {
int fm_init();
fm_slot_t fm_local_slot();
fm_slot_t fm_master_slot();
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t slot);
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t slot);
}
