// A program of someone else's: installs a VLAN encapsulation on the software card and takes it down again. It reaches
// the card by its exported platform functions alone, as a program of C++11 can.
#include <cstdio>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"
#include "hal/HalBcmCommon.h"

int main() {
  HalL3MplsEncapsulationInterface* const module = HalL3MplsEncapsulationInterface::GetInstance();
  hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient("consumer", nullptr);

  const limid_t port = HalBcmCommon::GetInstance()->port_table.begin()->first;
  unsigned char mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
  const int installed = module->InstallHostOutgoingEncapsulation(10, 0, port, {HAL_ACTION_NONE}, mac);
  const std::size_t records = HalBcmCommon::GetInstance()->destination_id_correlators.size();
  const int destroyed = module->DestroyHostOutgoingEncapsulation(10);
  std::printf("installed %d, %zu record, destroyed %d\n", installed, records, destroyed);
  return 0;
}
