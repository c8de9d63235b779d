#ifndef HAL_L3_MPLS_ENCAPSULATION_UPD_ITF_H
#define HAL_L3_MPLS_ENCAPSULATION_UPD_ITF_H

#include <functional>
#include <string>

namespace hal_encap {

/// Where other modules of the card ask to be told that an MPLS encapsulation has been reprogrammed.
class __attribute__((visibility("default"))) HalL3MplsEncapsulationUpdItf {
 public:
  virtual ~HalL3MplsEncapsulationUpdItf();

  /// The registry, created at the first call, from whichever thread comes first. Never null; owned by the library.
  static HalL3MplsEncapsulationUpdItf* GetInstance();

  /// Adds a client, or gives the client of that name a new callback. There is no way to take a client out; an empty
  /// callback silences it.
  /// @param name clients are called in the byte-wise order of their names
  /// @param callback called inside the replace, on its caller's thread, after a forward or push tunnel has been
  ///        reprogrammed, with the destination id and the chip port (-18, read as unsigned, for a dropping one).
  ///        Itself, never a copy: its state lasts from one call to the next, and one that is replaced while it runs
  ///        lives until it has returned. It may call the module and this registry: changes of the registry count from
  ///        the next replace on, and a destination that it destroys, installs anew or replaces stays as it made it.
  ///        What it throws leaves the replace, the later clients are not called, and the record keeps its old ids.
  virtual void RegisterMplsUpdateClient(const std::string& name, std::function<void(int, unsigned int)>&& callback) = 0;
};

}  // namespace hal_encap

#endif
