#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
  bcmSwitchUnused = 0,
  bcmSwitchL3EgressMode = 230,
  bcmSwitchL3UrpfMode = 231,
  bcmSwitchL3IngressMode = 232
} bcm_switch_control_t;

int bcm_switch_control_get(int unit, bcm_switch_control_t type, int* arg);
int bcm_switch_control_set(int unit, bcm_switch_control_t type, int arg);

#ifdef __cplusplus
}
#endif
