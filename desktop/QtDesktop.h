#pragma once

#include <memory>
#include <string>

#include "contract/desktop/Desktop.h"

namespace tessel {

/// The desktop on Qt's widgets. Makes the application object unless there is one. It outlives its
/// windows; UI thread only, except for Events().Post.
class QtDesktop final : public Desktop {
 public:
  /// The arguments are kept by the application for as long as it lives.
  QtDesktop(int& argc, char** argv);
  ~QtDesktop() override;
  QtDesktop(const QtDesktop&) = delete;
  QtDesktop& operator=(const QtDesktop&) = delete;

  /// Runs until the frame has been unloaded; returns the exit code of the program.
  int Run();

  /// Follows what the user's desktop says of light and dark from now on, and from its first answer.
  void FollowColors();

  /// Ends the program in order and without a question (SessionEnds) once there is something to read
  /// from the descriptor; the desktop's end is also that of the session.
  void EndWhenReadable(int descriptor);

  /// The session is about to end. Where programs may ask their users, the frame is closed as by the
  /// user, with its questions; false: the user keeps it. Where they may not, or something else is
  /// under way, the program ends in order and without a question.
  bool CommitSession(bool mayAsk);

  [[nodiscard]] std::unique_ptr<Window> MakeWindow(std::string_view formName) override;
  MessageResult ShowMessage(const Message& message) override;
  [[nodiscard]] Clipboard& TheClipboard() override;
  [[nodiscard]] EventQueue& Events() override;
  [[nodiscard]] const Clock& TheClock() const override;
  [[nodiscard]] Notifications& TheNotifications() override;
  [[nodiscard]] bool IsKeyDown(int keyCode) const override;
  void ProcessPending() override;
  void Defer(std::function<void()> action) override;
  void StartProcess(const std::string& path) override;
  /// The book is built into the program and shown in a window of its own; the file is for other
  /// viewers.
  bool ShowHelp(const std::string& helpFile, int command, int data) override;
  void ShowHelpOn(const Window& window) override;

 private:
  struct Parts;

  void EndSession();

  std::unique_ptr<Parts> parts_;
};

}  // namespace tessel
