// A process of another maker's card in the field: two VRFs, VLANs, hosts and tunnels, which are led another way again
// and again, until the card refuses one.

#include <cstdio>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"

namespace {

unsigned char router_mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
unsigned char next_mac[] = {0x00, 0x00, 0x5e, 0x00, 0x02, 0x01};

constexpr limid_t Port(unsigned number) { return {number << 8 | 0xE1}; }
constexpr limid_t Lag(unsigned number) { return {number << 8 | 0x1A}; }
constexpr limid_t Vlan(unsigned number) { return {number << 8 | 0x71}; }

}  // namespace

int main() {
  const HalL3MplsEncapsulationInterface& module = *HalL3MplsEncapsulationInterface::GetInstance();
  hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient("statistics", [](int, unsigned) {});
  for (const unsigned vrf : {1, 2}) module.InstallVrf(vrf);
  for (unsigned vlan = 1; vlan <= 4; ++vlan) {
    module.InstallVlanOutgoingEncapsulation(10 * vlan, Vlan(100 + vlan), 1 + vlan % 2, 1500, router_mac, {});
    module.InstallHostOutgoingEncapsulation(10 * vlan + 1, 10 * vlan, Port(vlan), {}, next_mac);
  }
  const auto push = [](unsigned label) { return std::vector<unsigned>{label, label + 1}; };
  for (unsigned tunnel = 1; tunnel <= 4; ++tunnel) {
    module.InstallMplsUnprotectedOutgoingEncapsulation(100 + tunnel, 10 * tunnel, Port(tunnel), next_mac,
                                                       push(1000 * tunnel), {HAL_MPLS_CAPABILITY_PUSH},
                                                       HAL_ACTION_NONE);
  }
  for (unsigned again = 0; again < 20; ++again) {
    const unsigned tunnel = 1 + again % 4;
    const int rv = module.ReplaceMplsUnprotectedOutgoingEncapsulation(
        100 + tunnel, 10 * tunnel, again % 3 == 0 ? Lag(1) : Port(5 + again % 4), next_mac, push(1000 * tunnel + again),
        {HAL_MPLS_CAPABILITY_PUSH}, HAL_ACTION_NONE);
    if (rv >= 0) continue;
    std::printf("tunnel %u cannot be led another way\n", tunnel);
    return 1;
  }
  return 0;
}
