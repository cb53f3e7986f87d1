#pragma once

#include <memory>
#include <optional>
#include <string>

#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/query/completion/vocab.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

/// Makes words for completion of the values of a field.
class FieldVocabulary {
 public:
  /// All outlive this object.
  FieldVocabulary(const Global& global, dlgAsync& async, Vocabulary& vocabulary,
                  SqlTarget& sqlWindow)
      : global_(global),
        help_(global),
        async_(async),
        vocabulary_(vocabulary),
        sqlWindow_(sqlWindow) {}

  /// Reads the distinct values of a field and shows them, a line each; what the user accepts
  /// becomes the list `listName` of the section "_Custom", in place of one of that name. An empty
  /// table, a field without any text and a query that fails are told to the user; one that is
  /// cancelled ends the command. Names are those of the browser.
  void Build(const std::string& listName, const std::string& table, const std::string& field,
             const NameQuoting& quoting, const std::shared_ptr<Connection>& connection);

 private:
  struct Values {
    bool any = false;
    std::string text;  ///< Those that are more than blanks, a line each.
  };

  [[nodiscard]] std::optional<Values> Read(const std::string& sql, Connection& connection);
  [[nodiscard]] std::string TextOf(const Recordset& rows);
  void Review(const std::string& listName, std::string text);
  void Notice(const std::string& text) const;

  const Global& global_;
  Help help_;
  dlgAsync& async_;
  Vocabulary& vocabulary_;
  SqlTarget& sqlWindow_;
};

}  // namespace tessel
