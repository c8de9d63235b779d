#ifndef HAL_L3_MPLS_ENCAPSULATION_BCM_H
#define HAL_L3_MPLS_ENCAPSULATION_BCM_H

#include <string>
#include <vector>

#include "DestinationIdCorrelator.h"
#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationPrintable.h"
#include "bcm/mpls.h"
#include "hal/HalBcmCommon.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IntfObject.h"
#include "hal/TunnelObject.h"

/// The module: programs the chip through the SDK and the card's common library.
///
/// One source file per subject holds the members declared here. The module keeps nothing about the chip but the
/// records of its destinations: the unit and the managers are asked for anew at each use, also within an operation.
class HalL3MplsEncapsulationBcm : public HalL3MplsEncapsulationInterface, public HalL3MplsEncapsulationPrintable {
 public:
  static HalL3MplsEncapsulationBcm* GetInstance();

  int InitEncapsulationModule() const override;
  int InstallVrf(unsigned int vrf) const override;
  int DestroyVrf(unsigned int vrf) const override;

  int InstallVlanOutgoingEncapsulation(unsigned int destination_id, limid_t limid, unsigned int vrf, unsigned int mtu,
                                       unsigned char* mac,
                                       std::vector<en_HalVlanCapabilities> capabilities) const override;
  int DestroyVlanOutgoingEncapsulation(unsigned int destination_id) const override;
  int ReplaceVlanOutgoingEncapsulation(unsigned int destination_id, limid_t limid, unsigned int vrf, unsigned int mtu,
                                       unsigned char* mac,
                                       std::vector<en_HalVlanCapabilities> capabilities) const override;

  int InstallHostOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id, limid_t limid,
                                       std::vector<ActionFlags> actions, unsigned char* mac) const override;
  int DestroyHostOutgoingEncapsulation(unsigned int destination_id) const override;
  int ReplaceHostOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id, limid_t limid,
                                       std::vector<ActionFlags> actions, unsigned char* mac) const override;

  int InstallMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id,
                                                  limid_t limid, unsigned char* mac, std::vector<unsigned int> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags action) const override;
  int DestroyMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id) const override;
  int ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id, unsigned int vlan_destination_id,
                                                  limid_t limid, unsigned char* mac, std::vector<unsigned int> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags action) const override;

  std::string ToString(bool deep) const override;

  // Port resolution.

  /// The chip port of a lim id; BCM_E_PORT when its kind has no port. Throws std::out_of_range for a port, LAG or CPU
  /// port that the card does not have.
  int GetPort(const limid_t& limid) const;

  // Label stack and tunnel initiator.

  /// Whether the request carries exactly one capability besides Protection, and labels where it needs them.
  bool CheckMplsVectorEntries(std::vector<unsigned int> labels, std::vector<en_HalMplsCapabilities> capabilities) const;
  /// Fills the two records from the labels; the number of records to hand to the chip, 0 to 2.
  int FillMplsLabels(en_HalMplsCapabilities capability, bcm_mpls_egress_label_t* label0,
                     bcm_mpls_egress_label_t* label1, std::vector<unsigned int> labels) const;
  /// An SDK status; BCM_E_NOT_FOUND, without a log line, for an unknown interface.
  int SetMplsTunnelInitiator(en_HalMplsCapabilities capability, int intf, std::vector<unsigned int> labels) const;
  /// An SDK status; BCM_E_UNAVAIL, without a log line, when the interface has no initiator.
  int ClearMplsTunnelInitiator(int intf) const;

  // Tunnels. `intf_object` is the interface to leave through; `*intf_id` and `*egress_id` are the tunnel's own, written
  // as soon as the platform returns them, also when negative. The installs undo what they made before they return
  // false; the replaces undo nothing unless they create an interface.

  bool InstallMplsVCTunnel(IntfObject* intf_object, int port, unsigned char* mac, std::vector<unsigned int> labels,
                           int* egress_id, bool drop) const;
  bool ReplaceMplsVCTunnel(IntfObject* intf_object, int port, unsigned char* mac, std::vector<unsigned int> labels,
                           int* egress_id, bool drop) const;
  bool InstallMplsSwapTunnel(IntfObject* intf_object, int port, unsigned char* mac, std::vector<unsigned int> labels,
                             int* intf_id, int* egress_id, bool drop) const;
  bool ReplaceMplsSwapTunnel(IntfObject* intf_object, TunnelObject::EnumTunnelType old_type, int port,
                             unsigned char* mac, std::vector<unsigned int> labels, int* intf_id, int* egress_id,
                             bool drop) const;
  bool InstallMplsForwardPushTunnel(en_HalMplsCapabilities capability, IntfObject* intf_object, int port,
                                    unsigned char* mac, std::vector<unsigned int> labels, int* intf_id, int* egress_id,
                                    bool drop) const;
  bool ReplaceMplsForwardPushTunnel(en_HalMplsCapabilities capability, IntfObject* intf_object, int port,
                                    unsigned char* mac, std::vector<unsigned int> labels, int* intf_id, int* egress_id,
                                    bool drop) const;

 private:
  HalL3MplsEncapsulationBcm();

  // Destination correlation.

  /// Refuses, and only logs, an id that has a record.
  void StoreDestinationIdCorrelator(DestinationIdCorrelator& correlator) const;
  bool GetDestinationIdCorrelator(int id, DestinationIdCorrelator** out) const;
  DestinationIdCorrelator* GetDestinationIdCorrelator(int id) const;
  /// Frees the record.
  void DeleteDestinationIdCorrelator(int id) const;
  /// Makes the record of a new destination and stores it.
  void RecordDestination(unsigned int destination_id, int intf_id, int egress_id) const;

  // What several subjects ask of the platform.

  int unit() const { return hal_bcm_common_->unit; }
  /// Null when the common library does not know the interface.
  IntfObject* FindIntf(int intf_id) const;
  enum class HostIntf { kFound, kNoVlanDestination, kNoIntf };
  /// The interface and VLAN that a host leaves through. `*intf_id` names the interface when that is what is missing.
  HostIntf FindHostIntf(unsigned int vlan_destination_id, int* intf_id, unsigned short* vlan_id) const;
  /// A tunnel's interface, a twin of `base` without flags: its id or a negative SDK code.
  int CreateTunnelIntf(const IntfObject& base) const;
  int UpdateTunnelIntf(int intf_id, const IntfObject& base) const;
  void DeleteIntf(int intf_id) const;
  // The VLAN id is asked of `vlan_id` when it is needed: of the interface to leave through, or of what was read of it.

  /// The install's steps. With fewer than two labels there is no tunnel, and `base` may be gone already.
  template <typename VlanId>
  bool InstallSwapTunnel(IntfObject* base, const VlanId& vlan_id, int port, unsigned char* mac,
                         std::vector<unsigned int>* labels, int* intf_id, int* egress_id, bool drop) const;
  /// An egress object that swaps `label` in: its id or a negative SDK code.
  template <typename VlanId>
  int CreateSwapEgress(int intf_id, unsigned char* mac, const VlanId& vlan_id, int port, unsigned int label,
                       bool drop) const;

  static HalL3MplsEncapsulationBcm* instance_;

  int mpls_ttl_ = 255;
  int vlan_mask_ = 4095;
  int invalid_intf_ = -1;
  HalBcmCommon* hal_bcm_common_ = HalBcmCommon::GetInstance();
  HwEncapsulationResourceManager* resource_manager_ = HwEncapsulationResourceManager::GetInstance();
};

#endif
