// Makes the module, once as it is and once ("refused") on a chip that refuses its modes. A process has one start-up, so
// this is a program of its own: it fails, and prints what it saw, unless the card saw exactly what it should.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "bcm/error.h"
#include "softcard/Card.h"

namespace {

using Lines = std::vector<std::string>;

const Lines kStartUp = {
    "fm_init() = 0",
    "bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = 0",
    "bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = 0",
    "log 7: Encapsulation module initialized successfully",
};

// The module exists regardless.
const Lines kRefusedStartUp = {
    "fm_init() = -17 (Not initialised)",
    "bcm_switch_control_set(unit=0, type=bcmSwitchL3EgressMode, arg=1) = -9 (Timed out)",
    "log 3: Could not init encapsulation module L3 egress mode: bcm_err='Timed out' [-9]",
    "bcm_switch_control_set(unit=0, type=bcmSwitchL3IngressMode, arg=1) = -9 (Timed out)",
    "log 3: Could not init encapsulation module L3 ingress mode: bcm_err='Timed out' [-9]",
};

}  // namespace

int main(int argc, char** argv) {
  softcard::Card& card = softcard::Card::Get();
  const bool refused = argc > 1 && std::string(argv[1]) == "refused";
  if (refused) {
    card.faults().FailEvery("fm_init", BCM_E_INIT);
    card.faults().FailEvery("bcm_switch_control_set", BCM_E_TIMEOUT);
  }

  HalL3MplsEncapsulationInterface* const module = HalL3MplsEncapsulationInterface::GetInstance();
  const bool one_object = module != nullptr && HalL3MplsEncapsulationInterface::GetInstance() == module;
  // Taken after the second call, which must not start anything again.
  const Lines seen = card.log().Lines();
  for (const std::string& line : seen) std::puts(line.c_str());
  return one_object && seen == (refused ? kRefusedStartUp : kStartUp) ? EXIT_SUCCESS : EXIT_FAILURE;
}
