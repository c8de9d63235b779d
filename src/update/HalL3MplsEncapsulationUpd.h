#ifndef HAL_L3_MPLS_ENCAPSULATION_UPD_H
#define HAL_L3_MPLS_ENCAPSULATION_UPD_H

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "HalL3MplsEncapsulationUpdItf.h"

namespace hal_encap {

/// The registry of update clients. Only its creation is safe between threads.
class HalL3MplsEncapsulationUpd : public HalL3MplsEncapsulationUpdItf {
 public:
  static HalL3MplsEncapsulationUpd* GetInstance();

  void RegisterMplsUpdateClient(const std::string& name, std::function<void(int, unsigned int)>&& callback) override;

  /// Calls every client that has a callback, in the order of their names: the callbacks that are registered when it
  /// begins, whatever they register themselves. What a client throws passes through.
  void ExecuteMplsUpdate(int destination_id, unsigned int port) const;

 private:
  using Callback = std::function<void(int, unsigned int)>;

  /// Callbacks are never copied: they may have a state. Shared with the updates that call them, so that one which is
  /// replaced meanwhile lives until it has returned.
  std::map<std::string, std::shared_ptr<Callback>> clients_;
};

}  // namespace hal_encap

#endif
