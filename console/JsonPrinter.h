#ifndef CONSOLE_JSON_PRINTER_H
#define CONSOLE_JSON_PRINTER_H

#include <iosfwd>

#include "scenario/Step.h"

namespace console {

/// Writes what a run has to tell, for programs: a JSON object a line, as docs/run-1.schema.json describes them.
class JsonPrinter : public scenario::Observer {
 public:
  explicit JsonPrinter(std::ostream& out) : out_(out) {}

  void Took(const scenario::Step& step) override;
  void Ended(const std::string& file, const scenario::Tally& tally) override;

 private:
  std::ostream& out_;
};

}  // namespace console

#endif
