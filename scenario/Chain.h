#ifndef SCENARIO_CHAIN_H
#define SCENARIO_CHAIN_H

#include "scenario/Failure.h"
#include "scenario/Run.h"

namespace scenario {

/// What every packet to a destination goes through, a line each: its record, egress object, interface and initiator,
/// where they are at odds, then the labels on the wire, the outermost first, and the port; or why nothing leaves.
Lines Chain(const Run& run, unsigned destination);

}  // namespace scenario

#endif
