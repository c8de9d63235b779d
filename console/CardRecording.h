#ifndef CONSOLE_CARD_RECORDING_H
#define CONSOLE_CARD_RECORDING_H

#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include "diagnosis/CardTerms.h"
#include "recorder/Reader.h"

namespace console {

/// A recording in the software card's terms, read an entry at a time.
class CardRecording {
 public:
  /// Reads it once to its end. Throws std::runtime_error for a file that cannot be read, and BadRecording.
  explicit CardRecording(const std::string& path);

  const recorder::Header& header() const { return reader_->header(); }
  const diagnosis::CardTerms& terms() const { return *terms_; }
  /// Nothing at the end.
  std::optional<recorder::Entry> Next();

 private:
  std::ifstream in_;
  std::optional<diagnosis::CardTerms> terms_;
  std::optional<recorder::Reader> reader_;
};

/// Says on standard error why a recording cannot be used.
void TellUnusable(const std::string& path, const std::runtime_error& error);

}  // namespace console

#endif
