#ifndef HAL_LIMID_H
#define HAL_LIMID_H

#include <stddef.h>
#include <stdint.h>

#pragma GCC visibility push(default)
extern "C" {

/// A lim id names a port, LAG, CPU port or VLAN interface of the card. Passed by value; only the functions below look
/// inside.
typedef struct limid_s {
  uint32_t word;
} limid_t;

/// Kinds of lim id.
typedef enum limid_type_e : int {
  limid_type_unknown = 0,
  limid_type_ethernet = 1,
  limid_type_lag = 2,
  limid_type_cpuport = 3,
  limid_type_l3_vlan = 4,
} limid_type_t;

/// The three decoders write through the pointer on success only. 0 on success, a negative SDK code otherwise.
int limid_to_type(limid_t limid, unsigned char* type);
int limid_to_ifindex(limid_t limid, unsigned int* ifindex);
/// Writes at most `size` bytes, the closing NUL included; what it leaves behind the NUL is not to be read.
int limid_to_intfname(limid_t limid, char* name, size_t size);

/// Nonzero when the lim id is of that kind.
int limid_is_from_type(limid_t limid, limid_type_t type);
int limid_is_from_type_ethernet(limid_t limid);

/// The VLAN id of a VLAN interface's lim id.
unsigned int limid_to_l3_vlan_vlanid(limid_t limid);
}
#pragma GCC visibility pop

#endif
