#include "recorder/Player.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"
#include "recorder/Thrown.h"
#include "recorder/Words.h"

namespace recorder {
namespace {

bool Same(const calls::Value& left, const calls::Value& right) {
  if (left.index() != right.index()) return false;
  if (const auto* number = std::get_if<std::int64_t>(&left)) return *number == std::get<std::int64_t>(right);
  return calls::Text(calls::Kind::kText, left) == calls::Text(calls::Kind::kText, right);
}

bool SameArguments(const calls::Call& left, const calls::Call& right) {
  return left.function == right.function &&
         std::equal(left.arguments.begin(), left.arguments.end(), right.arguments.begin(), right.arguments.end(), Same);
}

const std::string kStandIn = "(an object's text that was not recorded)";

bool IsAround(std::string_view before, std::string_view after, std::string_view text) {
  return text.size() >= before.size() + after.size() && text.substr(0, before.size()) == before &&
         text.substr(text.size() - after.size()) == after;
}

hal_encap::HalL3MplsEncapsulationUpdItf& Clients() { return *hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance(); }

void Append(Lines* lines, unsigned indentation, const std::string& text) {
  AppendEscaped(&lines->emplace_back(indentation, ' '), text);
}

void AppendRecorded(Lines* lines, const Step& step, unsigned depth) {
  for (const Item& item : step.items) {
    const auto* const notification = std::get_if<Notification>(&item.what);
    if (!notification) {
      Append(lines, EventIndentation(depth), calls::UnmarkedText(std::get<calls::Event>(item.what)));
      continue;
    }
    Append(lines, EventIndentation(depth), TellText(*notification));
    for (const auto& called : notification->steps) {
      const auto* const inner = std::get_if<Step>(&called);
      if (!inner) continue;
      Append(lines, EventIndentation(depth), CallsText(notification->client, *inner));
      AppendRecorded(lines, *inner, depth + 1);
      if (!inner->result.empty()) Append(lines, EventIndentation(depth), GetsText(notification->client, inner->result));
    }
    if (!notification->thrown.empty()) Append(lines, EventIndentation(depth), ThrewText(*notification));
  }
}

}  // namespace

Player& Player::Get() {
  // Never destroyed: the module keeps pointers into it until the process is gone.
  static Player* const player = new Player;
  return *player;
}

Lines Player::Recorded(const Step& step) {
  Lines lines;
  AppendRecorded(&lines, step, 0);
  if (!step.result.empty()) Append(&lines, kResultIndentation, "=> " + step.result);
  return lines;
}

Lines Player::Play(const Step& step) {
  const auto* const request = std::get_if<Request>(&step.action);
  const bool is_start = request && request->operation == Operation::kStart;
  if (is_start && std::exchange(started_, true)) {
    throw BadRecording("line " + std::to_string(step.line) +
                       ": the module starts a second time; replay the recordings of two processes one by one");
  }
  if (!is_start) Start();
  lines_.clear();
  Perform(step, 0, nullptr);
  return std::exchange(lines_, {});
}

void Player::Start() {
  if (std::exchange(started_, true)) return;
  HalL3MplsEncapsulationInterface::GetInstance();
}

void Player::Perform(const Step& step, unsigned depth, const std::string* client) {
  frames_.push_back({&step, depth});
  const auto end = [&](const std::string& result) {
    frames_.pop_back();
    if (result.empty()) return;
    if (client) {
      Add(EventIndentation(depth - 1), GetsText(*client, result));
    } else {
      Add(kResultIndentation, "=> " + result);
    }
  };
  try {
    if (const auto* request = std::get_if<Request>(&step.action)) {
      const int result = Make(*request, *HalL3MplsEncapsulationInterface::GetInstance());
      end(request->operation == Operation::kStart ? "" : std::to_string(result));
    } else {
      Register(std::get<Registration>(step.action));
      end("");
    }
  } catch (const std::exception&) {
    end("threw " + DescribeAgain());
  }
}

void Player::Register(const Registration& registration) {
  clients_.insert(registration.client);
  if (registration.empty) return Clients().RegisterMplsUpdateClient(registration.client, nullptr);
  Clients().RegisterMplsUpdateClient(
      registration.client, [this, name = registration.client](int id, unsigned port) { Notified(name, id, port); });
}

void Player::Notified(const std::string& client, int destination_id, unsigned port) {
  const unsigned depth = frames_.back().depth;
  Add(EventIndentation(depth), TellText({client, destination_id, port, {}, {}}));
  const Notification* const recorded =
      NextNotification(*frames_.back().step, client, &frames_.back().next_notification);
  if (!recorded) return;
  for (const auto& called : recorded->steps) {
    if (const auto* standing = std::get_if<Standing>(&called)) {
      Apply(*standing);
    } else {
      const Step& step = std::get<Step>(called);
      Add(EventIndentation(depth), CallsText(client, step));
      Perform(step, depth + 1, &client);
    }
  }
  if (recorded->thrown.empty()) return;
  Add(EventIndentation(depth), ThrewText(*recorded));
  ThrowAgain(recorded->thrown);
}

void Player::Apply(const Standing& standing) {
  const auto enter = [&](auto* table, const std::optional<int>& port) {
    table->erase(standing.limid);
    if (port) table->emplace(standing.limid, *port);
  };
  const std::vector<Frame> watched = std::exchange(frames_, {});
  switch (standing.kind) {
    case Standing::Kind::kNothing:
      for (const auto& record : common_.destination_id_correlators) delete &record.second;
      common_.destination_id_correlators.clear();
      for (const std::string& name : clients_) Clients().RegisterMplsUpdateClient(name, nullptr);
      break;
    case Standing::Kind::kUnit: common_.unit = standing.unit; break;
    case Standing::Kind::kDestination: {
      const int id = static_cast<int>(standing.destination_id);
      auto record =
          std::make_unique<DestinationIdCorrelator>(DestinationIdCorrelator{id, standing.intf, standing.egress});
      // The module frees it, as one of its own.
      if (common_.destination_id_correlators.emplace(id, *record).second) static_cast<void>(record.release());
      break;
    }
    case Standing::Kind::kClient: Register(standing.client); break;
    case Standing::Kind::kLim:
      enter(&common_.port_table, standing.port);
      enter(&common_.lag_table, standing.lag);
      break;
  }
  frames_ = watched;
}

void Player::Learn(const std::map<int, std::string>& words) {
  for (const auto& [status, text] : words) SetStatusWords(status, text);
}

const calls::Call* Player::Answer(calls::Call call) {
  if (frames_.empty()) return nullptr;
  const calls::Call* const recorded = Find(call);
  if (recorded) {
    call.result = recorded->result;
    call.output = recorded->output;
    call.thrown = recorded->thrown;
  }
  const std::string thrown = call.thrown;
  Add(EventIndentation(frames_.back().depth), calls::UnmarkedText(std::move(call)));
  if (!thrown.empty()) ThrowAgain(thrown);
  return recorded;
}

const calls::Call* Player::Find(const calls::Call& call) {
  Frame& frame = frames_.back();
  const std::vector<Item>& items = frame.step->items;
  // The same call; when there is none any more, the next one of the function: its arguments have changed.
  for (const bool same_arguments : {true, false}) {
    for (std::size_t i = frame.next_call; i < items.size(); ++i) {
      const auto* const event = std::get_if<calls::Event>(&items[i].what);
      const auto* const recorded = event ? std::get_if<calls::Call>(event) : nullptr;
      if (!recorded || recorded->function != call.function) continue;
      if (same_arguments && !SameArguments(*recorded, call)) continue;
      frame.next_call = i + 1;
      return recorded;
    }
  }
  return nullptr;
}

std::string Player::AnswerText(calls::Call call) {
  if (frames_.empty() || !Knows(*call.function)) return kStandIn;
  const calls::Call* const recorded = Answer(std::move(call));
  const auto* const text = recorded ? std::get_if<std::string>(&recorded->result) : nullptr;
  return text ? *text : "";
}

bool Player::Knows(const calls::Function& function) const {
  const std::vector<Item>& items = frames_.back().step->items;
  return std::any_of(items.begin(), items.end(), [&](const Item& item) {
    const auto* const event = std::get_if<calls::Event>(&item.what);
    const auto* const call = event ? std::get_if<calls::Call>(event) : nullptr;
    return call && call->function == &function;
  });
}

void Player::Log(calls::LogLine line) {
  if (frames_.empty()) return;
  Frame& frame = frames_.back();
  const std::size_t stand_in = line.text.find(kStandIn);
  const std::string_view before = std::string_view(line.text).substr(0, stand_in);
  const std::string_view after =
      stand_in == std::string::npos ? "" : std::string_view(line.text).substr(stand_in + kStandIn.size());
  const std::vector<Item>& items = frame.step->items;
  for (std::size_t i = std::max(frame.next_text, frame.next_call); stand_in != std::string::npos && i < items.size();
       ++i) {
    const auto* const event = std::get_if<calls::Event>(&items[i].what);
    const auto* const recorded = event ? std::get_if<calls::LogLine>(event) : nullptr;
    if (!recorded || !IsAround(before, after, recorded->text)) continue;
    frame.next_text = i + 1;
    line.text = recorded->text;
    break;
  }
  Add(EventIndentation(frame.depth), calls::UnmarkedText(std::move(line)));
}

void Player::Add(unsigned indentation, const std::string& text) { Append(&lines_, indentation, text); }

}  // namespace recorder
