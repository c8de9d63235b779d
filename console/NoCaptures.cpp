// For targets without libpcap.
#include <stdexcept>

#include "console/Captures.h"

namespace console {

class CaptureFiles {};

Captures::Captures(const std::string&) { throw std::runtime_error("this build writes no captures: it has no libpcap"); }

Captures::~Captures() = default;

void Captures::Took(const scenario::Step&) {}

}  // namespace console
