#ifndef SCENARIO_HOLDINGS_H
#define SCENARIO_HOLDINGS_H

#include <string>
#include <vector>

namespace scenario {

/// An installed destination and the rows of what it holds on the card.
struct Holding {
  std::string destination;
  std::vector<std::string> rows;
};

std::vector<Holding> Holdings();

}  // namespace scenario

#endif
