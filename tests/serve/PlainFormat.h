#ifndef TESTS_SERVE_PLAIN_FORMAT_H
#define TESTS_SERVE_PLAIN_FORMAT_H

#include <memory>
#include <ostream>
#include <string>

#include "serve/Format.h"

/// Writes "STATEMENT: RESULT" for a request and "- FAILURE" for what does not hold.
class PlainSteps : public scenario::Observer {
 public:
  explicit PlainSteps(std::ostream& out) : out_(out) {}

  void Took(const scenario::Step& step) override {
    if (const auto* trace = std::get_if<scenario::Trace>(&step.content); trace != nullptr && step.line > 0) {
      out_ << "> " << step.Text() << ": " << trace->result.Text() << '\n';
    }
    if (const auto* checked = std::get_if<scenario::Checked>(&step.content); checked != nullptr && checked->failure) {
      out_ << "- " << checked->failure->back() << '\n';
    }
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

 private:
  std::ostream& out_;
};

class PlainFormat : public serve::Format {
 public:
  explicit PlainFormat(std::string name = "") : name_(std::move(name)) {}

  std::unique_ptr<scenario::Observer> Steps(std::ostream& out) const override {
    return std::make_unique<PlainSteps>(out);
  }
  std::string Refusal(const scenario::Answer& answer) const override { return answer.Why(); }
  std::string Last(serve::Ending ending) const override {
    return name_ + "end " + std::to_string(static_cast<int>(ending)) + '\n';
  }

  static serve::Formats All() {
    serve::Formats formats;
    formats["text"] = std::make_unique<PlainFormat>();
    formats["other"] = std::make_unique<PlainFormat>("other ");
    return formats;
  }

 private:
  const std::string name_;
};

#endif
