#include "MigWizard/passes/FormPass.h"

#include <algorithm>
#include <limits>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "MigWizard/engine/PasParser.h"
#include "MigWizard/passes/ComponentNames.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

class TFormPass {
 public:
  TFormPass(std::string_view text, const qrl::TEncoding& encoding, const TClassMap& classes,
            TFormParser& parser, rtl::TMemoryStream& output, std::vector<TObjectConversion>* conversions,
            std::vector<TFormEdit>* edits, const std::function<bool(size_t)>& leavesOut,
            TFormOutline* outline)
      : FText(text),
        FEncoding(encoding),
        FClasses(classes),
        FParser(parser),
        FOutput(output),
        FConversions(conversions),
        FEdits(edits),
        FLeavesOut(leavesOut),
        FOutline(outline),
        FScanner(text, encoding) {}

  int Run() {
    while (const int code = FScanner.GetNextWord(FLexem)) {
      if (FOutline != nullptr && code > 0) AddToOutline(code);
      switch (code) {
        case kObject:
          FObject.ExpectName = true;
          FStart = FScanner.PrevPos();
          ++FLevel;
          break;
        case kInherited:
        case kInline:
        case kItem:
          ++FLevel;
          break;
        case kEnd:
          if (--FLevel < FLeftOutLevel) FLeftOutLevel = kNoLevel;
          break;
        case qrl::kIdentifier:
          ProcessIdentifier();
          break;
        default:
          break;
      }
    }
    if (FChanges > 0) CopyUpTo(FText.size());
    return FChanges;
  }

 private:
  void AddToOutline(int keyword) {
    if (keyword == kInherited || keyword == kInline || (keyword == kObject && FOutline->TakesAll())) {
      FOutline->OpenObject(FText, FEncoding, FLexem, keyword == kObject);
    } else if (keyword == kItem) {
      FOutline->OpenItem(FText, FLexem);
    } else if (keyword == kEnd) {
      FOutline->Close(FText, FLexem);
    }
  }

  // Adds the current object to an outline of certain classes if its name or its class, which is the current
  // token, is one of them. An object without a name has its class there.
  void AddReported() {
    constexpr size_t kKeywordSize = 6;
    if (FOutline != nullptr && !FOutline->TakesAll() && FOutline->Takes(FLexem))
      FOutline->OpenObject(FText, FEncoding, FText.substr(FStart, kKeywordSize), true);
  }

  void ProcessIdentifier() {
    if (FObject.ExpectName || FObject.ExpectClass) AddReported();
    if (FObject.ExpectName) {
      FObject.Name = FLexem;
      FObject.ExpectName = false;
      FObject.ExpectClass = true;
    } else if (FObject.ExpectClass) {
      FObject.ClassName = FLexem;
      FObject.ExpectClass = false;
      if (const std::string* newClass = FClasses.Find(FLexem)) ConvertObject(*newClass);
    }
  }

  void ConvertObject(const std::string& newClass) {
    auto position = static_cast<int64_t>(FStart) + 1;
    const bool isParsed = ParseObject(newClass, position);
    if (FLevel > FLeftOutLevel || (FLeavesOut && FLeavesOut(FStart))) {
      if (FConversions != nullptr)
        FConversions->push_back({FStart, false, true, FLexem, &newClass, {}, {}, 0, {}});
      if (isParsed) {
        SkipObject(position);
      } else {
        FLeftOutLevel = std::min(FLeftOutLevel, FLevel);
      }
      return;
    }
    if (!isParsed) {
      if (FConversions != nullptr)
        FConversions->push_back({FStart, false, false, FLexem, &newClass, {}, {}, 0, {}});
      FFailed.push_back({FScanner.PrevPos(), FLexem.size(), &newClass});
      if (FEdits != nullptr)
        FEdits->push_back(
            {FScanner.PrevPos(), FScanner.PrevPos() + FLexem.size(), newClass, -1, false, {}, FStart});
      return;
    }
    if (FChanges++ == 0) FOutput.Reserve(FText.size() + FText.size() / 8);
    // The object's header up to its class is already in the output; the printed object overwrites it from its
    // keyword on. The rest of the header remains until later text overwrites it.
    CopyUpTo(FStart);
    const int64_t mark = FOutput.Position();
    CopyUpTo(FScanner.PrevPos());
    FOutput.SetPosition(mark);
    FParser.PrintObject(FLevel, FPrinted);
    if (FConversions != nullptr) {
      TObjectConversion& conversion =
          FConversions->emplace_back(ConversionOf(FParser, FStart, FLexem, newClass));
      conversion.End = static_cast<size_t>(position) - 1;
      if (!FParser.NestedObjects().empty()) {
        const auto nested = static_cast<size_t>(FParser.NestedObjects().front().data() - FText.data());
        conversion.Nested = FText.substr(nested, conversion.End - nested);
      }
    }
    if (FEdits != nullptr)
      FEdits->push_back({FStart, static_cast<size_t>(position) - 1, FPrinted, FLevel, false, {}, FStart});
    Write(FPrinted);
    FCopied = static_cast<size_t>(position) - 1;
    SkipObject(position);
  }

  // Continues after the object that was parsed up to `position`.
  void SkipObject(int64_t position) {
    FScanner.SetPosition(static_cast<size_t>(position) - 1);
    --FLevel;
    if (FOutline != nullptr) FOutline->CloseSkipped(FStart);
  }

