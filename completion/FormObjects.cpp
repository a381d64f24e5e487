#include "completion/FormObjects.h"

#include <algorithm>
#include <charconv>
#include <unordered_set>

#include "MigWizard/engine/PasParser.h"
#include "MigWizard/passes/FormPass.h"
#include "completion/UnitTokens.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

using TTokens = std::vector<TUnitToken>;

constexpr int kBeside = 64;  // pixels from the left edge of a component to the next one

bool OpensObject(const TUnitToken& token) {
  return token.Code == mig::kObject || token.Code == mig::kInherited || token.Code == mig::kInline;
}

// The header of an object: `KEYWORD Name: Class [Index]`.
struct THeader {
  size_t Keyword = 0, Name = 0, Class = 0, Last = 0;  // indices of tokens
  bool HasIndex = false;
};

// Returns False where the tokens from `at` on are no header with a name.
bool ReadHeader(const TTokens& tokens, size_t at, THeader& header) {
  if (at + 3 >= tokens.size() || !OpensObject(tokens[at]) || tokens[at + 1].Code != qrl::kIdentifier ||
      !tokens[at + 2].IsSymbol(':') || tokens[at + 3].Code != qrl::kIdentifier)
    return false;
  header = {at, at + 1, at + 3, at + 3, false};
  if (at + 6 < tokens.size() && tokens[at + 4].IsSymbol('[') && tokens[at + 5].Code == qrl::kNumber &&
      tokens[at + 6].IsSymbol(']')) {
    header.HasIndex = true;
    header.Last = at + 6;
  }
  return true;
}

// Returns the index of the `end` of the object whose keyword is at `at`, or the count of the tokens. An `end` counts
// where the grammar of forms has one: it is no name of a property and no part of one.
size_t FindEnd(const TTokens& tokens, size_t at) {
  int depth = 0;
  for (; at < tokens.size(); ++at) {
    const TUnitToken& token = tokens[at];
    if (OpensObject(token) || token.Code == mig::kItem) {
      ++depth;
    } else if (token.Code == mig::kEnd && --depth == 0) {
      break;
    }
  }
  return at;
}

class TInheritedPass {
 public:
  TInheritedPass(std::string_view text, const qrl::TEncoding& encoding, const mig::TClassMap& classes,
                 mig::TFormParser& parser)
      : FText(text),
        FEncoding(encoding),
        FClasses(classes),
        FParser(parser),
        FTokens(ReadUnitTokens(text, encoding)) {}

  // `converted` are the objects that the conversion took: what they hold stays.
  std::vector<TFormEdit> Run(const std::vector<TFormEdit>& converted) {
    std::vector<TFormEdit> edits;
    auto next = converted.begin();
    for (size_t i = 0; i < FTokens.size(); ++i) {
      const size_t offset = FTokens[i].Offset;
      while (next != converted.end() && (next->Level < 0 || next->End <= offset)) ++next;
      if (next != converted.end() && offset >= next->Begin) continue;
      THeader header;
      if (!ReadHeader(FTokens, i, header)) continue;
      const std::string* const newClass = FClasses.Find(FTokens[header.Class].Lexem);
      const bool isLeftOut = FTokens[i].Code != mig::kObject || header.HasIndex;
      if (newClass == nullptr || !isLeftOut) continue;
      const size_t end = FindEnd(FTokens, i);
      TFormEdit edit;
      if (end == FTokens.size() || !Convert(header, end, *newClass, edit)) continue;
      edits.push_back(std::move(edit));
      i = end;
    }
    return edits;
  }

 private:
  bool Convert(const THeader& header, size_t end, const std::string& newClass, TFormEdit& edit) {
    const size_t bodyStart = FTokens[header.Last].End();
    const std::string block = std::string("object ")
                                  .append(FTokens[header.Name].Lexem)
                                  .append(": ")
                                  .append(FTokens[header.Class].Lexem)
                                  .append(FText.substr(bodyStart, FTokens[end].End() - bodyStart));
    int64_t position = 1;
    FParser.SetNewType(newClass);
    if (!FParser.Parse(block, "<object>", position) || static_cast<size_t>(position) != block.size() + 1)
      return false;
    std::string printed;
    FParser.PrintObject(0, printed);
    const size_t headerEnd = printed.find('\r');
    edit.Begin = FTokens[header.Keyword].Offset;
    edit.End = FTokens[end].End();
    edit.Text = std::string(FTokens[header.Keyword].Lexem).append(printed.substr(6, headerEnd - 6));
    if (header.HasIndex) {
      const size_t index = FTokens[header.Class].End();
      edit.Text.append(FText.substr(index, bodyStart - index));
    }
    edit.Text.append(printed.substr(headerEnd));
    edit.Level = 0;
    return true;
  }

