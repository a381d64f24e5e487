// The user interface services of an application: message boxes, pickers, modal forms, reports of
// exceptions.
//
// They go through one interface, IFrontEnd. The program that owns the screen sets its
// implementation at start-up; tests set one that follows a script. Texts are UTF-8, paths are Windows
// paths. All calls come from the main thread and return when the user has answered.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rtl {

class TForm;

// Flags of a message box: its icon. Every message box has a single OK button.
inline constexpr unsigned MB_OK = 0;
inline constexpr unsigned MB_ICONERROR = 16;
inline constexpr unsigned MB_ICONWARNING = 48;
inline constexpr unsigned MB_ICONINFORMATION = 64;

enum class TMsgDlgType { Warning, Error, Information, Confirmation };
// The button of a message dialog. Only OK is used.
enum class TMsgDlgButton { OK };

// The system's question-mark icon.
inline constexpr int IDI_QUESTION = 32514;

// A picker for one existing file.
class TOpenDialog {
 public:
  std::string
      Filter;  // pairs of a name and a pattern, separated by bars: "Text (*.txt)|*.txt|All files (*.*)|*.*"
  std::string InitialDir;
  bool PathMustExist = false;
  bool FileMustExist = false;
  std::string FileName;  // the chosen file; unchanged if the user cancels

  // Returns false if the user cancels.
  [[nodiscard]] bool Execute();
};

// A question with named buttons, or the outcome of an operation with the steps that can follow it. All texts
// but those of the buttons are plain, without accelerator marks.
//
//   TQuestion question{.Caption = "Save", .Text = "The file was changed on the disk.",
//                      .Buttons = {"&Overwrite", "&Reload", "Cancel"}, .Default = 1, .Cancel = 2};
//   const std::optional<int> answer = Application().Ask(question);
struct TQuestion {
  std::string Caption;                                         // of the window
  std::string Text;                                            // the main sentence
  unsigned Flags = MB_ICONINFORMATION;                         // the icon
  std::vector<std::string> Reasons = {};                       // paragraphs after the text
  std::vector<std::pair<std::string, std::string>> Rows = {};  // labels and values, after the reasons
  std::vector<std::string> Details = {};  // lines; any number, shown in an area that scrolls
  std::vector<std::string> Buttons = {};  // in this order, with accelerator marks ("&")
  int Default = 0;                        // the button for the Enter key, from 0
  int Cancel = 0;                         // the button for the Escape key and the system menu
};

class IFrontEnd {
 public:
  virtual ~IFrontEnd() = default;
  // Shows the form until its modal result is not mrNone. Updates the form's actions when idle.
  virtual void ShowModal(TForm& form) = 0;
  virtual void MessageBox(std::string_view text, std::string_view caption, unsigned flags) = 0;
  // Shows a message under the front end's own title for `type`.
  virtual void MessageDlg(std::string_view text, TMsgDlgType type, TMsgDlgButton button, int helpContext) = 0;
  // Asks for a folder below `root`; if `root` is empty, any folder can be chosen. `directory` is the
  // initial folder, and receives the chosen one. Returns false, with `directory` unchanged, if the user
  // cancels.
  [[nodiscard]] virtual bool SelectDirectory(std::string_view caption, std::string_view root,
                                             std::string& directory) = 0;
  [[nodiscard]] virtual bool OpenFile(TOpenDialog& dialog) = 0;
  virtual void ShowException(std::string_view message) = 0;
  // Shows the question, and returns the index of the chosen button. A front end that does not implement it
  // shows nothing and returns nullopt.
  [[nodiscard]] virtual std::optional<int> Ask(const TQuestion& question) {
    static_cast<void>(question);
    return std::nullopt;
  }
};

class TApplication {
 public:
  // Returns the current front end, not owned. Raises EAssertionFailed if none is set.
  IFrontEnd& FrontEnd() const;
  bool HasFrontEnd() const { return FFrontEnd != nullptr; }
  void SetFrontEnd(IFrontEnd* frontEnd) { FFrontEnd = frontEnd; }

  void MessageBox(std::string_view text, std::string_view caption, unsigned flags);
  // Returns nullopt if the front end cannot ask. The caller then chooses the answer that loses nothing.
  [[nodiscard]] std::optional<int> Ask(const TQuestion& question);
  // Shows the message of an exception and returns; EAbort is silent. Without a front end, the message goes
  // to standard error.
  void HandleException(const std::exception& exception);

 private:
  IFrontEnd* FFrontEnd = nullptr;
};

TApplication& Application();

void MessageDlg(std::string_view text, TMsgDlgType type, TMsgDlgButton button, int helpContext);
[[nodiscard]] bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory);

}  // namespace rtl
