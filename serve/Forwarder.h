#ifndef SERVE_FORWARDER_H
#define SERVE_FORWARDER_H

#include <optional>

#include "serve/Statements.h"
#include "softcard/Card.h"
#include "softcard/packets/Way.h"

namespace serve {

/// What becomes of a frame that a port has got: it takes the card's way, or is for the route processor, whose side of
/// the port gets it as it came.
class Forwarder {
 public:
  /// What frames leave by, as they are on the wire.
  class Wires {
   public:
    virtual ~Wires() = default;
    virtual bool HasHost(int port) const = 0;
    virtual void ToHost(int port, softcard::View frame) = 0;
    virtual void ToPort(int port, softcard::View frame) = 0;
  };

  Forwarder(softcard::Card& card, const Natives& natives, Wires& wires)
      : card_(card), natives_(natives), wires_(wires) {}

  /// Each frame is counted and leaves once at most.
  void Came(int port, softcard::View frame);

 private:
  void ToHost(int port, std::optional<unsigned> destination, softcard::View frame);
  bool IsForProcessor(const softcard::Way& way) const;
  void Leave(int port);

  softcard::Card& card_;
  const Natives& natives_;
  Wires& wires_;
  softcard::Bytes tagged_;
  softcard::Bytes out_;
};

}  // namespace serve

#endif
