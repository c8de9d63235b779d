#ifndef SERVE_FORWARDER_H
#define SERVE_FORWARDER_H

#include <optional>

#include "router/Discovery.h"
#include "serve/Statements.h"
#include "softcard/Card.h"
#include "softcard/packets/Way.h"

namespace serve {

/// What becomes of a frame that a port has got: it takes the card's way, or is for the route processor, whose side of
/// the port gets it as it came. Who announces an address in it is a neighbour to the control plane, if there is one.
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

  Forwarder(softcard::Card& card, const Living& living, Wires& wires) : card_(card), living_(living), wires_(wires) {}

  /// Each frame is counted and leaves once at most.
  void Came(int port, softcard::View frame);
  /// One that the processor sends by a port, whatever becomes of it: the control plane's neighbours learn from it.
  void CameFromHost(int port, softcard::View frame);

 private:
  using Taken = void (router::Router::*)(const router::Neighbour&, const router::Mac&);

  std::optional<unsigned> FindInterface(int port, unsigned vlan_id) const;
  void Tell(int port, const std::optional<router::Announcement>& who, Taken taken);
  void ToHost(int port, std::optional<unsigned> destination, softcard::View frame);
  bool IsForProcessor(const softcard::Way& way) const;
  void Leave(int port);

  softcard::Card& card_;
  const Living& living_;
  Wires& wires_;
  softcard::Bytes tagged_;
  softcard::Bytes out_;
};

}  // namespace serve

#endif
