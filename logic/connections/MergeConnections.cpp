#include "logic/connections/MergeConnections.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

using List = std::vector<SavedConnection>;

bool Has(const List& list, const SavedConnection& entry) {
  return std::ranges::find(list, entry) != list.end();
}

/// Takes one entry out; false when it is not there.
bool Take(List& list, const SavedConnection& entry) {
  const auto found = std::ranges::find(list, entry);
  if (found == list.end()) return false;
  list.erase(found);
  return true;
}

/// The entries of `list` that are not in `other`. Equal entries count singly.
List Without(const List& list, List other) {
  List rest;
  for (const SavedConnection& entry : list)
    if (!Take(other, entry)) rest.push_back(entry);
  return rest;
}

/// The entries of `list` that are in `other` too, in the order of `list`.
List Shared(const List& list, List other) {
  List shared;
  for (const SavedConnection& entry : list)
    if (Take(other, entry)) shared.push_back(entry);
  return shared;
}

bool HasMoved(const List& base, const List& list) {
  return Shared(base, list) != Shared(list, base);
}

bool DiffersInColours(const SavedConnection& a, const SavedConnection& b) {
  return a.connectionString == b.connectionString && a.caption == b.caption;
}

/// Whether one is the other after a change of its caption or its connection string.
bool IsChangeOf(const SavedConnection& a, const SavedConnection& b) {
  return a.connectionString == b.connectionString || (a.caption == b.caption && !a.caption.empty());
}

/// Applies what one program did to a list, entry by entry.
class Changes {
 public:
  /// What happened from `base` to `changed`, without what happened to `list` as well.
  Changes(const List& base, const List& changed, const List& list)
      : base_(base),
        changed_(changed),
        removed_(Without(base, changed)),
        added_(Without(Without(changed, base), Without(list, base))) {}

  [[nodiscard]] List ApplyTo(List list) {
    for (const SavedConnection& entry : List(added_)) Replace(list, entry);
    list = Without(list, removed_);
    for (std::size_t place = changed_.size(); place > 0; --place)
      if (Take(added_, changed_[place - 1])) Insert(list, place - 1);
    return list;
  }

 private:
  /// An entry that was changed takes the place of what it was.
  void Replace(List& list, const SavedConnection& entry) {
    const auto was = std::ranges::find_if(list, [&](const SavedConnection& old) {
      if (Has(removed_, old)) return IsChangeOf(old, entry);
      return !Has(base_, old) && !Has(changed_, old) && DiffersInColours(old, entry);
    });
    if (was == list.end()) return;
    Take(removed_, *was);
    Take(added_, entry);
    *was = entry;
  }

  /// A new entry stands before the one that follows it where it comes from, else last.
  void Insert(List& list, std::size_t place) const {
    auto at = list.end();
    for (std::size_t next = place + 1; next < changed_.size() && at == list.end(); ++next)
      at = std::ranges::find(list, changed_[next]);
    list.insert(at, changed_[place]);
  }

  const List& base_;
  const List& changed_;
  List removed_;
  List added_;
};

}  // namespace

List MergeConnections(const List& base, const List& theirs, const List& mine) {
  if (theirs == base) return mine;
  if (HasMoved(base, mine)) return Changes(base, theirs, mine).ApplyTo(mine);
  return Changes(base, mine, theirs).ApplyTo(theirs);
}

}  // namespace tessel
