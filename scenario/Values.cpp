#include "scenario/Values.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "softcard/Card.h"

namespace scenario {

const Names kStatuses = {
    {"BCM_E_NONE", 0},       {"BCM_E_INTERNAL", -1}, {"BCM_E_MEMORY", -2},    {"BCM_E_UNIT", -3},
    {"BCM_E_PARAM", -4},     {"BCM_E_EMPTY", -5},    {"BCM_E_FULL", -6},      {"BCM_E_NOT_FOUND", -7},
    {"BCM_E_EXISTS", -8},    {"BCM_E_TIMEOUT", -9},  {"BCM_E_BUSY", -10},     {"BCM_E_FAIL", -11},
    {"BCM_E_DISABLED", -12}, {"BCM_E_BADID", -13},   {"BCM_E_RESOURCE", -14}, {"BCM_E_CONFIG", -15},
    {"BCM_E_UNAVAIL", -16},  {"BCM_E_INIT", -17},    {"BCM_E_PORT", -18},
};

std::vector<std::string> FunctionNames(bool refusable) {
  std::vector<std::string> names;
  for (const calls::Function& function : calls::kFunctions) {
    if (function.purpose == calls::Purpose::kCall && (!refusable || function.can_be_refused())) {
      names.emplace_back(function.name);
    }
  }
  return names;
}

std::vector<std::string> NamesOf(const Names& names) {
  std::vector<std::string> result;
  for (const auto& name : names) result.push_back(name.first);
  return result;
}

namespace {

const Names kTruth = {{"false", 0}, {"true", 1}};

template <typename T>
constexpr long long Lowest() {
  return std::numeric_limits<T>::lowest();
}
template <typename T>
constexpr long long Highest() {
  return std::numeric_limits<T>::max();
}

/// The number that all of `text` spells; what is wrong with it otherwise.
std::errc Read(std::string_view text, long long& number) {
  const bool hexadecimal = text.substr(0, 2) == "0x";
  if (hexadecimal) text.remove_prefix(2);
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, hexadecimal ? 16 : 10);
  return stop == end ? error : std::errc::invalid_argument;
}

std::string OneOf(const std::vector<std::string>& known, const Token& word, std::string_view what) {
  const auto found = std::find(known.begin(), known.end(), word.text);
  if (found == known.end()) {
    throw SyntaxError{word.offset,
                      "unknown " + std::string(what) + " " + Quoted(word.text) + Suggest(word.text, known)};
  }
  return *found;
}

bool StartsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

/// Which ports of this kind the card has, when `name` is of the kind and beyond them.
void CheckPort(const Token& word, std::string_view kind, unsigned count) {
  long long index = 0;
  if (!StartsWith(word.text, kind) || Read(word.text.substr(kind.size()), index) != std::errc{}) return;
  if (index >= 1 && index <= count) return;
  const std::string name(kind);
  const std::string text(word.text);
  throw SyntaxError{word.offset, "the card has no " + text + "; it has " +
                                     (count == 0 ? "none" : name + "1 ... " + name + std::to_string(count)) +
                                     ", and \"absent:" + text + "\" asks for the port all the same"};
}

/// "vlan99999999" is a lim id in all but its number.
void CheckIndex(const Token& word, std::string_view name) {
  constexpr long long kHighest = 0xFFFFFF;
  for (const std::string_view kind : {"eth", "lag", "vlan"}) {
    long long index = 0;
    if (!StartsWith(name, kind)) continue;
    const std::errc error = Read(name.substr(kind.size()), index);
    if (error == std::errc::invalid_argument || (error == std::errc{} && index <= kHighest)) continue;
    throw SyntaxError{word.offset,
                      std::string(name) + " does not fit; the number of a lim id is 0 ... " + std::to_string(kHighest)};
  }
}

/// "eth7" for "eht7".
std::string SuggestPort(std::string_view name) {
  const std::string number(name.substr(std::min(name.find_first_of("0123456789"), name.size())));
  const std::string suggestion = Suggest(name, {"eth" + number, "lag" + number, "vlan" + number, "cpu"});
  const bool near = !number.empty() && suggestion.find('?') != std::string::npos;
  return near ? suggestion : "; a lim id is ethN, lagN, vlanN, cpu or the word itself, such as 0x05000001";
}

}  // namespace

const Names kVlanCapabilities = {{"none", 0}, {"station-flag", 1}};
const Names kMplsCapabilities = {{"none", 0}, {"protection", 1}, {"swap", 2}, {"forward", 3}, {"push", 4}, {"vc", 5}};
const Names kActions = {{"none", 0}, {"drop", 1}, {"cpu", 2}};

long long ToNumber(const Token& word, std::string_view what, long long low, long long high, const Names& names) {
  for (const auto& [name, value] : names) {
    if (name == word.text) return value;
  }
  long long number = 0;
  const std::errc error = Read(word.text, number);
  if (error == std::errc::invalid_argument) {
    throw SyntaxError{word.offset, Quoted(word.text) + " is no " + std::string(what) +
                                       (names.empty() ? "; it is a number" : Suggest(word.text, NamesOf(names)))};
  }
  if (error != std::errc{} || number < low || number > high) {
    throw SyntaxError{word.offset, (word.text.size() < 100 ? Printable(word.text) : Quoted(word.text)) +
                                       " does not fit; " + std::string(what) + " is " + std::to_string(low) + " ... " +
                                       std::to_string(high)};
  }
  return number;
}

