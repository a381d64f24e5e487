#include "completion/TransactionFields.h"

#include <algorithm>
#include <map>
#include <span>
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
  std::string_view Name;
  std::string_view Ancestor;  // without its unit
  std::vector<TField> Fields;
  std::unordered_set<std::string> Members;  // names that begin a statement, in lower case
};

// Whether the word is followed by the name of a member.
bool IntroducesMember(const TUnitToken& token) {
  return token.Is("procedure") || token.Is("function") || token.Is("constructor") || token.Is("destructor") ||
         token.Is("property");
}

bool IsVisibility(const TUnitToken& token) {
  return token.Is("private") || token.Is("protected") || token.Is("public") || token.Is("published") ||
         token.Is("strict") || token.Is("automated");
}

// The ancestors of forms that bring no component of their own.
constexpr std::string_view kRoots[] = {"TForm",          "TDataModule",    "TFrame",
                                       "TService",       "TWebModule",     "TRemoteDataModule",
                                       "TMTSDataModule", "TSoapDataModule"};
// The ancestors of classes that no form belongs to.
constexpr std::string_view kNoForms[] = {"TObject",     "TPersistent",       "TComponent",
                                         "TThread",     "TInterfacedObject", "TInterfacedPersistent",
                                         "TCollection", "TCollectionItem"};

bool Lists(std::span<const std::string_view> names, std::string_view name) {
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view each) { return rtl::SameText(each, name); });
}

// Reads the published fields of the classes of a unit.
class TClassReader {
 public:
  TClassReader(const TTokens& tokens, std::string_view oldClass) : FTokens(tokens), FOldClass(oldClass) {}

  std::vector<TClassBody> Run() {
    for (size_t i = 0; i + 2 < FTokens.size(); ++i) {
      if (!FTokens[i].IsSymbol('=') || !FTokens[i + 1].Is("class")) continue;
      const size_t ancestors = FTokens[i + 2].Is("abstract") || FTokens[i + 2].Is("sealed") ? i + 3 : i + 2;
      if (ancestors < FTokens.size() && FTokens[ancestors].IsSymbol('('))
        i = ReadClass(i == 0 ? std::string_view() : FTokens[i - 1].Lexem, ancestors);
    }
    return std::move(FClasses);
  }

