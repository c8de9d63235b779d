#ifndef DESTINATION_ID_CORRELATOR_H
#define DESTINATION_ID_CORRELATOR_H

/// The hardware ids that an installed destination holds, so that a replace or destroy, which carries only the
/// destination id, finds them again. The module allocates a record at the end of an install and frees it in the
/// destroy; `HalBcmCommon::destination_id_correlators` holds references to the records in between.
struct DestinationIdCorrelator {
  int destination_id;  ///< the caller's id, the same 32 bits that callers pass as unsigned
  int intf_id;         ///< L3 interface of the encapsulation; -1: none of its own
  int egress_id;       ///< L3 egress object of a host or MPLS encapsulation; 0 for a VLAN
};

#endif
