#include "logic/app/DroppedFiles.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"
#include "contract/text/TextCut.h"
#include "logic/program/Help.h"

namespace tessel {

namespace {

/// Without regard to case.
template <std::size_t count>
bool EndsWithOneOf(const std::string& path, const std::array<std::string_view, count>& endings) {
  std::string ending = path;
  KeepAfterLast(ending, ".");
  return std::ranges::any_of(endings,
                             [&](std::string_view known) { return EqualNoCase(known, ending); });
}

bool IsSql(const std::string& path) {
  constexpr std::array<std::string_view, 2> endings = {"sql", "txt"};
  return EndsWithOneOf(path, endings);
}

bool IsDatabase(const std::string& path) {
  constexpr std::array<std::string_view, 6> endings = {"db",      "db3",  "sqlite",
                                                       "sqlite3", "s3db", "sl3"};
  return EndsWithOneOf(path, endings);
}

}  // namespace

/// What is to be done may ask something: the program that the files come from must not wait for
/// that.
DroppedFiles::DroppedFiles(const Global& global, frmMain& query,
                           std::function<void(const std::string& path)> connect)
    : global_(global), query_(query), connect_(std::move(connect)) {
  query_.Editor().FilesDropped = [this](const std::vector<std::string>& paths) {
    global_.TheDesktop().Defer([this, paths, alive = std::weak_ptr<const void>(alive_)] {
      if (!alive.expired()) Take(paths);
    });
  };
}

/// There is room for one SQL text: of several files the first one is opened.
void DroppedFiles::Take(const std::vector<std::string>& paths) {
  const auto sql = std::ranges::find_if(paths, IsSql);
  if (sql != paths.end()) query_.OpenFile(*sql);
  for (const std::string& path : paths) {
    if (IsSql(path)) continue;
    if (IsDatabase(path)) connect_(path);
    else TellOther(path);
  }
}

void DroppedFiles::TellOther(const std::string& path) const {
  Help(global_).Show(path + " was not opened: it is neither SQL (.sql, .txt) nor an SQLite "
                            "database (.db, .db3, .sqlite, .sqlite3, .s3db, .sl3).",
                     MessageIcon::Exclamation);
}

std::string ConnectionToFile(const std::string& path) {
  return "Provider=SQLite;Data Source=" + BracedValue(path);
}

}  // namespace tessel