 private:
  // Reads the class whose list of ancestors opens at `at`; returns the index of its last token.
  size_t ReadClass(std::string_view name, size_t at) {
    TClassBody body;
    body.Name = name;
    bool isFirst = true;  // in the name of the first ancestor
    for (; at < FTokens.size() && !FTokens[at].IsSymbol(')'); ++at) {
      if (FTokens[at].IsSymbol(',')) isFirst = false;
      if (isFirst && FTokens[at].Code == qrl::kIdentifier) body.Ancestor = FTokens[at].Lexem;
    }
    ++at;
    if (at >= FTokens.size() || FTokens[at].IsSymbol(';')) return at;
    bool isPublished = true;
    bool isStatement = true;  // a statement begins here
    int depth = 1;
    int brackets = 0;
    for (; at < FTokens.size() && depth > 0; ++at) {
      const TUnitToken& token = FTokens[at];
      if (token.IsSymbol('(') || token.IsSymbol('[')) ++brackets;
      if (token.IsSymbol(')') || token.IsSymbol(']')) --brackets;
      if (brackets > 0) continue;  // a semicolon between parameters ends no statement
      if (token.Code == mig::kEnd) {
        --depth;
      } else if (token.Is("record") || (token.Is("class") && FTokens[at - 1].IsSymbol('='))) {
        ++depth;
      } else if (depth == 1 && IsVisibility(token)) {
        isPublished = token.Is("published");
        isStatement = true;
        continue;
      } else if (depth == 1 && IntroducesMember(token) && at + 1 < FTokens.size()) {
        body.Members.insert(rtl::LowerCase(FTokens[at + 1].Lexem));
      } else if (depth == 1 && isStatement && token.Code == qrl::kIdentifier) {
        AddStatement(body, at, isPublished);
      }
      isStatement = token.IsSymbol(';') || (isStatement && token.IsSymbol(']'));  // after an attribute
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

// Returns where a new line goes after the statement that ends with the ";" before `end`: after the comments
// that follow on its line if nothing else does, else at once. A comment may go on over several lines.
size_t LineEndAfter(std::string_view text, size_t end, const qrl::TEncoding& encoding) {
  mig::TPasParser scanner(text, encoding);
  scanner.SetPosition(end);
  bool hasComment = false;
  std::string_view lexem;
  while (const int code = scanner.GetNext(lexem)) {
    const size_t at = scanner.PrevPos();
    if (code == qrl::kWhiteSpace) {
      const size_t newline = lexem.find_first_of("\r\n");
      if (newline != std::string_view::npos) return hasComment ? at + newline : end;
    } else if (code != qrl::kComment || lexem.starts_with("{$") || lexem.starts_with("(*$")) {
      return end;
    } else {
      hasComment = true;
    }
  }
  return hasComment ? text.size() : end;
}

std::string IndentOf(std::string_view text, size_t offset) {
  const size_t newline = offset == 0 ? std::string_view::npos : text.find_last_of("\r\n", offset - 1);
  const size_t start = newline == std::string_view::npos ? 0 : newline + 1;
  const std::string_view before = text.substr(start, offset - start);
  return std::string(before.substr(0, std::min(before.find_first_not_of(" \t"), before.size())));
}

// Returns the name of the transaction of `connection`, one of `count` connections of a class. An ancestor may
// have a connection, too, unless it is known to have none.
std::string TransactionName(const TTransactionRules& rules, const TClassBody& body,
                            std::string_view connection, size_t count) {
  const bool isOnly = count == 1 && Lists(kRoots, body.Ancestor);
  return isOnly ? std::string(rules.Name) : std::string(connection).append(rules.Name);
}

// Returns why a field cannot have a transaction of that name, or an empty string.
std::string ReasonAgainst(const TClassBody& body, std::string_view connection, const std::string& name,
                          const TFindTransactionPlace& findPlace) {
  if (body.Members.contains(rtl::LowerCase(name))) return "its class already has a member " + name;
  switch (findPlace(body.Name, connection, name)) {
    case TTransactionPlace::NoConnection:
      return "no form of its class has an object " + std::string(connection) + " that is converted";
    case TTransactionPlace::Taken:
      return "its form already has an object " + name;
    case TTransactionPlace::Free:
      break;
  }
  return {};
}

}  // namespace

std::string TransactionKey(std::string_view className, std::string_view connection) {
  return rtl::LowerCase(std::string(className).append(".").append(connection));
}

TTransactionFields CompleteTransactionFields(std::string_view text, const qrl::TEncoding& encoding,
                                             const mig::TTextEdits& edits,
                                             const TFindTransactionPlace& findPlace,
                                             const TTransactionRules& rules) {
  TTransactionFields result;
  std::map<size_t, std::string> insertions;  // by offset
  const TTokens tokens = ReadUnitTokens(text, encoding);
  const std::vector<TClassBody> classes =
      findPlace ? TClassReader(tokens, rules.OldClass).Run() : std::vector<TClassBody>();
  for (const TClassBody& body : classes) {
    if (Lists(kNoForms, body.Ancestor) || rtl::SameText(body.Ancestor, rules.OldClass)) continue;
    size_t count = 0;
    for (const TField& field : body.Fields) count += field.Names.size();
    for (const TField& field : body.Fields) {
      const size_t className = tokens[field.ClassName].Offset;
      if (!edits.HasAt(className)) continue;
      for (const std::string_view connection : field.Names) {
        const std::string name = TransactionName(rules, body, connection, count);
        if (const std::string reason = ReasonAgainst(body, connection, name, findPlace); !reason.empty()) {
          result.Refusals.push_back({className, mig::TLevel::Warning, std::string(connection), reason});
          continue;
        }
        result.Names[TransactionKey(body.Name, connection)] = name;
        std::string& lines = insertions[LineEndAfter(text, tokens[field.Semicolon].End(), encoding)];
        lines.append(LineEndOf(text))
            .append(IndentOf(text, tokens[field.First].Offset))
            .append(name)
            .append(": ");
        lines.append(rules.Class).append(";");
      }
    }
  }

  auto insertion = insertions.begin();
  const auto insertBefore = [&](size_t offset) {
    for (; insertion != insertions.end() && insertion->first <= offset; ++insertion)
      result.Edits.Replace(insertion->first, 0, insertion->second);
  };
  for (const mig::TTextEdits::TEdit& edit : edits.Edits()) {
    insertBefore(edit.Position);
    const bool isConnection = rtl::SameText(text.substr(edit.Position, edit.Length), rules.OldClass);
    result.Edits.Replace(edit.Position, edit.Length,
                         isConnection ? std::string(rules.NewClass) : edit.Replacement);
  }
  insertBefore(text.size());
  return result;
}

}  // namespace completion
