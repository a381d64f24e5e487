#include "completion/FormLayout.h"

#include <algorithm>

#include "completion/UnitTokens.h"
#include "diff/LineDiff.h"

namespace completion {
namespace {

bool IsSpace(char c) {
  return static_cast<unsigned char>(c) <= 32;
}

std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view Trim(std::string_view text) {
  text = TrimRight(text);
  while (!text.empty() && IsSpace(text.front())) text.remove_prefix(1);
  return text;
}

// Returns a line without the white space outside quotes, which has no meaning in a form.
std::string Meaning(std::string_view line) {
  std::string meaning;
  bool inString = false;
  for (const char c : line) {
    if (c == '\'') inString = !inString;
    if (inString || !IsSpace(c)) meaning += c;
  }
  return meaning;
}

// Returns the offset of the class name in an object's first line, or npos.
size_t ClassOffset(std::string_view header) {
  const size_t colon = header.find(':');
  return colon == std::string_view::npos ? colon : header.find_first_not_of(" \t", colon + 1);
}

class TObjectLayout {
 public:
  TObjectLayout(std::string_view original, const mig::TFormEdit& edit, std::string_view indent,
                std::string_view lineEnd)
      : FOld(diff::SplitLines(original)),
        FNew(diff::SplitLines(TrimRight(edit.Text))),
        FInner(2 * static_cast<size_t>(edit.Level) + 2),
        FIndent(indent),
        FInnerIndent(InnerIndent()),
        FLineEnd(lineEnd) {}

  std::string Run() {
    std::string result = Header();
    const std::vector<std::string_view> kept = KeptLines();
    for (size_t i = 1; i + 1 < FNew.size(); ++i) {
      if (!kept[i].empty()) {
        result.append(kept[i]);
      } else if (!Trim(FNew[i]).empty()) {
        result.append(IndentedLine(FNew[i])).append(FLineEnd);
      }
    }
    return result.append(LastLine());
  }

 private:
  // Returns the indentation of the first line in the object, or two blanks more than that of the object.
  std::string InnerIndent() const {
    for (size_t i = 1; i + 1 < FOld.size(); ++i) {
      if (Trim(FOld[i]).empty()) continue;
      const std::string_view indent = FOld[i].substr(0, FOld[i].find_first_not_of(" \t"));
      if (indent.size() > FIndent.size() && indent.starts_with(FIndent)) return std::string(indent);
      break;
    }
    return FIndent + (FIndent.ends_with('\t') ? "\t" : "  ");
  }

  // The first line, with the author's spacing where only the class is different.
  std::string Header() const {
    const std::string_view printed = Trim(FNew[0]);
    const std::string_view old = FOld[0];
    const size_t newClass = ClassOffset(printed);
    const size_t oldClass = ClassOffset(old);
    if (oldClass != std::string_view::npos && newClass != std::string_view::npos) {
      const size_t oldEnd = old.find_first_of(" \t\r\n", oldClass);
      const std::string_view rest =
          oldEnd == std::string_view::npos ? std::string_view() : old.substr(oldEnd);
      if (rest.ends_with('\n') && Trim(rest).empty() &&
          Meaning(old.substr(0, oldClass)) == Meaning(printed.substr(0, newClass)))
        return std::string(old.substr(0, oldClass)).append(printed.substr(newClass)).append(rest);
    }
    return std::string(printed).append(FLineEnd);
  }

  std::string LastLine() const {
    const std::string_view old = FOld.back();
    return Trim(old) == Trim(FNew.back()) ? std::string(old) : FIndent + "end";
  }

  // For each printed line the line of the original with the same meaning, with its line end; empty for none.
  // The first and the last line of both are left out.
  std::vector<std::string_view> KeptLines() const {
    std::string oldMeanings, newMeanings;
    for (size_t i = 1; i + 1 < FOld.size(); ++i) oldMeanings.append(Meaning(FOld[i])).append("\n");
    for (size_t i = 1; i + 1 < FNew.size(); ++i) newMeanings.append(Meaning(FNew[i])).append("\n");
    std::vector<std::string_view> kept(FNew.size());
    for (const diff::TDiffLine& line : diff::DiffLines(oldMeanings, newMeanings)) {
      if (line.Kind == diff::TDiffLine::TKind::Same)
        kept[static_cast<size_t>(line.NewLine)] = FOld[static_cast<size_t>(line.OldLine)];
    }
    return kept;
  }

