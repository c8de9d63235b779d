#ifndef TESTS_EXTERNAL_CARD_H
#define TESTS_EXTERNAL_CARD_H

#include <string>
#include <vector>

/// The kind of an Ethernet port's lim id on this card, in the lim id's upper byte.
constexpr unsigned kEthernet = 6;

/// What the module asked of the card, a line each; and its log lines of other levels than progress.
std::vector<std::string>& Calls();

#endif
