#include "tests/model/Model.h"

#include <algorithm>

#include "tests/model/Signatures.h"
#include "tests/model/Texts.h"

namespace model {
namespace {

/// Leaves the tables on the way to the caller.
struct Thrown {
  std::string what;
};

bool Fails(Failure failure, int64_t result) {
  switch (failure) {
    case Failure::kNever: return false;
    case Failure::kNegative: return result < 0;
    case Failure::kNonzero: return result != 0;
    case Failure::kFalse:
    case Failure::kMissing: return result == 0;
  }
  return false;
}

}  // namespace

/// One request's way through the tables.
class Model::Walk {
 public:
  Walk(Model& model, const Request& request, const Facts& facts, Transcript& transcript, std::deque<Facts>& nested)
      : model_(model),
        request_(request),
        facts_(facts),
        transcript_(transcript),
        nested_(nested),
        slots_(rules_.slots(), 0) {
    Set("unit", facts.unit);
    Set("dest", static_cast<int>(request.dest));
    Set("base-id", static_cast<int>(request.base));
    Set("vrf", static_cast<int>(request.vrf));
    Set("mtu", static_cast<int>(request.mtu));
    Set("mac", request.mac);
    Set("action", request.action);
    Set("items", static_cast<int>(request.items.size()));
    Set("labels", static_cast<int>(request.labels.size()));
    Set("first", request.labels.empty() ? 0 : static_cast<int>(request.labels[0]));
    Set("second", request.labels.size() < 2 ? 0 : static_cast<int>(request.labels[1]));
    Set("limid.type", facts.limid_type);
    Set("limid.index", facts.limid_index);
    Set("limid.named", 1);
  }

  int64_t Run(int table) {
    for (const Line& line : rules_.table(table)) {
      if (!Holds(line.when)) continue;
      line.taken = true;
      if (line.step.verb == Verb::kEnd) return Value(line.step.operands[0]);
      const int64_t result = Take(line.step);
      if (!Fails(line.failure, result)) continue;
      line.failed = true;
      for (const Step& step : line.then) {
        if (step.verb == Verb::kEnd) return Value(step.operands[0]);
        Take(step);
      }
    }
    return 0;
  }

 private:
  int64_t& Slot(const char* name) { return slots_[rules_.Slot(name)]; }
  void Set(const char* name, int64_t value) { Slot(name) = value; }
  int64_t Value(const Operand& operand) const { return operand.literal ? operand.value : slots_[operand.value]; }
  int Number(const Operand& operand) const { return static_cast<int>(Value(operand)); }

  bool Holds(const std::vector<Condition>& conditions) const {
    return std::all_of(conditions.begin(), conditions.end(), [this](const Condition& condition) {
      const int64_t left = Value(condition.left), right = Value(condition.right);
      if (condition.comparison == "=") return left == right;
      if (condition.comparison == "!=") return left != right;
      if (condition.comparison == "<") return left < right;
      if (condition.comparison == ">") return left > right;
      return left >= right;
    });
  }

  /// The result is what the line's failure is judged by.
  int64_t Take(const Step& step) {
    int64_t result = 0;
    switch (step.verb) {
      case Verb::kLog:
        transcript_.Expect("log " + std::to_string(Value(step.operands[0])) + ": " + Text(step.text));
        break;
      case Verb::kCall: result = Call(kSignatures[step.subject], step.operands); break;
      case Verb::kSet: return Assign(step);
      case Verb::kAdd: slots_[step.target] += Value(step.operands[0]); break;
      case Verb::kRun:
        if (!step.operands.empty()) Set("argument", Value(step.operands[0]));
        result = Run(step.subject);
        Set("result", result);
        break;
      case Verb::kEach: result = Each(step.subject); break;
      case Verb::kFind: return Find(step.subject, Number(step.operands[0]));
      case Verb::kObject: return Object(step.subject, Number(step.operands[0]));
      case Verb::kStore: Store(step); break;
      case Verb::kRewrite: Rewrite(step); break;
      case Verb::kForget: Forget(Number(step.operands[0])); break;
      case Verb::kNotify: Notify(Number(step.operands[0]), static_cast<unsigned>(Number(step.operands[1]))); break;
      case Verb::kThrow: throw Thrown{Text(step.text)};
      case Verb::kEnd: break;
    }
    if (step.target >= 0 && step.verb != Verb::kAdd) slots_[step.target] = result;
    return result;
  }

