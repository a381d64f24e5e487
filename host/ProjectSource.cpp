#include "host/ProjectSource.h"

#include <algorithm>
#include <array>
#include <utility>

#include "MigWizard/engine/PasParser.h"
#include "host/HostError.h"
#include "host/ProjectText.h"
#include "rtl/text/Lines.h"
#include "rtl/text/SysUtils.h"

namespace host {

namespace {

bool IsNameByte(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         (c & 0x80) != 0;
}
bool IsName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsNameByte);
}

// Returns the text of a comment in braces or in (* *); empty for other comments.
std::string_view CommentBody(std::string_view comment) {
  const size_t delimiter = comment.starts_with('{') ? 1 : comment.starts_with("(*") ? 2 : 0;
  if (delimiter == 0 || comment.size() < 2 * delimiter) return {};
  return comment.substr(delimiter, comment.size() - 2 * delimiter);
}

std::string Unquoted(std::string_view literal) {
  literal = literal.substr(1, literal.size() - 2);
  std::string result;
  for (size_t i = 0; i < literal.size(); ++i) {
    result += literal[i];
    if (literal[i] == '\'') ++i;  // a doubled quote
  }
  return result;
}

class TClauseReader {
 public:
  TClauseReader(std::string_view text, const qrl::TEncoding& encoding, std::string_view fileName)
      : FEncoding(encoding), FFileName(fileName), FScanner(text, encoding), FLines(text) {}

  std::vector<TSourceUnit> Read() {
    std::string_view lexem;
    while (const int code = FScanner.GetNext(lexem)) {
      if (code == qrl::kWhiteSpace || code == qrl::kNul) continue;
      if (code == qrl::kComment) {
        TakeComment(lexem);
      } else if (FInClause) {
        TakeInClause(code, lexem);
      } else {
        TakeOutside(code, lexem);
      }
    }
    if (!FIsProject) Fail("this is no project: it begins with none of program, library, package, uses.");
    if (FInClause) Fail("the clause of units has no end.");
    return std::move(FUnits);
  }

 private:
  [[noreturn]] void Fail(std::string_view text) {
    throw EHostError(At(FFileName, FLines.LineAt(FScanner.PrevPos()), text));
  }

  void TakeOutside(int code, std::string_view lexem) {
    if (!FIsProject) TakeHeading(code, lexem);
    if (code == mig::kUses || (FIsPackage && rtl::SameText(lexem, "contains"))) {
      FInClause = true;
      FClauseDepth = FDepth;
    }
  }

  void TakeHeading(int code, std::string_view lexem) {
    FIsPackage = rtl::SameText(lexem, "package");
    FIsProject = FIsPackage || code == mig::kUses || rtl::SameText(lexem, "program") ||
                 rtl::SameText(lexem, "library");
    if (!FIsProject) {
      Fail("this is no project: it begins with " + Quoted(ToUtf8(lexem, FEncoding)) +
           ", not with program, library, package or uses.");
    }
  }

  void TakeInClause(int code, std::string_view lexem) {
    if (code == qrl::kString) {
      TakePath(lexem);
    } else if (lexem == "." && !FUnit.UnitName.empty() && FUnit.Path.empty()) {
      FUnit.UnitName += '.';
    } else if (lexem == ",") {
      EndUnit();
    } else if (code == mig::kSemicolon) {
      EndUnit();
      FInClause = false;
      // `uses A, {$IFDEF X} B; {$ELSE} C; {$ENDIF}`: the clause may go on after the $ELSE.
      FSuspendedDepth = FDepth > FClauseDepth ? FDepth : 0;
    } else if (rtl::SameText(lexem, "in") && !FUnit.UnitName.empty() && !FExpectPath) {
      FExpectPath = true;
      FUnit.FormName = FUnit.FormClass = {};  // the form follows the path
    } else if (IsName(lexem)) {
      TakeName(lexem);
    } else if (lexem != "&") {  // "&" turns a reserved word into a name
      Fail(Quoted(ToUtf8(lexem, FEncoding)) + " is not expected in the clause of units.");
    }
  }

