#include "bench/BareSequences.h"

#include <string>

#include "bcm/mpls.h"
#include "bench/Values.h"
#include "hal/EgressManager.h"
#include "hal/HalBcmCommon.h"
#include "hal/HalCallbacksItf.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"
#include "hal/MyStationManager.h"
#include "hal/fm.h"

void BareSequence::MakeRecord(unsigned int destination_id, int intf_id, int egress_id) const {
  const auto id = static_cast<int>(destination_id);
  auto* const record = new DestinationIdCorrelator{id, intf_id, egress_id};
  HalBcmCommon::GetInstance()->destination_id_correlators.emplace_hint(*place_++, id, *record);
}

void BareSequence::EraseRecord() const {
  const Correlators::iterator place = *place_++;
  delete &place->second;
  HalBcmCommon::GetInstance()->destination_id_correlators.erase(place);
}

namespace {

constexpr char kDestinationText[] = "destination id(1002)";
constexpr char kLimIdText[] = "lim id(name=, type=0x00, value=0x000000)";
constexpr char kMissText[] = "Couldn't find DestinationIdCorrelator with %s";
constexpr int kIntf = 1;
constexpr int kEgress = 2;
constexpr unsigned int kVlanMask = 4095;
constexpr unsigned int kNoLabel = 0xFFFFFFFF;

HalBcmCommon* const common = HalBcmCommon::GetInstance();
HwEncapsulationResourceManager* const resources = HwEncapsulationResourceManager::GetInstance();

template <typename... Arguments>
void Log(int level, const char* format, Arguments... arguments) {
  HalCallbacksItf::getInstance()->log(level, format, arguments...);
}

IntfObject* FindIntf(int intf_id) {
  IntfObject* intf;
  resources->intf_mng()->GetIntfObject(intf_id, &intf);
  return intf;
}

void ResolvePort() {
  unsigned char type;
  limid_to_type(kPortLimId, &type);
  unsigned int ifindex;
  limid_to_ifindex(kPortLimId, &ifindex);
  char name[64];
  limid_to_intfname(kPortLimId, name, sizeof(name));
  const std::string text(kLimIdText);
  Log(7, "Converting %s to port", text.c_str());
  limid_is_from_type(kPortLimId, limid_type_cpuport);
  limid_is_from_type_ethernet(kPortLimId);
}

class Vlan : public BareSequence {
 public:
  int InstallVlanOutgoingEncapsulation(unsigned int destination_id, limid_t limid, unsigned int vrf, unsigned int mtu,
                                       unsigned char* mac, std::vector<en_HalVlanCapabilities>) const override {
    Log(7, "Installing outgoing encapsulation for VLAN %s", kDestinationText);
    const unsigned int vlan_id = limid_to_l3_vlan_vlanid(limid);
    const auto enable = fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_local_slot());
    enable(common->unit, static_cast<unsigned short>(vlan_id));
    resources->my_station_mng()->InsertMyStationVlanEntry(vlan_id, kVlanMask, mac, 0);
    resources->ingress_mng()->AssociateVlanToVrf(vlan_id, vrf);
    const int intf_id = resources->intf_mng()->CreateIntf(common->unit, vrf, vlan_id, mac, mtu, 0);
    MakeRecord(destination_id, intf_id, 0);
    return 0;
  }

  int ReplaceVlanOutgoingEncapsulation(unsigned int, limid_t limid, unsigned int vrf, unsigned int mtu,
                                       unsigned char* mac, std::vector<en_HalVlanCapabilities>) const override {
    Log(7, "Updating outgoing encapsulation for vlan %s", kDestinationText);
    const int intf_id = NextRecord().intf_id;
    const unsigned int vlan_id = limid_to_l3_vlan_vlanid(limid);
    resources->my_station_mng()->UpdateMyStationVlanEntry(vlan_id, kVlanMask, mac, 0);
    FindIntf(intf_id)->vrf();
    resources->intf_mng()->UpdateIntf(intf_id, common->unit, vrf, vlan_id, mac, mtu, 0);
    return 0;
  }

  int DestroyVlanOutgoingEncapsulation(unsigned int) const override {
    Log(7, "Destroying outgoing encapsulation for vlan %s", kDestinationText);
    const IntfObject* const intf = FindIntf(kIntf);
    resources->my_station_mng()->RemoveMyStationVlanEntry(intf->vlan_id());
    const unsigned int vlan_id = intf->vlan_id();
    IngressManager* const ingress = resources->ingress_mng();
    const unsigned int associated_vlan_id = intf->vlan_id();
    ingress->DissociateVlanfromVrf(associated_vlan_id, intf->vrf());
    resources->intf_mng()->DeleteIntf(common->unit, kIntf);
    const auto disable = fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_local_slot());
    disable(common->unit, static_cast<unsigned short>(vlan_id));
    EraseRecord();
    return 0;
  }
};

