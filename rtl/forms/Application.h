// The services of an application that a user sees: message boxes, pickers, modal forms, the report of an
// exception.
//
// They stand behind one interface, IFrontEnd, which the program that owns the screen implements and puts in
// force at its start; tests have one that follows a script. Texts are UTF-8, paths are Windows paths. All
// calls come from the main thread and return when the user has answered.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace rtl {

class TForm;

// Flags of a message box: its icon. All have one OK button.
inline constexpr unsigned MB_OK = 0;
inline constexpr unsigned MB_ICONERROR = 16;
inline constexpr unsigned MB_ICONINFORMATION = 64;

enum class TMsgDlgType { Warning, Error, Information, Confirmation };
// The button of a message dialog; there is no other in use.
enum class TMsgDlgButton { OK };

// The system's question-mark icon.
inline constexpr int IDI_QUESTION = 32514;

// A picker for one existing file.
class TOpenDialog {
 public:
  std::string
      Filter;  // pairs of a name and a pattern, divided by bars: "Text (*.txt)|*.txt|All files (*.*)|*.*"
  std::string InitialDir;
  bool PathMustExist = false;
  bool FileMustExist = false;
  std::string FileName;  // the file chosen; unchanged otherwise

  // False when the user gives up.
  [[nodiscard]] bool Execute();
};

class IFrontEnd {
 public:
  virtual ~IFrontEnd() = default;
  // Shows the form until its modal result is not mrNone. Evaluates the form's actions when idle.
  virtual void ShowModal(TForm& form) = 0;
  virtual void MessageBox(std::string_view text, std::string_view caption, unsigned flags) = 0;
  // Under the front end's own title for that type.
  virtual void MessageDlg(std::string_view text, TMsgDlgType type, TMsgDlgButton button, int helpContext) = 0;
  // `root` empty: all folders can be chosen. `directory`: the start folder going in, the chosen one coming
  // out. False, with `directory` unchanged, when the user gives up.
  [[nodiscard]] virtual bool SelectDirectory(std::string_view caption, std::string_view root,
                                             std::string& directory) = 0;
  [[nodiscard]] virtual bool OpenFile(TOpenDialog& dialog) = 0;
  virtual void ShowException(std::string_view message) = 0;
};

class TApplication {
 public:
  // The front end in force, not owned; an assertion as long as there is none.
  IFrontEnd& FrontEnd() const;
  bool HasFrontEnd() const { return FFrontEnd != nullptr; }
  void SetFrontEnd(IFrontEnd* frontEnd) { FFrontEnd = frontEnd; }

  void MessageBox(std::string_view text, std::string_view caption, unsigned flags);
  // Shows an exception's message and goes on; EAbort is silent. Without a front end, the message goes to
  // standard error.
  void HandleException(const std::exception& exception);

 private:
  IFrontEnd* FFrontEnd = nullptr;
};

TApplication& Application();

void MessageDlg(std::string_view text, TMsgDlgType type, TMsgDlgButton button, int helpContext);
[[nodiscard]] bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory);

}  // namespace rtl
