#ifndef RECORDER_REQUEST_H
#define RECORDER_REQUEST_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "HalL3MplsEncapsulationInterface.h"
#include "hal/IntfObject.h"
#include "hal/limid.h"

namespace recorder {

/// A request to the module, with the names that the scenario language has for them.
enum class Operation {
  kStart,  ///< the first GetInstance(), which sets the chip up
  kInit,
  kInstallVrf,
  kDestroyVrf,
  kInstallVlan,
  kReplaceVlan,
  kDestroyVlan,
  kInstallHost,
  kReplaceHost,
  kDestroyHost,
  kInstallMpls,
  kReplaceMpls,
  kDestroyMpls,
};

struct Request {
  Operation operation = Operation::kStart;
  unsigned id = 0;  ///< the destination, or the VRF
  unsigned vlan_destination_id = 0;
  limid_t limid{};
  unsigned vrf = 0;
  unsigned mtu = 0;
  std::optional<MacAddress> mac{};  ///< nothing: a null pointer
  std::vector<unsigned> labels{};
  std::vector<int> items{};  ///< capabilities or actions: any numbers
  int action = 0;
};

/// Whether the operation has a lim id that the module looks up in the tables of ports.
bool NamesAPort(Operation operation);

/// "install-vlan 10 lim=0x4000064 vrf=1 mtu=1500 mac=00:00:5e:00:01:01 caps=station-flag". Lim ids are their words: in
/// front of a platform nobody knows their encoding.
std::string Text(const Request& request);
/// The request of such a text, fields in that order; nothing for any other text.
std::optional<Request> ReadRequest(std::string_view text);

/// Makes it; a start has no result and gives 0. In Make.cpp, for whoever has a module.
int Make(const Request& request, const HalL3MplsEncapsulationInterface& module);

/// A client's name as a word: in double quotes, with \" and \\ in them, when it is no plain word.
std::string Word(std::string_view name);
/// The name at the beginning of `*text`, which loses it.
std::optional<std::string> TakeWord(std::string_view* text);

}  // namespace recorder

#endif