  int64_t Assign(const Step& step) {
    const Operand& source = step.operands[0];
    if (!source.literal && (source.value == rules_.Slot("port-table") || source.value == rules_.Slot("lag-table"))) {
      const auto& entry = source.value == rules_.Slot("port-table") ? facts_.port : facts_.lag;
      slots_[step.target] = entry.value_or(0);
      return entry.has_value();
    }
    slots_[step.target] = Value(source);
    return 1;
  }

  int64_t Each(int table) {
    for (const int item : request_.items) {
      Set("item", item);
      if (Run(table) == 0) return 0;
    }
    return 1;
  }

  int Call(const Signature& signature, const std::vector<Operand>& operands) {
    if (const std::string manager(signature.function); manager.find("Manager::") != std::string::npos) {
      transcript_.Expect("HwEncapsulationResourceManager::" + Getter(manager));
    }
    std::string text = signature.function + std::string("(");
    size_t next = 0;
    for (const char* c = signature.format; *c; ++c) {
      if (*c != '%') {
        text += *c;
      } else if (*++c == 'r') {
        text += LabelRecords();
      } else {
        text += *c == 'l' ? (++next, request_.limid) : ArgumentText(*c, Value(operands.at(next++)));
      }
    }
    return transcript_.ResultOf(text + ')', signature.result);
  }

  static std::string Getter(const std::string& function) {
    switch (function[0]) {
      case 'E': return "egress_mng()";
      case 'M': return "my_station_mng()";
      default: return function[2] == 't' ? "intf_mng()" : "ingress_mng()";
    }
  }

  std::string LabelRecords() {
    std::string text = "[";
    const int64_t count = Slot("count");
    if (count > 0) text += LabelRecord("record0.flags", "record0.label", "record0.map");
    if (count > 1) text += ", " + LabelRecord("record1.flags", "record1.label", "record1.map");
    return text + ']';
  }

  std::string LabelRecord(const char* flags, const char* label, const char* map) {
    return "{flags=" + ArgumentText('x', Slot(flags)) + ", label=" + ArgumentText('n', Slot(label)) +
           ", qos_map=" + ArgumentText('d', Slot(map)) + ", exp=0, ttl=255}";
  }

  std::string Text(const std::vector<Segment>& segments) {
    std::string text;
    for (const auto& segment : segments) {
      text += segment.text;
      if (segment.kind.empty()) continue;
      const int64_t value = Value(segment.what);
      if (segment.kind == "limid") {
        text += LimidText(Slot("limid.named") ? facts_.limid_name : "", Slot("limid.type"), Slot("limid.index"));
      } else if (segment.kind == "object") {
        text += object_texts_[segment.what.value];
      } else {
        text += ValueText(segment.kind, static_cast<int>(value));
      }
    }
    return text;
  }

  bool Find(int slot, int dest) {
    const auto found = model_.registry_.find(dest);
    slots_[slot] = found != model_.registry_.end();
    if (!slots_[slot]) {
      transcript_.Expect("log 3: Couldn't find DestinationIdCorrelator with " + ValueText("destination", dest));
      return false;
    }
    slots_[slot + 1] = found->second.intf;
    slots_[slot + 2] = found->second.egress;
    return true;
  }

