#include "diagnosis/SweptText.h"

#include <cstddef>
#include <iomanip>
#include <sstream>

namespace diagnosis {
namespace {

class ReportWriter {
 public:
  void operator()(const std::string& text) { out_ << std::quoted(text) << ' '; }
  void operator()(const calls::Function* function) { (*this)(std::string(function->name)); }
  template <typename Number>
  void operator()(const Number& number) {
    out_ << number << ' ';
  }
  template <typename Element, typename Each>
  void List(const std::vector<Element>& list, Each each) {
    (*this)(list.size());
    for (const Element& element : list) each(element);
  }
  std::string text() const { return out_.str(); }

 private:
  std::ostringstream out_;
};

class ReportReader {
 public:
  explicit ReportReader(const std::string& text) : in_(text) {}

  void operator()(std::string& text) { in_ >> std::quoted(text); }
  void operator()(const calls::Function*& function) {
    std::string name;
    (*this)(name);
    function = calls::FindFunction(name);
  }
  template <typename Number>
  void operator()(Number& number) {
    in_ >> number;
  }
  template <typename Element, typename Each>
  void List(std::vector<Element>& list, Each each) {
    std::size_t size = 0;
    (*this)(size);
    list.resize(size);
    for (Element& element : list) each(element);
  }

 private:
  std::istringstream in_;
};

/// What a report consists of, in order: for the writer and for the reader.
template <typename Archive, typename Report>
void Describe(Archive& archive, Report& report) {
  archive(report.request);
  archive(report.file);
  archive(report.line);
  archive.List(report.rounds, [&](auto& counter) {
    archive(counter.first);
    archive(counter.second);
  });
  auto& outcome = report.outcome;
  archive(outcome.result);
  archive.List(outcome.log, [&](auto& line) {
    archive(line.level);
    archive(line.text);
  });
  archive.List(outcome.findings, [&](auto& finding) {
    archive(finding.object);
    archive(finding.problem);
    archive(finding.cause);
    archive(finding.packet);
    archive(finding.remedy);
  });
  archive(outcome.again);
  archive(outcome.destroy);
  archive.List(report.calls, [&](auto& call) {
    archive(call.number);
    archive(call.function);
    archive(call.result);
  });
}

}  // namespace

std::string ToText(const BranchReport& report) {
  ReportWriter writer;
  Describe(writer, report);
  return writer.text();
}

BranchReport ReadBranchReport(const std::string& text) {
  ReportReader reader(text);
  BranchReport report;
  Describe(reader, report);
  return report;
}

}  // namespace diagnosis
