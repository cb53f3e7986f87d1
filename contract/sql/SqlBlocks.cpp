#include "contract/sql/SqlBlocks.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

// --- Words with a meaning -----------------------------------------------------------------------

/// In the order of their letters.
constexpr auto keywords = std::to_array<std::string_view>(
    {"AGGREGATE", "ALTER",     "ANALYZE",     "AS",           "ATOMIC",  "BEGIN",       "CALL",
     "CASE",      "CHARACTER", "CONTINUE",    "CONVERSATION", "CREATE",  "DECLARE",     "DEFINER",
     "DELETE",    "DIALOG",    "DISTRIBUTED", "DO",           "DROP",    "EACH",        "ELSE",
     "END",       "EVENT",     "EXECUTE",     "EXIT",         "EXPLAIN", "FOR",         "FUNCTION",
     "HANDLER",   "IF",        "INSERT",      "IS",           "LOOP",    "NOT",         "OR",
     "PACKAGE",   "PREPARE",   "PROC",        "PROCEDURE",    "RENAME",  "REPEAT",      "REPLACE",
     "RETURN",    "RETURNS",   "ROW",         "SELECT",       "SET",     "SHOW",        "SIGNAL",
     "STATEMENT", "TEMP",      "TEMPORARY",   "THEN",         "TRAN",    "TRANSACTION", "TRIGGER",
     "UNDO",      "UNTIL",     "UPDATE",      "VALUES",       "WHILE",   "WITH",        "WORK"});
static_assert(std::ranges::is_sorted(keywords));

/// The number of a keyword; any other word and all that is no word has the number noKey.
using Key = std::size_t;
constexpr Key noKey = keywords.size();

/// A keyword of the list: one that is missing there does not compile.
consteval Key operator""_key(const char* text, std::size_t size) {
  const auto found = std::ranges::find(keywords, std::string_view(text, size));
  return found == keywords.end() ? throw "no keyword" : static_cast<Key>(found - keywords.begin());
}

/// The first keyword whose letter is not before "A" + index.
constexpr auto firstOfLetter = [] {
  std::array<Key, 27> first{};
  for (std::size_t i = 0; i < first.size(); ++i)
    first[i] = static_cast<Key>(std::ranges::count_if(
        keywords, [&](std::string_view word) { return word.front() < 'A' + static_cast<int>(i); }));
  return first;
}();

Key KeyOf(SqlTokenKind kind, std::string_view text) {
  const char letter = AsciiUpper(text.front());
  if (kind != SqlTokenKind::Word || letter < 'A' || letter > 'Z') return noKey;
  const auto index = static_cast<std::size_t>(letter - 'A');
  for (Key key = firstOfLetter[index]; key < firstOfLetter[index + 1]; ++key)
    if (EqualNoCase(keywords[key], text)) return key;
  return noKey;
}

template <class One, class... Others>
constexpr bool IsAnyOf(One one, Others... others) {
  return ((one == others) || ...);
}

/// Counts parentheses; one that closes too much is passed over.
void CountParentheses(SqlTokenKind kind, std::string_view text, std::size_t& depth) {
  if (kind != SqlTokenKind::Sign) return;
  if (text == "(") ++depth;
  else if (text == ")" && depth > 0) --depth;
}

// --- PostgreSQL ---------------------------------------------------------------------------------

/// A semicolon in parentheses belongs to the statement, as in the actions of a rule. In the body of
/// a routine, BEGIN ATOMIC ... END, every one does.
class PostgresBlocks final : public SqlBlocks {
 public:
  void Take(SqlTokenKind kind, std::string_view text) override {
    CountParentheses(kind, text, parentheses_);
    if (part_ == Part::Plain || parentheses_ > 0) return;
    const Key key = KeyOf(kind, text);
    if (part_ == Part::Body) TakeOfBody(key);
    else part_ = Next(key);
    before_ = text == "." ? "AS"_key : key;  // Behind both a keyword is a name.
  }
  [[nodiscard]] bool EndsHere() override {
    atStart_ = true;
    if (parentheses_ > 0 || part_ == Part::Body) return false;
    part_ = Part::Start;
    before_ = noKey;
    return true;
  }

