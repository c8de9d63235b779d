#include "diagnosis/Ledger.h"

#include <set>
#include <utility>

#include "diagnosis/Touches.h"

namespace diagnosis {
namespace {

/// FNV-1a over the bytes of a value; what has several parts goes in by its text.
class Hash {
 public:
  void Add(const calls::Argument& argument, const calls::Value& value) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
      for (int shift = 0; shift < 64; shift += 8) Add(static_cast<unsigned char>(*number >> shift));
    } else {
      for (const char c : calls::Text(argument.kind, value)) Add(static_cast<unsigned char>(c));
    }
  }
  /// Never 0.
  unsigned value() const { return hash_ | 1U; }

 private:
  void Add(unsigned char byte) { hash_ = (hash_ ^ byte) * 16777619U; }

  unsigned hash_ = 2166136261U;
};

/// A hash of everything that the call is given but for its key.
unsigned HashOf(const calls::Call& call, const Writer& writer) {
  Hash hash;
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const calls::Argument& argument = call.function->arguments[i];
    if (argument.name != writer.key) hash.Add(argument, call.arguments[i]);
  }
  return hash.value();
}

bool Failed(const scenario::RequestResult& result) {
  return result.kind == scenario::RequestResult::Kind::kThrew || result.number < 0;
}

}  // namespace

void Ledger::Took(const scenario::Step& step) {
  if (ended_) *this = Ledger(most_idle_);
  const auto* const trace = std::get_if<scenario::Trace>(&step.content);
  if (trace == nullptr || step.kind == scenario::Kind::kPacket) return;
  const bool failed = Failed(trace->result);
  if (requests_.size() >= most_requests_) Forget();
  requests_.push_back({SourceOf(step), static_cast<std::uint32_t>(rounds_.size())});
  for (const auto& counter : step.rounds) rounds_.push_back(counter.second);
  touched_.clear();
  for (const scenario::TraceLine& line : trace->lines) {
    const auto* const event = std::get_if<calls::Event>(&line.what);
    if (event == nullptr) continue;
    if (const auto* call = std::get_if<calls::Call>(event)) {
      Follow(*call);
    } else {
      Follow(std::get<calls::LogLine>(*event), failed);
    }
  }
  std::string refused = RefusedCalls(*trace);
  if (!refused.empty()) refused_[requests_.size() - 1] = std::move(refused);
  if (failed) return;
  for (Touch* touch : touched_) touch->settled = touch->written;
}

const Ledger::Source* Ledger::SourceOf(const scenario::Step& step) {
  const Source*& known = source_at_[step.source.data()];
  if (known == nullptr || known->line != step.line || known->text != step.source || known->file != step.file) {
    known = &sources_.emplace_back(Source{step.file, step.line, std::string(step.source), step.rounds});
  }
  return known;
}

void Ledger::Forget() {
  std::vector<std::uint32_t> numbers(requests_.size());
  for (const auto& [table, touches] : touches_) {
    for (const auto& [key, touch] : touches) numbers[touch.request] = 1;
  }
  std::vector<Made> requests;
  std::vector<std::int64_t> rounds;
  std::map<std::size_t, std::string> refused;
  std::set<const Source*> used;
  for (std::size_t old = 0; old < requests_.size(); ++old) {
    if (numbers[old] == 0) continue;
    numbers[old] = static_cast<std::uint32_t>(requests.size());
    const Made& made = requests_[old];
    used.insert(made.source);
    if (const auto text = refused_.find(old); text != refused_.end()) refused[requests.size()] = text->second;
    requests.push_back({made.source, static_cast<std::uint32_t>(rounds.size())});
    const auto begin = rounds_.begin() + made.rounds;
    rounds.insert(rounds.end(), begin, begin + static_cast<std::ptrdiff_t>(made.source->counters.size()));
  }
  for (auto& [table, touches] : touches_) {
    for (auto& [key, touch] : touches) touch.request = numbers[touch.request] & 0x3FFFFFFFU;
  }
  requests_ = std::move(requests);
  rounds_ = std::move(rounds);
  refused_ = std::move(refused);
  source_at_.clear();
  sources_.remove_if([&used](const Source& source) { return used.count(&source) == 0; });
  most_requests_ = most_idle_ + 2 * requests_.size();
}

