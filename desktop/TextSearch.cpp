#include "desktop/TextSearch.h"

#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"

namespace desktop {

namespace {

using TScintilla = QsciScintillaBase;

long Length(const TSourceEditor& editor) {
  return editor.SendScintilla(TScintilla::SCI_GETLENGTH);
}

}  // namespace

std::optional<TTextSearch::TMatch> TTextSearch::Match(TSourceEditor& editor, long from, long to) const {
  const unsigned long flags = (IsRegExp ? TScintilla::SCFIND_REGEXP | TScintilla::SCFIND_CXX11REGEX : 0) |
                              (IsCaseSensitive ? TScintilla::SCFIND_MATCHCASE : 0) |
                              (WholeWords && !IsRegExp ? TScintilla::SCFIND_WHOLEWORD : 0);
  const std::string pattern = FromQt(WholeWords && IsRegExp ? "\\b(?:" + Text + ")\\b" : Text);
  if (pattern.empty()) return std::nullopt;
  editor.SendScintilla(TScintilla::SCI_SETSEARCHFLAGS, flags);
  editor.SendScintilla(TScintilla::SCI_SETTARGETSTART, from);
  editor.SendScintilla(TScintilla::SCI_SETTARGETEND, to);
  editor.SendScintilla(TScintilla::SCI_SETSTATUS, 0L);
  const long start = editor.SendScintilla(TScintilla::SCI_SEARCHINTARGET,
                                          static_cast<unsigned long>(pattern.size()), pattern.c_str());
  const bool isRefused = editor.SendScintilla(TScintilla::SCI_GETSTATUS) != 0;
  editor.SendScintilla(TScintilla::SCI_SETSTATUS, 0L);
  if (isRefused) throw ESearch("\"" + FromQt(Text) + "\" is not a regular expression.");
  if (start < 0) return std::nullopt;
  return TMatch{start, editor.SendScintilla(TScintilla::SCI_GETTARGETEND)};
}

bool TTextSearch::FindNext(TSourceEditor& editor, bool forward) const {
  const long start = editor.SendScintilla(TScintilla::SCI_GETSELECTIONSTART);
  const long end = editor.SendScintilla(TScintilla::SCI_GETSELECTIONEND);
  std::optional<TMatch> match = Match(editor, forward ? end : start, forward ? Length(editor) : 0);
  // An empty match at the cursor is where the last search ended.
  if (match && match->Start == match->End && match->Start == (forward ? end : start)) {
    const long next = editor.SendScintilla(
        forward ? TScintilla::SCI_POSITIONAFTER : TScintilla::SCI_POSITIONBEFORE, match->Start);
    match = Match(editor, next, forward ? Length(editor) : 0);
  }
  if (!match) match = forward ? Match(editor, 0, Length(editor)) : Match(editor, Length(editor), 0);
  if (match) editor.SelectRange(match->Start, match->End);
  return match.has_value();
}

long TTextSearch::ReplaceMatch(TSourceEditor& editor, const QString& replacement) const {
  const std::string text = FromQt(replacement);
  editor.SendScintilla(IsRegExp ? TScintilla::SCI_REPLACETARGETRE : TScintilla::SCI_REPLACETARGET,
                       static_cast<unsigned long>(text.size()), text.c_str());
  return editor.SendScintilla(TScintilla::SCI_GETTARGETEND);
}

bool TTextSearch::Replace(TSourceEditor& editor, const QString& replacement) const {
  const long start = editor.SendScintilla(TScintilla::SCI_GETSELECTIONSTART);
  const long end = editor.SendScintilla(TScintilla::SCI_GETSELECTIONEND);
  const std::optional<TMatch> match = Match(editor, start, end);
  if (match && match->Start == start && match->End == end && !editor.isReadOnly() &&
      editor.Accepts(replacement)) {
    const long after = ReplaceMatch(editor, replacement);
    editor.SelectRange(after, after);
  }
  return FindNext(editor, /*forward=*/true);
}

int TTextSearch::ReplaceAll(TSourceEditor& editor, const QString& replacement) const {
  if (editor.isReadOnly() || !editor.Accepts(replacement) || !Match(editor, 0, Length(editor))) return 0;
  int count = 0;
  editor.ChangeTogether([&] {
    long from = 0;
    while (from <= Length(editor)) {
      const std::optional<TMatch> match = Match(editor, from, Length(editor));
      if (!match) break;
      const long after = ReplaceMatch(editor, replacement);
      ++count;
      from = match->Start < match->End ? after : editor.SendScintilla(TScintilla::SCI_POSITIONAFTER, after);
      if (match->Start == match->End && after == Length(editor)) break;
    }
  });
  return count;
}

}  // namespace desktop