  // Does not parse again an object that could not be parsed as part of the enclosing one. Otherwise a chain
  // of objects without their ends would take quadratic time.
  bool ParseObject(const std::string& newClass, int64_t& position) {
    if (FUnparsable.contains(static_cast<int32_t>(position))) return false;
    FParser.SetNewType(newClass);
    if (FParser.Parse(FText, "<object>", position)) return true;
    FUnparsable.insert(FParser.FailedObjects().begin(), FParser.FailedObjects().end());
    return false;
  }

  // Copies the text from where the last copy ended, with the new classes of objects that could not be parsed.
  void CopyUpTo(size_t end) {
    for (; FNextFailed < FFailed.size() && FFailed[FNextFailed].Position < end; ++FNextFailed) {
      const TFailedClass& failed = FFailed[FNextFailed];
      Write(FText.substr(FCopied, failed.Position - FCopied));
      Write(*failed.NewClass);
      FCopied = failed.Position + failed.Length;
    }
    Write(FText.substr(FCopied, end - FCopied));
    FCopied = end;
  }

  void Write(std::string_view text) {
    if (FEncoding.IsIdentity()) {
      FOutput.Write(text);
    } else {
      FOutput.Write(FEncoding.GetBytes(text));
    }
  }

  struct TFailedClass {
    size_t Position, Length;
    const std::string* NewClass;
  };

  static constexpr int kNoLevel = std::numeric_limits<int>::max();

  const std::string_view FText;
  const qrl::TEncoding& FEncoding;
  const TClassMap& FClasses;
  TFormParser& FParser;
  rtl::TMemoryStream& FOutput;
  std::vector<TObjectConversion>* const FConversions;
  std::vector<TFormEdit>* const FEdits;
  const std::function<bool(size_t)>& FLeavesOut;  // may be empty
  TFormOutline* const FOutline;
  TPasParser FScanner;
  std::string_view FLexem;
  std::string FPrinted;
  TFormObject FObject;
  int FChanges = 0;
  int FLevel = -1;                          // of the object being read; the root object has level 0
  int FLeftOutLevel = kNoLevel;             // of an open object that is left out with all objects in it
  size_t FStart = 0;                        // start of the last keyword `object`
  size_t FCopied = 0;                       // the text before it is in the output, or was replaced there
  std::vector<TFailedClass> FFailed;        // in the order of the text
  std::unordered_set<int32_t> FUnparsable;  // positions, counted from 1, where no object can be parsed
  size_t FNextFailed = 0;                   // the first one not yet in the output
};

}  // namespace

int ConvertForm(std::string_view text, const qrl::TEncoding& encoding, const TClassMap& classes,
                TFormParser& parser, rtl::TMemoryStream& output, std::vector<TObjectConversion>* conversions,
                std::vector<TFormEdit>* edits, const std::function<bool(size_t)>& leavesOut,
                TFormOutline* outline) {
  return TFormPass(text, encoding, classes, parser, output, conversions, edits, leavesOut, outline).Run();
}

TObjectConversion ConversionOf(const TFormParser& parser, size_t start, std::string_view oldClass,
                               const std::string& newClass) {
  TObjectConversion conversion{start, true, false, oldClass, &newClass, parser.Sources(), {}, 0, {}};
  const auto rootOf = [](std::string_view name) { return name.substr(0, name.find('.')); };
  for (const TFormProperty& property : parser.Properties()) {
    const std::string_view root = rootOf(property.Name());
    const auto isAsked = [&](const TSourceProperty& source) {
      return source.EntryCount == 0 && rtl::SameText(rootOf(source.Name), root);
    };
    if (rtl::SameText(root, "MasterSource") ||
        std::any_of(conversion.Properties.begin(), conversion.Properties.end(), isAsked))
      conversion.NewNames.push_back(property.Name());
  }
  return conversion;
}

void FindDatabaseNames(std::string_view text, const qrl::TEncoding& encoding, bool takesInherited,
                       const std::function<void(const TDeclaredDatabase&)>& found) {
  TPasParser scanner(text, encoding);
  scanner.SetQuotedStrings(false);
  TFormObject object, inherited;         // the last objects under `object` and under another keyword
  std::string_view rootName, firstName;  // of the first object under `object`, and of the first one at all
  std::string_view lexem;
  const auto name = [](TFormObject& each, std::string_view identifier) {
    if (each.ExpectName) {
      each.Name = identifier;
    } else if (each.ExpectClass) {
      each.ClassName = identifier;
    }
    each.ExpectClass = std::exchange(each.ExpectName, false);
  };
  const auto declare = [&](const TFormObject& each, std::string_view root, bool isInherited) {
    const std::string component = std::string(root).append(".").append(each.Name);
    found({lexem, NameForRun(component, encoding), isInherited});
  };
  while (const int code = scanner.GetNext(lexem)) {
    switch (code) {
      case kObject:
        object.ExpectName = true;
        inherited = {};
        break;
      case kInherited:
      case kInline:
        inherited = {};
        inherited.ExpectName = true;
        break;
      case qrl::kIdentifier:
        if (object.ExpectName && rootName.empty()) rootName = lexem;
        if ((object.ExpectName || inherited.ExpectName) && firstName.empty()) firstName = lexem;
        name(object, lexem);
        name(inherited, lexem);
        object.LastIdent = lexem;
        break;
      case qrl::kString:
        if (object.LastIdent != "DatabaseName") break;
        if (object.ClassName == "TDatabase") {
          declare(object, takesInherited ? firstName : rootName, false);
        } else if (inherited.ClassName == "TDatabase") {
          declare(inherited, firstName, true);
        }
        break;
      case kEnd:
        object.Name = {};
        object.ClassName = {};
        inherited = {};
        break;
      default:
        break;
    }
  }
}

}  // namespace mig
