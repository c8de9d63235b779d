#include "scenario/Statements.h"

namespace scenario {

void AddStandard(Language& language) {
  AddRequests(language);
  AddTraceExpectations(language);
  AddCardExpectations(language);
  AddClients(language);
  AddFaults(language);
  AddCardTables(language);
  AddPackets(language);
  AddShows(language);
  AddStructure(language);
}

}  // namespace scenario