class Host : public BareSequence {
 public:
  int InstallHostOutgoingEncapsulation(unsigned int destination_id, unsigned int, limid_t, std::vector<ActionFlags>,
                                       unsigned char* mac) const override {
    Log(7, "Installing outgoing encapsulation for host %s", kDestinationText);
    Log(3, kMissText, kDestinationText);
    const auto vlan_id = static_cast<unsigned short>(FindIntf(kIntf)->vlan_id());
    ResolvePort();
    const int egress_id = resources->egress_mng()->CreateEgress(kIntf, mac, vlan_id, common->unit, kPort, kNoLabel,
                                                                false, false, EXP_LABEL_CONTROL_NONE);
    MakeRecord(destination_id, kIntf, egress_id);
    return 0;
  }

  int ReplaceHostOutgoingEncapsulation(unsigned int, unsigned int, limid_t, std::vector<ActionFlags>,
                                       unsigned char* mac) const override {
    Log(7, "Updating outgoing encapsulation for host %s", kDestinationText);
    const auto vlan_id = static_cast<unsigned short>(FindIntf(kIntf)->vlan_id());
    ResolvePort();
    DestinationIdCorrelator& record = NextRecord();
    resources->egress_mng()->UpdateEgress(record.egress_id, kIntf, mac, vlan_id, common->unit, kPort, kNoLabel, false,
                                          false, EXP_LABEL_CONTROL_NONE);
    record.intf_id = kIntf;
    return 0;
  }

  int DestroyHostOutgoingEncapsulation(unsigned int) const override {
    Log(7, "Destroying outgoing encapsulation for host %s", kDestinationText);
    resources->egress_mng()->DeleteEgress(kEgress);
    EraseRecord();
    return 0;
  }
};

/// What the interface's check of the vectors takes: both by value.
__attribute__((noinline)) void TakeCopies(std::vector<unsigned int> labels,
                                          std::vector<en_HalMplsCapabilities> capabilities) {
  asm volatile("" ::"r"(labels.data()), "r"(capabilities.data()) : "memory");
}

// The four kinds of tunnel, as a MPLS sequence needs them.

template <int kLabels>
void SetInitiator(en_HalMplsCapabilities capability, const char* capability_text, int labels_size) {
  Log(7, "%s - %s, labels size is %d", "FillMplsLabels", capability_text, labels_size);
  const int exp_map_id = common->GetMplsExpMapId();
  bcm_mpls_egress_label_t labels[2];
  bcm_mpls_egress_label_t_init(&labels[0]);
  bcm_mpls_egress_label_t_init(&labels[1]);
  labels[0].flags = BCM_MPLS_EGRESS_LABEL_TTL_SET;
  labels[0].ttl = 255;
  if (capability == HAL_MPLS_CAPABILITY_PUSH) {
    Log(7, "Tunnel Label 0 is %d", kLabels == 2 ? kSecondLabel : 0);
    labels[0].label = kFirstLabel;
    labels[0].flags |= BCM_MPLS_EGRESS_LABEL_EXP_REMARK;
    labels[0].qos_map_id = exp_map_id;
  } else if (kLabels == 1) {
    Log(7, "Tunnel Label 0 is %d", kSecondLabel);
    labels[0].label = kSecondLabel;
  }
  if (kLabels == 2) {
    Log(7, "Tunnel Label 1 is %d", kSecondLabel);
    labels[1] = {BCM_MPLS_EGRESS_LABEL_TTL_SET | BCM_MPLS_EGRESS_LABEL_EXP_REMARK, kSecondLabel, exp_map_id, 0, 255};
  }
  IntfObject* const intf = FindIntf(kIntf);
  intf->tunnel().set_ttl(255);
  intf->tunnel().set_type(TunnelObject::kTunnelTypeMpls);
  intf->tunnel().set_mpls_capability(capability);
  bcm_mpls_tunnel_initiator_set(common->unit, kIntf, kLabels, labels);
}

int CreateIntf(const IntfObject& base) {
  IntfManager* const intf_mng = resources->intf_mng();
  const unsigned int vrf = base.vrf();
  const unsigned int vlan_id = base.vlan_id();
  MacAddress mac = base.macsa();
  const unsigned int mtu = base.mtu();
  return intf_mng->CreateIntf(common->unit, vrf, vlan_id, mac.data(), mtu, 0);
}

