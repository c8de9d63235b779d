#ifndef SCENARIO_FORM_H
#define SCENARIO_FORM_H

#include <string>
#include <string_view>
#include <vector>

namespace scenario {

/// What a statement looks like, for example "install-host ID vlan=ID lim=PORT mac=MAC [actions=ACTION,...]": behind the
/// name, words in capitals stand for one word each, KEY=X for a field, brackets for what may be left out, and a last
/// "X..." for one or more words, "X,..." for a list in one word. A form with alternatives, "a | b", leaves it to the
/// statement to tell them apart.
class Form {
 public:
  struct Part {
    std::string text;   ///< as shown, without brackets: "actions=ACTION,..."
    std::string key;    ///< "actions"; empty for a word
    std::string value;  ///< what kind of value it takes: "ACTION"
    bool optional = false;
    bool repeated = false;  ///< one or more words
  };

  Form(std::string name, const std::string& fields);

  const std::string& name() const { return name_; }
  /// The whole form.
  const std::string& usage() const { return usage_; }
  const std::vector<Part>& parts() const { return parts_; }
  bool has_alternatives() const { return has_alternatives_; }
  /// How many words without a key there may be.
  std::size_t most_words() const { return most_words_; }

  const Part* Find(std::string_view key) const;

 private:
  std::string name_;
  std::string usage_;
  std::vector<Part> parts_;
  bool has_alternatives_;
  std::size_t most_words_ = 0;
};

}  // namespace scenario

#endif
