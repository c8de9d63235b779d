#ifndef TESTS_ENCAPSULATION_MODULE_TEST_H
#define TESTS_ENCAPSULATION_MODULE_TEST_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "bcm/error.h"
#include "softcard/Card.h"

inline constexpr auto kNone = HAL_MPLS_CAPABILITY_NONE;
inline constexpr auto kProtection = HAL_MPLS_CAPABILITY_PROTECTION;
inline constexpr auto kSwap = HAL_MPLS_CAPABILITY_SWAP;
inline constexpr auto kForward = HAL_MPLS_CAPABILITY_FORWARD;
inline constexpr auto kPush = HAL_MPLS_CAPABILITY_PUSH;
inline constexpr auto kVcLabel = HAL_MPLS_CAPABILITY_VC_LABEL;

/// Runs the module on an empty software card and compares what the card saw.
class ModuleTest : public ::testing::Test {
 protected:
  using Capabilities = std::vector<en_HalMplsCapabilities>;
  using Labels = std::vector<unsigned int>;

  ModuleTest() {
    card_.Reset();
    // The first test of a process makes the module; its start-up is no part of what the test sees.
    card_.log().Clear();
  }
  ~ModuleTest() override { card_.Reset(); }

  static limid_t Lim(const char* name) { return softcard::LimId(name); }
  softcard::FaultPlan& faults() { return card_.faults(); }

  /// The trace since the last look, a line each.
  std::string Trace() {
    std::string text = "\n";
    for (const std::string& line : card_.log().Lines()) text += line + "\n";
    card_.log().Clear();
    return text;
  }
  std::string LastLine() { return card_.log().Lines().back(); }
  void Forget() { card_.log().Clear(); }

  std::string Rows(const char* table) const {
    std::string text = "\n";
    for (const std::string& row : softcard::Texts(card_.Rows(table))) text += row + "\n";
    return text;
  }
  /// Every table that an encapsulation can leave something in.
  std::string Tables() const {
    std::string text;
    for (const char* const table :
         {"intfs", "egresses", "initiators", "stations", "associations", "protocol", "destinations"}) {
      text += Rows(table).substr(1);
    }
    return text;
  }

  /// The VLAN encapsulation that the others are built on: destination 10, VLAN 100, VRF 1, interface 1.
  void InstallVlan(unsigned int destination_id = 10) {
    module_.InstallVrf(1);
    ASSERT_EQ(module_.InstallVlanOutgoingEncapsulation(destination_id, Lim("vlan100"), 1, 1500, router_mac_, {}), 0);
    Forget();
  }

  unsigned char router_mac_[6] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x01};
  unsigned char other_mac_[6] = {0x00, 0x00, 0x5e, 0x00, 0x01, 0x02};
  unsigned char host_mac_[6] = {0x02, 0x00, 0x00, 0x00, 0x00, 0x09};
  softcard::Card& card_ = softcard::Card::Get();
  HalL3MplsEncapsulationInterface& module_ = *HalL3MplsEncapsulationInterface::GetInstance();
};

#endif