  const std::string_view FText;
  const qrl::TEncoding& FEncoding;
  const mig::TClassMap& FClasses;
  mig::TFormParser& FParser;
  const TTokens FTokens;
};

// Returns the integer of the line "NAME = NUMBER" of a printed object, its own lines only.
bool FindNumber(std::string_view printed, int level, std::string_view name, int& number) {
  const std::string start =
      "\n" + std::string(2 * static_cast<size_t>(level) + 2, ' ') + std::string(name) + " = ";
  const size_t at = printed.find(start);
  if (at == std::string_view::npos) return false;
  const char* const first = printed.data() + at + start.size();
  const auto [last, error] = std::from_chars(first, printed.data() + printed.size(), number);
  return error == std::errc() && *last == '\r';
}

std::string PrintTransaction(const TTransactionRules& rules, std::string_view name,
                             std::string_view connection, const TFormEdit& edit) {
  const std::string indent(2 * static_cast<size_t>(edit.Level), ' ');
  std::string text = indent + "object " + std::string(name) + ": " + std::string(rules.Class) + "\r\n";
  const auto add = [&](std::string_view property, std::string_view value) {
    text.append(indent).append("  ").append(property).append(" = ").append(value).append("\r\n");
  };
  add(rules.ConnectionName, connection);
  int left = 0;
  int top = 0;
  if (FindNumber(edit.Text, edit.Level, "Left", left) && FindNumber(edit.Text, edit.Level, "Top", top)) {
    add("Left", std::to_string(left + kBeside));
    add("Top", std::to_string(top));
  }
  return text + indent + "end\r\n";
}

}  // namespace

std::vector<TFormEdit> ConvertInherited(std::string_view text, const qrl::TEncoding& encoding,
                                        const mig::TClassMap& classes, mig::TFormParser& parser,
                                        std::vector<TFormEdit> edits) {
  const std::vector<TFormEdit> added = TInheritedPass(text, encoding, classes, parser).Run(edits);
  std::erase_if(edits, [&](const TFormEdit& edit) {
    return std::any_of(added.begin(), added.end(), [&](const TFormEdit& object) {
      return edit.Begin >= object.Begin && edit.End <= object.End;
    });
  });
  edits.insert(edits.end(), added.begin(), added.end());
  std::sort(edits.begin(), edits.end(),
            [](const TFormEdit& left, const TFormEdit& right) { return left.Begin < right.Begin; });
  return edits;
}

std::vector<std::string> AddTransactions(std::string_view text, const qrl::TEncoding& encoding,
                                         const TTransactionRules& rules, std::vector<TFormEdit>& edits) {
  const TTokens tokens = ReadUnitTokens(text, encoding);
  std::unordered_set<std::string> names;
  struct TConnection {
    size_t Begin;
    std::string_view Name;
  };
  std::vector<TConnection> connections;
  for (size_t i = 0; i < tokens.size(); ++i) {
    THeader header;
    if (!ReadHeader(tokens, i, header)) continue;
    names.insert(rtl::LowerCase(tokens[header.Name].Lexem));
    if (tokens[i].Code == mig::kObject && tokens[header.Class].Is(rules.OldClass))
      connections.push_back({tokens[i].Offset, tokens[header.Name].Lexem});
  }
  std::vector<std::string> taken;
  for (const TConnection& connection : connections) {
    const auto edit = std::find_if(edits.begin(), edits.end(), [&](const TFormEdit& candidate) {
      return candidate.Level >= 0 && candidate.Begin == connection.Begin;
    });
    if (edit == edits.end()) continue;
    const std::string name = TransactionName(rules, connection.Name, connections.size());
    if (names.contains(rtl::LowerCase(name))) {
      taken.push_back(name);
    } else {
      edit->Text += PrintTransaction(rules, name, connection.Name, *edit);
    }
  }
  return taken;
}

}  // namespace completion
