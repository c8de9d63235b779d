#include "diagnosis/Report.h"

#include <set>

#include "diagnosis/Holders.h"
#include "diagnosis/RowUsers.h"
#include "diagnosis/State.h"
#include "diagnosis/Users.h"
#include "scenario/Tokens.h"

namespace diagnosis {
namespace {

std::string TextJson(const std::string& text) { return calls::Json(calls::Kind::kText, calls::ToValue(text)); }

/// "[", the elements, "]", each on a line of its own.
class List {
 public:
  void Add(const std::string& element) { text_ += (text_.empty() ? "\n" : ",\n") + element; }
  std::string Text() const { return '[' + text_ + ']'; }

 private:
  std::string text_;
};

std::string TextsJson(const std::vector<std::string>& texts) {
  List list;
  for (const std::string& text : texts) list.Add(TextJson(text));
  return list.Text();
}

/// The page writes numbers as they are, but for those that read better in hexadecimal.
std::string ColumnJson(const softcard::Column& column) {
  return "{\"name\": " + TextJson(column.name) + (column.kind == calls::Kind::kHex ? ", \"hex\": true}" : "}");
}

std::string RowJson(const softcard::Row& row, const std::set<unsigned>& users) {
  std::string ids;
  for (const unsigned id : users) ids += (ids.empty() ? "" : ", ") + std::to_string(id);
  return "{\"row\": " + softcard::Json(row) + ", \"used_by\": [" + ids + "]}";
}

/// How many rows there can be; null when nothing bounds them.
std::string SizeJson(const std::vector<softcard::Row>& usage, const std::string& table) {
  for (const softcard::Row& row : usage) {
    if (std::get<std::string>(row.key) == table) return std::to_string(std::get<std::int64_t>(row.values[1]));
  }
  return "null";
}

std::string TablesJson(const softcard::Card& card, const Ledger& ledger) {
  const RowUsers users(card, ledger);
  const auto usage = Usage(card);
  List tables;
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    List columns, rows;
    columns.Add(ColumnJson(table->key));
    for (int i = 0; i < table->column_count(); ++i) columns.Add(ColumnJson(table->columns[i]));
    for (const softcard::Row& row : card.Rows(table->name)) rows.Add(RowJson(row, users.Of(row)));
    tables.Add("{\"name\": " + TextJson(table->name) + ", \"row\": " + TextJson(table->row) + ", \"size\": " +
               SizeJson(usage, table->name) + ", \"columns\": " + columns.Text() + ", \"rows\": " + rows.Text() + '}');
  }
  return tables.Text();
}

/// What a statement of the language tells.
scenario::Content Done(const std::string& line, const scenario::Language& language, scenario::Run& run) {
  scenario::Texts texts;
  std::set<std::string> clients;
  std::set<scenario::Observer*> watchers;
  return language.Read(scenario::Tokenize(line, texts), {run.card.description(), {}, clients, watchers}).action(run);
}

const char* KindOf(Maker maker) { return maker == Maker::kVlan ? "VLAN" : maker == Maker::kHost ? "host" : "MPLS"; }

std::string DestinationJson(const Holder& holder, const scenario::Language& language, scenario::Run& run) {
  const std::string id = std::to_string(static_cast<unsigned>(holder.destination));
  const auto chain = std::get<scenario::ShownChain>(Done("show destination " + id, language, run));
  const auto sent = std::get<scenario::Trace>(Done("send " + id, language, run));
  std::vector<std::string> packet;
  for (const scenario::TraceLine& line : sent.lines) packet.push_back(line.Text());
  return "{\"id\": " + id + ", \"kind\": \"" + KindOf(holder.maker) + "\", \"chain\": " + TextsJson(chain.lines) +
         ", \"packet\": " + TextsJson(packet) + '}';
}

}  // namespace

std::string ReportJson(scenario::Run& run, const scenario::Language& language, const Ledger& ledger,
                       const std::vector<Finding>& findings) {
  // First, as the packets of the stories count.
  const std::string tables = TablesJson(run.card, ledger);
  List destinations, found;
  ForEachHolder(run.card, ledger,
                [&](const Holder& holder) { destinations.Add(DestinationJson(holder, language, run)); });
  for (const softcard::Row& row : ToRows(findings)) found.Add(softcard::Json(row));
  return "{\"card\": " + DescriptionJson(run.card.description()) + ",\n\"tables\": " + tables +
         ",\n\"destinations\": " + destinations.Text() + ",\n\"findings\": " + found.Text() + '}';
}

}  // namespace diagnosis
