#include "HalL3MplsEncapsulationUpd.h"

#include <utility>

#include "../encapsulation/LogText.h"
#include "hal/HalCallbacksItf.h"

namespace hal_encap {

HalL3MplsEncapsulationUpdItf::~HalL3MplsEncapsulationUpdItf() = default;

HalL3MplsEncapsulationUpdItf* HalL3MplsEncapsulationUpdItf::GetInstance() {
  return HalL3MplsEncapsulationUpd::GetInstance();
}

HalL3MplsEncapsulationUpd* HalL3MplsEncapsulationUpd::GetInstance() {
  static HalL3MplsEncapsulationUpd instance;
  return &instance;
}

void HalL3MplsEncapsulationUpd::RegisterMplsUpdateClient(const std::string& name,
                                                         std::function<void(int, unsigned int)>&& callback) {
  const auto existing = clients_.find(name);
  if (existing != clients_.end()) {
    HalCallbacksItf::getInstance()->log(kProgress, "Client %s already registered, remove old one!", name.c_str());
    clients_.erase(existing);
  }
  clients_.emplace(name, std::move(callback));
}

void HalL3MplsEncapsulationUpd::ExecuteMplsUpdate(int destination_id, unsigned int port) const {
  // Over a copy: a client may register clients, itself included, from inside its callback.
  const auto clients = clients_;
  for (const auto& [name, callback] : clients) {
    if (callback) {
      HalCallbacksItf::getInstance()->log(kProgress, "Calling callback for client %s.", name.c_str());
      callback(destination_id, port);
    }
  }
}

}  // namespace hal_encap
