#include "diagnosis/CardTerms.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <type_traits>
#include <variant>

#include "softcard/LimId.h"

namespace diagnosis {
namespace {

using recorder::Notification;
using recorder::Standing;
using recorder::Step;

constexpr int kMostPorts = 1000;  // more Ethernet ports, and the LAGs would have other ports
constexpr int kLagBase = 1000;

/// What is a lim id's, in the module's log lines.
std::string LimIdText(const std::string& name, unsigned type, unsigned index) {
  char numbers[64];
  std::snprintf(numbers, sizeof numbers, ", type=0x%02X, value=0x%06X)", type, index);
  return "lim id(name=" + name + numbers;
}

void ReplaceLimIdText(std::string* line, const std::string& text) {
  const std::size_t begin = line->find("lim id(name=");
  const std::size_t value = line->rfind(", value=0x");
  const std::size_t end = value == std::string::npos ? value : line->find(')', value);
  if (begin != std::string::npos && end != std::string::npos) line->replace(begin, end + 1 - begin, text);
}

const std::int64_t* NumberIn(const calls::Value& value) { return std::get_if<std::int64_t>(&value); }

/// The lim id that a call is about.
std::int64_t* LimIdOf(calls::Call* call) {
  const auto& arguments = call->function->arguments;
  const bool has_one = !call->arguments.empty() && arguments[0].kind == calls::Kind::kLimId;
  return has_one ? std::get_if<std::int64_t>(&call->arguments.front()) : nullptr;
}

template <typename Work>
void ForEachInner(Notification* notification, const Work& work) {
  for (auto& called : notification->steps) std::visit(work, called);
}

}  // namespace

CardTerms::CardTerms(recorder::Reader* reader) {
  description_.unit = reader->header().unit;
  while (const auto entry = reader->Next()) {
    if (const auto* step = std::get_if<Step>(&*entry)) Learn(*step);
    if (const auto* standing = std::get_if<Standing>(&*entry)) Learn(*standing);
  }
  for (const auto& [word, answers] : answers_) {
    if (answers.is_ethernet == true && answers.port.value_or(0) <= kMostPorts) {
      description_.front_ports =
          std::max(description_.front_ports, static_cast<unsigned>(std::max(answers.port.value_or(0), 0)));
    }
  }
  for (const auto& [word, answers] : answers_) {
    if (!Fits(word, answers)) limids_[word] = Choose(answers);
  }
}

void CardTerms::Learn(const Step& step) {
  for (const recorder::Item& item : step.items) {
    if (const auto* notification = std::get_if<Notification>(&item.what)) {
      for (const auto& called : notification->steps) {
        std::visit([&](const auto& what) { Learn(what); }, called);
      }
    } else if (const auto* call = std::get_if<calls::Call>(&std::get<calls::Event>(item.what))) {
      Learn(*call);
    }
  }
}

void CardTerms::Learn(const Standing& standing) {
  if (standing.kind != Standing::Kind::kLim) return;
  answers_[standing.limid.word].port = standing.port;
  answers_[standing.limid.word].lag = standing.lag;
}

void CardTerms::Learn(const calls::Call& call) {
  const std::string_view name = call.function->name;
  const std::int64_t* const result = NumberIn(call.result);
  if (!result || *result < 0) return;
  if (name == "fm_local_slot") description_.slot = static_cast<int>(*result);
  if (name == "HalBcmCommon::GetMplsExpMapId") description_.exp_map_id = static_cast<int>(*result);
  calls::Call asked = call;
  const std::int64_t* const word = LimIdOf(&asked);
  if (!word) return;
  Answers& answers = answers_[static_cast<std::uint32_t>(*word)];
  if (name == "limid_to_type") answers.has_type = true;
  if (name == "limid_is_from_type_ethernet") answers.is_ethernet = *result != 0;
  if (name == "limid_to_l3_vlan_vlanid") answers.vlan = static_cast<unsigned>(*result);
  if (name != "limid_is_from_type") return;
  const std::int64_t* const type = NumberIn(call.arguments[1]);
  if (type && *type == limid_type_cpuport) answers.is_cpu = *result != 0;
  if (type && *type == limid_type_lag) answers.is_lag = *result != 0;
}

bool CardTerms::Fits(std::uint32_t word, const Answers& answers) const {
  const limid_t limid{word};
  const unsigned type = softcard::LimIdType(limid);
  const auto index = static_cast<int>(softcard::LimIdIndex(limid));
  const auto is = [&](const std::optional<bool>& answer, unsigned kind) {
    return !answer || *answer == (type == kind);
  };
  if (!is(answers.is_ethernet, limid_type_ethernet) || !is(answers.is_lag, limid_type_lag) ||
      !is(answers.is_cpu, limid_type_cpuport) || (answers.has_type && type == limid_type_unknown)) {
    return false;
  }
  if (answers.vlan && static_cast<int>(*answers.vlan) != index) return false;
  if (answers.is_cpu == true) return index == 0 && answers.port == 0;
  if (answers.is_ethernet == true) {
    return answers.port ? *answers.port == index && index > 0 : index > static_cast<int>(description_.front_ports);
  }
  if (answers.is_lag == true) {
    const auto lags = static_cast<int>(description_.lags);
    return answers.lag ? *answers.lag == kLagBase + index && index > 0 && index <= lags : index > lags;
  }
  return true;
}

limid_t CardTerms::Choose(const Answers& answers) {
  if (answers.is_cpu == true) {
    if (answers.port.value_or(0) != 0) ports_[*answers.port] = 0;
    return softcard::MakeLimId(limid_type_cpuport, 0);
  }
  if (answers.is_ethernet == true) return ChoosePort(limid_type_ethernet, answers.port, 1);
  if (answers.is_lag == true) return ChoosePort(limid_type_lag, answers.lag, kLagBase + 1);
  return softcard::MakeLimId(limid_type_l3_vlan, answers.vlan ? *answers.vlan : softcard::kMaxLimIdIndex - chosen_++);
}

limid_t CardTerms::ChoosePort(limid_type_t type, const std::optional<int>& port, int first_port) {
  // One that the tables of ports do not hold.
  if (!port) return softcard::MakeLimId(type, softcard::kMaxLimIdIndex - chosen_++);
  const auto count = static_cast<int>(type == limid_type_lag ? description_.lags : description_.front_ports);
  const auto limid = [&](int on_card) {
    return softcard::MakeLimId(type, static_cast<unsigned>(on_card - first_port + 1));
  };
  const auto known = ports_.find(*port);
  if (known != ports_.end()) return limid(known->second);
  if (*port >= first_port && *port < first_port + count) return limid(*port);
  // The first one that no recorded port is.
  const auto is_taken = [&](int on_card) {
    const auto is_it = [&](const auto& row) { return row.second.port == on_card || row.second.lag == on_card; };
    const auto stands_for = [&](const auto& row) { return row.second == on_card; };
    return std::any_of(answers_.begin(), answers_.end(), is_it) ||
           std::any_of(ports_.begin(), ports_.end(), stands_for);
  };
  int on_card = first_port;
  while (is_taken(on_card)) ++on_card;
  unsigned& most = type == limid_type_lag ? description_.lags : description_.front_ports;
  most = std::max(most, static_cast<unsigned>(on_card - first_port + 1));
  ports_[*port] = on_card;
  return limid(on_card);
}

std::string CardTerms::CardLine() const {
  const softcard::CardDescription built_in;
  std::string line;
  const auto tell = [&](const char* name, auto value, auto usual) {
    if (value != usual) line += std::string(" ") + name + '=' + std::to_string(value);
  };
  tell("ports", description_.front_ports, built_in.front_ports);
  tell("lags", description_.lags, built_in.lags);
  tell("unit", description_.unit, built_in.unit);
  tell("slot", description_.slot, built_in.slot);
  tell("exp-map", description_.exp_map_id, built_in.exp_map_id);
  return line.empty() ? "" : "card" + line;
}

std::string CardTerms::Others() const {
  std::string others;
  const auto tell = [&](const std::string& recorded, const std::string& on_card) {
    others += (others.empty() ? "on the card " : ", ") + recorded + " is " + on_card;
  };
  for (const auto& [word, limid] : limids_) tell("lim " + calls::kLimIdWords.text({word}), softcard::LimIdName(limid));
  for (const auto& [port, on_card] : ports_) tell("port " + std::to_string(port), "port " + std::to_string(on_card));
  return others;
}

limid_t CardTerms::OnCard(limid_t limid) const {
  const auto found = limids_.find(limid.word);
  return found == limids_.end() ? limid : found->second;
}

void CardTerms::Translate(recorder::Entry* entry) const {
  LimText lim;
  if (auto* step = std::get_if<Step>(entry)) Translate(step, &lim);
  if (auto* standing = std::get_if<Standing>(entry)) Translate(standing);
}

void CardTerms::Translate(Standing* standing) const { standing->limid = OnCard(standing->limid); }

void CardTerms::Translate(Step* step, LimText* lim) const {
  if (auto* request = std::get_if<recorder::Request>(&step->action)) request->limid = OnCard(request->limid);
  for (recorder::Item& item : step->items) {
    if (auto* notification = std::get_if<Notification>(&item.what)) {
      const auto port = ports_.find(static_cast<int>(notification->port));
      if (port != ports_.end()) notification->port = static_cast<unsigned>(port->second);
      ForEachInner(notification, [&](auto& what) {
        if constexpr (std::is_same_v<std::decay_t<decltype(what)>, Step>) {
          Translate(&what, lim);
        } else {
          Translate(&what);
        }
      });
      continue;
    }
    auto& event = std::get<calls::Event>(item.what);
    if (auto* call = std::get_if<calls::Call>(&event)) {
      Translate(call, lim);
    } else if (lim->translated) {
      ReplaceLimIdText(&std::get<calls::LogLine>(event).text, LimIdText(lim->name, lim->type, lim->index));
    }
  }
}

void CardTerms::Translate(calls::Call* call, LimText* lim) const {
  for (std::size_t i = 0; i < call->arguments.size(); ++i) {
    auto* const port = std::get_if<std::int64_t>(&call->arguments[i]);
    if (!port || call->function->arguments[i].name != std::string_view("port")) continue;
    const auto found = ports_.find(static_cast<int>(*port));
    if (found != ports_.end()) *port = found->second;
  }
  // Yes is any number to the module, and 1 to the card.
  auto* const answer = std::get_if<std::int64_t>(&call->result);
  if (call->function->result == calls::Result::kPredicate && answer && *answer > 0) *answer = 1;
  std::int64_t* const word = LimIdOf(call);
  if (!word) return;
  const limid_t recorded{static_cast<std::uint32_t>(*word)};
  const limid_t limid = OnCard(recorded);
  *word = limid.word;
  const std::int64_t* const result = NumberIn(call->result);
  const bool succeeded = result && *result >= 0;
  const std::string_view name = call->function->name;
  if (name == "limid_to_type") *lim = {"", succeeded ? softcard::LimIdType(limid) : 0, 0, limid.word != recorded.word};
  if (name == "limid_to_ifindex" && succeeded) lim->index = softcard::LimIdIndex(limid);
  if (name == "limid_to_intfname" && succeeded) lim->name = softcard::LimIdName(limid);
}

}  // namespace diagnosis
