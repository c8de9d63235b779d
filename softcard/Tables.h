#ifndef SOFTCARD_TABLES_H
#define SOFTCARD_TABLES_H

#include "softcard/CardDescription.h"
#include "softcard/tables/ChipControls.h"
#include "softcard/tables/EgressTable.h"
#include "softcard/tables/InitiatorTable.h"
#include "softcard/tables/IntfTable.h"
#include "softcard/tables/LabelTable.h"
#include "softcard/tables/PortTables.h"
#include "softcard/tables/Ports.h"
#include "softcard/tables/RouteTable.h"
#include "softcard/tables/StationTable.h"
#include "softcard/tables/VrfTables.h"

namespace softcard {

/// What the chip holds. The tables know nothing of each other: a copy is a snapshot.
struct Tables {
  explicit Tables(const CardDescription& description)
      : ports(description),
        intfs(description.intfs),
        egresses(description.egresses),
        initiators(description.initiators),
        stations(description.vlans),
        vrfs(description.vrfs),
        associations(description.vlans),
        protocol(description.vlans),
        routes(description.routes),
        labels(description.labels),
        attachments(description.front_ports),
        lags(description.lags),
        exp_maps(description.exp_maps) {}

  Ports ports;
  IntfTable intfs;
  EgressTable egresses;
  InitiatorTable initiators;
  StationTable stations;
  VrfTable vrfs;
  AssociationTable associations;
  ProtocolControl protocol;
  SwitchControls switch_controls;
  // What other modules of a card fill.
  RouteTable routes;
  LabelTable labels;
  AttachTable attachments;
  LagTable lags;
  ExpMaps exp_maps;
};

}  // namespace softcard

#endif
