#include "completion/UnitTokens.h"

#include <algorithm>

#include "MigWizard/engine/PasParser.h"
#include "rtl/text/SysUtils.h"

namespace completion {
namespace {

// Returns how a comment changes the depth of conditional directives: 1, -1 or 0.
int ConditionalStep(std::string_view comment) {
  const auto begins = [&](std::string_view prefix) {
    return rtl::SameText(comment.substr(0, prefix.size()), prefix);
  };
  if (begins("{$IFEND") || begins("{$ENDIF") || begins("(*$IFEND") || begins("(*$ENDIF")) return -1;
  if (begins("{$IF") || begins("(*$IF")) return 1;
  return 0;
}

}  // namespace

bool TUnitToken::Is(std::string_view word) const {
  return Lexem.size() == word.size() && Code != qrl::kString && rtl::SameText(Lexem, word);
}

std::vector<TUnitToken> ReadUnitTokens(std::string_view text, const qrl::TEncoding& encoding) {
  std::vector<TUnitToken> tokens;
  mig::TPasParser scanner(text, encoding);
  std::string_view lexem;
  int depth = 0;
  while (const int code = scanner.GetNext(lexem)) {
    if (code == qrl::kComment) {
      depth = std::max(0, depth + ConditionalStep(lexem));
    } else if (code != qrl::kWhiteSpace) {
      tokens.push_back({code, lexem, scanner.PrevPos(), depth > 0});
    }
  }
  return tokens;
}

std::string_view LineEndOf(std::string_view text) {
  const size_t end = text.find('\n');
  if (end == std::string_view::npos) return text.find('\r') == end ? "\r\n" : "\r";
  const size_t last = end == 0 ? std::string_view::npos : text.find_last_not_of('\r', end - 1);
  const size_t start = last == std::string_view::npos ? 0 : last + 1;
  return end - start > 2 ? "\r\n" : text.substr(start, end + 1 - start);
}

}  // namespace completion
