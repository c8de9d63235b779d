#include "softcard/tables/Row.h"

#include "calls/Json.h"
#include "softcard/LimId.h"

namespace softcard {

int TableDescription::column_count() const {
  int count = 0;
  while (count < kMaxColumns && columns[count].name) ++count;
  return count;
}

int TableDescription::Find(const std::string& column) const {
  for (int i = 0; i < column_count(); ++i) {
    if (columns[i].name == column) return i;
  }
  return -1;
}

namespace {

/// A value; quoted when it is several words.
std::string Shown(calls::Kind kind, const calls::Value& value) {
  std::string text = calls::Text(kind, value, kLimIdNames);
  const bool quoted = kind == calls::Kind::kText && text.find(' ') != std::string::npos;
  return quoted ? '"' + text + '"' : text;
}

}  // namespace

std::string NameOf(const Row& row) {
  return std::string(row.table->row) + ' ' + calls::Text(row.table->key.kind, row.key, kLimIdNames);
}

std::string Text(const Row& row) {
  std::string text = NameOf(row) + ':';
  for (std::size_t i = 0; i < row.values.size(); ++i) {
    const Column& column = row.table->columns[i];
    text += ' ';
    text += column.name;
    text += '=';
    text += Shown(column.kind, row.values[i]);
  }
  return text;
}

std::vector<std::string> Texts(const std::vector<Row>& rows) {
  std::vector<std::string> texts;
  texts.reserve(rows.size());
  for (const Row& row : rows) texts.push_back(Text(row));
  return texts;
}

std::string Json(const Row& row) {
  const Column& key = row.table->key;
  std::string json = '{' + calls::JsonString(key.name) + ": " + calls::Json(key.kind, row.key, kLimIdNames);
  for (std::size_t i = 0; i < row.values.size(); ++i) {
    const Column& column = row.table->columns[i];
    json += ", " + calls::JsonString(column.name) + ": " + calls::Json(column.kind, row.values[i], kLimIdNames);
  }
  return json + '}';
}

}  // namespace softcard