int UpdateIntf(int intf_id, const IntfObject& base) {
  IntfManager* const intf_mng = resources->intf_mng();
  const unsigned int vrf = base.vrf();
  const unsigned int vlan_id = base.vlan_id();
  MacAddress mac = base.macsa();
  const unsigned int mtu = base.mtu();
  return intf_mng->UpdateIntf(intf_id, common->unit, vrf, vlan_id, mac.data(), mtu, 0);
}

int CreateEgress(int intf_id, unsigned char* mac, const IntfObject& base, unsigned int label, ExpLabelControl control) {
  return resources->egress_mng()->CreateEgress(intf_id, mac, static_cast<unsigned short>(base.vlan_id()), common->unit,
                                               kPort, label, false, false, control);
}

void UpdateEgress(int egress_id, int intf_id, unsigned char* mac, const IntfObject& base, unsigned int label,
                  ExpLabelControl control) {
  resources->egress_mng()->UpdateEgress(egress_id, intf_id, mac, static_cast<unsigned short>(base.vlan_id()),
                                        common->unit, kPort, label, false, false, control);
}

template <int kLabels>
struct ForwardPush {
  static constexpr bool kHasIntf = true;
  static constexpr bool kIsTunnelIntf = true;
  static constexpr en_HalMplsCapabilities kCapability =
      kLabels == 0 ? HAL_MPLS_CAPABILITY_FORWARD : HAL_MPLS_CAPABILITY_PUSH;
  static constexpr const char* kText = kLabels == 0 ? "MPLS Capability(Forward)" : "MPLS Capability(Push)";

  static void Install(const IntfObject& base, unsigned char* mac, int* intf_id, int* egress_id) {
    Log(7, "Installing tunnel outgoing encapsulation for %s", kText);
    *intf_id = CreateIntf(base);
    SetInitiator<kLabels>(kCapability, kText, kLabels);
    *egress_id = CreateEgress(*intf_id, mac, base, kNoLabel, EXP_LABEL_CONTROL_NONE);
  }

  static void Replace(const IntfObject& base, unsigned char* mac, int* intf_id, int egress_id) {
    Log(7, "Updating tunnel outgoing encapsulation for %s.", kText);
    bcm_mpls_tunnel_initiator_clear(common->unit, *intf_id);
    *intf_id = UpdateIntf(*intf_id, base);
    SetInitiator<kLabels>(kCapability, kText, kLabels);
    UpdateEgress(egress_id, *intf_id, mac, base, 0, EXP_LABEL_CONTROL_NONE);
  }
};

constexpr char kSwapText[] = "MPLS Capability(Swap)";

template <bool kIntoTunnel>
struct Swap {
  static constexpr bool kHasIntf = true;
  static constexpr bool kIsTunnelIntf = kIntoTunnel;

  static void Install(const IntfObject& base, unsigned char* mac, int* intf_id, int* egress_id) {
    Log(7, "Installing tunnel outgoing encapsulation for %s", kSwapText);
    if (kIntoTunnel) {
      *intf_id = CreateIntf(base);
      SetInitiator<1>(HAL_MPLS_CAPABILITY_SWAP, kSwapText, 2);
    }
    *egress_id = CreateEgress(*intf_id, mac, base, kFirstLabel, EXP_LABEL_CONTROL_SWAP);
  }

  static void Replace(const IntfObject& base, unsigned char* mac, int* intf_id, int egress_id) {
    Log(7, "Updating tunnel outgoing encapsulation for %s. Old tunnel type is %s and labels size is %d", kSwapText,
        TunnelObject::TunnelTypeToString(kIntoTunnel ? TunnelObject::kTunnelTypeMpls : TunnelObject::kTunnelTypeNone)
            .c_str(),
        kIntoTunnel ? 2 : 1);
    if (kIntoTunnel) {
      bcm_mpls_tunnel_initiator_clear(common->unit, *intf_id);
      *intf_id = UpdateIntf(*intf_id, base);
      SetInitiator<1>(HAL_MPLS_CAPABILITY_SWAP, kSwapText, 2);
    } else {
      base.id();
    }
    UpdateEgress(egress_id, *intf_id, mac, base, kFirstLabel, EXP_LABEL_CONTROL_SWAP);
  }
};

struct VcLabel {
  static constexpr bool kHasIntf = false;
  static constexpr bool kIsTunnelIntf = false;
  static constexpr const char* kText = "MPLS Capability(VCLabel)";