 private:
  enum class Part { Start, Create, Routine, Body, Plain };

  [[nodiscard]] Part Next(Key key) {
    if (part_ == Part::Start) return key == "CREATE"_key ? Part::Create : Part::Plain;
    if (part_ == Part::Create) {
      if (IsAnyOf(key, "OR"_key, "REPLACE"_key)) return Part::Create;
      return IsAnyOf(key, "FUNCTION"_key, "PROCEDURE"_key) ? Part::Routine : Part::Plain;
    }
    if (before_ != "BEGIN"_key || key != "ATOMIC"_key) return Part::Routine;
    cases_ = 0;
    atStart_ = true;
    return Part::Body;
  }
  void TakeOfBody(Key key) {
    const bool isName = before_ == "AS"_key;
    if (key == "CASE"_key && !isName) ++cases_;
    if (key == "END"_key && !isName && (cases_ > 0 || atStart_)) {
      if (cases_ > 0) --cases_;
      else part_ = Part::Plain;
    }
    atStart_ = false;
  }

  Part part_ = Part::Start;
  std::size_t parentheses_ = 0;
  std::size_t cases_ = 0;  ///< CASEs that are open in the body.
  bool atStart_ = false;   ///< Whether a statement of the body begins.
  Key before_ = noKey;
};

// --- SQLite -------------------------------------------------------------------------------------

/// CREATE TRIGGER, or EXPLAIN of one, goes on to "; END". SQLite itself tells whole statements from
/// others by these words.
class SqliteBlocks final : public SqlBlocks {
 public:
  void Take(SqlTokenKind kind, std::string_view text) override {
    if (part_ != Part::Plain) part_ = Next(KeyOf(kind, text));
  }
  [[nodiscard]] bool EndsHere() override {
    const bool inTrigger = part_ == Part::Trigger || part_ == Part::Semicolon;
    part_ = inTrigger ? Part::Semicolon : Part::Start;
    return !inTrigger;
  }

 private:
  enum class Part { Start, Explain, Create, Plain, Trigger, Semicolon, End };

  [[nodiscard]] Part Next(Key key) const {
    switch (part_) {
      case Part::Start:
        if (key == "EXPLAIN"_key) return Part::Explain;
        return key == "CREATE"_key ? Part::Create : Part::Plain;
      case Part::Explain: return key == "CREATE"_key ? Part::Create : Part::Explain;
      case Part::Create:
        if (IsAnyOf(key, "TEMP"_key, "TEMPORARY"_key)) return Part::Create;
        return key == "TRIGGER"_key ? Part::Trigger : Part::Plain;
      case Part::Semicolon: return key == "END"_key ? Part::End : Part::Trigger;
      case Part::Trigger:
      case Part::End: return Part::Trigger;
      case Part::Plain: break;
    }
    return Part::Plain;
  }

  Part part_ = Part::Start;
};

// --- SQL Server ---------------------------------------------------------------------------------

/// BEGIN ... END and CASE ... END. A routine or trigger is alone in its text and takes all of it.
class ServerBlocks final : public SqlBlocks {
 public:
  void Take(SqlTokenKind kind, std::string_view text) override {
    if (part_ == Part::WholeText) return;
    const Key key = KeyOf(kind, text);
    if (part_ != Part::Plain) part_ = Next(key);
    CountBlocks(key);
    before_ = key;
  }
  [[nodiscard]] bool EndsHere() override {
    before_ = noKey;
    if (part_ == Part::WholeText || blocks_ > 0) return false;
    part_ = Part::Start;
    return true;
  }

 private:
  enum class Part { Start, Create, Plain, WholeText };

