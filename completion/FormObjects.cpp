#include "completion/FormObjects.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <unordered_set>

#include "MigWizard/engine/PasParser.h"
#include "MigWizard/passes/FormPass.h"
#include "completion/UnitTokens.h"
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

// Returns False if the tokens from `at` on are no header with a name.
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

// Returns the index of the `end` of the object whose keyword is at `at`, or the count of the tokens. An `end`
// counts where the grammar of forms has one: it is no name of a property and no part of one.
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
  TInheritedPass(mig::TFormToComplete& form, mig::TFormParser& parser)
      : FForm(form), FText(form.Text), FParser(parser), FTokens(ReadUnitTokens(form.Text, form.Encoding)) {}

  // Returns the edits of the conversion, each completed with the objects inside it, and those for the objects
  // outside of them.
  std::vector<mig::TFormEdit> Run() {
    std::vector<mig::TFormEdit> edits;
    size_t token = 0;
    for (mig::TFormEdit& edit : FForm.Edits) {
      if (edit.Level < 0) continue;
      const size_t begin = TokenAt(edit.Begin);
      if (begin < token) continue;  // in an object that was taken
      token = Collect(token, begin, FTokens.size(), edits);
      if (begin < token) continue;
      token = TokenAt(edit.End);
      Collect(begin + 1, token, token, edit.Nested);
    }
    Collect(token, FTokens.size(), FTokens.size(), edits);
    return edits;
  }

 private:
  // Returns the index of the first token that does not begin before `offset`.
  size_t TokenAt(size_t offset) const {
    const auto place = std::lower_bound(FTokens.begin(), FTokens.end(), offset,
                                        [](const TUnitToken& token, size_t at) { return token.Offset < at; });
    return static_cast<size_t>(place - FTokens.begin());
  }

  // Converts the outermost objects of mapped classes that begin with the tokens from `first` to before `end`
  // and end before `limit`. Returns the index after the last token of the last one, or `first`.
  size_t Collect(size_t first, size_t end, size_t limit, std::vector<mig::TFormEdit>& edits) {
    size_t done = first;
    for (size_t i = first; i < end; ++i) {
      THeader header;
      if (!ReadHeader(FTokens, i, header)) continue;
      const std::string* const newClass = FForm.Classes.Find(FTokens[header.Class].Lexem);
      if (newClass != nullptr && FForm.LeavesOut && FForm.LeavesOut(FTokens[i].Offset)) {
        i = FindEnd(FTokens, i);
        continue;
      }
      if (newClass == nullptr) continue;
      const size_t last = FindEnd(FTokens, i);
      mig::TFormEdit edit;
      if (last >= limit || !Convert(header, last, *newClass, edit)) {
        FForm.Unread.push_back(FTokens[i].Offset);
        continue;
      }
      Collect(i + 1, last, last, edit.Nested);
      edits.push_back(std::move(edit));
      i = last;
      done = last + 1;
    }
    return done;
  }

  // Converts the object with the keyword `object` and without its index, because the parser accepts only
  // that.
  bool Convert(const THeader& header, size_t end, const std::string& newClass, mig::TFormEdit& edit) {
    const std::string_view oldClass = FTokens[header.Class].Lexem;
    const size_t bodyStart = FTokens[header.Last].End();
    std::string block =
        std::string("object ").append(FTokens[header.Name].Lexem).append(": ").append(oldClass);
    const size_t headerSize = block.size();
    block.append(FText.substr(bodyStart, FTokens[end].End() - bodyStart));
    const bool hasIndices = BlankIndices(header.Last + 1, end, block, bodyStart - headerSize);
    int64_t position = 1;
    FParser.SetNewType(newClass);
    if (!FParser.Parse(block, "<object>", position) || static_cast<size_t>(position) != block.size() + 1)
      return false;
    std::string printed;
    FParser.PrintObject(0, printed);
    if (hasIndices) RestoreNested(block, bodyStart - headerSize, printed);
    const size_t begin = FTokens[header.Keyword].Offset;
    if (FForm.Conversions != nullptr) {
      mig::TObjectConversion conversion = mig::ConversionOf(FParser, begin, oldClass, newClass);
      MoveViews(conversion, block, headerSize, bodyStart);
      AddConversion(std::move(conversion));
    }
    const size_t headerEnd = printed.find('\r');
    std::string text = std::string(FTokens[header.Keyword].Lexem).append(printed.substr(6, headerEnd - 6));
    const size_t classEnd = FTokens[header.Class].End();
    if (header.HasIndex) text.append(FText.substr(classEnd, bodyStart - classEnd));
    edit = {begin, FTokens[end].End(), text.append(printed.substr(headerEnd)), 0, true, {}, begin};
    return true;
  }

  // Overwrites the indices of the objects between the tokens `first` and `end` by blanks, because the parser
  // accepts no index. The text at an offset of `block` is `shift` bytes further in the form. Returns False if
  // there is none.
  bool BlankIndices(size_t first, size_t end, std::string& block, size_t shift) const {
    bool isChanged = false;
    for (size_t i = first; i < end; ++i) {
      THeader header;
      if (!ReadHeader(FTokens, i, header) || !header.HasIndex) continue;
      const size_t begin = FTokens[header.Class].End();
      std::fill_n(block.begin() + static_cast<std::ptrdiff_t>(begin - shift),
                  FTokens[header.Last].End() - begin, ' ');
      isChanged = true;
    }
    return isChanged;
  }

  // Puts the form's text back into the nested objects of `printed`, which are views of `block`. They are its
  // last lines but one, and as long as in the form.
  void RestoreNested(const std::string& block, size_t shift, std::string& printed) const {
    size_t at = printed.size() - std::string_view("end\r\n").size();
    const std::vector<std::string_view>& objects = FParser.NestedObjects();
    for (auto object = objects.rbegin(); object != objects.rend(); ++object) {
      at -= object->size() + std::string_view("\r\n").size();
      printed.replace(
          at, object->size(),
          FText.substr(static_cast<size_t>(object->data() - block.data()) + shift, object->size()));
    }
  }

  // Makes views of the block views of the form's text: the body of the block, from `headerSize` on, is there
  // from `bodyStart` on.
  void MoveViews(mig::TObjectConversion& conversion, const std::string& block, size_t headerSize,
                 size_t bodyStart) const {
    const auto move = [&](std::string_view& view) {
      const std::less<> isBefore;
      if (isBefore(view.data(), block.data()) || isBefore(block.data() + block.size(), view.data())) return;
      view =
          FText.substr(bodyStart + static_cast<size_t>(view.data() - block.data()) - headerSize, view.size());
    };
    for (mig::TSourceProperty& property : conversion.Properties) {
      move(property.Name);
      move(property.Value);
    }
    for (std::string_view& name : conversion.NewNames) move(name);
  }

  // Conversions are in the order of the text, one an object.
  void AddConversion(mig::TObjectConversion conversion) {
    std::vector<mig::TObjectConversion>& conversions = *FForm.Conversions;
    const auto place =
        std::lower_bound(conversions.begin(), conversions.end(), conversion.Start,
                         [](const mig::TObjectConversion& each, size_t start) { return each.Start < start; });
    if (place != conversions.end() && place->Start == conversion.Start) {
      *place = std::move(conversion);
    } else {
      conversions.insert(place, std::move(conversion));
    }
  }

  mig::TFormToComplete& FForm;
  const std::string_view FText;
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

