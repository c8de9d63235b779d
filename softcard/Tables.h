#ifndef SOFTCARD_TABLES_H
#define SOFTCARD_TABLES_H

#include "CardDescription.h"
#include "tables/ChipControls.h"
#include "tables/EgressTable.h"
#include "tables/InitiatorTable.h"
#include "tables/IntfTable.h"
#include "tables/Ports.h"
#include "tables/StationTable.h"
#include "tables/VrfTables.h"

namespace softcard {

/// What the chip holds.
struct Tables {
  explicit Tables(const CardDescription& description)
      : ports(description),
        intfs(description.intfs),
        egresses(intfs, ports, description.egresses),
        initiators(intfs, description.initiators),
        stations(description.vlans),
        vrfs(description.vrfs),
        associations(vrfs, description.vlans),
        protocol(description.vlans) {}

  Ports ports;
  IntfTable intfs;
  EgressTable egresses;
  InitiatorTable initiators;
  StationTable stations;
  VrfTable vrfs;
  AssociationTable associations;
  ProtocolControl protocol;
  SwitchControls switch_controls;
};

}  // namespace softcard

#endif
