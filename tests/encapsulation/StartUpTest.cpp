#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "bcm/error.h"
#include "softcard/Card.h"

// A process has one start-up: every test makes the module in a child of its own.

namespace {

using Lines = std::vector<std::string>;

/// Makes the module and exits, with 0 when the card then saw exactly these calls and log lines.
[[noreturn]] void StartUp(const Lines& expected) {
  HalL3MplsEncapsulationInterface* const module = HalL3MplsEncapsulationInterface::GetInstance();
  const Lines seen = softcard::Card::Get().log().Lines();
  for (const std::string& line : seen) {
    std::fprintf(stderr, "%s\n", line.c_str());
  }
  const bool once =
      HalL3MplsEncapsulationInterface::GetInstance() == module && softcard::Card::Get().log().Lines() == seen;
  std::_Exit(seen == expected && once ? EXIT_SUCCESS : EXIT_FAILURE);
}

TEST(StartUpTest, FirstCallMakesTheModuleAndSetsTheChipUpOnce) {
  EXPECT_EXIT(StartUp({"fm_init() = 0", "bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = 0",
                       "bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = 0",
                       "log 7: Encapsulation module initialized successfully"}),
              ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST(StartUpTest, ModuleExistsThoughTheChipRefusesTheModesAndTheServicesFail) {
  softcard::Card::Get().faults().FailEvery("fm_init", BCM_E_INIT);
  softcard::Card::Get().faults().FailEvery("bcm_switch_control_set", BCM_E_TIMEOUT);
  EXPECT_EXIT(StartUp({"fm_init() = -17 (Not initialised)",
                       "bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = -9 (Timed out)",
                       "log 3: Could not init encapsulation module L3 egress mode: bcm_err='Timed out' [-9]",
                       "bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = -9 (Timed out)",
                       "log 3: Could not init encapsulation module L3 ingress mode: bcm_err='Timed out' [-9]"}),
              ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
