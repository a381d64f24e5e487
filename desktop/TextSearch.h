// Finds and replaces in an editor, by plain text or by ECMAScript regular expressions, line by line.
//
//   const TTextSearch search{.Text = "T(Query|Table)", .IsRegExp = true};
//   if (!search.FindNext(editor, /*forward=*/true)) ...      // else the match is selected
//   const int count = search.ReplaceAll(editor, "TKVA\\1");
#pragma once

#include <QString>
#include <optional>

#include "rtl/text/Exceptions.h"

namespace desktop {

class TSourceEditor;

// A text that is no regular expression.
class ESearch : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

struct TTextSearch {
  QString Text;
  bool IsRegExp = false;
  bool IsCaseSensitive = false;
  bool WholeWords = false;

  // All of them raise ESearch if Text is no regular expression; nothing has changed then.

  // Selects the next match after the selection, or the last one before it, and goes on at the other end of
  // the text. Returns false, and keeps the selection, if there is no match.
  [[nodiscard]] bool FindNext(TSourceEditor& editor, bool forward) const;
  // Replaces the selection if it is a match, and selects the next match. In `replacement` for a regular
  // expression, \1 to \9 stand for its groups. Returns whether there is a next match.
  bool Replace(TSourceEditor& editor, const QString& replacement) const;
  // Replaces all matches as one step of undo. Returns their number, or 0 if the file cannot hold
  // `replacement`.
  int ReplaceAll(TSourceEditor& editor, const QString& replacement) const;

 private:
  struct TMatch {
    long Start, End;  // bytes of the editor's UTF-8 text, from 0
  };
  // Returns the first match in [from, to), or the last one in [to, from) if `to` is before `from`.
  std::optional<TMatch> Match(TSourceEditor& editor, long from, long to) const;
  // Replaces the match that was found last. Returns the end of the new text.
  long ReplaceMatch(TSourceEditor& editor, const QString& replacement) const;
};

}  // namespace desktop
