#pragma once

#include <string>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/desktop/Window.h"
#include "contract/desktop/controls/TreeView.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/program/view/ViewSettings.h"
#include "logic/schema/SchemaTree.h"
#include "logic/schema/sql/Joins.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

/// What the schema browser tells and offers of the structure: tool tips and details of the nodes,
/// the SQL that makes an object, and joins along foreign keys.
class StructureCommands {
 public:
  /// All outlive it.
  StructureCommands(const Global& global, Window& frame, dlgAsync& async, SchemaTree& tree,
                    SqlTarget& sqlWindow);

  /// Enables and names the entries of a node's menu, which is about to open.
  void PrepareMenu(const std::string& key);
  /// Shows the SQL that makes what a node stands for, or says that there is none.
  void ShowDefinition(const std::string& key, Connection& connection);
  /// Inserts the query of the join of that number, as PrepareMenu offered it.
  void InsertJoin(std::size_t number);
  /// Shows types and keys behind the names, or no longer; it is remembered.
  void FlipTypes();

 private:
  /// How to ask for a definition: the restrictions of its rowset.
  [[nodiscard]] std::vector<std::string> RestrictionsOf(const std::string& key) const;
  void NoteNode(const std::string& key, NodeNote& note) const;
  [[nodiscard]] const IndexFacts* IndexOf(const Structure& structure, const std::string& key) const;
  [[nodiscard]] std::vector<TickedTable> TickedTables(const std::string& firstTable) const;
  void OfferJoins(const std::string& tableKey);

  const Global& global_;
  Help help_;
  Window& frame_;
  dlgAsync& async_;
  SchemaTree& tree_;
  SqlTarget& sqlWindow_;
  ViewSettings settings_;
  bool showsTypes_ = false;
  std::vector<JoinOffer> joins_;  ///< Those of the menu that was opened last.
};

}  // namespace tessel
