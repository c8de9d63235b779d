#include "diagnosis/LogDiagnosis.h"

#include <algorithm>
#include <deque>
#include <utility>

#include "diagnosis/LogCauses.h"

namespace diagnosis {
namespace {

/// No request logs as many lines; of a longer beginning nothing could be told.
constexpr std::size_t kMostLines = 64;

/// Adds the runs that end at a node, or at any node behind it.
void AddWays(const std::vector<LogKnowledge::Node>& nodes, std::size_t node, bool with_those_behind, LoggedWay way,
             std::vector<LoggedWay>& ways) {
  for (const LoggedRun& run : nodes[node].runs) {
    way.run = &run;
    ways.push_back(way);
  }
  if (!with_those_behind) return;
  for (const LogKnowledge::Edge& edge : nodes[node].edges) AddWays(nodes, edge.node, true, way, ways);
}

bool IsNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

bool LogRequest::MayHaveSucceeded() const {
  return std::any_of(causes.begin(), causes.end(),
                     [](const LogCause& cause) { return cause.call.empty() && cause.result == "0"; });
}

void LogDiagnosis::Take(std::string_view line) {
  ++lines_;
  const auto found = knowledge_.texts().Find(line);
  if (found.empty()) return;
  ++module_lines_;
  for (const LogTexts::Found& one : found) {
    if (under_way_ && GoesOn(one)) return;
    if (const auto* edge = knowledge_.Follow(LogKnowledge::kRoot, one, ""); edge != nullptr) return Begin(*edge, one);
  }
  if (under_way_) {
    under_way_->is_explained = false;
    under_way_->last_line = lines_;
    return;
  }
  beginning_.push_back({lines_, found});
  if (beginning_.size() <= kMostLines) return;
  beginning_.pop_front();
  ++stray_lines_;
}

void LogDiagnosis::End() {
  if (!has_begun_) FinishBeginning(true);
  if (under_way_) Finish(true);
}

void LogDiagnosis::Begin(const LogKnowledge::Edge& edge, const LogTexts::Found& line) {
  if (!has_begun_) FinishBeginning(false);
  has_begun_ = true;
  if (under_way_) Finish(false);
  under_way_ = UnderWay{edge.node, lines_, lines_, line.values.empty() ? "" : line.values[0], {line.values}};
}

bool LogDiagnosis::GoesOn(const LogTexts::Found& line) {
  if (!under_way_->is_explained) return false;
  if (const auto* edge = knowledge_.Follow(under_way_->node, line, under_way_->first); edge != nullptr) {
    under_way_->node = edge->node;
    under_way_->values.push_back(line.values);
  } else if (line.number != knowledge_.nodes()[under_way_->node].text ||
             knowledge_.texts().text(line.number).words() == 0) {
    return false;  // else it is the same once more, about somebody else: each client is called
  }
  under_way_->last_line = lines_;
  return true;
}

void LogDiagnosis::Finish(bool at_end) {
  const auto& node = knowledge_.nodes()[under_way_->node];
  LogRequest request;
  request.first_line = under_way_->first_line;
  request.last_line = under_way_->last_line;
  if (IsNumber(under_way_->first)) request.id = under_way_->first;
  request.may_go_on = at_end && under_way_->is_explained && !node.edges.empty();
  request.lines_alike = under_way_->node;
  if (under_way_->is_explained) {
    std::vector<LoggedWay> ways;
    AddWays(knowledge_.nodes(), under_way_->node, at_end && node.runs.empty(), {nullptr, &under_way_->values, 0}, ways);
    request.causes = CausesOf(ways);
  }
  under_way_.reset();
  tell_(request);
}

std::optional<LogDiagnosis::Beginning> LogDiagnosis::BeginningAt(std::size_t node) const {
  Beginning beginning;
  beginning.values.resize(beginning_.size());
  for (std::size_t i = beginning_.size(); i-- > 0; node = knowledge_.nodes()[node].parent) {
    if (node == LogKnowledge::kRoot) return std::nullopt;
    const auto& found = beginning_[i].found;
    const auto& known = knowledge_.nodes()[node];
    const auto line =
        std::find_if(found.begin(), found.end(), [&](const LogTexts::Found& one) { return one.number == known.text; });
    if (line == found.end()) return std::nullopt;
    for (std::size_t hole = 0; hole < line->values.size(); ++hole) {
      if ((known.same >> hole & 1U) == 0) continue;
      if (beginning.id.empty()) beginning.id = line->values[hole];
      if (beginning.id != line->values[hole]) return std::nullopt;
    }
    beginning.values[i] = line->values;
  }
  return beginning;
}

void LogDiagnosis::FinishBeginning(bool at_end) {
  if (beginning_.empty()) return;
  LogRequest request;
  request.first_line = beginning_.front().line;
  request.last_line = beginning_.back().line;
  request.begins_before = true;
  request.may_go_on = at_end;
  const auto& nodes = knowledge_.nodes();
  std::deque<Beginning> beginnings;  // stay where they are
  std::vector<LoggedWay> ways;
  for (std::size_t node = 1; node < nodes.size(); ++node) {
    auto beginning = BeginningAt(node);
    if (!beginning) continue;
    if (IsNumber(beginning->id)) request.id = beginning->id;
    beginnings.push_back(*std::move(beginning));
    std::size_t depth = 0;
    for (std::size_t above = node; above != LogKnowledge::kRoot; above = nodes[above].parent) ++depth;
    AddWays(nodes, node, at_end, {nullptr, &beginnings.back().values, depth - beginning_.size()}, ways);
  }
  request.causes = CausesOf(ways);
  if (request.causes.empty()) {
    stray_lines_ += beginning_.size();
  } else {
    tell_(request);
  }
  beginning_.clear();
}

}  // namespace diagnosis
