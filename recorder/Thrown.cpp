#include "recorder/Thrown.h"

#include <new>
#include <stdexcept>
#include <utility>

#include "calls/Event.h"

namespace recorder {
namespace {

/// An exception of a type that this process does not have.
class Foreign : public std::exception {
 public:
  explicit Foreign(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  const std::string text_;
};

template <typename Exception>
void ThrowIf(const std::string& text, const std::string& name) {
  const std::string start = name + ": ";
  if (text.compare(0, start.size(), start) == 0) throw Exception(text.substr(start.size()));
}

}  // namespace

void ThrowAgain(const std::string& text) {
  if (text == "std::bad_alloc: std::bad_alloc") throw std::bad_alloc();
  ThrowIf<std::out_of_range>(text, "std::out_of_range");
  ThrowIf<std::length_error>(text, "std::length_error");
  ThrowIf<std::invalid_argument>(text, "std::invalid_argument");
  ThrowIf<std::logic_error>(text, "std::logic_error");
  ThrowIf<std::runtime_error>(text, "std::runtime_error");
  throw Foreign(text);
}

std::string DescribeAgain() {
  try {
    throw;
  } catch (const Foreign& foreign) {
    return foreign.what();
  } catch (const std::exception& exception) {
    return calls::Describe(exception);
  }
}

}  // namespace recorder
