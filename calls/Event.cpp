#include "calls/Event.h"

#include <cxxabi.h>

#include <charconv>
#include <cstdlib>
#include <memory>
#include <typeinfo>

#include "calls/Json.h"
#include "calls/Take.h"

namespace calls {
namespace {

constexpr std::string_view kInjected = " [injected]";
constexpr std::string_view kOutput = " -> ";
constexpr std::string_view kLog = "log ";

std::string CallText(const Call& call, const LimIdNames& names) {
  const Function& function = *call.function;
  std::string text = function.name;
  text += '(';
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const Argument& argument = function.arguments[i];
    if (i > 0) text += ", ";
    text += argument.name;
    text += '=';
    text += Text(argument.kind, call.arguments[i], names);
  }
  text += ')';
  if (!call.thrown.empty()) return text + " threw " + call.thrown;
  if (!std::holds_alternative<std::monostate>(call.result)) {
    text += " = " + Text(function.result_kind(), call.result, names);
  }
  if (!std::holds_alternative<std::monostate>(call.output)) {
    text += std::string(kOutput) + function.output.name + '=';
    text += Text(function.output.kind, call.output, names);
  }
  return text;
}

std::string CallJson(const Call& call, const LimIdNames& names) {
  const Function& function = *call.function;
  std::string json = "{\"call\": " + JsonString(function.name) + ", \"arguments\": {";
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    const Argument& argument = function.arguments[i];
    json += (i > 0 ? ", " : "") + JsonString(argument.name) + ": " + Json(argument.kind, call.arguments[i], names);
  }
  json += '}';
  const auto* number = std::get_if<std::int64_t>(&call.result);
  if (!std::holds_alternative<std::monostate>(call.result)) {
    json += ", \"result\": " + Json(function.result_kind(), call.result, names);
  }
  if (number && *number < 0) json += ", \"status\": " + JsonString(StatusWords(*number));
  if (!std::holds_alternative<std::monostate>(call.output)) {
    json += ", \"output\": {" + JsonString(function.output.name) + ": " +
            Json(function.output.kind, call.output, names) + '}';
  }
  if (call.injected) json += ", \"injected\": true";
  if (!call.thrown.empty()) json += ", \"threw\": " + JsonString(call.thrown);
  return json + '}';
}

std::optional<Event> ReadLogLine(std::string_view line) {
  int level = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), level);
  if (error != std::errc()) return std::nullopt;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  if (!Take(&line, ": ")) return std::nullopt;
  return LogLine{level, std::string(line)};
}

std::optional<Event> ReadCall(std::string_view line, const LimIdNames& names) {
  const std::size_t parenthesis = line.find('(');
  const Function* const function = FindFunction(line.substr(0, parenthesis));
  if (!function) return std::nullopt;
  line.remove_prefix(parenthesis + 1);
  Call call{function, {}};
  for (int i = 0; i < function->argument_count(); ++i) {
    const Argument& argument = function->arguments[i];
    if (!Take(&line, (i > 0 ? ", " : "") + std::string(argument.name) + '=')) return std::nullopt;
    auto value = Read(argument.kind, &line, names);
    if (!value) return std::nullopt;
    call.arguments.push_back(*std::move(value));
  }
  if (!Take(&line, ")")) return std::nullopt;
  if (Take(&line, " threw ")) {
    call.thrown = line;
    return call;
  }
  call.injected = Unmarked(line).size() < line.size();
  line = Unmarked(line);
  if (Take(&line, " = ")) {
    auto result = Read(function->result_kind(), &line, names);
    if (!result) return std::nullopt;
    call.result = *std::move(result);
  }
  if (function->output.name && Take(&line, std::string(kOutput) + function->output.name + '=')) {
    auto output = Read(function->output.kind, &line, names);
    if (!output) return std::nullopt;
    call.output = *std::move(output);
  }
  return line.empty() ? std::optional<Event>(std::move(call)) : std::nullopt;
}

}  // namespace

std::string_view Unmarked(std::string_view line) {
  const bool marked = line.size() >= kInjected.size() && line.substr(line.size() - kInjected.size()) == kInjected;
  return line.substr(0, line.size() - (marked ? kInjected.size() : 0));
}

std::string UnmarkedText(const Event& event, const LimIdNames& names) {
  if (const auto* call = std::get_if<Call>(&event)) return CallText(*call, names);
  const auto& line = std::get<LogLine>(event);
  return std::string(kLog) + std::to_string(line.level) + ": " + line.text;
}

std::string Text(const Event& event, const LimIdNames& names) {
  std::string text = UnmarkedText(event, names);
  const auto* call = std::get_if<Call>(&event);
  if (call && call->injected) text += kInjected;
  return text;
}

std::string Json(const Event& event, const LimIdNames& names) {
  if (const auto* call = std::get_if<Call>(&event)) return CallJson(*call, names);
  const auto& line = std::get<LogLine>(event);
  return "{\"log\": " + std::to_string(line.level) + ", \"text\": " + JsonString(line.text) + '}';
}

std::optional<Event> ReadEvent(std::string_view line, const LimIdNames& names) {
  return Take(&line, kLog) ? ReadLogLine(line) : ReadCall(line, names);
}

bool IsRefused(const Event& event) {
  const auto* call = std::get_if<Call>(&event);
  const auto* number = call ? std::get_if<std::int64_t>(&call->result) : nullptr;
  if (!number) return false;
  switch (call->function->result) {
    case Result::kStatus:
    case Result::kId:
    case Result::kNumber:
    case Result::kPredicate: return *number < 0;
    case Result::kFound: return *number == 0;
    default: return false;
  }
}

std::string Describe(const std::exception& exception) {
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(typeid(exception).name(), nullptr, nullptr, nullptr), &std::free);
  return std::string(name ? name.get() : "exception") + ": " + exception.what();
}

}  // namespace calls
