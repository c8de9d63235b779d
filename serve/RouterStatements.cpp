#include <functional>
#include <stdexcept>

#include "bcm/error.h"
#include "scenario/RowFilter.h"
#include "scenario/Run.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"
#include "serve/Statements.h"
#include "softcard/LimId.h"
#include "softcard/Limits.h"

namespace serve {
namespace {

using router::Router;
using scenario::Fields;
using scenario::Kind;
using scenario::RequestResult;
using scenario::Run;
using scenario::Surroundings;
using scenario::SyntaxError;
using scenario::Token;

/// A statement about the control plane that the card has.
template <typename Work>
scenario::Action Does(Living& living, Work work) {
  return [&living, work](Run& run) {
    return run.performer.Perform([&] {
      if (living.router == nullptr) throw std::runtime_error("no control plane: softcard serve --fpm waits for one");
      living.in_statement = true;
      const int result = work(*living.router);
      living.in_statement = false;
      return RequestResult{RequestResult::Kind::kNumber, result, ""};
    });
  };
}

unsigned ToIfindex(const Fields& fields) {
  return static_cast<unsigned>(scenario::ToNumber(fields.words()[0], "interface index", 1, 0x7FFFFFFF));
}

router::InterfaceValues ReadInterface(const Fields& fields, const softcard::CardDescription& card) {
  router::InterfaceValues values;
  const Token& lim = *fields.Find("lim");
  values.port = scenario::ToLimId(lim, card);
  const unsigned type = softcard::LimIdType(values.port);
  if (type != limid_type_ethernet && type != limid_type_lag) {
    throw SyntaxError{lim.offset, "an interface is an Ethernet port's or a LAG's"};
  }
  const long long vlan_id = scenario::ToNumber(*fields.Find("vlan"), "VLAN", 1, softcard::kLastVlan);
  values.vlan = softcard::LimId("vlan" + std::to_string(vlan_id));
  values.vrf = scenario::ToUnsigned(*fields.Find("vrf"), "VRF");
  values.mtu = scenario::ToUnsigned(*fields.Find("mtu"), "MTU");
  const Token& mac = *fields.Find("mac");
  const auto address = scenario::ToMac(mac);
  if (!address) throw SyntaxError{mac.offset, "an interface has an address"};
  if (((*address)[0] & 1) != 0 || *address == router::Mac{}) {
    throw SyntaxError{mac.offset, "an interface's address is its own, not a group's and not all zeros"};
  }
  values.mac = *address;
  return values;
}

using Rows = std::vector<softcard::Row>;

void AddShow(scenario::Language& language, const softcard::TableDescription& table, const char* help,
             const std::function<Rows()>& rows_of) {
  language.Add(std::string("show ") + table.name, "[all] | COLUMN=VALUE...", help, Kind::kShow,
               [&table, rows_of](const Fields& fields, const Surroundings&) {
                 std::vector<scenario::RowFilter> filters;
                 for (const Token& word : fields.words()) {
                   if (word.text != "all") filters.push_back(scenario::RowFilter::Read(table, word));
                 }
                 return [&table, rows_of, filters](const Run&) {
                   return scenario::Shown{{{table.name, scenario::Filtered(rows_of(), filters)}}};
                 };
               });
}

}  // namespace

void AddRouterStatements(scenario::Language& language, Living& living) {
  language.Add("interface", "IFINDEX lim=PORT vlan=VLAN vrf=VRF mac=MAC mtu=BYTES",
               "What an interface of the control plane is on the card", Kind::kRequest,
               [&living](const Fields& fields, const Surroundings& around) {
                 return Does(living, [ifindex = ToIfindex(fields), values = ReadInterface(fields, around.card)](
                                         Router& router) { return router.SetInterface(ifindex, values); });
               });
  language.Add("no-interface", "IFINDEX", "It is nothing any more: what left through it goes to the CPU, or nowhere",
               Kind::kRequest, [&living](const Fields& fields, const Surroundings&) {
                 return Does(living,
                             [ifindex = ToIfindex(fields)](Router& router) { return router.RemoveInterface(ifindex); });
               });
  language.Add("vrf-device", "IFINDEX vrf=VRF table=TABLE",
               "The control plane's device of a VRF, whose routes are in this routing table", Kind::kRequest,
               [&living](const Fields& fields, const Surroundings&) {
                 const unsigned vrf = scenario::ToUnsigned(*fields.Find("vrf"), "VRF");
                 const Token& number = *fields.Find("table");
                 const unsigned table = scenario::ToUnsigned(number, "table");
                 if (table == 0) throw SyntaxError{number.offset, "routing table 0 is none"};
                 if (table == Router::kMainTable && vrf != 0) {
                   throw SyntaxError{number.offset, "table 254 is the main one, of VRF 0"};
                 }
                 return Does(living, [ifindex = ToIfindex(fields), vrf, table](Router& router) {
                   router.SetVrfDevice(ifindex, vrf, table);
                   return BCM_E_NONE;
                 });
               });
  const auto of_router = [&living](Rows (Router::*rows)() const) {
    return [&living, rows] { return living.router == nullptr ? Rows() : (living.router->*rows)(); };
  };
  AddShow(language, router::kNextHopTable, "Shows the ways that a control plane's routes and labels go",
          of_router(&Router::NextHopRows));
  AddShow(language, router::kNeighbourTable, "Shows who has which address on the control plane's interfaces",
          of_router(&Router::NeighbourRows));
  AddShow(language, router::kUnresolvedTable, "Shows what a control plane told that the card cannot do, and why",
          of_router(&Router::UnresolvedRows));
  language.Add("show control-plane", "", "Shows who tells the card its routes, and how much that was", Kind::kShow,
               [&living](const Fields&, const Surroundings&) {
                 return [&living](const Run&) {
                   return scenario::Shown{{{"control-plane", living.control_plane ? living.control_plane() : Rows()}}};
                 };
               });
}

}  // namespace serve