  static void Install(const IntfObject& base, unsigned char* mac, int* intf_id, int* egress_id) {
    Log(7, "Installing tunnel outgoing encapsulation for %s: %d (Total labels informed: %d)", kText, kFirstLabel, 1);
    EgressManager* const egress_mng = resources->egress_mng();
    const int base_intf_id = base.id();
    const auto vlan_id = static_cast<unsigned short>(base.vlan_id());
    *egress_id = egress_mng->CreateEgress(base_intf_id, mac, vlan_id, common->unit, kPort, kFirstLabel, false, false,
                                          EXP_LABEL_CONTROL_VC);
    *intf_id = -1;
  }

  static void Replace(const IntfObject& base, unsigned char* mac, int*, int egress_id) {
    Log(7, "Updating tunnel outgoing encapsulation for %s: %d (Total labels informed: %d)", kText, kFirstLabel, 1);
    EgressManager* const egress_mng = resources->egress_mng();
    const int intf_id = base.id();
    const auto vlan_id = static_cast<unsigned short>(base.vlan_id());
    egress_mng->UpdateEgress(egress_id, intf_id, mac, vlan_id, common->unit, kPort, kFirstLabel, false, false,
                             EXP_LABEL_CONTROL_VC);
  }
};

template <typename Tunnel>
class Mpls : public BareSequence {
 public:
  int InstallMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id, unsigned int, limid_t,
                                                  unsigned char* mac, std::vector<unsigned int> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags) const override {
    Log(7, "Installing outgoing encapsulation for mpls %s", kDestinationText);
    TakeCopies(labels, capabilities);
    Log(3, kMissText, kDestinationText);
    const IntfObject* const base = FindIntf(kIntf);
    ResolvePort();
    int intf_id = kIntf;
    int egress_id;
    Tunnel::Install(*base, mac, &intf_id, &egress_id);
    MakeRecord(destination_id, intf_id, egress_id);
    return 0;
  }

  int ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned int, unsigned int, limid_t, unsigned char* mac,
                                                  std::vector<unsigned int> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags) const override {
    Log(7, "Updating outgoing encapsulation for mpls %s", kDestinationText);
    TakeCopies(labels, capabilities);
    DestinationIdCorrelator& record = NextRecord();
    IntfObject* own = nullptr;
    if (Tunnel::kHasIntf) {
      own = FindIntf(kIntf);
      Log(6, "Mpls Intf Object: %s", own->ToString(true).c_str());
    }
    const IntfObject* const base = FindIntf(kIntf);
    Log(6, "Vlan Intf Object: %s", base->ToString(true).c_str());
    ResolvePort();
    if (kIsSwap) own->tunnel().type();
    Tunnel::Replace(*base, mac, &record.intf_id, record.egress_id);
    return 0;
  }

  int DestroyMplsUnprotectedOutgoingEncapsulation(unsigned int) const override {
    Log(7, "Destroying outgoing encapsulation for mpls %s", kDestinationText);
    resources->egress_mng()->DeleteEgress(kEgress);
    if (Tunnel::kHasIntf) {
      IntfObject* const own = FindIntf(kIntf);
      own->tunnel().type();
      if (Tunnel::kIsTunnelIntf) {
        bcm_mpls_tunnel_initiator_clear(common->unit, kIntf);
        Log(7, "Destroying %s", own->ToString(true).c_str());
        resources->intf_mng()->DeleteIntf(common->unit, kIntf);
      }
    }
    EraseRecord();
    return 0;
  }

 private:
  static constexpr bool kIsSwap = std::is_same<Tunnel, Swap<false>>::value || std::is_same<Tunnel, Swap<true>>::value;
};

template <typename Sequence>
BareSequence* Instance() {
  static Sequence sequence;
  return &sequence;
}

}  // namespace

BareSequence* BareVlan() { return Instance<Vlan>(); }
BareSequence* BareHost() { return Instance<Host>(); }
BareSequence* BarePush1() { return Instance<Mpls<ForwardPush<1>>>(); }
BareSequence* BarePush2() { return Instance<Mpls<ForwardPush<2>>>(); }
BareSequence* BareSwap() { return Instance<Mpls<Swap<false>>>(); }
BareSequence* BareSwapIntoTunnel() { return Instance<Mpls<Swap<true>>>(); }
BareSequence* BareForward() { return Instance<Mpls<ForwardPush<0>>>(); }
BareSequence* BareVcLabel() { return Instance<Mpls<VcLabel>>(); }
