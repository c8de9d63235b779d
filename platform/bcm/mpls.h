#ifndef BCM_MPLS_H
#define BCM_MPLS_H

#include <stdint.h>

#pragma GCC visibility push(default)
extern "C" {

#define BCM_MPLS_EGRESS_LABEL_TTL_SET 0x1u      ///< the label's TTL is set from `ttl`
#define BCM_MPLS_EGRESS_LABEL_EXP_REMARK 0x10u  ///< the label's EXP is remarked through `qos_map_id`

/// One label that a tunnel initiator pushes.
typedef struct bcm_mpls_egress_label_s {
  uint32_t flags;  ///< BCM_MPLS_EGRESS_LABEL_*
  uint32_t label;  ///< 20 bits
  int qos_map_id;  ///< EXP map, counts with BCM_MPLS_EGRESS_LABEL_EXP_REMARK
  uint8_t exp;     ///< 3 bits
  uint8_t ttl;     ///< counts with BCM_MPLS_EGRESS_LABEL_TTL_SET
} bcm_mpls_egress_label_t;

/// Gives every field its default.
void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label);

/// Gives L3 interface `intf` the labels to push, the innermost (bottom of stack) first. With `num_labels` 0 the
/// interface has an initiator that pushes nothing. The array is only read. Returns an SDK status.
int bcm_mpls_tunnel_initiator_set(int unit, int intf, int num_labels, bcm_mpls_egress_label_t* label_array);

/// Takes the tunnel initiator from L3 interface `intf`. Returns an SDK status, BCM_E_UNAVAIL when it has none.
int bcm_mpls_tunnel_initiator_clear(int unit, int intf);
}
#pragma GCC visibility pop

#endif
