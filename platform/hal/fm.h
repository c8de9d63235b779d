#ifndef HAL_FM_H
#define HAL_FM_H

#pragma GCC visibility push(default)
extern "C" {

/// A slot of the chassis.
typedef int fm_slot_t;

/// A card's operation that switches the protocol packet control of a VLAN. 0 is success, any other value failure.
typedef int (*fm_vlan_proto_ctrl_t)(int unit, unsigned short vlan_id);

/// Sets the services below up. Called once, before them.
int fm_init(void);

/// The slot of the card that this process runs on.
fm_slot_t fm_local_slot(void);

/// The operations of the card in `slot`; never null.
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_slot_t slot);
fm_vlan_proto_ctrl_t fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_slot_t slot);
}
#pragma GCC visibility pop

#endif
