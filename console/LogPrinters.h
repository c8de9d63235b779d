#ifndef CONSOLE_LOG_PRINTERS_H
#define CONSOLE_LOG_PRINTERS_H

#include <iosfwd>
#include <map>
#include <string>

#include "diagnosis/LogDiagnosis.h"

namespace console {

/// How many there were in a log.
struct LogTally {
  unsigned long lines = 0;
  unsigned long module_lines = 0;
  unsigned long stray = 0;     ///< lines of the module that belong to no request
  unsigned long too_long = 0;  ///< lines that were passed over
  unsigned long requests = 0;
  unsigned long failed = 0;
  unsigned long silent = 0;       ///< may have succeeded or failed: they log the same
  unsigned long unexplained = 0;  ///< no refusal of a single call writes their lines

  void Add(const diagnosis::LogRequest& request);
};

/// Whether some refusal that may have happened in it is not told from a success.
bool IsSilent(const diagnosis::LogRequest& request);

/// Is told of a log's requests.
class LogPrinter {
 public:
  virtual ~LogPrinter() = default;
  virtual void Found(const diagnosis::LogRequest& request) = 0;
  virtual void Ended(const LogTally& tally) = 0;
};

/// For people. Requests that may have succeeded are told of together in the end, unless all are to be shown.
class LogText : public LogPrinter {
 public:
  LogText(std::ostream& out, std::string file, bool all) : out_(out), file_(std::move(file)), all_(all) {}

  void Found(const diagnosis::LogRequest& request) override;
  void Ended(const LogTally& tally) override;

 private:
  struct Alike {
    diagnosis::LogRequest first;
    unsigned long count = 0;
  };

  void Print(const diagnosis::LogRequest& request);

  std::ostream& out_;
  const std::string file_;
  const bool all_;
  std::map<std::size_t, Alike> silent_;  ///< by what they logged
};

/// For programs: a JSON object a line, as docs/diagnose-1.schema.json describes them.
class LogJson : public LogPrinter {
 public:
  LogJson(std::ostream& out, std::string file, bool all) : out_(out), file_(std::move(file)), all_(all) {}

  void Found(const diagnosis::LogRequest& request) override;
  void Ended(const LogTally& tally) override;

 private:
  std::ostream& out_;
  const std::string file_;
  const bool all_;
};

}  // namespace console

#endif
