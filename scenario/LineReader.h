#ifndef SCENARIO_LINE_READER_H
#define SCENARIO_LINE_READER_H

#include <string>
#include <unordered_map>
#include <vector>

#include "scenario/Language.h"
#include "scenario/Scenario.h"
#include "scenario/SourceLine.h"
#include "scenario/Structure.h"
#include "scenario/Substitution.h"

namespace scenario {

/// Reads a scenario's lines as they are in a round of the loops around them. A line that is the same in all rounds is
/// read once and kept.
class LineReader {
 public:
  /// What the lines register goes into `past`.
  LineReader(const Language& language, Past& past) : language_(language), past_(past) {}

  /// Valid until the next line is read. Throws SyntaxError.
  const ReadStatement& Read(const SourceLine& line, const Counters& rounds);
  Loop ReadLoop(const SourceLine& line, const Counters& rounds);
  softcard::CardDescription ReadCard(const SourceLine& line, const Counters& rounds);

 private:
  const std::vector<Token>& Words(const SourceLine& line, const Counters& rounds);
  const std::vector<std::string>& Block(const SourceLine& line, const Counters& rounds);

  const Language& language_;
  Past& past_;
  std::unordered_map<const SourceLine*, ReadStatement> kept_;
  ReadStatement last_;
  std::vector<Token> words_;
  Texts texts_;
  std::vector<std::string> block_;
};

}  // namespace scenario

#endif