  [[nodiscard]] Part Next(Key key) const {
    if (part_ == Part::Start)
      return IsAnyOf(key, "CREATE"_key, "ALTER"_key) ? Part::Create : Part::Plain;
    if (IsAnyOf(key, "OR"_key, "ALTER"_key)) return Part::Create;
    const bool hasBody = IsAnyOf(key, "PROC"_key, "PROCEDURE"_key, "FUNCTION"_key, "TRIGGER"_key);
    return hasBody ? Part::WholeText : Part::Plain;
  }
  /// BEGIN TRANSACTION and the like open no block, and END CONVERSATION closes none.
  void CountBlocks(Key key) {
    const bool begins = IsAnyOf(key, "TRAN"_key, "TRANSACTION"_key, "DISTRIBUTED"_key, "DIALOG"_key,
                                "CONVERSATION"_key);
    if (IsAnyOf(key, "BEGIN"_key, "CASE"_key)) ++blocks_;
    else if (before_ == "BEGIN"_key && begins) --blocks_;
    else if (before_ == "END"_key && key == "CONVERSATION"_key) blocks_ += closed_;
    if (key != "END"_key) return;
    closed_ = std::min<std::size_t>(blocks_, 1);
    blocks_ -= closed_;
  }

  Part part_ = Part::Start;
  std::size_t blocks_ = 0;
  std::size_t closed_ = 0;  ///< How many blocks the END before closed: one or none.
  Key before_ = noKey;
};

// --- MariaDB and the standard -------------------------------------------------------------------

/// Words that open a block where a statement begins.
bool OpensBlock(Key key) {
  return IsAnyOf(key, "BEGIN"_key, "IF"_key, "CASE"_key, "LOOP"_key, "REPEAT"_key, "WHILE"_key,
                 "FOR"_key);
}

/// Words that begin a statement in which IF, REPEAT, CASE, AS and IS mean something else.
bool BeginsPlainStatement(Key key) {
  return IsAnyOf(key, "SELECT"_key, "INSERT"_key, "UPDATE"_key, "DELETE"_key, "REPLACE"_key,
                 "SET"_key, "CALL"_key, "WITH"_key, "RETURN"_key, "DO"_key, "CREATE"_key,
                 "ALTER"_key, "DROP"_key, "VALUES"_key, "SHOW"_key, "EXPLAIN"_key, "ANALYZE"_key,
                 "SIGNAL"_key, "RENAME"_key, "EXECUTE"_key, "PREPARE"_key);
}

/// Blocks of stored routines. A word opens or closes one only where a statement begins; elsewhere
/// IF and REPEAT are functions, and BEGIN and END may be names.
class CompoundBlocks final : public SqlBlocks {
 public:
  void Take(SqlTokenKind kind, std::string_view text) override {
    if (whole_.part == Part::Plain) return;
    if (whole_.part == Part::Body) CountParentheses(kind, text, now_.parentheses);
    const bool isSign = kind == SqlTokenKind::Sign;
    if (now_.parentheses == 0) {
      const Key key = IsAnyOf(now_.sign, '.', '@') ? noKey : KeyOf(kind, text);
      if (isSign) TakeSign(text.front());
      else if (whole_.part == Part::Body) TakeOfBody(key);
      else TakeOfHead(key, kind == SqlTokenKind::Quoted || IsAnyOf(now_.sign, '=', '@', '.'));
      now_.before = key;
    }
    now_.sign = isSign ? text.front() : '\0';
  }
  [[nodiscard]] bool EndsHere() override {
    now_ = {};
    const bool inside = whole_.blocks > 0 || whole_.inPackage || whole_.declares;
    if (!inside) whole_ = {};
    return !inside;
  }

 private:
  enum class Part { Start, AfterBegin, Set, Create, Trigger, Event, Package, Body, Plain };
  enum class Place {
    Start,   ///< The next word begins a statement.
    Header,  ///< It may do so: behind the name of a routine, or the conditions of a handler.
    Inside
  };
  /// What is known of a statement of the text.
  struct Whole {
    Part part = Part::Start;
    std::size_t blocks = 0;  ///< That are open.
    bool inPackage = false;  ///< The END of a package is to come.
    bool declares = false;   ///< A BEGIN is to come: Oracle's mode declares in front of it.
  };
  /// What is known of a statement within it.
  struct Now {
    Place place = Place::Start;
    std::size_t parentheses = 0;
    std::size_t cases = 0;    ///< CASEs that are open in an expression.
    bool isRoutine = false;   ///< The header is that of a routine.
    bool hasReturns = false;  ///< It has RETURNS, so RETURN is a statement.
    bool isUntil = false;     ///< The END of REPEAT may come.
    bool hasClosed = false;   ///< The word before is the END of a block.
    Key before = noKey;       ///< The word before.
    char sign = '\0';         ///< The sign before.
  };

