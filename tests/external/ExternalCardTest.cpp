#include <dlfcn.h>
#include <gtest/gtest.h>

#include "HalL3MplsEncapsulationInterface.h"
#include "hal/HalBcmCommon.h"
#include "tests/external/Card.h"

namespace {

using Lines = std::vector<std::string>;

Lines TakeCalls() {
  Lines calls;
  calls.swap(Calls());
  return calls;
}

TEST(ExternalCard, AModuleBuiltAgainstTheCardsOwnHeadersRunsOnTheCardsOwnLibrary) {
  void* const library = dlopen(MODULE, RTLD_NOW);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto get_instance = reinterpret_cast<HalL3MplsEncapsulationInterface* (*)()>(
      dlsym(library, "_ZN31HalL3MplsEncapsulationInterface11GetInstanceEv"));
  ASSERT_NE(get_instance, nullptr) << dlerror();

  HalL3MplsEncapsulationInterface* const module = get_instance();
  EXPECT_EQ(TakeCalls(), (Lines{"switch 5 230 1", "switch 5 232 1"}));

  unsigned char mac[] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
  const limid_t vlan{100};
  EXPECT_EQ(module->InstallVlanOutgoingEncapsulation(10, vlan, 2, 1500, mac, {}), 0);
  EXPECT_EQ(TakeCalls(), (Lines{"protocol 100", "station 100 4095 0", "associate 100 2", "intf 1 2 100 1500 0"}));

  const limid_t eth1{kEthernet << 24 | 1};
  EXPECT_EQ(module->InstallMplsUnprotectedOutgoingEncapsulation(20, 10, eth1, mac, {100, 200},
                                                                {HAL_MPLS_CAPABILITY_PUSH}, HAL_ACTION_NONE),
            0);
  EXPECT_EQ(TakeCalls(), (Lines{"Couldn't find DestinationIdCorrelator with destination id(20)", "intf 2 2 100 1500 0",
                                "initiator 2 2 100 200 255 9", "egress 2 100 5 101 0"}));

  const DestinationIdCorrelator& record = HalBcmCommon::GetInstance()->destination_id_correlators.at(20);
  EXPECT_EQ(record.intf_id, 2);
  EXPECT_EQ(record.egress_id, 40);

  EXPECT_EQ(module->DestroyMplsUnprotectedOutgoingEncapsulation(20), 0);
  EXPECT_EQ(TakeCalls(), (Lines{"delete-egress 40", "clear-initiator 2", "delete-intf 2"}));
}

}  // namespace
