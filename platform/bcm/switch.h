#ifndef BCM_SWITCH_H
#define BCM_SWITCH_H

#pragma GCC visibility push(default)
extern "C" {

/// Chip-wide controls.
typedef enum bcm_switch_control_e : int {
  bcmSwitchL3EgressMode = 230,   ///< 1: routes name L3 egress objects
  bcmSwitchL3IngressMode = 232,  ///< 1: VLANs name L3 ingress interfaces
} bcm_switch_control_t;

/// Sets a control of chip `unit` to `arg`. Returns an SDK status.
int bcm_switch_control_set(int unit, bcm_switch_control_t type, int arg);
}
#pragma GCC visibility pop

#endif
