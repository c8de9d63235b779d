#include "calls/Value.h"

#include <algorithm>
#include <charconv>

#include "bcm/error.h"
#include "calls/Json.h"
#include "calls/Take.h"

// Weak: calls are written and read also where no platform is.
#pragma weak _shr_errmsg

namespace calls {
namespace {

constexpr std::int64_t kNoLabel = 0xFFFFFFFF;
constexpr int kMaxLabels = 2;

/// The names of an enumeration's values.
struct Name {
  std::int64_t value;
  const char* text;
};
constexpr Name kBools[] = {{1, "true"}, {0, "false"}};
constexpr Name kLimIdTypes[] = {{limid_type_ethernet, "ethernet"},
                                {limid_type_lag, "lag"},
                                {limid_type_cpuport, "cpuport"},
                                {limid_type_l3_vlan, "l3_vlan"}};
constexpr Name kSwitchControls[] = {{bcmSwitchL3EgressMode, "bcmSwitchL3EgressMode"},
                                    {bcmSwitchL3IngressMode, "bcmSwitchL3IngressMode"}};
constexpr Name kTunnelTypes[] = {{TunnelObject::kTunnelTypeNone, "none"}, {TunnelObject::kTunnelTypeMpls, "mpls"}};

template <std::size_t N>
std::string NameOf(const Name (&names)[N], std::int64_t value) {
  const Name* const name =
      std::find_if(std::begin(names), std::end(names), [&](const Name& n) { return n.value == value; });
  return name != std::end(names) ? name->text : std::to_string(value);
}

std::string Hexadecimal(std::uint64_t value, std::size_t min_digits) {
  char digits[16];
  const std::string text(digits, std::to_chars(digits, digits + sizeof digits, value, 16).ptr);
  return text.size() < min_digits ? std::string(min_digits - text.size(), '0') + text : text;
}

std::string MacText(const MacAddress& mac) {
  std::string text;
  for (const unsigned char byte : mac) text += (text.empty() ? "" : ":") + Hexadecimal(byte, 2);
  return text;
}

/// A label record's fields, in the order in which they are shown.
struct LabelField {
  const char* name;
  Kind kind;
  std::int64_t (*get)(const bcm_mpls_egress_label_t& label);
  void (*set)(bcm_mpls_egress_label_t* label, std::int64_t value);
};
using Record = bcm_mpls_egress_label_t;
constexpr LabelField kLabelFields[] = {
    {"flags", Kind::kHex, [](const Record& r) { return std::int64_t{r.flags}; },
     [](Record* r, std::int64_t v) { r->flags = static_cast<uint32_t>(v); }},
    {"label", Kind::kLabel, [](const Record& r) { return std::int64_t{r.label}; },
     [](Record* r, std::int64_t v) { r->label = static_cast<uint32_t>(v); }},
    {"qos_map", Kind::kNumber, [](const Record& r) { return std::int64_t{r.qos_map_id}; },
     [](Record* r, std::int64_t v) { r->qos_map_id = static_cast<int>(v); }},
    {"exp", Kind::kNumber, [](const Record& r) { return std::int64_t{r.exp}; },
     [](Record* r, std::int64_t v) { r->exp = static_cast<uint8_t>(v); }},
    {"ttl", Kind::kNumber, [](const Record& r) { return std::int64_t{r.ttl}; },
     [](Record* r, std::int64_t v) { r->ttl = static_cast<uint8_t>(v); }}};

std::string LabelsText(const Labels& labels) {
  std::string text = "[";
  for (const Record& record : labels) {
    text += text.size() > 1 ? ", {" : "{";
    for (const LabelField& field : kLabelFields) {
      text += (field.name == kLabelFields[0].name ? "" : ", ") + std::string(field.name) + '=' +
              Text(field.kind, field.get(record));
    }
    text += '}';
  }
  return text + ']';
}

std::string LabelsJson(const Labels& labels) {
  std::string json = "[";
  for (const Record& record : labels) {
    json += json.size() > 1 ? ", {" : "{";
    for (const LabelField& field : kLabelFields) {
      json += (field.name == kLabelFields[0].name ? "" : ", ") + JsonString(field.name) + ": " +
              Json(field.kind, field.get(record));
    }
    json += '}';
  }
  return json + ']';
}

std::optional<std::int64_t> TakeNumber(std::string_view* text, int base = 10) {
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number, base);
  if (error != std::errc()) return std::nullopt;
  text->remove_prefix(static_cast<std::size_t>(end - text->data()));
  return number;
}

template <std::size_t N>
std::optional<Value> TakeName(const Name (&names)[N], std::string_view* text) {
  for (const Name& name : names) {
    if (Take(text, name.text)) return name.value;
  }
  return TakeNumber(text);
}

std::optional<Value> TakeMac(std::string_view* text) {
  if (Take(text, "null")) return Value();
  MacAddress mac{};
  for (unsigned char& byte : mac) {
    if (&byte != mac.data() && !Take(text, ":")) return std::nullopt;
    std::string_view digits = text->substr(0, 2);
    if (digits.size() < 2 || digits.front() == '-') return std::nullopt;
    const auto number = TakeNumber(&digits, 16);
    if (!number || !digits.empty()) return std::nullopt;
    byte = static_cast<unsigned char>(*number);
    text->remove_prefix(2);
  }
  return mac;
}

std::optional<Record> TakeRecord(std::string_view* text) {
  Record record{};
  for (const LabelField& field : kLabelFields) {
    const std::string before = (field.name == kLabelFields[0].name ? "{" : ", ") + std::string(field.name) + '=';
    if (!Take(text, before)) return std::nullopt;
    const auto value = Read(field.kind, text);
    if (!value) return std::nullopt;
    field.set(&record, std::get<std::int64_t>(*value));
  }
  return Take(text, "}") ? std::optional(record) : std::nullopt;
}

std::optional<Value> TakeLabels(std::string_view* text) {
  if (Take(text, "null")) return Value();
  if (!Take(text, "[")) return std::nullopt;
  Labels labels;
  while (!Take(text, "]")) {
    if (!labels.empty() && !Take(text, ", ")) return std::nullopt;
    const auto record = TakeRecord(text);
    if (!record) return std::nullopt;
    labels.push_back(*record);
  }
  return labels;
}

std::string WordText(limid_t limid) { return "0x" + Hexadecimal(limid.word, 1); }

std::optional<limid_t> ReadWord(std::string_view text) {
  if (!Take(&text, "0x")) return std::nullopt;
  const auto word = TakeNumber(&text, 16);
  if (!word || !text.empty() || *word < 0 || *word > 0xFFFFFFFF) return std::nullopt;
  return limid_t{static_cast<uint32_t>(*word)};
}

std::optional<Value> TakeLimId(std::string_view* text, const LimIdNames& names) {
  const std::string_view name = text->substr(0, text->find_first_of(",)]} "));
  const auto limid = names.read(name);
  if (!limid) return std::nullopt;
  text->remove_prefix(name.size());
  return ToValue(*limid);
}

std::optional<Value> TakeStatus(std::string_view* text) {
  const auto status = TakeNumber(text);
  // The words are the platform's: another one's may differ.
  const std::size_t end = text->find(')');
  if (status && *status < 0 && Take(text, " (")) text->remove_prefix(std::min(end - 1, text->size()));
  return status ? std::optional<Value>(*status) : std::nullopt;
}

limid_t LimIdOf(std::int64_t word) { return {static_cast<uint32_t>(word)}; }

}  // namespace

