#include "scenario/Form.h"

#include <limits>
#include <sstream>
#include <utility>

namespace scenario {
namespace {

Form::Part ReadPart(std::string text) {
  const bool optional = text.front() == '[';
  if (optional) text = text.substr(1, text.size() - 2);
  const std::size_t equals = text.find('=');
  const bool word = equals == std::string::npos;
  const std::string value = text.substr(word ? 0 : equals + 1);
  const bool repeated = word && text.back() == '.' && text.find(',') == std::string::npos;
  return {text, word ? "" : text.substr(0, equals), value.substr(0, value.find_first_of(",.")), optional, repeated};
}

}  // namespace

Form::Form(std::string name, const std::string& fields)
    : name_(std::move(name)),
      usage_(name_ + (fields.empty() ? "" : " ") + fields),
      has_alternatives_(fields.find(" | ") != std::string::npos) {
  if (has_alternatives_) return;
  std::istringstream stream(fields);
  for (std::string text; stream >> text;) {
    const Part& part = parts_.emplace_back(ReadPart(text));
    if (part.repeated) {
      most_words_ = std::numeric_limits<std::size_t>::max();
    } else if (part.key.empty()) {
      ++most_words_;
    }
  }
}

const Form::Part* Form::Find(std::string_view key) const {
  for (const Part& part : parts_) {
    if (!part.key.empty() && part.key == key) return &part;
  }
  return nullptr;
}

}  // namespace scenario
