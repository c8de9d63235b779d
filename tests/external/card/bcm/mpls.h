#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { BCM_MPLS_EGRESS_LABEL_TTL_SET = 0x1, BCM_MPLS_EGRESS_LABEL_EXP_REMARK = 0x10 };

typedef struct bcm_mpls_egress_label_s {
  uint32_t flags;
  uint32_t label;
  int qos_map_id;
  uint8_t exp;
  uint8_t ttl;
  uint16_t pkt_pri;
} bcm_mpls_egress_label_t;

void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label);
int bcm_mpls_tunnel_initiator_set(int unit, int intf, int num_labels, bcm_mpls_egress_label_t* label_array);
int bcm_mpls_tunnel_initiator_get(int unit, int intf, int max_labels, bcm_mpls_egress_label_t* label_array);
int bcm_mpls_tunnel_initiator_clear(int unit, int intf);

#ifdef __cplusplus
}
#endif
