#ifndef SCENARIO_VALUES_H
#define SCENARIO_VALUES_H

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calls/Functions.h"
#include "scenario/Tokens.h"
#include "softcard/Card.h"
#include "softcard/packets/Frame.h"
#include "softcard/tables/Prefix.h"

/// What a scenario's words mean. Every function throws SyntaxError for a word that has no meaning here.
namespace scenario {

using Names = std::vector<std::pair<std::string, long long>>;

/// Decimal or 0x hexadecimal, or one of `names`, between `low` and `high`. `what` says in messages what the number is.
long long ToNumber(const Token& word, std::string_view what, long long low, long long high, const Names& names = {});
unsigned ToUnsigned(const Token& word, std::string_view what);
int ToInt(const Token& word, std::string_view what, const Names& names = {});

/// "00:00:5e:00:01:01", also with an offset, "00:00:5e:00:01:00+17"; nothing for "null".
std::optional<std::array<unsigned char, 6>> ToMac(const Token& word);

/// "eth1", "lag2", "cpu", "vlan100"; "absent:eth99" for a port that the card does not have; "0x05000001" for the lim id
/// with this word.
limid_t ToLimId(const Token& word, const softcard::CardDescription& card);

/// The chip's port of a lim id; a number that no port of the card has for one that stands for none.
int ToPort(limid_t limid, const softcard::Card& card);

/// "192.0.2.1", "2001:db8::1".
softcard::IpAddress ToIpAddress(const Token& word);
/// "192.0.2.0/24"; an address alone is the prefix of it alone. Nothing lies behind its length.
softcard::Prefix ToPrefix(const Token& word);

/// Bytes in hexadecimal, with blanks between them or not.
softcard::Bytes ToBytes(const Token& word);

/// A status by name, such as BCM_E_FULL, or by number.
int ToStatus(const Token& word, std::string_view what);
/// What a platform function can return: true or false, a status, or a number. Any of these when it is null.
int ToResult(const Token& word, const calls::Function* function);

/// A platform function by the name that the call log gives it; one with a result that a fault can replace.
std::string ToFunction(const Token& word);
const calls::Function* ToFunctionWithResult(const Token& word);
/// A pattern of a call's whole text. One that no platform function's call can fit is refused.
std::string ToCallPattern(const Token& word);

/// A table of the card; one, or "all" but for those that it is given.
std::string ToTable(const Token& word);
std::vector<std::string> ToTables(const Token& word);

/// The names of the functions that program or ask the card; of those alone whose result a fault can replace.
std::vector<std::string> FunctionNames(bool refusable);

std::vector<std::string> NamesOf(const Names& names);
extern const Names kStatuses;
extern const Names kVlanCapabilities;
extern const Names kMplsCapabilities;
extern const Names kActions;

}  // namespace scenario

#endif
