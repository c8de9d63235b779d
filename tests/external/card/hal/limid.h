#pragma once

#include <stddef.h>
#include <stdint.h>

/* Kind in the upper byte, number in the lower three. */
struct limid_t {
  uint32_t raw;
};

typedef unsigned limid_type_t;
static const limid_type_t limid_type_cpuport = 7;
static const limid_type_t limid_type_lag = 8;

#ifdef __cplusplus
extern "C" {
#endif
int limid_to_type(limid_t id, uint8_t* type);
int limid_to_ifindex(limid_t id, uint32_t* ifindex);
int limid_to_intfname(limid_t id, char* buffer, size_t length);
int limid_is_from_type(limid_t id, limid_type_t type);
int limid_is_from_type_ethernet(limid_t id);
unsigned limid_to_l3_vlan_vlanid(limid_t id);
#ifdef __cplusplus
}
#endif
