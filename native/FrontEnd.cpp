#include "native/FrontEnd.h"

#include "native/FormWindow.h"
#include "native/Pickers.h"
#include "native/QuestionForm.h"
#include "qrl/QrlVcl.h"
#include "rtl/text/Lines.h"
#include "win/windows/WindowsText.h"

namespace native {

namespace {

void ShowWaitCursor(bool waiting) {
  SetCursor(LoadCursorW(nullptr, waiting ? IDC_WAIT : IDC_ARROW));
}

struct TMessageType {
  rtl::TMsgDlgType Type;
  unsigned Icon;
  const char* Caption;
};

// What the system's message box shows on every screen: it has no scroll bar.
constexpr size_t kMostLines = 20;
constexpr size_t kLineLength = 80;  // at which it breaks lines, about

constexpr TMessageType kMessageTypes[] = {
    {rtl::TMsgDlgType::Warning, MB_ICONEXCLAMATION, "Warning"},
    {rtl::TMsgDlgType::Error, rtl::MB_ICONERROR, "Error"},
    {rtl::TMsgDlgType::Confirmation, MB_ICONQUESTION, "Confirm"},
    {rtl::TMsgDlgType::Information, rtl::MB_ICONINFORMATION, "Information"},
};

// Returns a question with the lines after the first one in an area that scrolls, for a text that a message
// box may not show in full; nullopt for any other text.
std::optional<rtl::TQuestion> AsQuestion(std::string_view text, std::string_view caption, unsigned flags) {
  rtl::TQuestion question{.Caption = std::string(caption), .Text = {}, .Flags = flags, .Buttons = {"OK"}};
  size_t height = 0;
  while (!text.empty()) {
    question.Details.emplace_back(rtl::TakeLine(text));
    height += 1 + question.Details.back().size() / kLineLength;
  }
  if (height <= kMostLines) return std::nullopt;
  question.Text = question.Caption;
  if (question.Details.front().size() <= 2 * kLineLength) {
    question.Text = question.Details.front();
    question.Details.erase(question.Details.begin());
  }
  return question;
}

}  // namespace

TFrontEnd::TFrontEnd(std::string_view title) : FTitle(title), FApplication(title) {
  rtl::Application().SetFrontEnd(this);
  qrl::SetWaitCursor(ShowWaitCursor);
}

TFrontEnd::~TFrontEnd() {
  qrl::SetWaitCursor(nullptr);
  rtl::Application().SetFrontEnd(nullptr);
}

void TFrontEnd::ShowModal(rtl::TForm& form) {
  BeforeModal();
  TFormWindow window(form, Owner());
  window.OnHelp = OnHelp;
  window.Run();
}

void TFrontEnd::ShowMessage(std::string_view text, std::string_view caption, unsigned flags) {
  if (const auto question = AsQuestion(text, caption, flags)) {
    TQuestionForm(*question).ShowModal();
    return;
  }
  BeforeModal();
  MessageBoxW(Owner(), win::ToWideOrReplaced(text).c_str(), win::ToWideOrReplaced(caption).c_str(),
              rtl::MB_OK | flags);
}

void TFrontEnd::MessageBox(std::string_view text, std::string_view caption, unsigned flags) {
  FHasShownError = FHasShownError || (flags & rtl::MB_ICONERROR) != 0;
  ShowMessage(text, caption, flags);
}

void TFrontEnd::MessageDlg(std::string_view text, rtl::TMsgDlgType type, rtl::TMsgDlgButton, int) {
  for (const TMessageType& row : kMessageTypes) {
    if (row.Type == type) ShowMessage(text, row.Caption, row.Icon);
  }
}

bool TFrontEnd::SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) {
  BeforeModal();
  auto picked = PickFolder(Owner(), caption, directory.empty() ? root : std::string_view(directory));
  if (!picked) return false;
  directory = *std::move(picked);
  return true;
}

bool TFrontEnd::OpenFile(rtl::TOpenDialog& dialog) {
  BeforeModal();
  auto picked = PickFile(Owner(), dialog);
  if (!picked) return false;
  dialog.FileName = *std::move(picked);
  return true;
}

std::optional<int> TFrontEnd::Ask(const rtl::TQuestion& question) {
  FHasShownError = FHasShownError || question.Flags == rtl::MB_ICONERROR;
  const int result = TQuestionForm(question).ShowModal();
  return result >= TQuestionForm::kFirstButton ? result - TQuestionForm::kFirstButton : question.Cancel;
}

void TFrontEnd::ShowException(std::string_view message) {
  ShowMessage(message, FTitle, rtl::MB_ICONERROR);
}

}  // namespace native
