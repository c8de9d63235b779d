#ifndef SCENARIO_STATEMENTS_H
#define SCENARIO_STATEMENTS_H

#include "scenario/Language.h"

/// The groups of statements that AddStandard adds, in the order in which they are listed.
namespace scenario {

void AddRequests(Language& language);           ///< start, init, install-vlan, ...
void AddTraceExpectations(Language& language);  ///< about the last request or packet: expect result, ...
void AddCardExpectations(Language& language);   ///< expect rows, table, empty
void AddClients(Language& language);            ///< client; its callbacks make what the language knows as requests
void AddFaults(Language& language);             ///< fail, clear-faults
void AddCardTables(Language& language);         ///< route, label, attach, lag: what other modules of a card fill
void AddPackets(Language& language);            ///< inject, send
void AddShows(Language& language);              ///< show, say
void AddStructure(Language& language);          ///< for, end, card

}  // namespace scenario

#endif