  // The printer puts properties at FInner blanks, and later lines of a value two further right than they
  // were. What is further left is of another object, added after this one.
  std::string IndentedLine(std::string_view line) const {
    line = TrimRight(line);
    size_t blanks = line.find_first_not_of(' ');
    if (blanks == std::string_view::npos) blanks = 0;
    if (blanks > FInner + 2) return std::string(line.substr(FInner + 2));
    if (blanks < FInner) return FIndent + std::string(line.substr(blanks));
    return FInnerIndent + std::string(blanks > FInner ? "  " : "") + std::string(line.substr(blanks));
  }

  const std::vector<std::string_view> FOld, FNew;
  const size_t FInner;
  const std::string FIndent;
  const std::string FInnerIndent;
  const std::string_view FLineEnd;
};

// Returns the white space between the start of the line and `offset`, or as many blanks as the line has bytes
// before it.
std::string IndentAt(std::string_view text, size_t offset) {
  const size_t newline = offset == 0 ? std::string_view::npos : text.rfind('\n', offset - 1);
  const size_t start = newline == std::string_view::npos ? 0 : newline + 1;
  const std::string_view before = text.substr(start, offset - start);
  const size_t length = before.find_first_not_of(" \t");
  return std::string(before.substr(0, length));
}

// Returns the replacement for the object of `edit`: laid out, or as it was printed; with the changes of
// nested objects.
std::string ObjectText(std::string_view text, const mig::TFormEdit& edit, bool laysOut) {
  const std::string_view original = TrimRight(text.substr(edit.Begin, edit.End - edit.Begin));
  std::string result =
      laysOut ? TObjectLayout(original, edit, IndentAt(text, edit.Begin), LineEndOf(text)).Run() : edit.Text;
  size_t from = 0;
  for (const mig::TFormEdit& nested : edit.Nested) {
    const std::string_view before = TrimRight(text.substr(nested.Begin, nested.End - nested.Begin));
    const size_t at = result.find(before, from);
    if (at == std::string::npos) continue;
    const std::string after = ObjectText(text, nested, true);
    result.replace(at, before.size(), after);
    from = at + after.size();
  }
  return result;
}

// Returns `text` with a LF for each CR LF and each CR.
std::string WithLf(std::string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && text.substr(i + 1).starts_with('\n')) continue;
    result += text[i] == '\r' ? '\n' : text[i];
  }
  return result;
}

void PrintWithLf(std::vector<mig::TFormEdit>& edits) {
  for (mig::TFormEdit& edit : edits) {
    edit.Text = WithLf(edit.Text);
    PrintWithLf(edit.Nested);
  }
}

// Lays out a form whose lines end with CR alone.
std::string ApplyWithCr(std::string_view text, std::vector<mig::TFormEdit> edits) {
  PrintWithLf(edits);
  std::string result = ApplyFormEdits(WithLf(text), edits, true);
  std::replace(result.begin(), result.end(), '\n', '\r');
  return result;
}

}  // namespace

std::string ApplyFormEdits(std::string_view text, const std::vector<mig::TFormEdit>& edits, bool layOutAll) {
  if (layOutAll && LineEndOf(text) == "\r") return ApplyWithCr(text, edits);
  std::string result;
  result.reserve(text.size());
  size_t done = 0;
  for (const mig::TFormEdit& edit : edits) {
    result.append(text.substr(done, edit.Begin - done));
    const bool isObject = edit.Level >= 0;
    const bool laysOut = isObject && (layOutAll || edit.LaysOut);
    result.append(isObject ? ObjectText(text, edit, laysOut) : edit.Text);
    done = laysOut ? edit.Begin + TrimRight(text.substr(edit.Begin, edit.End - edit.Begin)).size() : edit.End;
  }
  return result.append(text.substr(done));
}

}  // namespace completion
