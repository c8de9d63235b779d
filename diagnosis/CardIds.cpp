#include "diagnosis/CardIds.h"

#include <charconv>
#include <string_view>
#include <utility>

namespace diagnosis {
namespace {

constexpr char kIntf[] = "intf";
constexpr char kEgress[] = "egress";

/// What an interface's id follows in the module's log lines.
constexpr std::string_view kBeforeIntfInLog[] = {"intf id(", "Intf changed, so updated it to "};

const char* KindOfResult(const calls::Function& function) {
  return std::string_view(function.name).substr(0, 4) == "Intf" ? kIntf : kEgress;
}

bool IsIdKind(std::string_view name) { return name == kIntf || name == kEgress; }

std::string ArgumentsText(const calls::Call& call) { return calls::Text(calls::Call{call.function, call.arguments}); }

/// The recorded id of the card's one; the card's own when there is none.
std::int64_t Recorded(const std::map<std::int64_t, std::int64_t>& ids, std::int64_t id) {
  const auto found = ids.find(id);
  return found == ids.end() ? id : found->second;
}

void TranslateText(std::string* text, const std::map<std::int64_t, std::int64_t>& intfs) {
  for (const std::string_view before : kBeforeIntfInLog) {
    const std::size_t found = text->find(before);
    if (found == std::string::npos) continue;
    const std::size_t begin = found + before.size();
    std::int64_t id = 0;
    const auto [end, error] = std::from_chars(text->data() + begin, text->data() + text->size(), id);
    if (error != std::errc()) continue;
    const auto length = static_cast<std::size_t>(end - text->data()) - begin;
    text->replace(begin, length, std::to_string(Recorded(intfs, id)));
  }
}

}  // namespace

void CardIds::Begin(const std::vector<const calls::Call*>& recorded) {
  waiting_.clear();
  for (const calls::Call* call : recorded) {
    if (call->function->result == calls::Result::kId) waiting_.push_back(call);
  }
}

void CardIds::Translate(calls::Event* event) {
  if (auto* line = std::get_if<calls::LogLine>(event)) return TranslateText(&line->text, recorded_[kIntf]);
  auto& call = std::get<calls::Call>(*event);
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const char* const name = call.function->arguments[i].name;
    auto* const id = std::get_if<std::int64_t>(&call.arguments[i]);
    if (id && IsIdKind(name)) *id = Recorded(recorded_[name], *id);
  }
  if (call.function->result == calls::Result::kId) Learn(&call);
}

void CardIds::Learn(calls::Call* call) {
  const calls::Call* const recorded = TakeRecorded(*call);
  auto* const id = std::get_if<std::int64_t>(&call->result);
  const auto* const recorded_id = recorded ? std::get_if<std::int64_t>(&recorded->result) : nullptr;
  if (!id || *id < 0 || !recorded_id || *recorded_id < 0) return;
  const std::string kind = KindOfResult(*call->function);
  const std::int64_t told = told_[kind].emplace(*recorded_id, *recorded_id).first->second;
  if (told != *id) {
    others_.push_back(kind + ' ' + std::to_string(*recorded_id) + " of the recording is " + kind + ' ' +
                      std::to_string(*id) + " on the card");
    told_[kind][*recorded_id] = *id;
  }
  recorded_[kind][*id] = *recorded_id;
  *id = *recorded_id;
}

const calls::Call* CardIds::TakeRecorded(const calls::Call& call) {
  // The same call; when there is none any more, the next one of the function: its arguments have changed.
  for (const bool same_arguments : {true, false}) {
    for (const calls::Call*& recorded : waiting_) {
      if (!recorded || recorded->function != call.function) continue;
      if (same_arguments && ArgumentsText(*recorded) != ArgumentsText(call)) continue;
      return std::exchange(recorded, nullptr);
    }
  }
  return nullptr;
}

std::vector<std::string> CardIds::TakeOthers() { return std::exchange(others_, {}); }

}  // namespace diagnosis
