#ifndef DIAGNOSIS_GRAPH_H
#define DIAGNOSIS_GRAPH_H

#include <optional>
#include <string>
#include <vector>

#include "diagnosis/Audit.h"

namespace diagnosis {

/// A picture of the card in Graphviz's language: VRFs, VLANs, destinations and ports, label stacks on the edges, what
/// the findings are about in red. Of many destinations those that are alike are folded; one alone is drawn with its
/// egress object and interface. Throws std::invalid_argument when there is no such destination.
std::string Dot(const softcard::Card& card, const Ledger& ledger, const std::vector<Finding>& findings,
                std::optional<unsigned> destination);

}  // namespace diagnosis

#endif
