#include "host/MakeGroup.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "host/HostError.h"
#include "rtl/text/Lines.h"
#include "rtl/text/SysUtils.h"

namespace host {

namespace {

// The lines of a make file without comments. A line that ends with a backslash is joined with the next one.
class TMakeLines {
 public:
  explicit TMakeLines(std::string_view text) : FRest(text) {}

  // Returns false at the end. `line` is the number of the first of the joined lines, from 1.
  bool Next(std::string& text, int& line) {
    if (FRest.empty()) return false;
    text.clear();
    line = FLine + 1;
    bool goesOn = true;
    while (goesOn && !FRest.empty()) {
      std::string_view piece = rtl::TakeLine(FRest);
      ++FLine;
      piece = piece.substr(0, piece.find('#'));
      while (!piece.empty() && IsBlank(piece.back())) piece.remove_suffix(1);
      // A path may end with a backslash too, but has no blank before it.
      goesOn = piece == "\\" || piece.ends_with(" \\") || piece.ends_with("\t\\");
      if (goesOn) piece.remove_suffix(1);
      text.append(piece);
      if (goesOn) text += ' ';
    }
    return true;
  }

  static bool IsBlank(char c) { return c == ' ' || c == '\t'; }

 private:
  std::string_view FRest;
  int FLine = 0;
};

// Splits `text` at blanks. A word in double quotes may contain blanks.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (text = rtl::Trim(text); !text.empty(); text = rtl::Trim(text)) {
    const bool isQuoted = text.front() == '"';
    if (isQuoted) text.remove_prefix(1);
    const size_t end = std::min(isQuoted ? text.find('"') : text.find_first_of(" \t"), text.size());
    if (end > 0) words.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}

// Returns the position of the colon that ends the targets of a rule. Skips the colon of a drive letter.
size_t FindRuleColon(std::string_view line) {
  for (size_t at = line.find(':'); at != line.npos; at = line.find(':', at + 1)) {
    if (at + 1 == line.size() || TMakeLines::IsBlank(line[at + 1])) return at;
  }
  return line.npos;
}

class TBpgReader {
 public:
  explicit TBpgReader(std::string_view fileName) : FFileName(fileName) {}

  std::vector<TFileReference> Read(std::string_view text) {
    TMakeLines lines(text);
    std::string line;
    int number = 0;
    while (lines.Next(line, number)) TakeLine(line, number);
    if (!FProjects) throw EHostError(At(FFileName, 0, "this is no project group: it has no macro PROJECTS."));
    return ListProjects();
  }

 private:
  void TakeLine(std::string_view line, int number) {
    // Skip the commands of rules, and directives; all branches of directives count.
    if (line.empty() || TMakeLines::IsBlank(line.front()) || line.front() == '!') return;
    const size_t equals = line.find('=');
    const size_t colon = FindRuleColon(line);
    if (equals < colon) {
      const std::string name = rtl::UpperCase(rtl::Trim(line.substr(0, equals)));
      const std::string value = Expand(rtl::Trim(line.substr(equals + 1)));
      if (name == "PROJECTS") FProjects = {value, number};
      FMacros.insert_or_assign(name, value);
    } else if (colon != line.npos) {
      const std::string target = Expand(line.substr(0, colon));
      FRules.try_emplace(rtl::UpperCase(Joined(Words(target))), Expand(line.substr(colon + 1)), number);
    }
  }

  std::string Expand(std::string_view text) const {
    std::string result;
    for (size_t begin; (begin = text.find("$(")) != text.npos;) {
      const size_t end = text.find(')', begin);
      if (end == text.npos || result.size() > kMaxLength) break;
      const auto found = FMacros.find(rtl::UpperCase(text.substr(begin + 2, end - begin - 2)));
      result.append(text.substr(0, begin));
      if (found != FMacros.end()) result.append(found->second);
      text.remove_prefix(end + 1);
    }
    return result.append(text);
  }

  static std::string Joined(const std::vector<std::string_view>& words) {
    std::string text;
    for (const std::string_view word : words) text.append(text.empty() ? "" : " ").append(word);
    return text;
  }

  // A target is one word, or several words if a name with blanks is not quoted.
  std::vector<TFileReference> ListProjects() const {
    std::vector<TFileReference> projects;
    const std::vector<std::string_view> words = Words(FProjects->first);
    for (size_t i = 0; i < words.size();) {
      std::string target(words[i]);
      size_t next = i + 1;
      auto rule = FRules.find(rtl::UpperCase(target));
      while (rule == FRules.end() && next < words.size() && next < i + kMaxWords) {
        target.append(" ").append(words[next++]);
        rule = FRules.find(rtl::UpperCase(target));
      }
      if (rule == FRules.end()) {
        throw EHostError(At(FFileName, FProjects->second, "there is no rule for " + Quoted(words[i]) + "."));
      }
      const auto& [source, line] = rule->second;
      const std::string project = Joined(Words(source));
      if (project.empty()) {
        throw EHostError(At(FFileName, line, "the rule for " + Quoted(target) + " names no project."));
      }
      projects.push_back({.Name = project, .Line = line});
      i = next;
    }
    return projects;
  }

  static constexpr size_t kMaxLength = 1 << 20;
  static constexpr size_t kMaxWords = 16;

  std::string_view FFileName;
  std::optional<std::pair<std::string, int>> FProjects;  // value and line
  std::unordered_map<std::string, std::string> FMacros;  // by upper-cased name
  std::unordered_map<std::string, std::pair<std::string, int>>
      FRules;  // the source of a target, and the line
};

}  // namespace

std::vector<TFileReference> ReadBpg(std::string_view text, std::string_view fileName) {
  return TBpgReader(fileName).Read(text);
}

}  // namespace host