unsigned ToUnsigned(const Token& word, std::string_view what) {
  return static_cast<unsigned>(ToNumber(word, what, Lowest<unsigned>(), Highest<unsigned>()));
}

int ToInt(const Token& word, std::string_view what, const Names& names) {
  return static_cast<int>(ToNumber(word, what, Lowest<int>(), Highest<int>(), names));
}

std::optional<std::array<unsigned char, 6>> ToMac(const Token& word) {
  if (word.text == "null") return std::nullopt;
  const std::size_t plus = word.text.find('+');
  const std::string_view bytes = word.text.substr(0, plus);
  unsigned long long address = 0;
  unsigned count = 0;
  for (std::size_t begin = 0; begin <= bytes.size(); ++count) {
    const std::size_t end = std::min(bytes.find(':', begin), bytes.size());
    unsigned byte = 0;
    const auto [stop, error] = std::from_chars(bytes.data() + begin, bytes.data() + end, byte, 16);
    if (error != std::errc{} || stop != bytes.data() + end || end - begin > 2) {
      throw SyntaxError{word.offset + begin,
                        Quoted(bytes.substr(begin, end - begin)) +
                            " is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"};
    }
    address = address << 8 | byte;
    begin = end + 1;
  }
  if (count != 6) {
    throw SyntaxError{word.offset, "this MAC address has " + std::to_string(count) + (count == 1 ? " byte" : " bytes") +
                                       "; one has six, such as 00:00:5e:00:01:01"};
  }
  if (plus != std::string::npos) address += ToUnsigned(Behind(word, plus + 1), "offset of a MAC address");
  std::array<unsigned char, 6> mac{};
  for (unsigned i = 0; i < 6; ++i) mac[i] = static_cast<unsigned char>(address >> (40 - 8 * i));
  return mac;
}

limid_t ToLimId(const Token& word, const softcard::CardDescription& card) {
  constexpr std::string_view kAbsent = "absent:";
  if (StartsWith(word.text, "0x")) return {ToUnsigned(word, "lim id")};
  const bool absent = StartsWith(word.text, kAbsent);
  const std::string_view name = absent ? word.text.substr(kAbsent.size()) : word.text;
  const std::optional<limid_t> limid = softcard::ReadLimId(name);
  if (!limid) {
    CheckIndex(word, name);
    throw SyntaxError{word.offset, "unknown port " + Quoted(name) + SuggestPort(name)};
  }
  if (!absent) {
    CheckPort(word, "eth", card.front_ports);
    CheckPort(word, "lag", card.lags);
  }
  return *limid;
}

int ToStatus(const Token& word, std::string_view what) { return ToInt(word, what, kStatuses); }

int ToResult(const Token& word, const calls::Function* function) {
  if (function == nullptr) {
    Names any = kStatuses;
    any.insert(any.end(), kTruth.begin(), kTruth.end());
    return ToInt(word, "result", any);
  }
  const std::string what = std::string("result of ") + function->name;
  switch (function->result) {
    case calls::Result::kFound:
      for (const auto& [name, value] : kTruth) {
        if (name == word.text) return static_cast<int>(value);
      }
      throw SyntaxError{word.offset, Quoted(word.text) + " is no " + what + "; it is true or false"};
    case calls::Result::kStatus:
    case calls::Result::kId: return ToStatus(word, what);
    default: return ToInt(word, what);
  }
}

std::string ToFunction(const Token& word) { return OneOf(FunctionNames(false), word, "platform function"); }

const calls::Function* ToFunctionWithResult(const Token& word) {
  return calls::FindFunction(OneOf(FunctionNames(true), word, "platform function with a result"));
}

std::string ToCallPattern(const Token& word) {
  const std::size_t end = word.text.find_first_of("*(");
  const Token head{word.text.substr(0, end), word.offset + (word.quoted ? 1 : 0)};
  const std::vector<std::string> names = FunctionNames(false);
  if (end == std::string_view::npos) {
    OneOf(names, head, "platform function");
    throw SyntaxError{head.offset, "this is no whole call; leave the quotes out for a call of " + Quoted(head.text) +
                                       " whatever its arguments and result"};
  }
  const bool whole = word.text[end] == '(';
  const auto fits = [&](const std::string& name) { return whole ? name == head.text : StartsWith(name, head.text); };
  if (std::none_of(names.begin(), names.end(), fits)) OneOf(names, head, "platform function");
  return std::string(word.text);
}

std::vector<std::string> ToTables(const Token& word) {
  std::vector<std::string> names = softcard::Card::TableNames();
  names.emplace_back("all");
  if (const std::string name = OneOf(names, word, "table"); name != "all") return {name};
  names.clear();
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    if (table->origin != softcard::Origin::kGiven) names.emplace_back(table->name);
  }
  return names;
}

std::string ToTable(const Token& word) { return OneOf(softcard::Card::TableNames(), word, "table"); }

}  // namespace scenario
