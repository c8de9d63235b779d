// Uses the platform as the module does, every name once: what does not compile is missing from the headers, what does
// not link is missing from the libraries.
#include <cstddef>
#include <map>
#include <string>
#include <type_traits>

#include "DestinationIdCorrelator.h"
#include "HalEncapsulationTypes.h"
#include "HalL3MplsEncapsulationInterface.h"
#include "bcm/error.h"
#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/EgressManager.h"
#include "hal/HalBcmCommon.h"
#include "hal/HalCallbacksItf.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/HwObject.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"
#include "hal/MyStationManager.h"
#include "hal/TunnelObject.h"
#include "hal/fm.h"
#include "hal/limid.h"

static_assert(sizeof(limid_t) == 4 && std::is_trivially_copyable<limid_t>::value, "limid_t has to be one 32-bit word");
static_assert(sizeof(DestinationIdCorrelator) == 12, "DestinationIdCorrelator has to be three 32-bit words");
static_assert(!std::is_polymorphic<HalBcmCommon>::value,
              "HalBcmCommon may have no virtual function: it begins with unit");
static_assert(offsetof(HalBcmCommon, unit) == 0 && std::is_same<decltype(HalBcmCommon::unit), int>::value,
              "HalBcmCommon has to begin with `int unit`");
static_assert(std::is_same<decltype(HalBcmCommon::port_table), std::map<limid_t, int, LimIdLess>>::value &&
                  std::is_same<decltype(HalBcmCommon::lag_table), std::map<limid_t, int, LimIdLess>>::value,
              "HalBcmCommon's port_table and lag_table have to be std::map<limid_t, int, LimIdLess>");
static_assert(
    std::is_same<decltype(HalBcmCommon::destination_id_correlators), std::map<int, DestinationIdCorrelator&>>::value,
    "HalBcmCommon's destination_id_correlators has to be std::map<int, DestinationIdCorrelator&>");
static_assert(bcmSwitchL3EgressMode == 230 && bcmSwitchL3IngressMode == 232,
              "the switch controls have to be those of the SDK release that the module is built for");
static_assert(BCM_E_NONE == 0 && BCM_E_NOT_FOUND == -7 && BCM_E_UNAVAIL == -16 && BCM_E_PORT == -18,
              "the SDK's status codes have to be the known ones");
static_assert(EXP_LABEL_CONTROL_NONE == 0 && EXP_LABEL_CONTROL_SWAP == 1 && EXP_LABEL_CONTROL_VC == 2 &&
                  TunnelObject::kTunnelTypeMpls == 1,
              "the common library's enumerators have to be the known ones");

int Probe(unsigned char* mac, limid_t limid, unsigned vrf, TunnelObject::EnumTunnelType type,
          en_HalMplsCapabilities capability) {
  HalBcmCommon& common = *HalBcmCommon::GetInstance();
  const int unit = common.unit;
  int rv = common.GetMplsExpMapId();
  static_cast<void>(common.port_table.find(limid));
  static_cast<void>(common.lag_table.find(limid));
  HalCallbacksItf::getInstance()->log(7, "%s", _shr_errmsg[0]);

  bcm_mpls_egress_label_t label;
  bcm_mpls_egress_label_t_init(&label);
  label.flags = BCM_MPLS_EGRESS_LABEL_TTL_SET | BCM_MPLS_EGRESS_LABEL_EXP_REMARK;
  label.label = label.exp = label.ttl = 0;
  label.qos_map_id = rv;
  rv += bcm_switch_control_set(unit, bcmSwitchL3EgressMode, 1);
  rv += bcm_switch_control_set(unit, bcmSwitchL3IngressMode, 1);
  rv += bcm_mpls_tunnel_initiator_set(unit, 1, 1, &label) + bcm_mpls_tunnel_initiator_clear(unit, 1);

  rv += fm_init();
  const fm_vlan_proto_ctrl_t enable = fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_local_slot());
  const fm_vlan_proto_ctrl_t disable = fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_local_slot());
  const auto vlan_id = static_cast<unsigned short>(limid_to_l3_vlan_vlanid(limid));
  rv += enable(unit, vlan_id) + disable(unit, vlan_id);

  unsigned char limid_type = 0;
  unsigned int ifindex = 0;
  char name[64];
  limid_to_type(limid, &limid_type);
  limid_to_ifindex(limid, &ifindex);
  limid_to_intfname(limid, name, sizeof(name));
  rv += limid_is_from_type(limid, limid_type_cpuport) + limid_is_from_type(limid, limid_type_lag);
  rv += limid_is_from_type_ethernet(limid);

  HwEncapsulationResourceManager& manager = *HwEncapsulationResourceManager::GetInstance();
  std::string text = manager.ToString(true) + TunnelObject::TunnelTypeToString(type);

  IntfManager& intfs = *manager.intf_mng();
  IntfObject* intf = nullptr;
  rv += intfs.CreateIntf(unit, vrf, vlan_id, mac, 1500, 0) + intfs.UpdateIntf(1, unit, vrf, vlan_id, mac, 1500, 0);
  rv += intfs.DeleteIntf(unit, 1) + (intfs.GetIntfObject(1, &intf) ? 0 : 1);
  const IntfObject& seen = *intf;
  MacAddress own_mac = seen.macsa();
  unsigned char* const own_bytes = own_mac.data();
  text += seen.ToString(true);
  rv += seen.id() + static_cast<int>(seen.vrf() + seen.mtu() + seen.l3_flags() + seen.vlan_id() + own_bytes[5]);
  intf->tunnel().set_type(TunnelObject::kTunnelTypeMpls);
  intf->tunnel().set_ttl(255);
  intf->tunnel().set_mpls_capability(capability);
  rv += intf->tunnel().type() == type;

  EgressManager& egresses = *manager.egress_mng();
  rv += egresses.CreateEgress(1, mac, vlan_id, unit, 1, 100u, false, true, EXP_LABEL_CONTROL_SWAP);
  rv += egresses.UpdateEgress(1, 1, mac, vlan_id, unit, 1, 100u, false, true, EXP_LABEL_CONTROL_VC);
  rv += egresses.DeleteEgress(1);

  IngressManager& ingresses = *manager.ingress_mng();
  rv += ingresses.CreateIngress(unit, vrf, 0) + ingresses.DeleteIngress(unit, vrf);
  rv += ingresses.AssociateVlanToVrf(vlan_id, vrf) + ingresses.DissociateVlanfromVrf(vlan_id, vrf);

  MyStationManager& stations = *manager.my_station_mng();
  const unsigned char* const station_mac = mac;
  rv += stations.InsertMyStationVlanEntry(vlan_id, 4095, station_mac, 0);
  rv += stations.UpdateMyStationVlanEntry(vlan_id, 4095, station_mac, 0) + stations.RemoveMyStationVlanEntry(vlan_id);
  return rv + static_cast<int>(text.size());
}
