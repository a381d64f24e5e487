#include "completion/TransactionFields.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "MigWizard/engine/PasParser.h"
#include "completion/UnitTokens.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

using TTokens = std::vector<TUnitToken>;

// A statement `A, B: TDatabase;` in the published part of a class.
struct TField {
  size_t First = 0;      // index of its first token
  size_t Semicolon = 0;  // index of the token that ends it
  size_t ClassName = 0;  // index of the token of its type
  std::vector<std::string_view> Names;
};

struct TClassBody {
  std::vector<TField> Fields;
  std::unordered_set<std::string> Members;  // names that begin a statement, in lower case
};

bool IsVisibility(const TUnitToken& token) {
  return token.Is("private") || token.Is("protected") || token.Is("public") || token.Is("published") ||
         token.Is("strict") || token.Is("automated");
}

// Reads the published fields of the classes of a unit.
class TClassReader {
 public:
  TClassReader(const TTokens& tokens, std::string_view oldClass) : FTokens(tokens), FOldClass(oldClass) {}

  std::vector<TClassBody> Run() {
    for (size_t i = 0; i + 2 < FTokens.size(); ++i) {
      if (FTokens[i].IsSymbol('=') && FTokens[i + 1].Is("class") && FTokens[i + 2].IsSymbol('('))
        i = ReadClass(i + 2);
    }
    return std::move(FClasses);
  }

 private:
  // Reads the class whose list of ancestors opens at `at`; returns the index of its last token.
  size_t ReadClass(size_t at) {
    while (at < FTokens.size() && !FTokens[at].IsSymbol(')')) ++at;
    ++at;
    if (at >= FTokens.size() || FTokens[at].IsSymbol(';')) return at;
    TClassBody body;
    bool isPublished = true;
    bool isStatement = true;  // a statement begins here
    int depth = 1;
    for (; at < FTokens.size() && depth > 0; ++at) {
      const TUnitToken& token = FTokens[at];
      if (token.Code == mig::kEnd) {
        --depth;
      } else if (token.Is("record") || (token.Is("class") && FTokens[at - 1].IsSymbol('='))) {
        ++depth;
      } else if (depth == 1 && IsVisibility(token)) {
        isPublished = token.Is("published");
        isStatement = true;
        continue;
      } else if (depth == 1 && isStatement && token.Code == qrl::kIdentifier) {
        AddStatement(body, at, isPublished);
      }
      isStatement = token.IsSymbol(';');
    }
    FClasses.push_back(std::move(body));
    return at - 1;
  }

  void AddStatement(TClassBody& body, size_t at, bool isPublished) {
    TField field;
    field.First = at;
    while (at + 1 < FTokens.size() && FTokens[at].Code == qrl::kIdentifier) {
      field.Names.push_back(FTokens[at].Lexem);
      body.Members.insert(rtl::LowerCase(FTokens[at].Lexem));
      if (!FTokens[at + 1].IsSymbol(',')) break;
      at += 2;
    }
    if (!isPublished || at + 3 >= FTokens.size() || !FTokens[at + 1].IsSymbol(':')) return;
    at += 2;
    if (FTokens[at + 1].IsSymbol('.')) at += 2;  // a type with its unit
    if (at + 1 >= FTokens.size() || !FTokens[at].Is(FOldClass) || !FTokens[at + 1].IsSymbol(';')) return;
    field.ClassName = at;
    field.Semicolon = at + 1;
    body.Fields.push_back(std::move(field));
  }

  const TTokens& FTokens;
  const std::string_view FOldClass;
  std::vector<TClassBody> FClasses;
};

// Returns where a new line goes after the statement that ends with the ";" before `end`: after a comment that ends on
// the same line, else at once.
size_t LineEndAfter(std::string_view text, size_t end) {
  const size_t newline = std::min(text.find_first_of("\r\n", end), text.size());
  const std::string_view rest = text.substr(end, newline - end);
  const size_t first = rest.find_first_not_of(" \t");
  if (first == std::string_view::npos) return end;
  if (rest.substr(first).starts_with("//")) return newline;
  const bool isWholeComment = rest[first] == '{' && rest.find('}', first) == rest.find_last_not_of(" \t");
  return isWholeComment ? newline : end;
}

std::string IndentOf(std::string_view text, size_t offset) {
  const size_t newline = offset == 0 ? std::string_view::npos : text.rfind('\n', offset - 1);
  const size_t start = newline == std::string_view::npos ? 0 : newline + 1;
  const std::string_view before = text.substr(start, offset - start);
  return std::string(before.substr(0, std::min(before.find_first_not_of(" \t"), before.size())));
}

}  // namespace

std::string TransactionName(const TTransactionRules& rules, std::string_view connection, size_t count) {
  return count == 1 ? std::string(rules.Name) : std::string(connection).append(rules.Name);
}

mig::TTextEdits CompleteTransactionFields(
    std::string_view text, const qrl::TEncoding& encoding, const mig::TTextEdits& edits, bool hasForm,
    const TTransactionRules& rules, const std::function<void(size_t offset, std::string_view name)>& tell) {
  std::map<size_t, std::string> insertions;  // by offset
  const TTokens tokens = ReadUnitTokens(text, encoding);
  const std::vector<TClassBody> classes =
      hasForm ? TClassReader(tokens, rules.OldClass).Run() : std::vector<TClassBody>();
  for (const TClassBody& body : classes) {
    size_t count = 0;
    for (const TField& field : body.Fields) count += field.Names.size();
    for (const TField& field : body.Fields) {
      if (!edits.HasAt(tokens[field.ClassName].Offset)) continue;
      for (const std::string_view connection : field.Names) {
        const std::string name = TransactionName(rules, connection, count);
        const size_t begin = tokens[field.First].Offset;
        if (body.Members.contains(rtl::LowerCase(name))) {
          tell(begin, name);
          continue;
        }
        std::string& lines = insertions[LineEndAfter(text, tokens[field.Semicolon].End())];
        lines.append(LineEndOf(text)).append(IndentOf(text, begin)).append(name).append(": ");
        lines.append(rules.Class).append(";");
      }
    }
  }

  mig::TTextEdits result;
  auto insertion = insertions.begin();
  const auto insertBefore = [&](size_t offset) {
    for (; insertion != insertions.end() && insertion->first <= offset; ++insertion)
      result.Replace(insertion->first, 0, insertion->second);
  };
  for (const mig::TTextEdits::TEdit& edit : edits.Edits()) {
    insertBefore(edit.Position);
    const bool isConnection = rtl::SameText(text.substr(edit.Position, edit.Length), rules.OldClass);
    result.Replace(edit.Position, edit.Length, isConnection ? std::string(rules.NewClass) : edit.Replacement);
  }
  insertBefore(text.size());
  return result;
}

}  // namespace completion
