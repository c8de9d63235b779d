#include "tests/model/Subject.h"

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"
#include "hal/HalBcmCommon.h"
#include "hal/HwEncapsulationResourceManager.h"
#include "hal/IntfManager.h"
#include "hal/IntfObject.h"
#include "softcard/Funnel.h"

namespace model {
namespace {

using softcard::Card;

template <typename Enum>
std::vector<Enum> As(const std::vector<int>& numbers) {
  std::vector<Enum> items;
  items.reserve(numbers.size());
  for (const int number : numbers) items.push_back(static_cast<Enum>(number));
  return items;
}

std::optional<int> Entry(const std::map<limid_t, int, LimIdLess>& table, limid_t limid) {
  const auto found = table.find(limid);
  return found == table.end() ? std::nullopt : std::optional<int>(found->second);
}

int64_t MacNumber(const MacAddress& mac) {
  int64_t number = 0;
  for (const unsigned char byte : mac) number = number << 8 | byte;
  return number;
}

/// Calls and log lines, and of the accesses those whose order is the module's own choice to keep: which manager is
/// asked for, and what is written on tunnel objects.
bool IsComparable(const calls::Event& event) {
  const auto* call = std::get_if<calls::Call>(&event);
  return !call || call->function->purpose == calls::Purpose::kCall ||
         std::string(call->function->name).find("_mng") != std::string::npos;
}

}  // namespace

// Clients cannot be taken out of the registry: what was registered once stays known to the module.
std::set<std::string> Subject::names_;

Subject::Subject(const softcard::CardDescription& description) : model_(names_) {
  HalL3MplsEncapsulationInterface::GetInstance();
  Card::Get().Reset(description);
}

Subject::~Subject() {
  const softcard::Record silence(Card::Get().log(), softcard::CallLog::Recording::kNothing);
  for (const auto& name : names_) {
    hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient(name, {});
  }
}

const std::vector<std::string>& Subject::Run(const Request& request) {
  Make(request);
  Transcript transcript(lines_);
  model_.Follow(request, transcript, facts_);
  transcript.ExpectEnd();
  CompareRegistry();
  return lines_;
}

void Subject::Make(const Request& request) {
  Card& card = Card::Get();
  card.log().Clear();
  lines_.clear();
  facts_.clear();
  for (const auto& fault : request.faults) {
    if (fault.function.empty()) {
      card.faults().FailCallNumber(fault.nth, fault.result);
    } else {
      card.faults().FailNth(fault.function, fault.nth, fault.result);
    }
  }
  try {
    Execute(request);
  } catch (const std::exception&) {
    // Noted already; it has passed through the callback that was under way.
  }
  Collect();
  calling_.clear();
  card.faults().Clear();
}

void Subject::Collect() {
  for (const calls::Event& event : Card::Get().log().Take()) {
    if (IsComparable(event)) lines_.push_back(calls::UnmarkedText(event, softcard::kLimIdNames));
  }
}

void Subject::Note(const std::string& line) {
  Collect();
  lines_.push_back(line);
}

void Subject::Execute(const Request& request) {
  if (request.operation == Operation::kRegister) return Register(request);
  facts_.push_back(Gather(request));
  try {
    Note(ReturnLine(Call(request)));
  } catch (const std::exception& error) {
    Note(ThrowLine(error.what()));
    if (!calling_.empty()) throw;
  }
}

int Call(const Request& request) {
  const auto& module = *HalL3MplsEncapsulationInterface::GetInstance();
  const limid_t limid = softcard::ReadLimId(request.limid).value();
  unsigned char bytes[6];
  for (int i = 0; i < 6; ++i) bytes[i] = static_cast<unsigned char>(request.mac >> (40 - 8 * i));
  unsigned char* const mac = request.mac == kNullMac ? nullptr : bytes;
  const unsigned dest = request.dest, base = request.base;
  const auto mpls = [&] { return As<en_HalMplsCapabilities>(request.items); };
  const auto vlan = [&] { return As<en_HalVlanCapabilities>(request.items); };
  const auto actions = [&] { return As<ActionFlags>(request.items); };
  const auto action = static_cast<ActionFlags>(request.action);
  switch (request.operation) {
    case Operation::kInit: return module.InitEncapsulationModule();
    case Operation::kInstallVrf: return module.InstallVrf(request.vrf);
    case Operation::kDestroyVrf: return module.DestroyVrf(request.vrf);
    case Operation::kInstallVlan:
      return module.InstallVlanOutgoingEncapsulation(dest, limid, request.vrf, request.mtu, mac, vlan());
    case Operation::kReplaceVlan:
      return module.ReplaceVlanOutgoingEncapsulation(dest, limid, request.vrf, request.mtu, mac, vlan());
    case Operation::kDestroyVlan: return module.DestroyVlanOutgoingEncapsulation(dest);
    case Operation::kInstallHost: return module.InstallHostOutgoingEncapsulation(dest, base, limid, actions(), mac);
    case Operation::kReplaceHost: return module.ReplaceHostOutgoingEncapsulation(dest, base, limid, actions(), mac);
    case Operation::kDestroyHost: return module.DestroyHostOutgoingEncapsulation(dest);
    case Operation::kInstallMpls:
      return module.InstallMplsUnprotectedOutgoingEncapsulation(dest, base, limid, mac, request.labels, mpls(), action);
    case Operation::kReplaceMpls:
      return module.ReplaceMplsUnprotectedOutgoingEncapsulation(dest, base, limid, mac, request.labels, mpls(), action);
    case Operation::kDestroyMpls: return module.DestroyMplsUnprotectedOutgoingEncapsulation(dest);
    case Operation::kRegister: break;
  }
  return 0;
}

void Subject::Register(const Request& request) {
  names_.insert(request.client);
  std::function<void(int, unsigned)> callback;
  if (request.kind != ClientKind::kEmpty) {
    callback = [this, name = request.client, kind = request.kind, calls = request.calls, told = 0](
                   int dest, unsigned port) mutable {
      Note(NotifiedLine(name, dest, port, ++told));
      if (kind == ClientKind::kThrows) throw std::runtime_error("client " + name);
      // A client whose own requests notify it does not start over.
      if (kind != ClientKind::kCalls || !calling_.insert(name).second) return;
      for (const auto& call : calls) Execute(call);
      calling_.erase(name);
    };
  }
  hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient(request.client, std::move(callback));
}

Facts Subject::Gather(const Request& request) const {
  const softcard::Unseen unseen(Card::Get());
  HalBcmCommon& common = *HalBcmCommon::GetInstance();
  const limid_t limid = softcard::ReadLimId(request.limid).value();
  Facts facts{};
  facts.unit = common.unit;
  unsigned char type = 0;
  char name[64] = {};
  limid_to_type(limid, &type);
  limid_to_ifindex(limid, &facts.limid_index);
  limid_to_intfname(limid, name, sizeof name);
  facts.limid_type = type;
  facts.limid_name = name;
  facts.port = Entry(common.port_table, limid);
  facts.lag = Entry(common.lag_table, limid);
  for (const unsigned dest : {request.dest, request.base}) {
    const auto record = common.destination_id_correlators.find(static_cast<int>(dest));
    if (record == common.destination_id_correlators.end()) continue;
    IntfObject* object = nullptr;
    if (!HwEncapsulationResourceManager::GetInstance()->intf_mng()->GetIntfObject(record->second.intf_id, &object)) {
      continue;
    }
    facts.intfs[record->second.intf_id] = {
        object->id(),  object->vlan_id(),  object->vrf(),           MacNumber(object->macsa()),
        object->mtu(), object->l3_flags(), object->tunnel().type(), object->ToString(true)};
  }
  return facts;
}

void Subject::CompareRegistry() const {
  Registry found;
  for (const auto& [dest, record] : HalBcmCommon::GetInstance()->destination_id_correlators) {
    found[dest] = {record.intf_id, record.egress_id};
    if (record.destination_id != dest) throw Difference("the record of " + std::to_string(dest) + " names another id");
  }
  if (found == model_.registry()) return;
  const auto text = [](const Registry& registry) {
    std::string all;
    for (const auto& [dest, record] : registry) {
      all +=
          " {" + std::to_string(dest) + ", " + std::to_string(record.intf) + ", " + std::to_string(record.egress) + '}';
    }
    return all;
  };
  throw Difference("expected registry:" + text(model_.registry()) + "\nfound registry:   " + text(found));
}

}  // namespace model
