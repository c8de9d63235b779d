#include "serve/Statements.h"

#include "scenario/Run.h"
#include "scenario/Values.h"
#include "softcard/Limits.h"

namespace serve {
namespace {

using scenario::Fields;
using scenario::Kind;
using scenario::RequestResult;
using scenario::Run;
using scenario::Surroundings;

constexpr int kNoSuchPort = -18;

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
                 return Writes(scenario::ToLimId(fields.words()[0], around.card),
                               [&natives, vlan_id](int port) { natives[port] = vlan_id; });
               });
  language.Add("no-native", "PORT", "All VLANs are tagged again", Kind::kRequest,
               [&natives](const Fields& fields, const Surroundings& around) {
                 return Writes(scenario::ToLimId(fields.words()[0], around.card),
                               [&natives](int port) { natives.erase(port); });
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
