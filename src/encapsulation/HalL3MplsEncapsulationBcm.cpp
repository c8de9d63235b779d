#include "HalL3MplsEncapsulationBcm.h"

#include <cstdint>

#include "LogText.h"
#include "bcm/error.h"
#include "bcm/switch.h"
#include "hal/HalCallbacksItf.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/fm.h"

namespace {

/// The SDK's text for a status.
const char* StatusText(int rv) {
  constexpr int kUnknown = 19;
  return _shr_errmsg[rv <= BCM_E_NONE && rv >= BCM_E_PORT ? -rv : kUnknown];
}

}  // namespace

HalL3MplsEncapsulationInterface::~HalL3MplsEncapsulationInterface() = default;

HalL3MplsEncapsulationInterface* HalL3MplsEncapsulationInterface::GetInstance() {
  return HalL3MplsEncapsulationBcm::GetInstance();
}

HalL3MplsEncapsulationBcm* HalL3MplsEncapsulationBcm::instance_ = nullptr;

HalL3MplsEncapsulationBcm* HalL3MplsEncapsulationBcm::GetInstance() {
  if (instance_ == nullptr) instance_ = new HalL3MplsEncapsulationBcm();
  return instance_;
}

HalL3MplsEncapsulationBcm::HalL3MplsEncapsulationBcm() {
  fm_init();
  // A chip that refuses the modes shows in the log only: the module exists regardless.
  HalL3MplsEncapsulationBcm::InitEncapsulationModule();
}

int HalL3MplsEncapsulationBcm::InitEncapsulationModule() const {
  const int egress_rv = bcm_switch_control_set(unit(), bcmSwitchL3EgressMode, 1);
  if (egress_rv < 0) {
    HalCallbacksItf::getInstance()->log(kFailure,
                                        "Could not init encapsulation module L3 egress mode: bcm_err='%s' [%d]",
                                        StatusText(egress_rv), egress_rv);
  }
  const int ingress_rv = bcm_switch_control_set(unit(), bcmSwitchL3IngressMode, 1);
  if (ingress_rv < 0) {
    HalCallbacksItf::getInstance()->log(kFailure,
                                        "Could not init encapsulation module L3 ingress mode: bcm_err='%s' [%d]",
                                        StatusText(ingress_rv), ingress_rv);
  }
  if (egress_rv < 0 || ingress_rv < 0) return -1;
  HalCallbacksItf::getInstance()->log(kProgress, "Encapsulation module initialized successfully");
  return 0;
}

int HalL3MplsEncapsulationBcm::InstallVrf(unsigned int vrf) const {
  return resource_manager_->ingress_mng()->CreateIngress(unit(), vrf, 0);
}

int HalL3MplsEncapsulationBcm::DestroyVrf(unsigned int vrf) const {
  return resource_manager_->ingress_mng()->DeleteIngress(unit(), vrf);
}

std::string HalL3MplsEncapsulationBcm::ToString(bool deep) const {
  // The singleton's address, whichever object is asked.
  const auto address = reinterpret_cast<std::uintptr_t>(GetInstance());
  std::string text = "HalL3MplsEncapsulationBcm(this=";
  text += ToHexString<unsigned int>(static_cast<unsigned int>(address), 8);
  text += ")";
  if (deep) {
    text += ": ";
    text += resource_manager_->ToString(true);
  }
  return text;
}

IntfObject* HalL3MplsEncapsulationBcm::FindIntf(int intf_id) const {
  IntfObject* intf_object = nullptr;
  return resource_manager_->intf_mng()->GetIntfObject(intf_id, &intf_object) ? intf_object : nullptr;
}
