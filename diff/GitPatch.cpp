#include "diff/GitPatch.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "diff/BinaryPatch.h"
#include "diff/Sha1.h"

namespace diff {
namespace {

using TKind = TDiffLine::TKind;
using TDiffLines = std::vector<TDiffLine>;

constexpr size_t kContext = 3;  // lines around a change
constexpr char kForReading[] = "# For reading only: this patch leaves white space out.\n";

// Returns `path` as git writes it: in double quotes, with escapes, where it holds a control character, a
// quote or a backslash.
std::string Quoted(const std::string& path) {
  const auto isSpecial = [](char c) {
    return static_cast<unsigned char>(c) < 32 || c == 127 || c == '"' || c == '\\';
  };
  if (std::none_of(path.begin(), path.end(), isSpecial)) return path;
  std::string result = "\"";
  for (const char c : path) {
    if (!isSpecial(c)) {
      result += c;
      continue;
    }
    result += '\\';
    constexpr std::string_view kLetters = "abtnvfr";
    if (c == '"' || c == '\\') {
      result += c;
    } else if (c >= 7 && c <= 13) {
      result += kLetters[static_cast<size_t>(c - 7)];
    } else {
      for (const int shift : {6, 3, 0}) result += static_cast<char>('0' + (c >> shift & 7));
    }
  }
  return result + '"';
}

// The name in a "---" or "+++" line. A tab ends a name with blanks, for tools that would cut it at the first
// one.
std::string HeaderName(const std::string& path) {
  const std::string name = Quoted(path);
  return name.find(' ') != std::string::npos && name == path ? name + '\t' : name;
}

std::string Range(size_t first, size_t count) {
  // A range without lines names the line before it.
  const std::string start = std::to_string(count == 0 ? first - 1 : first);
  return count == 1 ? start : start + ',' + std::to_string(count);
}

void AppendLine(std::string& out, const TDiffLine& line) {
  out += line.Kind == TKind::Same ? ' ' : line.Kind == TKind::Removed ? '-' : '+';
  const std::string_view text = line.Kind == TKind::Removed ? line.Old : line.New;
  out += text;
  if (!text.ends_with('\n')) out += "\n\\ No newline at end of file\n";
}

// Appends the hunk of the lines from `first` to before `end`; `oldLine` and `newLine`, 1-based, are those of
// `first`.
void AppendHunk(std::string& out, const TDiffLines& lines, size_t first, size_t end, size_t oldLine,
                size_t newLine) {
  size_t oldCount = 0;
  size_t newCount = 0;
  for (size_t i = first; i < end; ++i) {
    if (lines[i].Kind != TKind::Added) ++oldCount;
    if (lines[i].Kind != TKind::Removed) ++newCount;
  }
  out.append("@@ -").append(Range(oldLine, oldCount)).append(" +").append(Range(newLine, newCount));
  out.append(" @@\n");
  for (size_t i = first; i < end; ++i) AppendLine(out, lines[i]);
}

std::string Hunks(const TDiffLines& lines) {
  std::string out;
  size_t oldLine = 1;
  size_t newLine = 1;
  size_t at = 0;
  const auto advanceTo = [&](size_t index) {
    for (; at < index; ++at) {
      if (lines[at].Kind != TKind::Added) ++oldLine;
      if (lines[at].Kind != TKind::Removed) ++newLine;
    }
  };
  const auto isChange = [](const TDiffLine& line) { return line.Kind != TKind::Same; };
  const auto nextChange = [&](size_t from) {
    return static_cast<size_t>(
        std::find_if(lines.begin() + static_cast<std::ptrdiff_t>(from), lines.end(), isChange) -
        lines.begin());
  };
  for (size_t change = nextChange(0); change < lines.size();) {
    const size_t first = std::max(at, change < kContext ? 0 : change - kContext);
    size_t last = change;  // of the changes that this hunk takes
    for (change = nextChange(change + 1); change < lines.size() && change - last <= 2 * kContext + 1;
         change = nextChange(change + 1)) {
      last = change;
    }
    const size_t end = std::min(lines.size(), last + kContext + 1);
    advanceTo(first);
    AppendHunk(out, lines, first, end, oldLine, newLine);
    advanceTo(end);
  }
  return out;
}

std::string TextPart(std::string_view path, std::string_view oldText, std::string_view newText,
                     TIgnore ignore) {
  const std::string hunks = Hunks(DiffLines(oldText, newText, ignore));
  if (hunks.empty()) return {};
  return "--- " + HeaderName("a/" + std::string(path)) + "\n+++ " + HeaderName("b/" + std::string(path)) +
         '\n' + hunks;
}

// Returns `text` with "# " before each line.
std::string Commented(std::string_view text) {
  std::string out;
  for (const std::string_view line : SplitLines(text)) out.append("# ").append(line);
  return out;
}

std::string BlobName(std::string_view bytes) {
  std::string blob = "blob " + std::to_string(bytes.size());
  blob += '\0';
  return Sha1Hex(blob.append(bytes));
}

}  // namespace

bool NeedsBinaryPatch(const TPatchFile& file) {
  return file.OldBytes.find('\0') != std::string_view::npos ||
         file.NewBytes.find('\0') != std::string_view::npos;
}

std::string GitPatch(const TPatchFile& file, TIgnore ignore) {
  if (file.OldBytes == file.NewBytes) return {};
  const std::string path(file.Path);
  const std::string header = "diff --git " + Quoted("a/" + path) + ' ' + Quoted("b/" + path) + '\n';
  if (!NeedsBinaryPatch(file)) {
    const std::string part = TextPart(path, file.OldBytes, file.NewBytes, ignore);
    return part.empty() ? part : (ignore == TIgnore::Nothing ? "" : kForReading) + header + part;
  }
  std::string readable = Commented(TextPart(path, file.OldText, file.NewText, ignore));
  if (ignore != TIgnore::Nothing) return readable.empty() ? readable : kForReading + readable;
  return readable + header + "index " + BlobName(file.OldBytes) + ".." + BlobName(file.NewBytes) +
         " 100644\n" + BinaryPatch(file.OldBytes, file.NewBytes);
}

}  // namespace diff
