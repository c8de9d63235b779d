#ifndef CONSOLE_NOBODY_H
#define CONSOLE_NOBODY_H

#include "scenario/Step.h"

namespace console {

/// Is told nothing that it would pass on.
class Nobody : public scenario::Observer {
 public:
  void Took(const scenario::Step&) override {}
  void Ended(const std::string&, const scenario::Tally&) override {}
};

}  // namespace console

#endif
