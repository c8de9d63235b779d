#ifndef TESTS_FUZZ_FULL_CARD_H
#define TESTS_FUZZ_FULL_CARD_H

#include "tests/softcard/packets/PacketCard.h"

/// A card that has a row for everything. Ports 2 and 3 are attached, 5, 6 and 7 a LAG.
struct FullCard : PacketCard {
  using Action = softcard::LabelAction::Kind;

  FullCard() {
    Route("0.0.0.0", 0, Push({100, 200}));
    Route("10.0.0.0", 8, Push({100, 200}, 16, 2));
    Route("192.0.2.0", 24, 999);
    Route("198.51.100.0", 24, Host(intf, kNoLabel, 0, 1001));
    Route("::", 0, Host());
    Route("2001:db8::", 32, Host(Tunnel({{0, 100, 0, 6, 9}})));
    softcard::Tables& tables = card.tables();
    tables.lags.Set(1001, {5, 6, 7}, tables.ports);
    tables.attachments.Set(2, Vc(17), tables.ports);
    tables.attachments.Set(3, Host(), tables.ports);
    LabelTo(16, Swap(300));
    LabelTo(17, Push({400}, 300, 1));
    LabelTo(18, Host());
    LabelTo(19, Push({100, 200}));
    Label(20, Action::kPopVrf, 1);
    Label(21, Action::kPopPort, 7);
    Label(22, Action::kPopPort, 1001);
  }
};

#endif
