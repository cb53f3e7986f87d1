#pragma once

#include <string>
#include <vector>

#include "logic/query/completion/NameQuoting.h"
#include "logic/schema/structure/Structure.h"

namespace tessel {

/// A table with the fields of it that are ticked, in the order of the tree.
struct TickedTable {
  std::string name;
  std::vector<std::string> fields;
};

/// A query over the ticked fields of several tables.
struct JoinOffer {
  std::string caption;  ///< What it joins by.
  std::string sql;      ///< Ends with CR LF.
};

/// The queries that foreign keys offer for `ticked`: of two tables one for each key between them;
/// of more the one that goes from the first to all others along keys. None when they do not hang
/// together, or are fewer than two.
[[nodiscard]] std::vector<JoinOffer> JoinOffers(const std::vector<TickedTable>& ticked,
                                                const std::vector<ForeignKey>& keys,
                                                const NameQuoting& quoting = {});

}  // namespace tessel
