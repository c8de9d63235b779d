#include "scenario/RowFilter.h"

#include <algorithm>

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "softcard/LimId.h"

namespace scenario {

std::optional<RowFilter> RowFilter::Make(const softcard::TableDescription& table, std::string_view column,
                                         const Token& value) {
  int place = column == table.key.name ? -1 : table.column_count();
  const auto is_it = [column](const softcard::Column& one) {
    return column == one.name || (column == "label" && one.kind == calls::Kind::kLabels);
  };
  if (place >= 0) {
    const auto* const end = table.columns + table.column_count();
    const auto* const found = std::find_if(table.columns, end, is_it);
    if (found == end) return std::nullopt;
    place = static_cast<int>(found - table.columns);
  }
  calls::Kind kind = place < 0 ? table.key.kind : table.columns[place].kind;
  if (kind == calls::Kind::kLabels) kind = calls::Kind::kLabel;
  std::string_view rest = value.text;
  const auto read = calls::Read(kind, &rest, softcard::kLimIdNames);
  if (!read || !rest.empty() || value.text.empty()) {
    throw SyntaxError{value.offset,
                      Quoted(value.text) + " is no value of " + std::string(column) + " in " + table.name};
  }
  return RowFilter(place, kind, calls::Text(kind, *read, softcard::kLimIdNames));
}

bool RowFilter::Fits(const softcard::Row& row) const {
  const calls::Value& value = column_ < 0 ? row.key : row.values[static_cast<std::size_t>(column_)];
  const auto* const labels = std::get_if<calls::Labels>(&value);
  if (labels == nullptr) return calls::Text(kind_, value, softcard::kLimIdNames) == text_;
  return std::any_of(labels->begin(), labels->end(), [this](const auto& label) {
    return calls::Text(kind_, calls::ToValue(label.label), softcard::kLimIdNames) == text_;
  });
}

}  // namespace scenario
