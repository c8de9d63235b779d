#ifndef DIAGNOSIS_CHANGES_H
#define DIAGNOSIS_CHANGES_H

#include <functional>
#include <map>
#include <utility>

#include "diagnosis/Attempt.h"
#include "scenario/Step.h"

/// What differs between a card and the same card at another time.
namespace diagnosis {

/// A row that has changed is in both.
struct Changes {
  Rows took;  ///< rows that are no longer there
  Rows put;   ///< rows that were not there
};

Changes Compare(const Rows& before, const Rows& after);

/// Tells of each request which rows it took and which it put, by looking at those alone that its calls are about, or
/// that it wrote by itself. Watches a run from its beginning.
class RequestChanges : public scenario::Observer {
 public:
  using Tell = std::function<void(const scenario::Step&, const Changes&)>;

  /// `tell` is called after each request that has changed something.
  RequestChanges(const softcard::Card& card, Tell tell) : card_(card), tell_(std::move(tell)) {}

  void Took(const scenario::Step& step) override;
  void Ended(const std::string&, const scenario::Tally&) override {
    rows_.clear();
    own_rows_.clear();
  }

 private:
  void Follow(const scenario::OwnRow& own, Changes& changes);

  const softcard::Card& card_;
  const Tell tell_;
  std::map<std::pair<std::string_view, std::int64_t>, softcard::Row> rows_;  ///< by table and key, as they are
  std::map<std::string, softcard::Row> own_rows_;  ///< of tables that statements fill by themselves
};

/// The rows of the card at a time that a run has marked; none before that.
class Mark : public scenario::Observer {
 public:
  void Set(const softcard::Card& card) { rows_ = AllRows(card); }
  Changes Since(const softcard::Card& card) const { return Compare(rows_, AllRows(card)); }

  void Took(const scenario::Step&) override {}
  void Ended(const std::string&, const scenario::Tally&) override { rows_.clear(); }

 private:
  Rows rows_;
};

}  // namespace diagnosis

#endif
