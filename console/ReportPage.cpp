#include "console/ReportPage.h"

#include <string_view>

#include "calls/Json.h"

namespace console {

/// console/report/page.html with its style and its script, which the build puts here.
extern const char kReportTemplate[];

namespace {

/// Nothing in a script's data may look like the script's end.
std::string ForScript(std::string_view json) {
  std::string text;
  text.reserve(json.size());
  for (const char c : json) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

/// Without what an SVG file of its own begins with; it reads as one picture.
std::string Inline(const std::string& svg) {
  constexpr std::string_view kBegin = "<svg ";
  const std::size_t begin = svg.find(kBegin);
  if (begin == std::string::npos) return "";
  return "<svg role=\"img\" aria-labelledby=\"picture-heading\" aria-describedby=\"picture-legend\" " +
         svg.substr(begin + kBegin.size());
}

void Put(const std::string& text, std::string_view place, std::string& page) {
  page.replace(page.find(place), place.size(), text);
}

}  // namespace

std::string ReportPage::Html() const {
  std::string page = kReportTemplate;
  // The data first: nothing in it is a place.
  Put(ForScript("{\"scenario\": " + calls::JsonString(scenario) + ", \"until\": " + std::to_string(until) +
                ", \"version\": \"" SOFTCARD_VERSION "\",\n\"report\": " + card + ",\n\"sweep\": " + sweep + '}'),
      "<!-- data -->", page);
  Put(Inline(picture), "<!-- picture -->", page);
  return page;
}

}  // namespace console