// Returns the edit of the object whose keyword is at `offset`, which may be in other objects, or null.
mig::TFormEdit* FindObjectEdit(std::vector<mig::TFormEdit>& edits, size_t offset) {
  for (mig::TFormEdit& edit : edits) {
    if (edit.Level < 0 || offset < edit.Begin || offset >= edit.End) continue;
    return edit.Begin == offset ? &edit : FindObjectEdit(edit.Nested, offset);
  }
  return nullptr;
}

std::string PrintTransaction(const TTransactionRules& rules, std::string_view name,
                             std::string_view connection, const mig::TFormEdit& edit) {
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

void ConvertInherited(mig::TFormToComplete& form, mig::TFormParser& parser) {
  const std::vector<mig::TFormEdit> added = TInheritedPass(form, parser).Run();
  std::vector<mig::TFormEdit> merged;
  auto object = added.begin();
  for (mig::TFormEdit& edit : form.Edits) {
    while (object != added.end() && object->End <= edit.Begin) merged.push_back(*object++);
    if (object == added.end() || edit.Begin < object->Begin) merged.push_back(std::move(edit));
  }
  merged.insert(merged.end(), object, added.end());
  form.Edits = std::move(merged);
}

TFormConnections FindConnections(mig::TFormToComplete& form, const TTransactionRules& rules) {
  TFormConnections found;
  const TTokens tokens = ReadUnitTokens(form.Text, form.Encoding);
  size_t frameEnd = 0;  // index of the token that ends the frame that was met last
  for (size_t i = 0; i < tokens.size(); ++i) {
    THeader header;
    if (!ReadHeader(tokens, i, header)) continue;
    const std::string name = rtl::LowerCase(tokens[header.Name].Lexem);
    if (found.Class.empty()) found.Class = rtl::LowerCase(tokens[header.Class].Lexem);
    // The objects of a frame have their names in the frame.
    if (i > frameEnd || tokens[i].Code != mig::kInherited) found.Names.insert(name);
    if (i > frameEnd && tokens[i].Code == mig::kInline) frameEnd = FindEnd(tokens, i);
    if (tokens[i].Code == mig::kObject && tokens[header.Class].Is(rules.OldClass) &&
        FindObjectEdit(form.Edits, tokens[i].Offset) != nullptr)
      found.Connections[name] = {tokens[i].Offset, tokens[header.Name].Lexem};
  }
  return found;
}

void AddTransactions(mig::TFormToComplete& form, const TTransactionNames& names,
                     const TTransactionRules& rules) {
  if (names.empty()) return;
  const TFormConnections found = FindConnections(form, rules);
  for (const auto& [key, connection] : found.Connections) {
    const auto name = names.find(TransactionKey(found.Class, key));
    if (name == names.end() || found.Names.contains(rtl::LowerCase(name->second))) continue;
    mig::TFormEdit* const edit = FindObjectEdit(form.Edits, connection.Offset);
    edit->Text += PrintTransaction(rules, name->second, connection.Name, *edit);
  }
}

}  // namespace completion
