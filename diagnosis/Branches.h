#ifndef DIAGNOSIS_BRANCHES_H
#define DIAGNOSIS_BRANCHES_H

#include <string>

namespace diagnosis {

/// How a branch ended.
struct Ending {
  std::string report;  ///< what it handed back
  std::string crash;   ///< "crashed: Segmentation fault"; empty when it did not
};

/// Branches of the program as it is: what one of them does to the card and to the module leaves nothing behind in the
/// others.
class Branches {
 public:
  virtual ~Branches() = default;

  /// How many there should be at a time.
  virtual unsigned most() const = 0;
  /// Begins one: true in it, which has no branches of its own yet, false where the program goes on.
  virtual bool Begin() = 0;
  /// Ends the branch that it is called in.
  [[noreturn]] virtual void End(const std::string& report) = 0;
  /// Waits for the one that began first of those that were not waited for.
  virtual Ending Next() = 0;
};

}  // namespace diagnosis

#endif
