// A control plane may say anything: when nothing of it is told again nothing of it stays on the card.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "router/Fpm.h"
#include "router/Netlink.h"
#include "router/Router.h"
#include "softcard/Card.h"

namespace {

constexpr unsigned kInterfaces = 3;

void Expect(bool holds, const char* what) {
  if (holds) return;
  std::cerr << what << '\n';
  std::abort();
}

/// A small card, so that tables are full now and then.
softcard::CardDescription Small() {
  softcard::CardDescription description;
  description.routes = 40;
  description.labels = 8;
  description.egresses = 12;
  return description;
}

void Tell(const std::uint8_t* data, std::size_t size, router::Router& router) try {
  router::Unread unread;
  router::ReadFrames(data, size, [&](const unsigned char* messages, std::size_t length) {
    std::vector<router::Told> told;
    router::ReadMessages(messages, length, &told, &unread);
    router.Hear(told);
    router.Settle();
  });
} catch (const std::runtime_error&) {
  return;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  softcard::Card& card = softcard::Card::Get();
  card.Reset(Small());
  const softcard::Record silence(card.log(), softcard::CallLog::Recording::kNothing);
  router::Router router(*HalL3MplsEncapsulationInterface::GetInstance(), card.tables(), softcard::LimId("cpu"),
                        [](const std::string&) {});
  for (unsigned ifindex = 2; ifindex < 2 + kInterfaces; ++ifindex) {
    const std::string number = std::to_string(ifindex);
    router.SetInterface(ifindex, {softcard::LimId("eth" + number), softcard::LimId("vlan" + number), 0, 1500, {2}});
  }
  router.SetVrfDevice(6, 1, 10);
  router.Learn({2, *softcard::ReadIpAddress("203.0.113.2")}, {2, 0, 0, 0, 0, 1});
  Tell(data, size, router);
  router.Begin();
  router.Sweep();
  Expect(router.route_count() == 0 && card.tables().routes.count() == 0, "a route has stayed");
  Expect(router.label_count() == 0 && card.tables().labels.count() == 0, "a label has stayed");
  Expect(router.NextHopRows().empty(), "a next hop has stayed");
  Expect(card.RowCount("destinations") == kInterfaces, "a destination has stayed");
  Expect(card.RowCount("egresses") == 0, "an egress object has stayed");
  return 0;
}
