#include <stdexcept>

#include "hal/HalBcmCommon.h"
#include "src/encapsulation/HalL3MplsEncapsulationBcm.h"
#include "tests/encapsulation/ModuleTest.h"

namespace {

class PortResolutionTest : public ModuleTest {
 protected:
  const HalL3MplsEncapsulationBcm& bcm_ = *HalL3MplsEncapsulationBcm::GetInstance();

  void ExpectUnknown(const char* lim) {
    try {
      bcm_.GetPort(Lim(lim));
      ADD_FAILURE() << lim << " has a port";
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "HAL ID not found");
    }
  }
};

TEST_F(PortResolutionTest, EthernetPortIsLookedUpAfterTheCpuPortWasRuledOut) {
  EXPECT_EQ(bcm_.GetPort(Lim("eth5")), 5);
  EXPECT_EQ(Trace(), R"(
limid_to_type(limid=eth5) = 0
limid_to_ifindex(limid=eth5) = 0
limid_to_intfname(limid=eth5, size=64) = 0
log 7: Converting lim id(name=eth5, type=0x01, value=0x000005) to port
limid_is_from_type(limid=eth5, type=cpuport) = 0
limid_is_from_type_ethernet(limid=eth5) = 1
)");
}

TEST_F(PortResolutionTest, CpuPortIsServedFromThePortTable) {
  HalBcmCommon::GetInstance()->port_table[Lim("cpu")] = 77;
  Forget();
  EXPECT_EQ(bcm_.GetPort(Lim("cpu")), 77);
  EXPECT_EQ(LastLine(), "limid_is_from_type(limid=cpu, type=cpuport) = 1");
}

TEST_F(PortResolutionTest, LagIsServedFromTheLagTable) {
  HalBcmCommon::GetInstance()->lag_table[Lim("lag2")] = 88;
  Forget();
  EXPECT_EQ(bcm_.GetPort(Lim("lag2")), 88);
  EXPECT_EQ(LastLine(), "limid_is_from_type(limid=lag2, type=lag) = 1");
}

TEST_F(PortResolutionTest, LimIdOfSeveralKindsIsServedFromThePortTable) {
  HalBcmCommon::GetInstance()->port_table[Lim("lag2")] = 1;
  faults().FailNth("limid_is_from_type", 1, 5);
  EXPECT_EQ(bcm_.GetPort(Lim("lag2")), 1);
}

TEST_F(PortResolutionTest, MissingPortThrowsWithoutALogLineOfItsOwn) {
  Forget();
  ExpectUnknown("eth99");
  EXPECT_EQ(LastLine(), "limid_is_from_type_ethernet(limid=eth99) = 1");
  ExpectUnknown("lag99");
  EXPECT_EQ(LastLine(), "limid_is_from_type(limid=lag99, type=lag) = 1");
  HalBcmCommon::GetInstance()->port_table.clear();
  ExpectUnknown("cpu");
}

TEST_F(PortResolutionTest, LimIdOfNoPortKindGivesTheInvalidPortAndSaysSo) {
  EXPECT_EQ(bcm_.GetPort(Lim("vlan100")), BCM_E_PORT);
  EXPECT_EQ(Trace(), R"(
limid_to_type(limid=vlan100) = 0
limid_to_ifindex(limid=vlan100) = 0
limid_to_intfname(limid=vlan100, size=64) = 0
log 7: Converting lim id(name=vlan100, type=0x04, value=0x000064) to port
limid_is_from_type(limid=vlan100, type=cpuport) = 0
limid_is_from_type_ethernet(limid=vlan100) = 0
limid_is_from_type(limid=vlan100, type=lag) = 0
log 7: Invalid Lim ID. Returning invalid gport
)");
}

}  // namespace
