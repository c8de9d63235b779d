#include "HalL3MplsEncapsulationUpd.h"

#include <utility>
#include <vector>

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
  auto client = std::make_shared<Callback>(std::move(callback));
  std::shared_ptr<Callback>& registered = clients_[name];
  if (registered != nullptr) {
    HalCallbacksItf::getInstance()->log(kProgress, "Client %s already registered, remove old one!", name.c_str());
    registered = nullptr;
  }
  registered = std::move(client);
}

void HalL3MplsEncapsulationUpd::ExecuteMplsUpdate(int destination_id, unsigned int port) const {
  // A client may register clients, itself included, from inside its callback: those of now are called.
  std::vector<std::pair<std::string, std::shared_ptr<Callback>>> clients(clients_.begin(), clients_.end());
  for (auto& [name, callback] : clients) {
    if (callback != nullptr && *callback) {
      HalCallbacksItf::getInstance()->log(kProgress, "Calling callback for client %s.", name.c_str());
      (*callback)(destination_id, port);
    }
    callback = nullptr;
  }
}

}  // namespace hal_encap
