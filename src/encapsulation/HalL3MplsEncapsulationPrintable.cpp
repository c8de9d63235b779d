#include "HalL3MplsEncapsulationPrintable.h"

#include "LogText.h"

HalL3MplsEncapsulationPrintable::~HalL3MplsEncapsulationPrintable() = default;

const char* MplsCapabilityText(en_HalMplsCapabilities capability) {
  switch (capability) {
    case HAL_MPLS_CAPABILITY_NONE: return "MPLS Capability(None)";
    case HAL_MPLS_CAPABILITY_PROTECTION: return "MPLS Capability(Protection)";
    case HAL_MPLS_CAPABILITY_SWAP: return "MPLS Capability(Swap)";
    case HAL_MPLS_CAPABILITY_FORWARD: return "MPLS Capability(Forward)";
    case HAL_MPLS_CAPABILITY_PUSH: return "MPLS Capability(Push)";
    case HAL_MPLS_CAPABILITY_VC_LABEL: return "MPLS Capability(VCLabel)";
    default: return "MPLS Capability(Unknown)";
  }
}
