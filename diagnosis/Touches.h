#ifndef DIAGNOSIS_TOUCHES_H
#define DIAGNOSIS_TOUCHES_H

#include <cstdint>
#include <string_view>
#include <vector>

#include "scenario/Trace.h"

/// Which rows a request's platform calls and log lines are about.
namespace diagnosis {

/// A platform function that writes a row, and where a call of it has the row's key.
struct Writer {
  std::string_view function;
  std::string_view table;
  std::string_view key;  ///< an argument; empty: the result
  enum class What { kWrites, kTakesAway, kLooks } what;
};

/// Null for a function that is about no row.
const Writer* FindWriter(const calls::Function* function);

/// The key of the row that the call is about; null when it has none.
const calls::Value* KeyOf(const calls::Call& call, const Writer& writer);

enum class Maker : std::uint32_t { kUnknown, kVlan, kHost, kMpls };

/// "Installing outgoing encapsulation for mpls destination id(30)": the words of the log that begin an operation.
struct Begun {
  bool install = false;
  bool replace = false;
  bool destroy = false;
  Maker what = Maker::kUnknown;  ///< unknown: these are no such words
  int destination = 0;
};
Begun ReadBegun(std::string_view text);

/// A row, by the name of its table and its key.
struct Place {
  std::string_view table;
  std::int64_t key;
};

/// The rows that the request may have changed, in the order of its calls; some more than once.
std::vector<Place> PlacesOf(const scenario::Trace& trace);

}  // namespace diagnosis

#endif
