#ifndef HAL_ENCAPSULATION_TYPES_H
#define HAL_ENCAPSULATION_TYPES_H

/// @file
/// The enumerations that callers pass. Callers send them as numbers: a value outside the enumerators is a defined
/// value that the module treats as the operation's comment says.

/// What an MPLS encapsulation does with the label stack of the packets that leave through it.
enum en_HalMplsCapabilities : int {
  HAL_MPLS_CAPABILITY_NONE = 0,
  HAL_MPLS_CAPABILITY_PROTECTION = 1,  ///< not available; ignored with a notice
  HAL_MPLS_CAPABILITY_SWAP = 2,        ///< first label swapped in; a second label is pushed as the tunnel's
  HAL_MPLS_CAPABILITY_FORWARD = 3,     ///< through a tunnel interface that pushes nothing
  HAL_MPLS_CAPABILITY_PUSH = 4,        ///< one or two labels pushed
  HAL_MPLS_CAPABILITY_VC_LABEL = 5,    ///< first label pushed as the virtual circuit's
};

/// Properties of a VLAN encapsulation.
enum en_HalVlanCapabilities : int {
  HAL_VLAN_CAPABILITY_NONE = 0,
  /// The VLAN's my-station entry is written with flag 0x20; what the flag turns on is the platform's to define.
  HAL_VLAN_CAPABILITY_STATION_FLAG = 1,
};

/// What happens to packets instead of being sent through the port.
enum ActionFlags : int {
  HAL_ACTION_NONE = 0,
  HAL_ACTION_DROP = 1,    ///< dropped
  HAL_ACTION_TO_CPU = 2,  ///< sent to the CPU; MPLS encapsulations refuse it
};

#endif
