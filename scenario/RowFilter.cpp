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

RowFilter RowFilter::Read(const softcard::TableDescription& table, const Token& word) {
  const std::size_t equals = word.text.find('=');
  const std::string_view column = word.text.substr(0, equals);
  if (equals != std::string_view::npos) {
    if (const auto filter = Make(table, column, Behind(word, equals + 1))) return *filter;
  }
  std::vector<std::string> names = {table.key.name};
  for (int i = 0; i < table.column_count(); ++i) names.emplace_back(table.columns[i].name);
  throw SyntaxError{word.offset, std::string(table.name) + " has no column " + Quoted(column) + Suggest(column, names)};
}

bool RowFilter::Fits(const softcard::Row& row) const {
  const calls::Value& value = column_ < 0 ? row.key : row.values[static_cast<std::size_t>(column_)];
  const auto* const labels = std::get_if<calls::Labels>(&value);
  if (labels == nullptr) {
    const std::string text = calls::Text(kind_, value, softcard::kLimIdNames);
    // Ports are a list.
    return text == text_ || (',' + text + ',').find(',' + text_ + ',') != std::string::npos;
  }
  return std::any_of(labels->begin(), labels->end(), [this](const auto& label) {
    return calls::Text(kind_, calls::ToValue(label.label), softcard::kLimIdNames) == text_;
  });
}

std::vector<softcard::Row> Filtered(std::vector<softcard::Row> rows, const std::vector<RowFilter>& filters) {
  const auto fits = [&filters](const softcard::Row& row) {
    return std::all_of(filters.begin(), filters.end(), [&row](const RowFilter& filter) { return filter.Fits(row); });
  };
  rows.erase(std::stable_partition(rows.begin(), rows.end(), fits), rows.end());
  return rows;
}

}  // namespace scenario