  bool Object(int slot, int intf) {
    const bool known = Call(SignatureOf("IntfManager::GetIntfObject"), {{true, intf}});
    slots_[slot] = known;
    if (const auto fact = facts_.intfs.find(intf); known && fact != facts_.intfs.end()) {
      const IntfFacts& object = fact->second;
      const int64_t fields[] = {object.id,    static_cast<int>(object.vlan), static_cast<int>(object.vrf),
                                object.mac,   static_cast<int>(object.mtu),  static_cast<int>(object.flags),
                                object.tunnel};
      std::copy(std::begin(fields), std::end(fields), slots_.begin() + slot + 1);
      object_texts_[slot] = object.text;
    }
    return known;
  }

  void Store(const Step& step) {
    const int dest = Number(step.operands[0]);
    if (!model_.registry_.insert({dest, {Number(step.operands[1]), Number(step.operands[2])}}).second) {
      transcript_.Expect("log 3: Tried to insert DestinationIdCorrelator with " + ValueText("destination", dest) +
                         ", but there was already a member with the same identifier.");
    }
  }

  /// Only what is as it was when the request came: a client may have made another record of it.
  void Rewrite(const Step& step) {
    const auto found = model_.registry_.find(Number(step.operands[0]));
    const Record old = {static_cast<int>(Slot("record.intf")), static_cast<int>(Slot("record.egress"))};
    if (found != model_.registry_.end() && found->second == old) {
      found->second = {Number(step.operands[1]), Number(step.operands[2])};
    }
  }

  void Forget(int dest) {
    if (model_.registry_.erase(dest) == 0) {
      transcript_.Expect("log 3: Couldn't delete DestinationIdCorrelator with " + ValueText("destination", dest));
    }
  }

  void Notify(int dest, unsigned port) {
    const auto clients = model_.clients_;  // as they were when the notification began
    for (const auto& [name, client] : clients) {
      if (client.kind == ClientKind::kEmpty) continue;
      transcript_.Expect("log 7: Calling callback for client " + name + '.');
      transcript_.Expect(NotifiedLine(name, dest, port, ++*client.told));
      if (client.kind == ClientKind::kThrows) throw Thrown{"client " + name};
      if (client.kind != ClientKind::kCalls || !model_.calling_.insert(name).second) continue;
      for (const auto& request : client.calls) model_.Answer(request, transcript_, nested_);
      model_.calling_.erase(name);
    }
  }

  const Rules& rules_ = Rules::Get();
  Model& model_;
  const Request& request_;
  const Facts facts_;
  Transcript& transcript_;
  std::deque<Facts>& nested_;
  std::vector<int64_t> slots_;
  std::map<int, std::string> object_texts_;
};

Model::Model(const std::set<std::string>& silent) {
  for (const auto& name : silent) clients_[name] = {ClientKind::kEmpty, {}, nullptr};
}

void Model::Follow(const Request& request, Transcript& transcript, std::deque<Facts>& facts) {
  try {
    Answer(request, transcript, facts);
  } catch (const Thrown&) {
    // Its line has been expected where it was thrown.
  }
  calling_.clear();
}

void Model::Answer(const Request& request, Transcript& transcript, std::deque<Facts>& facts) {
  if (request.operation == Operation::kRegister) return Register(request, transcript);
  if (facts.empty()) throw std::logic_error("no facts for " + RequestText(request));
  const Facts mine = facts.front();
  facts.pop_front();
  try {
    Walk walk(*this, request, mine, transcript, facts);
    const int64_t result = walk.Run(Rules::Get().TableIndex(Name(request.operation)));
    transcript.Expect(ReturnLine(static_cast<int>(result)));
  } catch (const Thrown& thrown) {
    transcript.Expect(ThrowLine(thrown.what));
    throw;
  }
}

void Model::Register(const Request& request, Transcript& transcript) {
  if (clients_.count(request.client)) {
    transcript.Expect("log 7: Client " + request.client + " already registered, remove old one!");
  }
  clients_[request.client] = {request.kind, request.calls, std::make_shared<int>(0)};
}

}  // namespace model