  // --- In front of a body -----------------------------------------------------------------------

  /// `isName`: the word is quoted or stands where a name does.
  void TakeOfHead(Key key, bool isName) {
    switch (whole_.part) {
      case Part::Start: return TakeFirst(key);
      case Part::AfterBegin:
        if (IsAnyOf(key, "WORK"_key, "TRANSACTION"_key, "TRAN"_key)) return Go(Part::Plain);
        OpenFirst();
        return TakeOfBody(key);
      case Part::Set: return TakeOfSet(key);
      case Part::Create: return isName ? void() : TakeOfCreate(key);
      case Part::Trigger: return TakeOfTrigger(key);
      case Part::Event: return key == "DO"_key ? Go(Part::Body) : void();
      default: return TakeOfPackage(key);
    }
  }
  void TakeFirst(Key key) {
    if (IsAnyOf(key, "CREATE"_key, "ALTER"_key)) return Go(Part::Create);
    if (key == "BEGIN"_key) return Go(Part::AfterBegin);
    if (key == "SET"_key) return Go(Part::Set);
    whole_.declares = key == "DECLARE"_key;
    if (whole_.declares || OpensBlock(key)) return GoOn(key);
    Go(Part::Plain);
  }
  /// SET STATEMENT ... FOR stands in front of another statement.
  void TakeOfSet(Key key) {
    if (now_.before == "SET"_key && key != "STATEMENT"_key) return Go(Part::Plain);
    if (key == "FOR"_key) Go(Part::Start);
  }
  void TakeOfCreate(Key key) {
    if (IsAnyOf(key, "OR"_key, "REPLACE"_key, "ALTER"_key, "AGGREGATE"_key, "DEFINER"_key)) return;
    if (key == "TRIGGER"_key) return Go(Part::Trigger);
    if (key == "EVENT"_key) return Go(Part::Event);
    if (key == "PACKAGE"_key) return Go(Part::Package);
    if (!IsAnyOf(key, "PROCEDURE"_key, "FUNCTION"_key)) return Go(Part::Plain);
    whole_.part = Part::Body;
    BeginRoutine();
  }
  void TakeOfTrigger(Key key) {
    if (key == "BEGIN"_key) return GoOn(key);
    if (now_.before != "EACH"_key || !IsAnyOf(key, "ROW"_key, "STATEMENT"_key)) return;
    Go(Part::Body, Place::Header);
  }
  void TakeOfPackage(Key key) {
    if (key == "END"_key) return Go(Part::Plain);
    whole_.inPackage =
        IsAnyOf(key, "AS"_key, "IS"_key, "BEGIN"_key, "FUNCTION"_key, "PROCEDURE"_key);
    if (!whole_.inPackage) return;
    if (IsAnyOf(key, "AS"_key, "IS"_key)) Go(Part::Body);
    else GoOn(key);
  }
  void Go(Part part, Place place = Place::Start) {
    whole_.part = part;
    now_.place = place;
  }
  /// What follows BEGIN tells that it is no transaction.
  void OpenFirst() {
    whole_.blocks = 1;
    Go(Part::Body);
  }
  /// The word is the first one of the body.
  void GoOn(Key key) {
    Go(Part::Body);
    TakeOfBody(key);
  }
  void BeginRoutine() {
    now_.place = Place::Header;
    now_.isRoutine = true;
    now_.hasReturns = false;
  }

  // --- In a body --------------------------------------------------------------------------------

