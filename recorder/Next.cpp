#include "recorder/Next.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#if _GLIBCXX_USE_CXX11_ABI
#define TEXT_RESULT "B5cxx11"
#else
#define TEXT_RESULT ""
#endif

namespace recorder {

void* the_next[kFunctionCount];

namespace {

struct Symbol {
  int index;
  const char* name;
};

/// How the linker calls the classes' members. C functions are called as they are described.
constexpr Symbol kSymbols[] = {
    {calls::Named("HalBcmCommon::GetMplsExpMapId"), "_ZN12HalBcmCommon15GetMplsExpMapIdEv"},
    {calls::Named("IngressManager::CreateIngress"), "_ZN14IngressManager13CreateIngressEijj"},
    {calls::Named("IngressManager::DeleteIngress"), "_ZN14IngressManager13DeleteIngressEij"},
    {calls::Named("IngressManager::AssociateVlanToVrf"), "_ZN14IngressManager18AssociateVlanToVrfEij"},
    {calls::Named("IngressManager::DissociateVlanfromVrf"), "_ZN14IngressManager21DissociateVlanfromVrfEij"},
    {calls::Named("MyStationManager::InsertMyStationVlanEntry"),
     "_ZN16MyStationManager24InsertMyStationVlanEntryEjjPKhj"},
    {calls::Named("MyStationManager::UpdateMyStationVlanEntry"),
     "_ZN16MyStationManager24UpdateMyStationVlanEntryEjjPKhj"},
    {calls::Named("MyStationManager::RemoveMyStationVlanEntry"), "_ZN16MyStationManager24RemoveMyStationVlanEntryEj"},
    {calls::Named("IntfManager::CreateIntf"), "_ZN11IntfManager10CreateIntfEjijPhjj"},
    {calls::Named("IntfManager::UpdateIntf"), "_ZN11IntfManager10UpdateIntfEijijPhjj"},
    {calls::Named("IntfManager::DeleteIntf"), "_ZN11IntfManager10DeleteIntfEii"},
    {calls::Named("IntfManager::GetIntfObject"), "_ZN11IntfManager13GetIntfObjectEiPP10IntfObject"},
    {calls::Named("EgressManager::CreateEgress"), "_ZN13EgressManager12CreateEgressEiPhtiijbb15ExpLabelControl"},
    {calls::Named("EgressManager::UpdateEgress"), "_ZN13EgressManager12UpdateEgressEiiPhtiijbb15ExpLabelControl"},
    {calls::Named("EgressManager::DeleteEgress"), "_ZN13EgressManager12DeleteEgressEi"},
    {calls::Named("TunnelObject::set_ttl"), "_ZN12TunnelObject7set_ttlEj"},
    {calls::Named("TunnelObject::set_type"), "_ZN12TunnelObject8set_typeENS_14EnumTunnelTypeE"},
    {calls::Named("TunnelObject::set_mpls_capability"),
     "_ZN12TunnelObject19set_mpls_capabilityE22en_HalMplsCapabilities"},
    {calls::Named("HalCallbacksItf::getInstance"), "_ZN15HalCallbacksItf11getInstanceEv"},
    {calls::Named("HalBcmCommon::GetInstance"), "_ZN12HalBcmCommon11GetInstanceEv"},
    {calls::Named("HwEncapsulationResourceManager::GetInstance"), "_ZN30HwEncapsulationResourceManager11GetInstanceEv"},
    {calls::Named("HwEncapsulationResourceManager::ToString"),
     "_ZNK30HwEncapsulationResourceManager8ToString" TEXT_RESULT "Eb"},
    {calls::Named("HwEncapsulationResourceManager::intf_mng"), "_ZN30HwEncapsulationResourceManager8intf_mngEv"},
    {calls::Named("HwEncapsulationResourceManager::egress_mng"), "_ZN30HwEncapsulationResourceManager10egress_mngEv"},
    {calls::Named("HwEncapsulationResourceManager::ingress_mng"), "_ZN30HwEncapsulationResourceManager11ingress_mngEv"},
    {calls::Named("HwEncapsulationResourceManager::my_station_mng"),
     "_ZN30HwEncapsulationResourceManager14my_station_mngEv"},
    {calls::Named("HwObject::ToString"), "_ZNK8HwObject8ToString" TEXT_RESULT "Eb"},
    {calls::Named("HwObject::vlan_id"), "_ZNK8HwObject7vlan_idEv"},
    {calls::Named("IntfObject::ToString"), "_ZNK10IntfObject8ToString" TEXT_RESULT "Eb"},
    {calls::Named("IntfObject::id"), "_ZNK10IntfObject2idEv"},
    {calls::Named("IntfObject::vrf"), "_ZNK10IntfObject3vrfEv"},
    {calls::Named("IntfObject::macsa"), "_ZNK10IntfObject5macsaEv"},
    {calls::Named("IntfObject::mtu"), "_ZNK10IntfObject3mtuEv"},
    {calls::Named("IntfObject::l3_flags"), "_ZNK10IntfObject8l3_flagsEv"},
    {calls::Named("IntfObject::tunnel"), "_ZN10IntfObject6tunnelEv"},
    {calls::Named("TunnelObject::type"), "_ZNK12TunnelObject4typeEv"},
    {calls::Named("TunnelObject::TunnelTypeToString"),
     "_ZN12TunnelObject18TunnelTypeToString" TEXT_RESULT "ENS_14EnumTunnelTypeE"},
};

const char* SymbolOf(int index) {
  for (const Symbol& symbol : kSymbols) {
    if (symbol.index == index) return symbol.name;
  }
  return calls::kFunctions[index].name;
}

/// Handed out by the platform, not defined under its name.
bool IsHandedOut(int index) {
  return index == calls::Named("vlan_proto_ctrl_enable") || index == calls::Named("vlan_proto_ctrl_disable");
}

/// When the loader has loaded what the process is linked with: a platform that lacks a function is named before it is
/// used. One that is loaded later is looked for when the module starts.
__attribute__((constructor)) void AtLoad() { FindPlatform(); }

}  // namespace

bool FindPlatform() {
  std::string lacking;
  int found = 0;
  for (int i = 0; i < kFunctionCount; ++i) {
    if (IsHandedOut(i)) continue;
    if (!the_next[i]) the_next[i] = dlsym(RTLD_NEXT, SymbolOf(i));
    if (the_next[i]) {
      ++found;
    } else {
      lacking += std::string("  ") + calls::kFunctions[i].name + '\n';
    }
  }
  if (found > 0 && !lacking.empty()) {
    std::fprintf(
        stderr,
        "hal_card_recorder: the platform behind it does not define these functions as this recorder was built "
        "to call them; nothing is recorded. Load the library that defines them, or build the recorder for this "
        "card:\n%s",
        lacking.c_str());
  }
  return lacking.empty();
}

void* NextOf(int index) {
  the_next[index] = dlsym(RTLD_NEXT, SymbolOf(index));
  if (!the_next[index]) {
    std::fprintf(stderr, "hal_card_recorder: no library behind it defines %s\n", calls::kFunctions[index].name);
    std::abort();
  }
  return the_next[index];
}

void* NextEntry(const char* symbol) {
  void* const entry = dlsym(RTLD_NEXT, symbol);
  if (!entry) {
    std::fprintf(stderr, "hal_card_recorder: no library behind it defines the module's entry point %s\n", symbol);
    std::abort();
  }
  return entry;
}

}  // namespace recorder
