#ifndef CONSOLE_HOLDINGS_H
#define CONSOLE_HOLDINGS_H

#include <string>
#include <vector>

namespace console {

/// An installed destination and the rows of what it holds on the card.
struct Holding {
  std::string destination;
  std::vector<std::string> rows;
};

std::vector<Holding> Holdings();

}  // namespace console

#endif
