#include "native/QuestionForm.h"

#include <deque>
#include <string>
#include <vector>

namespace native {

namespace {

constexpr int kQuestionWidth = 68;  // average characters

struct TIcon {
  unsigned Flag;
  int Identifier;  // of a system icon
};
constexpr TIcon kIcons[] = {
    {rtl::MB_ICONERROR, 32513}, {rtl::MB_ICONWARNING, 32515}, {rtl::MB_ICONINFORMATION, 32516}};

// The rows of a question's form.
class TQuestionRows {
 public:
  explicit TQuestionRows(const rtl::TQuestion& question) {
    using enum rtl::TControlKind;
    FRows.push_back({.Parent = "", .Kind = Image, .Name = "Icon"});
    FRows.push_back({.Parent = "",
                     .Kind = Label,
                     .Name = "Text",
                     .Text = question.Text,
                     .Bold = true,
                     .Place = {.Width = kQuestionWidth}});
    for (const std::string& reason : question.Reasons) AddLabel(reason);
    if (!question.Rows.empty()) AddLabel(TextOf(question.Rows));
    if (!question.Details.empty()) AddDetails(question.Details);
    FRows.push_back({.Parent = "", .Kind = Bevel, .Name = "Line"});
    for (int i = 0; i < static_cast<int>(question.Buttons.size()); ++i) {
      FRows.push_back({.Parent = "",
                       .Kind = Button,
                       .Name = Keep("Button" + std::to_string(i)),
                       .Text = question.Buttons[static_cast<size_t>(i)],
                       .Default = i == question.Default,
                       .Cancel = i == question.Cancel,
                       .ModalResult = TQuestionForm::kFirstButton + i});
    }
    FResource = {.Name = "Question", .Caption = question.Caption, .Controls = FRows};
  }
  const rtl::TFormResource& Resource() const { return FResource; }

 private:
  // Returns a line for each row. A row without a name continues the one before it.
  static std::string TextOf(const std::vector<std::pair<std::string, std::string>>& rows) {
    std::string text;
    for (const auto& [name, value] : rows)
      text.append(text.empty() ? "" : "\n").append(name.empty() ? "        " : name + ": ").append(value);
    return text;
  }

  std::string_view Keep(std::string text) { return FTexts.emplace_back(std::move(text)); }

  void AddLabel(const std::string& text) {
    FRows.push_back({.Parent = "",
                     .Kind = rtl::TControlKind::Label,
                     .Name = Keep("Text" + std::to_string(FRows.size())),
                     .Text = Keep(text),
                     .Place = {.GapAbove = true}});
  }

  void AddDetails(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
    FRows.push_back(
        {.Parent = "", .Kind = rtl::TControlKind::ScrollBox, .Name = "Box", .Place = {.GapAbove = true}});
    FRows.push_back(
        {.Parent = "Box", .Kind = rtl::TControlKind::Label, .Name = "Details", .Text = Keep(text)});
  }

  std::deque<std::string> FTexts;
  std::vector<rtl::TControlRow> FRows;
  rtl::TFormResource FResource;
};

}  // namespace

TQuestionForm::TQuestionForm(const rtl::TQuestion& question) : TForm(TQuestionRows(question).Resource()) {
  for (const TIcon& icon : kIcons) {
    if (icon.Flag == question.Flags) Control<rtl::TImage>("Icon").SetSystemIcon(icon.Identifier);
  }
}

}  // namespace native
