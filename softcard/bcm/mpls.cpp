#include "bcm/mpls.h"

#include "softcard/Funnel.h"

using namespace softcard;

void bcm_mpls_egress_label_t_init(bcm_mpls_egress_label_t* label) {
  Call<Named("bcm_mpls_egress_label_t_init")>(Args(), [&] { *label = {}; });
}

int bcm_mpls_tunnel_initiator_set(int unit, int intf, int num_labels, bcm_mpls_egress_label_t* label_array) {
  return Call<Named("bcm_mpls_tunnel_initiator_set")>(
      Args(unit, intf, num_labels, calls::LabelArray{label_array, num_labels}), [&] {
        return OnUnit(unit,
                      [&] { return TheTables().initiators.Set(intf, num_labels, label_array, TheTables().intfs); });
      });
}

int bcm_mpls_tunnel_initiator_clear(int unit, int intf) {
  return Call<Named("bcm_mpls_tunnel_initiator_clear")>(
      Args(unit, intf), [&] { return OnUnit(unit, [&] { return TheTables().initiators.Clear(intf); }); });
}
