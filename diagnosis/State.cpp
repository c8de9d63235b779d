#include "diagnosis/State.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "scenario/SourceFile.h"
#include "softcard/LimId.h"

namespace diagnosis {
namespace {

using Json = nlohmann::json;

constexpr int kVersion = 1;
constexpr char kChecksum[] = ",\n\"checksum\": ";
constexpr std::size_t kMost = std::size_t{1} << 30;  // bytes, of a state

/// FNV-1a of a text, in hexadecimal.
std::string Checksum(std::string_view text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4) digits += "0123456789abcdef"[hash >> shift & 0xF];
  return digits;
}

calls::Labels ToLabels(const Json& json) {
  calls::Labels labels;
  for (const Json& label : json) {
    labels.push_back({label.at("flags").get<std::uint32_t>(), label.at("label").get<std::uint32_t>(),
                      label.at("qos_map").get<int>(), label.at("exp").get<std::uint8_t>(),
                      label.at("ttl").get<std::uint8_t>()});
  }
  return labels;
}

/// The other way round from calls::Json().
calls::Value ToValue(calls::Kind kind, const Json& json) {
  if (json.is_null()) return kind == calls::Kind::kLabel ? calls::Value(std::int64_t{0xFFFFFFFF}) : calls::Value();
  if (json.is_boolean()) return std::int64_t{json.get<bool>()};
  if (kind == calls::Kind::kLabels) return ToLabels(json);
  if (json.is_number_integer()) return json.get<std::int64_t>();
  const auto text = json.get<std::string>();
  std::string_view rest = text;
  const auto value = calls::Read(kind, &rest, softcard::kLimIdNames);
  if (!value || !rest.empty()) throw std::runtime_error('"' + text + "\" is no value of its column");
  return *value;
}

Rows ToRows(const softcard::TableDescription& table, const Json& json) {
  Rows rows;
  for (const Json& written : json) {
    softcard::Row row{&table, ToValue(table.key.kind, written.at(table.key.name)), {}};
    for (int i = 0; i < table.column_count(); ++i) {
      row.values.push_back(ToValue(table.columns[i].kind, written.at(table.columns[i].name)));
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

Rows ReadRows(const std::string& text) {
  const Json state = Json::parse(text);
  if (!state.is_object() || state.value("format", "") != "softcard state") {
    throw std::runtime_error("it is no saved state");
  }
  if (state.at("version") != kVersion) {
    throw std::runtime_error("it has version " + state.at("version").dump() + ", this command reads version " +
                             std::to_string(kVersion));
  }
  const std::size_t end = text.rfind(kChecksum);
  if (end == std::string::npos || state.at("checksum") != Checksum(text.substr(0, end))) {
    throw std::runtime_error("it has been edited since it was saved");
  }
  Rows rows;
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    for (softcard::Row& row : ToRows(*table, state.at("tables").at(table->name))) rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace

std::string DescriptionJson(const softcard::CardDescription& card) {
  Json exp_maps = Json::object();  // by the map's id
  for (const auto& [id, exps] : card.exp_maps) exp_maps[std::to_string(id)] = exps;
  return Json{{"ports", card.front_ports},
              {"lags", card.lags},
              {"vrfs", card.vrfs},
              {"vlans", card.vlans},
              {"intfs", card.intfs},
              {"egresses", card.egresses},
              {"initiators", card.initiators},
              {"routes", card.routes},
              {"labels", card.labels},
              {"unit", card.unit},
              {"slot", card.slot},
              {"exp-map", card.exp_map_id},
              {"exp", exp_maps}}
      .dump();
}

std::string StateJson(const softcard::Card& card) {
  std::string json = "{\"format\": \"softcard state\", \"version\": " + std::to_string(kVersion) +
                     ",\n\"card\": " + DescriptionJson(card.description()) + ",\n\"tables\": {";
  std::string_view before_table = "\n";
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    json.append(before_table).append("\"").append(table->name).append("\": [");
    std::string_view before_row = "\n";
    for (const softcard::Row& row : card.Rows(table->name)) {
      json.append(before_row).append("  ").append(softcard::Json(row));
      before_row = ",\n";
    }
    json += ']';
    before_table = ",\n";
  }
  json += "}";
  return json + kChecksum + '"' + Checksum(json) + "\"}\n";
}

Rows ReadState(const std::string& path) {
  const std::string text = scenario::ReadFile(path, kMost);
  try {
    return ReadRows(text);
  } catch (const Json::parse_error&) {
    throw std::runtime_error(path + " is no JSON, or was cut; save the state again");
  } catch (const Json::exception&) {
    throw std::runtime_error(path + " lacks what a saved state has; save the state again");
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path + ": " + error.what() + "; save the state again");
  }
}

}  // namespace diagnosis
