#include "scenario/Substitution.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

/// Reads what follows a '$', by recursive descent: sum, product, factor.
class Expression {
 public:
  Expression(std::string_view text, std::size_t offset, const Counters& counters)
      : text_(text), offset_(offset), counters_(counters) {}

  /// A counter, or an expression in parentheses.
  std::int64_t Value() { return text_.substr(0, 1) == "(" ? Factor() : Counter(); }

  /// How many bytes were read.
  std::size_t length() const { return position_; }

 private:
  [[noreturn]] void Fail(const std::string& message) const { throw SyntaxError{offset_ + position_, message}; }

  bool Accept(char c) {
    if (position_ == text_.size() || text_[position_] != c) return false;
    ++position_;
    return true;
  }

  std::int64_t Sum() {
    std::int64_t sum = Product();
    for (;;) {
      if (Accept('+')) {
        Check(__builtin_add_overflow(sum, Product(), &sum));
      } else if (Accept('-')) {
        Check(__builtin_sub_overflow(sum, Product(), &sum));
      } else {
        return sum;
      }
    }
  }

  std::int64_t Product() {
    std::int64_t product = Factor();
    for (;;) {
      if (Accept('*')) {
        Check(__builtin_mul_overflow(product, Factor(), &product));
      } else if (Accept('/')) {
        product /= Divisor();
      } else if (Accept('%')) {
        product %= Divisor();
      } else {
        return product;
      }
    }
  }

  std::int64_t Divisor() {
    const std::int64_t divisor = Factor();
    if (divisor <= 0) Fail("division by " + std::to_string(divisor) + "; a divisor is positive");
    return divisor;
  }

  std::int64_t Factor() {
    if (Accept('(')) {
      if (++depth_ > kMaxDepth) Fail("more than " + std::to_string(kMaxDepth) + " nested parentheses");
      const std::int64_t value = Sum();
      --depth_;
      if (!Accept(')')) Fail("expected + - * / % or )");
      return value;
    }
    return AtDigit() ? Number() : Counter();
  }

  bool AtDigit() const { return position_ < text_.size() && text_[position_] >= '0' && text_[position_] <= '9'; }

  std::int64_t Number() {
    std::int64_t number = 0;
    for (; AtDigit(); ++position_) {
      Check(__builtin_mul_overflow(number, 10, &number) ||
            __builtin_add_overflow(number, text_[position_] - '0', &number));
    }
    return number;
  }

  std::int64_t Counter() {
    const auto is_name = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    std::size_t end = position_;
    while (end < text_.size() && is_name(text_[end])) ++end;
    const std::string_view name = text_.substr(position_, end - position_);
    if (name.empty()) Fail(depth_ > 0 ? "expected a number or a loop's counter" : "expected $COUNTER, $(...) or $$");
    for (auto counter = counters_.rbegin(); counter != counters_.rend(); ++counter) {
      if (counter->first != name) continue;
      position_ += name.size();
      return counter->second;
    }
    FailAtName(name);
  }

  [[noreturn]] void FailAtName(std::string_view name) const {
    std::vector<std::string> names;
    for (auto counter = counters_.rbegin(); counter != counters_.rend(); ++counter) names.push_back(counter->first);
    Fail("no loop around this line counts " + Quoted(name) + ", and no -D defines it" +
         (names.empty() ? "; a dollar sign is $$" : Suggest(name, names)));
  }

  void Check(bool overflow) const {
    if (overflow) Fail("the value does not fit into 64 bits");
  }

  static constexpr int kMaxDepth = 100;

  std::string_view text_;
  std::size_t offset_;
  const Counters& counters_;
  std::size_t position_ = 0;
  int depth_ = 0;
};

}  // namespace

std::string RoundText(const Counters& counters) {
  std::string text;
  for (const auto& [name, value] : counters) text += (text.empty() ? "" : ", ") + name + "=" + std::to_string(value);
  return text;
}

void Substitute(const Token& token, const Counters& counters, std::string& text) {
  for (std::size_t i = 0; i < token.text.size();) {
    if (token.text[i] != '$') {
      const std::size_t end = std::min(token.text.find('$', i), token.text.size());
      text += token.text.substr(i, end - i);
      i = end;
    } else if (token.text.substr(i, 2) == "$$") {
      text += '$';
      i += 2;
    } else {
      Expression expression(token.text.substr(i + 1), token.offset + i + 1, counters);
      text += std::to_string(expression.Value());
      i += 1 + expression.length();
    }
  }
}

}  // namespace scenario
