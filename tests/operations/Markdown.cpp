#include "tests/operations/Markdown.h"

namespace operations {

std::string Cell(const Lines& lines, const char* none) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "`" : "<br>`") + line + "`";
  return text.empty() ? none : text;
}

/// Log lines that report something.
Lines Errors(const diagnosis::Attempt& attempt) {
  Lines lines;
  for (const scenario::TraceLine& line : attempt.trace.lines) {
    if (line.kind() == scenario::TraceLine::Kind::kLog &&
        std::get<calls::LogLine>(std::get<calls::Event>(line.what)).level <= 4) {
      lines.push_back(line.Text());
    }
  }
  return lines;
}

Lines Changes(const diagnosis::Rows& before, const diagnosis::Rows& after) {
  Lines lines;
  for (const softcard::Row& row : diagnosis::Without(before, after)) lines.push_back("- " + softcard::Text(row));
  for (const softcard::Row& row : diagnosis::Without(after, before)) lines.push_back("+ " + softcard::Text(row));
  return lines;
}

}  // namespace operations