  void TakeSign(char sign) {
    if (whole_.part == Part::Start) return Go(Part::Plain);
    if (whole_.part == Part::AfterBegin) OpenFirst();
    if (whole_.part != Part::Body || now_.cases > 0) return;
    if (sign == ':') now_.place = Place::Start;  // Behind a label.
    else if (sign == '=' && now_.sign == ':') now_.place = Place::Inside;
    else if (now_.place == Place::Start) now_.place = sign == '<' ? Place::Header : Place::Inside;
  }
  void TakeOfBody(Key key) {
    const bool namesEnd = now_.hasClosed && OpensBlock(key);  // As in END IF.
    now_.hasClosed = false;
    if (namesEnd) return;
    if (now_.cases > 0) return CountCase(key);
    if (Opens(key)) return Open(key);
    if (key == "END"_key && (now_.place == Place::Start || now_.isUntil)) return Close();
    if (key == "CASE"_key) ++now_.cases;
    now_.isUntil = now_.isUntil || (key == "UNTIL"_key && now_.place == Place::Start);
    now_.place = PlaceBehind(key);
  }
  void CountCase(Key key) {
    if (key == "CASE"_key) ++now_.cases;
    if (key == "END"_key) --now_.cases;
  }
  [[nodiscard]] bool Opens(Key key) const {
    if (now_.place == Place::Inside || !OpensBlock(key)) return false;
    if (key == "FOR"_key) return now_.before != "HANDLER"_key;
    // CREATE PROCEDURE IF NOT EXISTS
    return key != "IF"_key || !IsAnyOf(now_.before, "PROCEDURE"_key, "FUNCTION"_key);
  }
  void Open(Key key) {
    const bool isBegin = key == "BEGIN"_key;
    // BEGIN of a package itself has no END of its own.
    const bool ofPackage = isBegin && AtTopOfPackage() && now_.place == Place::Start;
    if (!ofPackage) ++whole_.blocks;
    if (isBegin) whole_.declares = false;
    const bool holdsStatements = isBegin || IsAnyOf(key, "LOOP"_key, "REPEAT"_key);
    now_.place = holdsStatements ? Place::Start : Place::Inside;
  }
  void Close() {
    if (whole_.blocks > 0) --whole_.blocks;
    else whole_.inPackage = false;
    now_.hasClosed = true;
    now_.isUntil = false;
    now_.place = Place::Inside;
  }
  [[nodiscard]] bool AtTopOfPackage() const {
    return whole_.inPackage && whole_.blocks == 0 && !whole_.declares;
  }

  [[nodiscard]] Place PlaceBehind(Key key) {
    if (now_.place == Place::Header) return PlaceInHeader(key);
    if (now_.place == Place::Start) return PlaceBehindFirst(key);
    const bool isHandler =
        key == "HANDLER"_key && IsAnyOf(now_.before, "CONTINUE"_key, "EXIT"_key, "UNDO"_key);
    if (isHandler) return Place::Header;
    const bool isAtomic = key == "ATOMIC"_key && now_.before == "NOT"_key;
    const bool begins = IsAnyOf(key, "THEN"_key, "ELSE"_key, "LOOP"_key, "DO"_key);
    return isAtomic || begins ? Place::Start : Place::Inside;
  }
  [[nodiscard]] Place PlaceBehindFirst(Key key) {
    if (AtTopOfPackage() && IsAnyOf(key, "FUNCTION"_key, "PROCEDURE"_key)) {
      BeginRoutine();
      return Place::Header;
    }
    const bool isAtomic = key == "ATOMIC"_key && now_.before == "BEGIN"_key;
    return isAtomic || key == "ELSE"_key ? Place::Start : Place::Inside;
  }
  [[nodiscard]] Place PlaceInHeader(Key key) {
    now_.hasReturns = now_.hasReturns || key == "RETURNS"_key;
    if (now_.isRoutine && IsAnyOf(key, "AS"_key, "IS"_key)) {
      whole_.declares = true;
      return Place::Start;
    }
    const bool ofType = key == "SET"_key && IsAnyOf(now_.before, "CHARACTER"_key, "RETURNS"_key);
    const bool isType = key == "RETURN"_key && now_.isRoutine && !now_.hasReturns;
    return BeginsPlainStatement(key) && !ofType && !isType ? Place::Inside : Place::Header;
  }

  Whole whole_;
  Now now_;
};

}  // namespace

std::unique_ptr<SqlBlocks> SqlBlocks::Of(SqlDialect dialect) {
  switch (dialect) {
    case SqlDialect::PostgreSQL: return std::make_unique<PostgresBlocks>();
    case SqlDialect::SQLite: return std::make_unique<SqliteBlocks>();
    case SqlDialect::SqlServer: return std::make_unique<ServerBlocks>();
    default: return std::make_unique<CompoundBlocks>();
  }
}

}  // namespace tessel
