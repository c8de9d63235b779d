#ifndef HAL_L3_MPLS_ENCAPSULATION_UPD_H
#define HAL_L3_MPLS_ENCAPSULATION_UPD_H

#include <functional>
#include <map>
#include <string>

#include "HalL3MplsEncapsulationUpdItf.h"

namespace hal_encap {

/// The registry of update clients. Only its creation is safe between threads.
class HalL3MplsEncapsulationUpd : public HalL3MplsEncapsulationUpdItf {
 public:
  static HalL3MplsEncapsulationUpd* GetInstance();

  void RegisterMplsUpdateClient(const std::string& name, std::function<void(int, unsigned int)>&& callback) override;

  /// Calls every client that has a callback, in the order of their names. What a client throws passes through.
  void ExecuteMplsUpdate(int destination_id, unsigned int port) const;

 private:
  std::map<std::string, std::function<void(int, unsigned int)>> clients_;
};

}  // namespace hal_encap

#endif