  void TakeName(std::string_view lexem) {
    if (!FUnit.UnitName.ends_with('.')) {
      EndUnit();  // the other branch of a directive, without a comma
      FUnit.Line = FLines.LineAt(FScanner.PrevPos());
    }
    FUnit.UnitName += ToUtf8(lexem, FEncoding);
  }

  void TakePath(std::string_view literal) {
    if (FUnit.UnitName.empty() || !FExpectPath) Fail("a file name is not expected here.");
    if (literal.size() < 2 || literal.back() != '\'') Fail("the file name is not closed on its line.");
    if (!FUnit.Path.empty()) FUnits.push_back(FUnit);  // `in {$IFDEF X} 'a' {$ELSE} 'b' {$ENDIF}`
    FUnit.Path = ToUtf8(Unquoted(literal), FEncoding);
  }

  void EndUnit() {
    if (!FUnit.UnitName.empty()) {
      if (FExpectPath && FUnit.Path.empty()) Fail("a file name is expected after \"in\".");
      FUnits.push_back(std::move(FUnit));
    }
    FUnit = {};
    FExpectPath = false;
  }

  void TakeComment(std::string_view comment) {
    const std::string_view body = CommentBody(comment);
    if (body.starts_with('$')) {
      TakeDirective(body.substr(1));
    } else if (FInClause && !FUnit.UnitName.empty() && FUnit.FormName.empty() &&
               FExpectPath != FUnit.Path.empty()) {
      TakeForm(body);
    }
  }

  // The comment is `Form1` or `Form1: TDataModule`; any other comment is ignored.
  void TakeForm(std::string_view body) {
    const size_t colon = std::min(body.find(':'), body.size());
    const std::string_view name = rtl::Trim(body.substr(0, colon));
    const std::string_view formClass = rtl::Trim(body.substr(std::min(colon + 1, body.size())));
    if (!IsName(name) || (colon < body.size() && !IsName(formClass))) return;
    FUnit.FormName = ToUtf8(name, FEncoding);
    FUnit.FormClass = ToUtf8(formClass, FEncoding);
  }

  void TakeDirective(std::string_view directive) {
    const auto end = std::find_if_not(directive.begin(), directive.end(), IsNameByte);
    const std::string word =
        rtl::UpperCase(directive.substr(0, static_cast<size_t>(end - directive.begin())));
    if (word == "IFDEF" || word == "IFNDEF" || word == "IFOPT" || word == "IF") {
      ++FDepth;
    } else if (word == "ELSE" || word == "ELSEIF") {
      if (FSuspendedDepth != 0 && FDepth == FSuspendedDepth) FInClause = true;
    } else if (word == "ENDIF" || word == "IFEND") {
      --FDepth;
      if (FDepth < FSuspendedDepth) FSuspendedDepth = 0;
    }
  }

  const qrl::TEncoding& FEncoding;
  std::string_view FFileName;
  mig::TPasParser FScanner;
  rtl::TLineCounter FLines;
  std::vector<TSourceUnit> FUnits;

  bool FIsProject = false;
  bool FIsPackage = false;
  bool FInClause = false;
  int FDepth = 0;            // of conditional directives
  int FClauseDepth = 0;      // where the clause began
  int FSuspendedDepth = 0;   // of the branch in which the clause ended, if deeper than where it began; else 0
  TSourceUnit FUnit;         // the entry being read; its UnitName is empty between entries
  bool FExpectPath = false;  // after `in`
};

}  // namespace

std::vector<TSourceUnit> ReadProjectSource(std::string_view text, const qrl::TEncoding& encoding,
                                           std::string_view fileName) {
  return TClauseReader(text, encoding, fileName).Read();
}

}  // namespace host
