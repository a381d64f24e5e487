#include "tests/PlainEngine.h"

#include <algorithm>
#include <cctype>

#include "MigWizard/engine/LL1Grammar.h"
#include "MigWizard/form/FormGrammar.h"
#include "rtl/text/SysUtils.h"

namespace plain {
namespace {

// Returns 0 if there is no reference at `at`, 1 for a terminal, 2 for a nonterminal. Sets `end` to its end.
int ScanSymbol(const std::string& text, size_t at, size_t& end) {
  if (text[at] != '<' || at + 1 == text.size() || text[at + 1] == '<' || text[at + 1] == '>') return 0;
  end = text.find_first_of("<>", at + 1) + 1;
  if (end == 0 || text[end - 1] == '<') return 0;
  return text[at + 1] == '*' ? 1 : 2;
}

int Class(const std::string& alternative) {
  size_t end;
  return alternative.empty() ? 0 : ScanSymbol(alternative, 0, end);
}

bool Holds(const std::vector<std::string>& list, const std::string& text) {
  return std::any_of(list.begin(), list.end(), [&](const auto& other) { return rtl::SameText(other, text); });
}

bool InTerminal(const std::string& name, const std::string& delims, char c) {
  const auto byte = static_cast<unsigned char>(c);
  const bool isLetter = byte < 128 && std::isalpha(byte) != 0;
  const bool isDigit = byte < 128 && std::isdigit(byte) != 0;
  if (name == "<*char>") return isLetter || c == '_';
  if (name == "<*digit>" || name == "<*digits>") return isDigit;
  if (name == "<*hexs>") return byte < 128 && std::isxdigit(byte) != 0;
  if (name == "<*chars_or_digits>") return isLetter || isDigit || c == '_';
  if (name == "<*symbol>" || name == "<*symbols>") return byte != 0 && c != '\'';
  return name == "<*delim>" && delims.find(c) != std::string::npos;
}

}  // namespace

void TEngine::AddRule(const std::string& given) {
  const std::string rule = rtl::LowerCase(given);
  const size_t nameEnd = rule.find('>', 1) + 1;
  const std::string name = rule.substr(0, nameEnd);
  auto place = Rules.begin();
  while (place != Rules.end() && rtl::CompareText(place->first, name) < 0) ++place;
  if (place == Rules.end() || place->first != name) place = Rules.insert(place, {name, {}});
  if (nameEnd + 1 >= rule.size()) return;
  place->second.emplace_back();
  for (size_t i = nameEnd + 1; i < rule.size(); ++i) {
    if (rule[i] == '|') {
      place->second.emplace_back();
    } else if (rule[i] != '\\') {
      place->second.back() += rule[i];
    } else if (std::isdigit(static_cast<unsigned char>(rule[i + 1])) != 0) {
      int code = 0;
      while (i + 1 < rule.size() && std::isdigit(static_cast<unsigned char>(rule[i + 1])) != 0)
        code = code * 10 + (rule[++i] - '0');
      place->second.back() += static_cast<char>(code);
    } else {
      place->second.back() += rule[++i];
    }
  }
}

void TEngine::Rewrite(std::vector<std::string>& target, const std::string& name,
                      const std::vector<std::string>& inlined) {
  const std::string spec = "<__Spec>";
  std::vector<std::string> out;
  std::function<void(const std::string&)> expand = [&](const std::string& text) {
    const size_t at = text.find(spec);
    if (at == std::string::npos) {
      if (!Holds(out, text)) out.push_back(text);
      return;
    }
    for (const std::string& choice : inlined) expand(std::string(text).replace(at, spec.size(), choice));
  };
  for (std::string alternative : target) {
    for (size_t at = 0; (at = alternative.find(name, at)) != std::string::npos; at += spec.size())
      alternative.replace(at, name.size(), spec);
    expand(alternative);
  }
  target = out;
}

void TEngine::Prepare() {
  for (size_t n = 0; n < Rules.size(); ++n) {
    auto& [name, own] = Rules[n];
    if (std::find(own.begin(), own.end(), "") == own.end()) continue;
    for (size_t m = 0; m < Rules.size(); ++m)
      if (m != n) Rewrite(Rules[m].second, name, own);
    Rewrite(own, name, std::vector<std::string>(own));
    own.erase(std::find(own.begin(), own.end(), ""));
  }
  for (auto& rule : Rules) {
    std::stable_sort(rule.second.begin(), rule.second.end(), [](const auto& left, const auto& right) {
      if (Class(left) != Class(right)) return Class(left) < Class(right);
      return rtl::CompareText(left, right) > 0;
    });
  }
}

bool TEngine::Parse(const std::string& text, const std::string& start, size_t& position) {
  if (!FPrepared) Prepare();
  FPrepared = true;
  FText = text;
  FPos = position;
  BeforeParse();
  const bool result = ParseNonterminal(start);
  if (result) position = FPos;
  return result;
}

bool TEngine::ParseNonterminal(const std::string& name) {
  if (--Steps < 0) throw EOutOfSteps();
  const auto rule = std::find_if(Rules.begin(), Rules.end(), [&](const auto& r) { return r.first == name; });
  if (rule == Rules.end()) throw mig::EGrammarError("Unknown nonterminal: " + name);
  for (const std::string& alternative : rule->second) {
    const size_t pos = FPos;
    const auto restore = Snapshot();
    if (MatchAlternative(alternative)) return true;
    FPos = pos;
    restore();
  }
  return false;
}

bool TEngine::MatchAlternative(const std::string& alternative) {
  std::string literal;
  const auto goesOn = [&] {
    const bool isWord = std::find(Words.begin(), Words.end(), literal) != Words.end();
    literal.clear();
    return isWord && FPos <= FText.size() && InTerminal("<*chars_or_digits>", {}, FText[FPos - 1]);
  };
  for (size_t at = 0, end; at < alternative.size();) {
    const int kind = ScanSymbol(alternative, at, end);
    if (kind == 0) {
      if (FPos > FText.size() || rtl::LowerCase(FText.substr(FPos - 1, 1))[0] != alternative[at])
        return false;
      literal += alternative[at++];
      ++FPos;
      continue;
    }
    if (goesOn()) return false;
    const std::string name = alternative.substr(at, end - at);
    if (!(kind == 1 ? ParseTerminal(name) : ParseNonterminal(name))) return false;
    at = end;
  }
  return !goesOn();
}

bool TEngine::ParseTerminal(const std::string& name) {
  const bool single = name == "<*char>" || name == "<*digit>" || name == "<*symbol>";
  const size_t start = FPos;
  while (FPos <= FText.size() && InTerminal(name, Delims, FText[FPos - 1]) && (FPos == start || !single))
    ++FPos;
  return FPos > start;
}

TFormEngine::TFormEngine(std::function<std::vector<TEntry>(const TEntry&)> convert)
    : FConvert(std::move(convert)) {
  for (const auto rule : mig::FormGrammar()) AddRule(std::string(rule));
  Words = {"end"};
  Delims = "\t\n\r ";
}

void TFormEngine::BeforeParse() {
  Properties.clear();
  NestedObjects.clear();
  FState = {};
}

std::function<void()> TFormEngine::Snapshot() {
  return [this, properties = Properties.size(), state = FState, count = FNestedCount] {
    Properties.resize(properties);
    FState = state;
    FNestedCount = count;
    while (NestedObjects.size() > FNestedCount) NestedObjects.pop_back();
  };
}

bool TFormEngine::ParseNonterminal(const std::string& name) {
  const size_t start = FPos;
  if (name == "<nested_obj>" && ++FState.Depth == 1)
    for (FState.NestedStart = FPos; FState.NestedStart > 1 && FText[FState.NestedStart - 2] == ' ';)
      --FState.NestedStart;
  const bool result = TEngine::ParseNonterminal(name);
  const std::string token = result ? FText.substr(start - 1, FPos - start) : "";
  if (name == "<nested_obj>" && --FState.Depth == 0 && result) {
    size_t end = FPos;
    while (Delims.find(FText[end - 2]) != std::string::npos) --end;
    const std::string nested = FText.substr(FState.NestedStart - 1, end - FState.NestedStart);
    if (!Holds(NestedObjects, nested)) NestedObjects.push_back(nested);
    FState.NestedStart = 0;
    ++FNestedCount;
  }
  if (!result) return false;
  if (FState.Depth == 0 && name == "<obj_name>") FState.ObjName = token;
  if (FState.Depth == 0 && name == "<obj_type>") FState.ObjType = token;
  if (FState.Depth == 0 && name == "<keyword>") FState.Keyword = token;
  if (name == "<full_prop_name>") FState.PropName = token;
  if (name == "<prop_value>" && !FState.PropName.empty()) {
    if (FState.Depth == 0)
      for (TEntry& entry : FConvert({FState.PropName, token})) Properties.push_back(std::move(entry));
    FState.PropName.clear();
  }
  return true;
}

std::string TFormEngine::Print(size_t level) const {
  const std::string inner(2 * level + 2, ' ');
  std::string text = inner.substr(2) + FState.Keyword + " " + FState.ObjName + ": " + FState.ObjType + "\r\n";
  for (const auto& [name, value] : Properties) {
    text += inner + name + " = ";
    for (size_t i = 0; i < value.size(); ++i) {
      const bool isLineEnd = value[i] == '\n' || value[i] == '\r';
      if (isLineEnd && value.substr(i, 2) == "\r\n") ++i;
      text += isLineEnd ? "\r\n" + inner + "  " : std::string(1, value[i]);
    }
    text += "\r\n";
  }
  for (const std::string& nested : NestedObjects) text += nested + "\r\n";
  return text + inner.substr(2) + "end\r\n";
}

}  // namespace plain
