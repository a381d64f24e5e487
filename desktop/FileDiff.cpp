#include "desktop/FileDiff.h"

#include <algorithm>

#include "desktop/QtText.h"
#include "report/FilePatch.h"

namespace desktop {

namespace {

using diff::TDiffLine;
using diff::TDiffRow;
using TKind = TPaneLine::TKind;

constexpr size_t kContext = 3;  // unchanged lines around a change

bool IsChange(const TDiffRow& row) {
  return row.Old != row.New;
}

// Returns for each row whether it is shown: changes, and the rows around them.
std::vector<bool> ShownRows(const std::vector<TDiffRow>& rows, bool wholeFile) {
  std::vector<bool> shown(rows.size(), wholeFile);
  for (size_t i = 0; i < rows.size(); ++i) {
    if (!IsChange(rows[i])) continue;
    const size_t end = std::min(rows.size(), i + kContext + 1);
    for (size_t j = i - std::min(i, kContext); j < end; ++j) shown[j] = true;
  }
  return shown;
}

std::string_view WithoutEnd(std::string_view line) {
  while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// Returns the marked words of a line. With `ignoreSpace`, white space is not marked.
std::vector<std::pair<int, int>> WordsOf(std::string_view line, const std::vector<diff::TSpan>& spans,
                                         bool ignoreSpace) {
  std::vector<std::pair<int, int>> words;
  for (const diff::TSpan& span : spans) {
    const std::string_view word = line.substr(span.Offset, span.Length);
    if (ignoreSpace && word.find_first_not_of(" \t") == std::string_view::npos) continue;
    const auto offset = static_cast<int>(ToQt(line.substr(0, span.Offset)).size());
    words.emplace_back(offset, static_cast<int>(ToQt(word).size()));
  }
  return words;
}

void AddLine(TPaneText& pane, TPaneLine line, std::string_view text) {
  QString shown = ToQt(WithoutEnd(text));
  // The page would take these for the ends of lines.
  for (const char16_t end : {u'\r', u'\u2028', u'\u2029'}) shown.replace(end, QChar::ReplacementCharacter);
  if (!pane.Lines.empty()) pane.Text += '\n';
  pane.Text += shown;
  pane.Lines.push_back(std::move(line));
}

// Builds the pages row by row.
class TPageMaker {
 public:
  TPageMaker(bool sideBySide, bool ignoreSpace) : FSideBySide(sideBySide), FIgnoreSpace(ignoreSpace) {}

  void AddFold(size_t count) {
    const std::string text = std::to_string(count) + (count == 1 ? " unchanged line" : " unchanged lines");
    AddLine(FPage.Left, {.Kind = TKind::Fold}, text);
    if (FSideBySide) AddLine(FPage.Right, {.Kind = TKind::Fold}, text);
  }

  void AddSame(const TDiffLine& line) {
    const TPaneLine shown = {.OldLine = line.OldLine, .NewLine = line.NewLine};
    AddLine(FPage.Left, shown, FSideBySide ? line.Old : line.New);
    if (FSideBySide) AddLine(FPage.Right, shown, line.New);
    FIsInChange = false;
  }

  void AddChange(const TDiffRow& row) {
    if (!FIsInChange) FPage.Changes.push_back(static_cast<int>(FPage.Left.Lines.size()));
    FIsInChange = true;
    diff::TWordDiff words;
    if (row.Old != nullptr && row.New != nullptr)
      words = diff::DiffWords(WithoutEnd(row.Old->Old), WithoutEnd(row.New->New));
    const int oldLine = row.Old == nullptr ? 0 : row.Old->OldLine;
    const int newLine = row.New == nullptr ? 0 : row.New->NewLine;
    if (row.Old != nullptr)
      AddLine(FPage.Left, {TKind::Removed, oldLine, 0, WordsOf(row.Old->Old, words.Old, FIgnoreSpace)},
              row.Old->Old);
    TPaneText& right = FSideBySide ? FPage.Right : FPage.Left;
    if (row.New != nullptr)
      AddLine(right, {TKind::Added, 0, newLine, WordsOf(row.New->New, words.New, FIgnoreSpace)},
              row.New->New);
    if (!FSideBySide) return;
    if (row.Old == nullptr) AddLine(FPage.Left, {.Kind = TKind::Absent}, {});
    if (row.New == nullptr) AddLine(FPage.Right, {.Kind = TKind::Absent}, {});
  }

  TDiffPage Take() { return std::move(FPage); }

 private:
  const bool FSideBySide;
  const bool FIgnoreSpace;
  bool FIsInChange = false;
  TDiffPage FPage;
};

}  // namespace

TFileDiff::TFileDiff(std::string_view before, std::string_view after, bool ignoreSpace)
    : FIgnoresSpace(ignoreSpace),
      FOldText(report::ReadableText(before)),
      FNewText(report::ReadableText(after)),
      FLines(
          diff::DiffLines(FOldText, FNewText, ignoreSpace ? diff::TIgnore::Space : diff::TIgnore::LineEnds)) {
  for (const TDiffLine& line : FLines) {
    FAdded += line.Kind == TDiffLine::TKind::Added ? 1 : 0;
    FRemoved += line.Kind == TDiffLine::TKind::Removed ? 1 : 0;
  }
}

int TFileDiff::NewLineOf(int oldLine) const {
  int newLine = 1;
  for (const TDiffLine& line : FLines) {
    if (line.OldLine == oldLine && line.NewLine == 0) return newLine;
    if (line.OldLine == oldLine) return line.NewLine;
    if (line.NewLine > 0) newLine = line.NewLine + 1;
  }
  return newLine;
}

TDiffPage MakeDiffPage(const TFileDiff& diff, const TDiffLayout& layout) {
  const std::vector<TDiffRow> rows = diff::AlignLines(diff.Lines());
  const std::vector<bool> shown = ShownRows(rows, layout.WholeFile);
  TPageMaker page(layout.SideBySide, diff.IgnoresSpace());
  size_t hidden = 0;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (!shown[i]) {
      ++hidden;
      continue;
    }
    if (hidden > 0) page.AddFold(std::exchange(hidden, 0));
    if (IsChange(rows[i])) {
      page.AddChange(rows[i]);
    } else {
      page.AddSame(*rows[i].Old);
    }
  }
  if (hidden > 0) page.AddFold(hidden);
  return page.Take();
}

}  // namespace desktop
