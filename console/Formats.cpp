#include "console/Formats.h"

#include "calls/Json.h"
#include "console/Json.h"
#include "console/JsonPrinter.h"
#include "console/TextPrinter.h"

namespace console {
namespace {

using calls::JsonString;
using serve::Ending;

class TextFormat : public serve::Format {
 public:
  explicit TextFormat(bool colour) : colour_(colour) {}

  std::unique_ptr<scenario::Observer> Steps(std::ostream& out) const override {
    return std::make_unique<TextPrinter>(out, TextPrinter::Options{Detail::kCalls, colour_});
  }
  std::string Refusal(const scenario::Answer& answer) const override { return answer.Why(); }
  /// No statement is called so, and nothing else stands at the margin.
  std::string Last(Ending ending) const override {
    return ending == Ending::kMore ? "more\n" : "done " + std::to_string(static_cast<int>(ending)) + '\n';
  }

 private:
  const bool colour_;
};

std::string ComplaintJson(const scenario::Complaint& complaint) {
  return "{\"file\": " + JsonString(complaint.file) + ", \"line\": " + std::to_string(complaint.line) +
         ", \"column\": " + std::to_string(complaint.column) + ", \"message\": " + JsonString(complaint.message) +
         (complaint.usage.empty() ? "" : ", \"usage\": " + JsonString(complaint.usage)) + '}';
}

class JsonFormat : public serve::Format {
 public:
  std::unique_ptr<scenario::Observer> Steps(std::ostream& out) const override {
    return std::make_unique<JsonPrinter>(out);
  }
  std::string Refusal(const scenario::Answer& answer) const override {
    return "{\"version\": 1, \"step\": \"unusable\", \"complaints\": " + JsonList(answer.complaints, ComplaintJson) +
           ", \"more\": " + std::to_string(answer.more_complaints) +
           (answer.error.empty() ? "" : ", \"error\": " + JsonString(answer.error)) + "}\n";
  }
  std::string Last(Ending ending) const override {
    return ending == Ending::kMore
               ? "{\"version\": 1, \"step\": \"more\"}\n"
               : "{\"version\": 1, \"step\": \"done\", \"status\": " + std::to_string(static_cast<int>(ending)) + "}\n";
  }
};

}  // namespace

serve::Formats MakeFormats() {
  serve::Formats formats;
  formats["text"] = std::make_unique<TextFormat>(false);
  formats["color"] = std::make_unique<TextFormat>(true);
  formats["json"] = std::make_unique<JsonFormat>();
  return formats;
}

}  // namespace console
