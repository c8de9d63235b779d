#ifndef RECORDER_SHAPE_H
#define RECORDER_SHAPE_H

#include <cstddef>
#include <tuple>

#include "bcm/mpls.h"
#include "calls/MakeCall.h"
#include "hal/IntfObject.h"
#include "hal/limid.h"

/// What a platform function's values are: those that its description names as arguments, and through which something
/// comes back.
namespace recorder {

/// Most: every value is an argument.
template <int kIndex>
struct Shape {
  template <typename... Values>
  static auto Arguments(Values... values) {
    return calls::Args(values...);
  }
  template <typename... Values>
  static std::tuple<> Outputs(Values... /*values*/) {
    return {};
  }
};

template <>
struct Shape<calls::Named("bcm_mpls_egress_label_t_init")> {
  static auto Arguments(bcm_mpls_egress_label_t* /*label*/) { return calls::Args(); }
  static auto Outputs(bcm_mpls_egress_label_t* label) { return std::tuple(label); }
};
template <>
struct Shape<calls::Named("bcm_mpls_tunnel_initiator_set")> {
  static auto Arguments(int unit, int intf, int num_labels, bcm_mpls_egress_label_t* labels) {
    return calls::Args(unit, intf, num_labels, calls::LabelArray{labels, num_labels});
  }
  static std::tuple<> Outputs(int, int, int, bcm_mpls_egress_label_t*) { return {}; }
};
template <>
struct Shape<calls::Named("limid_to_type")> {
  static auto Arguments(limid_t limid, unsigned char* /*type*/) { return calls::Args(limid); }
  static auto Outputs(limid_t, unsigned char* type) { return std::tuple(type); }
};
template <>
struct Shape<calls::Named("limid_to_ifindex")> {
  static auto Arguments(limid_t limid, unsigned int* /*ifindex*/) { return calls::Args(limid); }
  static auto Outputs(limid_t, unsigned int* ifindex) { return std::tuple(ifindex); }
};
template <>
struct Shape<calls::Named("limid_to_intfname")> {
  static auto Arguments(limid_t limid, char* /*name*/, std::size_t size) { return calls::Args(limid, size); }
  static auto Outputs(limid_t, char* name, std::size_t size) { return std::tuple(name, size); }
};
template <>
struct Shape<calls::Named("IntfManager::GetIntfObject")> {
  static auto Arguments(int intf, IntfObject** /*object*/) { return calls::Args(intf); }
  static auto Outputs(int, IntfObject** object) { return std::tuple(object); }
};

}  // namespace recorder

#endif
