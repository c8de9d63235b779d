#ifndef HAL_L3_MPLS_ENCAPSULATION_INTERFACE_H
#define HAL_L3_MPLS_ENCAPSULATION_INTERFACE_H

#include <vector>

#include "HalEncapsulationTypes.h"
#include "hal/limid.h"

/// Installs, replaces and destroys outgoing encapsulations: how a routed packet leaves the switch chip.
///
/// Every encapsulation is named by a destination id that the caller chooses. A host or MPLS encapsulation leaves
/// through a VLAN encapsulation installed before, named by that one's destination id; nothing prevents the VLAN
/// encapsulation from being destroyed first.
///
/// - Results are 0 for success and -1 for failure unless an operation says otherwise; the reason is in the log.
/// - A MAC address is six bytes in transmission order, read during the call only and not checked here: the platform
///   refuses a null pointer.
/// - A lim id that is of a port's kind but unknown to the card raises std::out_of_range("HAL ID not found") from the
///   host and MPLS installs and replaces. Exceptions of update clients and of the standard library's allocations pass
///   through as well; the module throws nothing else.
/// - No operation may be called from two threads at a time. An update client may call any of them from its callback.
class __attribute__((visibility("default"))) HalL3MplsEncapsulationInterface {
 public:
  virtual ~HalL3MplsEncapsulationInterface();

  /// The module, created at the first call, which sets the chip up. Never null; owned by the library, never deleted.
  static HalL3MplsEncapsulationInterface* GetInstance();

  /// Sets the chip's L3 egress and ingress modes, as the first `GetInstance()` has done already. -1 when the chip
  /// refuses either; both are tried.
  virtual int InitEncapsulationModule() const = 0;

  /// Creates a VRF. Returns the platform's status unchanged: negative is an SDK code.
  virtual int InstallVrf(unsigned int vrf) const = 0;
  /// Deletes a VRF. Returns the platform's status unchanged: negative is an SDK code.
  virtual int DestroyVrf(unsigned int vrf) const = 0;

  /// Makes the router's L3 interface on a VLAN.
  /// @param destination_id the new encapsulation's id; installing an id twice makes a second set of chip objects and
  ///        keeps the first record
  /// @param limid the VLAN interface; gives the VLAN id
  /// @param vrf the VRF that frames for `mac` on this VLAN are routed in
  /// @param mtu in bytes
  /// @param mac the router's own address
  /// @param capabilities any number; only HAL_VLAN_CAPABILITY_STATION_FLAG has an effect
  virtual int InstallVlanOutgoingEncapsulation(unsigned int destination_id, limid_t limid, unsigned int vrf,
                                               unsigned int mtu, unsigned char* mac,
                                               std::vector<en_HalVlanCapabilities> capabilities) const = 0;
  /// Removes a VLAN encapsulation. After a failure it stays installed and the destroy can be tried again.
  virtual int DestroyVlanOutgoingEncapsulation(unsigned int destination_id) const = 0;
  /// Gives an installed VLAN encapsulation new values; the interface keeps its id. A failure undoes nothing.
  virtual int ReplaceVlanOutgoingEncapsulation(unsigned int destination_id, limid_t limid, unsigned int vrf,
                                               unsigned int mtu, unsigned char* mac,
                                               std::vector<en_HalVlanCapabilities> capabilities) const = 0;

  /// Makes the way to a directly attached next hop on a VLAN.
  /// @param destination_id the new encapsulation's id, not installed yet
  /// @param vlan_destination_id the VLAN encapsulation to leave through; 0: none
  /// @param limid the port, LAG or CPU port towards the host
  /// @param actions any number; drop and to-CPU have an effect
  /// @param mac the host's address
  virtual int InstallHostOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id,
                                               limid_t limid, std::vector<ActionFlags> actions,
                                               unsigned char* mac) const = 0;
  /// Removes a host encapsulation. One that is not installed is a success.
  virtual int DestroyHostOutgoingEncapsulation(unsigned int destination_id) const = 0;
  /// Gives a host encapsulation new values, or installs it when it is not there. A refusal by the platform returns
  /// the platform's negative SDK code.
  virtual int ReplaceHostOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id,
                                               limid_t limid, std::vector<ActionFlags> actions,
                                               unsigned char* mac) const = 0;

  /// Makes an MPLS tunnel on a VLAN.
  /// @param destination_id the new encapsulation's id, not installed yet
  /// @param vlan_destination_id the VLAN encapsulation to leave through
  /// @param limid the port, LAG or CPU port towards the next hop; must be known under HAL_ACTION_DROP too
  /// @param mac the next hop's address
  /// @param labels 20-bit values; 0 and 3 are no label in a pushed stack. The first is the innermost
  /// @param capabilities exactly one besides any number of HAL_MPLS_CAPABILITY_PROTECTION, which is ignored
  /// @param action HAL_ACTION_DROP drops; HAL_ACTION_TO_CPU is refused; any other value has no effect
  virtual int InstallMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id,
                                                          limid_t limid, unsigned char* mac,
                                                          std::vector<unsigned int> labels,
                                                          std::vector<en_HalMplsCapabilities> capabilities,
                                                          ActionFlags action) const = 0;
  /// Removes an MPLS encapsulation. Once it is found the result is 0, whatever the chip said.
  virtual int DestroyMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id) const = 0;
  /// Reprograms an installed MPLS encapsulation and tells the update clients when it is a forward or push tunnel.
  /// A failure undoes nothing and leaves the record as it was.
  virtual int ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id,
                                                          limid_t limid, unsigned char* mac,
                                                          std::vector<unsigned int> labels,
                                                          std::vector<en_HalMplsCapabilities> capabilities,
                                                          ActionFlags action) const = 0;
};

#endif
