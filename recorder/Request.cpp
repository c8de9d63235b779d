#include "recorder/Request.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "calls/Take.h"
#include "calls/Value.h"

namespace recorder {
namespace {

using calls::Kind;
using calls::Take;

enum Field { kNone, kLim, kVlan, kVrf, kMtu, kMac, kLabels, kVlanCaps, kMplsCaps, kActions, kAction };

/// What a request's line is made of: its name, and the fields after the id in their order.
struct Form {
  const char* name;
  Operation operation;
  bool has_id;
  Field fields[7];
};
constexpr Form kForms[] = {
    {"start", Operation::kStart, false, {}},
    {"init", Operation::kInit, false, {}},
    {"install-vrf", Operation::kInstallVrf, true, {}},
    {"destroy-vrf", Operation::kDestroyVrf, true, {}},
    {"install-vlan", Operation::kInstallVlan, true, {kLim, kVrf, kMtu, kMac, kVlanCaps}},
    {"replace-vlan", Operation::kReplaceVlan, true, {kLim, kVrf, kMtu, kMac, kVlanCaps}},
    {"destroy-vlan", Operation::kDestroyVlan, true, {}},
    {"install-host", Operation::kInstallHost, true, {kVlan, kLim, kMac, kActions}},
    {"replace-host", Operation::kReplaceHost, true, {kVlan, kLim, kMac, kActions}},
    {"destroy-host", Operation::kDestroyHost, true, {}},
    {"install-mpls", Operation::kInstallMpls, true, {kVlan, kLim, kMac, kLabels, kMplsCaps, kAction}},
    {"replace-mpls", Operation::kReplaceMpls, true, {kVlan, kLim, kMac, kLabels, kMplsCaps, kAction}},
    {"destroy-mpls", Operation::kDestroyMpls, true, {}},
};

/// The words of an enumeration's values 0, 1, ...; other values are numbers.
struct Words {
  const char* const* words;
  int count;
};
constexpr const char* kVlanCapWords[] = {"none", "station-flag"};
constexpr const char* kMplsCapWords[] = {"none", "protection", "swap", "forward", "push", "vc"};
constexpr const char* kActionWords[] = {"none", "drop", "cpu"};

Words WordsOf(Field field) {
  if (field == kVlanCaps) return {kVlanCapWords, std::size(kVlanCapWords)};
  if (field == kMplsCaps) return {kMplsCapWords, std::size(kMplsCapWords)};
  return {kActionWords, std::size(kActionWords)};
}

const char* NameOf(Field field) {
  constexpr const char* kNames[] = {
      "", " lim=", " vlan=", " vrf=", " mtu=", " mac=", " labels=", " caps=", " caps=", " actions=", " action="};
  return kNames[field];
}

std::string ItemText(int item, Words words) {
  return item >= 0 && item < words.count ? words.words[item] : std::to_string(item);
}

template <typename Items, typename ToText>
std::string ListText(const Items& items, const ToText& to_text) {
  std::string text;
  for (const auto& item : items) text += (text.empty() ? "" : ",") + to_text(item);
  return text;
}

/// Empty for a field that is left out.
std::string FieldText(Field field, const Request& request) {
  switch (field) {
    case kLim: return calls::Text(Kind::kLimId, calls::ToValue(request.limid));
    case kVlan: return std::to_string(request.vlan_destination_id);
    case kVrf: return std::to_string(request.vrf);
    case kMtu: return std::to_string(request.mtu);
    case kMac: return calls::Text(Kind::kMac, request.mac ? calls::ToValue(*request.mac) : calls::Value());
    case kLabels: return ListText(request.labels, [](unsigned label) { return std::to_string(label); });
    case kVlanCaps:
    case kMplsCaps:
    case kActions: return ListText(request.items, [&](int item) { return ItemText(item, WordsOf(field)); });
    case kAction: return request.action == 0 ? "" : ItemText(request.action, WordsOf(field));
    case kNone: break;
  }
  return "";
}

template <typename Number>
bool ReadNumber(std::string_view text, Number* number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
  return error == std::errc() && end == text.data() + text.size();
}

bool ReadItem(std::string_view text, Words words, int* item) {
  const auto* const end = words.words + words.count;
  const auto* const word = std::find(words.words, end, text);
  if (word == end) return ReadNumber(text, item);
  *item = static_cast<int>(word - words.words);
  return true;
}

template <typename Item, typename ReadOne>
bool ReadList(std::string_view text, std::vector<Item>* items, const ReadOne& read_one) {
  while (true) {
    const std::size_t comma = text.find(',');
    if (!read_one(text.substr(0, comma), &items->emplace_back())) return false;
    if (comma == std::string_view::npos) return true;
    text.remove_prefix(comma + 1);
  }
}

bool ReadField(Field field, std::string_view text, Request* request) {
  switch (field) {
    case kLim:
    case kMac: {
      const auto value = calls::Read(field == kLim ? Kind::kLimId : Kind::kMac, &text);
      if (!value || !text.empty()) return false;
      if (const auto* word = std::get_if<std::int64_t>(&*value)) request->limid = {static_cast<uint32_t>(*word)};
      if (const auto* mac = std::get_if<MacAddress>(&*value)) request->mac = *mac;
      return true;
    }
    case kVlan: return ReadNumber(text, &request->vlan_destination_id);
    case kVrf: return ReadNumber(text, &request->vrf);
    case kMtu: return ReadNumber(text, &request->mtu);
    case kLabels: return ReadList(text, &request->labels, ReadNumber<unsigned>);
    case kVlanCaps:
    case kMplsCaps:
    case kActions:
      return ReadList(text, &request->items,
                      [&](std::string_view word, int* item) { return ReadItem(word, WordsOf(field), item); });
    case kAction: return ReadItem(text, WordsOf(field), &request->action);
    case kNone: break;
  }
  return false;
}

bool MayBeLeftOut(Field field) {
  return field == kLabels || field == kVlanCaps || field == kMplsCaps || field == kActions || field == kAction;
}

std::string_view TakeUntilBlank(std::string_view* text) {
  const std::string_view word = text->substr(0, text->find(' '));
  text->remove_prefix(word.size());
  return word;
}

bool IsPlain(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.';
}

}  // namespace

bool NamesAPort(Operation operation) {
  const Form& form = kForms[static_cast<int>(operation)];
  return form.fields[0] == kVlan;
}

std::string Text(const Request& request) {
  const Form& form = kForms[static_cast<int>(request.operation)];
  std::string text = form.name;
  if (form.has_id) text += ' ' + std::to_string(request.id);
  for (const Field field : form.fields) {
    const std::string value = FieldText(field, request);
    if (!value.empty()) text += NameOf(field) + value;
  }
  return text;
}

std::optional<Request> ReadRequest(std::string_view text) {
  const std::string_view name = TakeUntilBlank(&text);
  const Form* const form =
      std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& f) { return f.name == name; });
  if (form == std::end(kForms)) return std::nullopt;
  Request request;
  request.operation = form->operation;
  if (form->has_id && !(Take(&text, " ") && ReadNumber(TakeUntilBlank(&text), &request.id))) return std::nullopt;
  for (const Field field : form->fields) {
    if (field == kNone) break;
    if (Take(&text, NameOf(field)) ? !ReadField(field, TakeUntilBlank(&text), &request) : !MayBeLeftOut(field)) {
      return std::nullopt;
    }
  }
  return text.empty() ? std::optional(request) : std::nullopt;
}

std::string Word(std::string_view name) {
  if (!name.empty() && std::all_of(name.begin(), name.end(), IsPlain)) return std::string(name);
  std::string word = "\"";
  for (const char c : name) {
    if (c == '"' || c == '\\') word += '\\';
    word += c;
  }
  return word + '"';
}

std::optional<std::string> TakeWord(std::string_view* text) {
  std::string name;
  if (!Take(text, "\"")) {
    while (!text->empty() && IsPlain(text->front())) {
      name += text->front();
      text->remove_prefix(1);
    }
    return name.empty() ? std::nullopt : std::optional(name);
  }
  while (!text->empty()) {
    if (Take(text, "\"")) return name;
    if (text->front() == '\\') text->remove_prefix(1);
    if (text->empty()) break;
    name += text->front();
    text->remove_prefix(1);
  }
  return std::nullopt;
}

}  // namespace recorder
