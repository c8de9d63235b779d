#ifndef SOFTCARD_TABLES_LABEL_TABLE_H
#define SOFTCARD_TABLES_LABEL_TABLE_H

#include <vector>

#include "softcard/tables/Ports.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// What an incoming label says.
struct LabelAction {
  enum class Kind : unsigned char {
    kNone,         ///< the label has no row
    kDestination,  ///< to a destination, whose labels take its place
    kPopVrf,       ///< away with it: the packet below is routed in a VRF, a label below is looked up
    kPopPort,      ///< away with it: the Ethernet frame below leaves by a port
  };

  Kind kind = Kind::kNone;
  unsigned value = 0;  ///< destination id, VRF or port
};

/// Incoming labels. A place for each up to the highest one, as on the chip.
class LabelTable {
 public:
  static const TableDescription kDescription;

  explicit LabelTable(unsigned size) : size_(size) {}

  /// The label's action in place of the one that it may have. BCM_E_PARAM for a label above 20 bits, for implicit null,
  /// which no packet carries, and for kNone; BCM_E_PORT for a port that the card does not have; BCM_E_FULL.
  int Set(unsigned label, LabelAction action, const Ports& ports);
  /// BCM_E_NOT_FOUND.
  int Delete(unsigned label);

  LabelAction Find(unsigned label) const { return label < rows_.size() ? rows_[label] : LabelAction(); }

  unsigned count() const { return count_; }
  unsigned size() const { return size_; }
  std::vector<Row> Rows(const Ports& ports) const;
  /// Tells (label, action) of each in the order of the labels.
  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (unsigned label = 0; label < rows_.size(); ++label) {
      if (rows_[label].kind != LabelAction::Kind::kNone) visit(label, rows_[label]);
    }
  }

 private:
  unsigned size_;
  unsigned count_ = 0;
  std::vector<LabelAction> rows_;
};

/// "label 100: action=destination to=20", "label 100: action=pop-vrf to=1", "label 100: action=pop-port to=eth3".
Row MakeRow(unsigned label, LabelAction action, const Ports& ports);

}  // namespace softcard

#endif
