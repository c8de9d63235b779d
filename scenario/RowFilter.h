#ifndef SCENARIO_ROW_FILTER_H
#define SCENARIO_ROW_FILTER_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenario/Tokens.h"
#include "softcard/tables/Row.h"

namespace scenario {

/// Which rows of a table have a value in a column, or as their key: "port=eth5". Of a stack of labels,
/// or a list of ports, one has to be it.
class RowFilter {
 public:
  /// Nothing when the table has no such column; "label" is a stack of labels, too. Throws SyntaxError for a value that
  /// the column cannot have.
  static std::optional<RowFilter> Make(const softcard::TableDescription& table, std::string_view column,
                                       const Token& value);

  /// "port=eth5". Throws SyntaxError for a column that the table does not have, too.
  static RowFilter Read(const softcard::TableDescription& table, const Token& word);

  bool Fits(const softcard::Row& row) const;

 private:
  RowFilter(int column, calls::Kind kind, std::string text) : column_(column), kind_(kind), text_(std::move(text)) {}

  int column_;  ///< -1: the key
  calls::Kind kind_;
  std::string text_;  ///< as the value reads
};

/// The rows that fit all of them.
std::vector<softcard::Row> Filtered(std::vector<softcard::Row> rows, const std::vector<RowFilter>& filters);

}  // namespace scenario

#endif
