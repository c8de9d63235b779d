#ifndef SOFTCARD_TABLES_ROW_H
#define SOFTCARD_TABLES_ROW_H

#include <string>
#include <vector>

#include "calls/Value.h"

namespace softcard {

/// Where a table's rows come from.
enum class Origin {
  kGiven,           ///< what the card has: ports
  kSetAtStart,      ///< set when the module starts
  kMadeByRequests,  ///< empty on a card that nobody has asked for anything
  kCounted,         ///< what packets leave behind
};

struct Column {
  const char* name;
  calls::Kind kind;
};

/// What a table's rows are; one for each table, and everything that shows, counts or compares rows is made from it.
struct TableDescription {
  static constexpr int kMaxColumns = 8;

  const char* name;  ///< "intfs"
  const char* row;   ///< "intf"
  Origin origin;
  Column key;                   ///< its name stands in JSON only
  Column columns[kMaxColumns];  ///< up to the first without a name

  int column_count() const;
  /// The place of the column of this name; -1 when there is none.
  int Find(const std::string& column) const;
};

/// A row of a table, with values of its own.
struct Row {
  const TableDescription* table;
  calls::Value key;
  std::vector<calls::Value> values;  ///< as the table's description has them
};

/// "intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none".
std::string Text(const Row& row);
std::vector<std::string> Texts(const std::vector<Row>& rows);
/// "intf 1".
std::string NameOf(const Row& row);
/// {"intf": 1, "vrf": 1, ...}.
std::string Json(const Row& row);

}  // namespace softcard

#endif
