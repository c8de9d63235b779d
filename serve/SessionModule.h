#ifndef SERVE_SESSION_MODULE_H
#define SERVE_SESSION_MODULE_H

#include "HalL3MplsEncapsulationInterface.h"
#include "recorder/Request.h"
#include "scenario/Session.h"

namespace serve {

/// What stands in the place of a file's name for requests that no line has made.
constexpr char kControlPlane[] = "control plane";

/// The module for those who make requests beside a session's lines: each request is a step of the session, so that
/// whoever watches it sees them all. Throws std::runtime_error for what the module throws.
class SessionModule : public HalL3MplsEncapsulationInterface {
 public:
  /// The session outlives it. `in_statement`: whether the session is doing a statement, of which requests are part
  /// then.
  SessionModule(scenario::Session& session, const bool& in_statement)
      : session_(session), in_statement_(in_statement) {}

  /// The calls that the card refused of the last request that failed; empty for one that was part of a statement.
  const std::string& refused() const { return refused_; }

  int InitEncapsulationModule() const override;
  int InstallVrf(unsigned vrf) const override;
  int DestroyVrf(unsigned vrf) const override;
  int InstallVlanOutgoingEncapsulation(unsigned id, limid_t limid, unsigned vrf, unsigned mtu, unsigned char* mac,
                                       std::vector<en_HalVlanCapabilities> capabilities) const override;
  int DestroyVlanOutgoingEncapsulation(unsigned id) const override;
  int ReplaceVlanOutgoingEncapsulation(unsigned id, limid_t limid, unsigned vrf, unsigned mtu, unsigned char* mac,
                                       std::vector<en_HalVlanCapabilities> capabilities) const override;
  int InstallHostOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid, std::vector<ActionFlags> actions,
                                       unsigned char* mac) const override;
  int DestroyHostOutgoingEncapsulation(unsigned id) const override;
  int ReplaceHostOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid, std::vector<ActionFlags> actions,
                                       unsigned char* mac) const override;
  int InstallMplsUnprotectedOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid, unsigned char* mac,
                                                  std::vector<unsigned> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags action) const override;
  int DestroyMplsUnprotectedOutgoingEncapsulation(unsigned id) const override;
  int ReplaceMplsUnprotectedOutgoingEncapsulation(unsigned id, unsigned vlan_id, limid_t limid, unsigned char* mac,
                                                  std::vector<unsigned> labels,
                                                  std::vector<en_HalMplsCapabilities> capabilities,
                                                  ActionFlags action) const override;

 private:
  int Make(const recorder::Request& request) const;

  scenario::Session& session_;
  const bool& in_statement_;
  mutable std::string refused_;
};

}  // namespace serve

#endif