void Ledger::Ended(const std::string&, const scenario::Tally&) { ended_ = true; }

Ledger::Touch& Ledger::TouchOf(std::string_view table, std::int64_t key) {
  auto found = touches_.find(table);
  if (found == touches_.end()) found = touches_.emplace(table, Touches()).first;
  return found->second[static_cast<std::int32_t>(key)];
}

const Ledger::Touch* Ledger::FindTouch(std::string_view table, std::int64_t key) const {
  const auto rows = touches_.find(table);
  if (rows == touches_.end()) return nullptr;
  const auto touch = rows->second.find(static_cast<std::int32_t>(key));
  return touch == rows->second.end() ? nullptr : &touch->second;
}

void Ledger::Follow(const calls::Call& call) {
  const Writer* const writer = FindWriter(call.function);
  if (writer == nullptr) return;
  const calls::Value* const value = KeyOf(call, *writer);
  const auto* const number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  const bool refused = calls::IsRefused(call);
  const bool without_id = writer->key.empty() && refused;
  if (number == nullptr || without_id || (writer->what == Writer::What::kLooks && !refused)) return;
  Touch& touch = TouchOf(writer->table, *number);
  Mark(touch);
  touched_.push_back(&touch);
  if (refused) return;
  touch.written = writer->what == Writer::What::kWrites ? HashOf(call, *writer) : 0;
  if (writer->table == "intfs" && writer->what == Writer::What::kWrites) FollowVlan(call, static_cast<int>(*number));
}

void Ledger::FollowVlan(const calls::Call& call, int intf) {
  const std::string_view name = "vlan";
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    if (call.function->arguments[i].name != name) continue;
    const auto vlan_id = static_cast<std::uint16_t>(std::get<std::int64_t>(call.arguments[i]));
    const auto [known, is_new] = vlans_.emplace(intf, vlan_id);
    if (is_new || known->second == vlan_id) return;
    for (const char* table : {"stations", "associations", "protocol"}) Mark(TouchOf(table, known->second));
    known->second = vlan_id;
  }
}

void Ledger::Follow(const calls::LogLine& line, bool failed) {
  const Begun begun = ReadBegun(line.text);
  if (begun.what == Maker::kUnknown) return;
  Touch& touch = TouchOf("destinations", begun.destination);
  Mark(touch);
  if (failed) return;
  if (begun.destroy) touch.maker = Maker::kUnknown;
  // A second install is refused its record, and the first maker stays.
  if (begun.install && touch.maker == Maker::kUnknown) touch.maker = begun.what;
}

Maker Ledger::MakerOf(int destination) const {
  const Touch* const touch = FindTouch("destinations", destination);
  return touch == nullptr ? Maker::kUnknown : touch->maker;
}

std::optional<std::size_t> Ledger::LastTouching(std::string_view table, std::int64_t key) const {
  const Touch* const touch = FindTouch(table, key);
  if (touch == nullptr) return std::nullopt;
  return touch->request;
}

Ledger::Request Ledger::RequestOf(std::size_t number) const {
  const Made& made = requests_[number];
  const Source& source = *made.source;
  scenario::Counters counters = source.counters;
  for (std::size_t i = 0; i < counters.size(); ++i) counters[i].second = rounds_[made.rounds + i];
  std::string text;
  scenario::Substitute({source.text, 0}, counters, text);
  const auto refused = refused_.find(number);
  return {source.line == 0 ? "the module's start" : source.file + ':' + std::to_string(source.line), text,
          refused == refused_.end() ? "" : refused->second};
}

bool Ledger::IsHalfWritten(std::string_view table, std::int64_t key) const {
  const Touch* const touch = FindTouch(table, key);
  return touch != nullptr && touch->written != touch->settled;
}

}  // namespace diagnosis
