#include "logic/results/runs/OpenTransaction.h"

namespace tessel {

namespace {

constexpr Color openBack = 0x00BFFF;
constexpr Color openFore = 0x000000;
constexpr Color failedBack = 0x0000BF;
constexpr Color failedFore = 0xFFFFFF;

Message Question(std::string text, MessageButtons buttons, std::vector<std::string> captions) {
  Message question{std::move(text), buttons, MessageIcon::Exclamation};
  question.captions = std::move(captions);
  question.defaultAnswer = MessageResult::Cancel;
  return question;
}

}  // namespace

OpenTransaction::OpenTransaction(const Global& global, dlgAsync& async, Window& window)
    : clock_(global.TheDesktop().TheClock()),
      async_(async),
      window_(window),
      help_(global),
      lblTransaction_(window.Find<Label>("lblTransaction")) {}

// --- the word ------------------------------------------------------------------------------------

void OpenTransaction::Show(const Connection& connection) {
  struct Face {
    std::string caption;
    Color back = color::buttonFace;
    Color fore = color::windowText;
  };
  const auto faceOf = [&](UserTransaction state) -> Face {
    switch (state) {
      case UserTransaction::None: return {"Idle"};
      case UserTransaction::Waiting: return {"Idle, autocommit off"};
      case UserTransaction::Open:
        return {"In transaction since " + Since(connection), openBack, openFore};
      case UserTransaction::Failed:
        return {"Failed transaction since " + Since(connection), failedBack, failedFore};
      case UserTransaction::Unknown: break;
    }
    return {};
  };
  const bool open = (connection.State() & objectState::open) != 0;
  const Face face = faceOf(open ? connection.Transaction().state : UserTransaction::Unknown);
  lblTransaction_.SetCaption(face.caption);
  lblTransaction_.SetToolTip(face.caption);
  lblTransaction_.SetBackColor(face.back);
  lblTransaction_.SetForeColor(face.fore);
  lblTransaction_.SetVisible(!face.caption.empty());
}

std::string OpenTransaction::Since(const Connection& connection) const {
  return clock_.ShortTimeOf(connection.Transaction().since);
}

// --- the question --------------------------------------------------------------------------------

bool OpenTransaction::MayEnd(const std::shared_ptr<Connection>& connection, Session session) {
  const UserTransaction state = connection->Transaction().state;
  if (!IsUnderWay(state)) return true;
  if (!window_.Active()) window_.Activate();
  return state == UserTransaction::Failed ? MayRollBack(*connection, session)
                                          : MayCommitOrRollBack(*connection, session);
}

bool OpenTransaction::MayCommitOrRollBack(Connection& connection, Session session) {
  const MessageResult answer =
      help_.Ask(Question("The connection '" + window_.Caption() +
                             "' has a transaction open since " + Since(connection) + ".",
                         MessageButtons::YesNoCancel, {"&Commit", "&Roll back", "Cancel"}),
                helpContext::question);
  if (answer == MessageResult::Yes) return Run(connection, "COMMIT");
  return answer == MessageResult::No && RollBack(connection, session);
}

/// Asks about a transaction of which nothing can be kept.
bool OpenTransaction::MayRollBack(Connection& connection, Session session) {
  const MessageResult answer = help_.Ask(
      Question("The connection '" + window_.Caption() + "' has a transaction open since " +
                   Since(connection) + ". It has failed: all that can be done is to roll it back.",
               MessageButtons::OkCancel, {"&Roll back", "Cancel"}),
      helpContext::question);
  return answer == MessageResult::Ok && RollBack(connection, session);
}

/// One that went away with its server is rolled back, whatever the command came to.
bool OpenTransaction::RollBack(Connection& connection, Session session) {
  if (session == Session::Ends) return true;
  return Run(connection, "ROLLBACK") || !IsUnderWay(connection.Transaction().state);
}

bool OpenTransaction::Run(Connection& connection, const char* sql) {
  bool done = false;
  help_.TryTo([&] {
    done = async_.Run(connection.StartQuery(sql, LockType::ReadOnly), "Executing...",
                      AllowsAsynchronousWork(connection));
  });
  return done;
}

}  // namespace tessel
