#include "serve/Statements.h"

#include "scenario/Run.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"
#include "softcard/LimId.h"
#include "softcard/Limits.h"

namespace serve {
namespace {

using scenario::Fields;
using scenario::Kind;
using scenario::RequestResult;
using scenario::Run;
using scenario::Surroundings;

constexpr int kNoSuchPort = -18;

/// Only Ethernet ports have interfaces.
limid_t ToEthernetPort(const Fields& fields, const Surroundings& around) {
  const scenario::Token& word = fields.words()[0];
  const limid_t limid = scenario::ToLimId(word, around.card);
  if (softcard::LimIdType(limid) == limid_type_ethernet) return limid;
  throw scenario::SyntaxError{
      word.offset,
      scenario::Quoted(word.text) + " is no Ethernet port; only these have interfaces: name a LAG's members"};
}

template <typename Write>
scenario::Action Writes(limid_t limid, Write write) {
  return [limid, write](Run& run) {
    return run.performer.Perform([&] {
      const int port = scenario::ToPort(limid, run.card);
      const bool exists = run.card.tables().ports.IsEthernet(port);
      if (exists) write(port);
      return RequestResult{RequestResult::Kind::kNumber, exists ? 0 : kNoSuchPort, ""};
    });
  };
}

}  // namespace

void AddStatements(scenario::Language& language, Living& living) {
  Natives& natives = living.natives;
  language.Add("native", "PORT vlan=VLAN", "A VLAN travels without a tag on the port's interface, under softcard serve",
               Kind::kRequest, [&natives](const Fields& fields, const Surroundings& around) {
                 const auto vlan_id =
                     static_cast<unsigned>(scenario::ToNumber(*fields.Find("vlan"), "VLAN", 1, softcard::kLastVlan));
                 return Writes(ToEthernetPort(fields, around),
                               [&natives, vlan_id](int port) { natives[port] = vlan_id; });
               });
  language.Add("no-native", "PORT", "All VLANs are tagged again", Kind::kRequest,
               [&natives](const Fields& fields, const Surroundings& around) {
                 return Writes(ToEthernetPort(fields, around), [&natives](int port) { natives.erase(port); });
               });
  language.Add("show interfaces", "", "Shows the interfaces of a living card's ports, and what they carried",
               Kind::kShow, [&living](const Fields&, const Surroundings&) {
                 return [&living](const Run&) {
                   const auto rows = living.interfaces ? living.interfaces() : std::vector<softcard::Row>();
                   return scenario::Shown{{{"interfaces", rows}}};
                 };
               });
}

}  // namespace serve