const LimIdNames kLimIdWords = {WordText, ReadWord};

Value ToValue(const LabelArray& labels) {
  if (!labels.labels && labels.count > 0) return {};
  return Labels(labels.labels, labels.labels + std::clamp(labels.count, 0, kMaxLabels));
}

const char* StatusWords(std::int64_t status) {
  constexpr int kUnknown = 19;
  if (!_shr_errmsg) return "no words without a platform";
  return _shr_errmsg[status <= 0 && status >= BCM_E_PORT ? -status : kUnknown];
}

std::string Text(Kind kind, const Value& value, const LimIdNames& names) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* mac = std::get_if<MacAddress>(&value)) return MacText(*mac);
  if (const auto* labels = std::get_if<Labels>(&value)) return LabelsText(*labels);
  if (std::holds_alternative<std::monostate>(value)) return "null";
  const std::int64_t number = std::get<std::int64_t>(value);
  switch (kind) {
    case Kind::kHex: return "0x" + Hexadecimal(static_cast<std::uint64_t>(number), 1);
    case Kind::kBool: return NameOf(kBools, number);
    case Kind::kStatus:
      return std::to_string(number) + (number < 0 ? std::string(" (") + StatusWords(number) + ')' : "");
    case Kind::kLabel: return number == kNoLabel ? "none" : std::to_string(number);
    case Kind::kLimId: return names.text(LimIdOf(number));
    case Kind::kLimIdType: {
      const std::string name = NameOf(kLimIdTypes, number);
      return name == std::to_string(number) ? "unknown" : name;
    }
    case Kind::kSwitchControl: return NameOf(kSwitchControls, number);
    case Kind::kTunnelType: return NameOf(kTunnelTypes, number);
    case Kind::kNumber:
    case Kind::kMac:
    case Kind::kLabels:
    case Kind::kText: break;
  }
  return std::to_string(number);
}

std::string Json(Kind kind, const Value& value, const LimIdNames& names) {
  if (std::holds_alternative<std::monostate>(value)) return "null";
  if (const auto* labels = std::get_if<Labels>(&value)) return LabelsJson(*labels);
  const auto* number = std::get_if<std::int64_t>(&value);
  if (!number) return JsonString(Text(kind, value, names));
  switch (kind) {
    case Kind::kLabel: return *number == kNoLabel ? "null" : std::to_string(*number);
    case Kind::kNumber:
    case Kind::kHex:
    case Kind::kStatus: return std::to_string(*number);
    case Kind::kBool: return NameOf(kBools, *number);
    default: return JsonString(Text(kind, value, names));
  }
}

std::optional<Value> Read(Kind kind, std::string_view* text, const LimIdNames& names) {
  switch (kind) {
    case Kind::kNumber: return TakeNumber(text);
    case Kind::kHex: return Take(text, "0x") ? TakeNumber(text, 16) : std::nullopt;
    case Kind::kBool: return TakeName(kBools, text);
    case Kind::kStatus: return TakeStatus(text);
    case Kind::kMac: return TakeMac(text);
    case Kind::kLabel: return Take(text, "none") ? kNoLabel : TakeNumber(text);
    case Kind::kLabels: return TakeLabels(text);
    case Kind::kLimId: return TakeLimId(text, names);
    case Kind::kLimIdType:
      return Take(text, "unknown") ? std::int64_t{limid_type_unknown} : TakeName(kLimIdTypes, text);
    case Kind::kSwitchControl: return TakeName(kSwitchControls, text);
    case Kind::kTunnelType: return TakeName(kTunnelTypes, text);
    case Kind::kText: break;
  }
  const Value all = std::string(*text);
  text->remove_prefix(text->size());
  return all;
}

}  // namespace calls
