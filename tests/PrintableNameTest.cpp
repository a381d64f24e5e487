// Names on a terminal.
#include <gtest/gtest.h>
#include <utility>

#include "win/Diagnostics.h"

namespace win {
namespace {

TEST(PrintableNameTest, NothingThatATerminalActsOnPassesThrough) {
  const std::pair<const char*, const char*> rows[] = {
      {"Main.pas", "Main.pas"},
      {"\x1B[2J", "\\x1B[2J"},
      {"a\r\nb\tc\x7F", "a\\x0D\\x0Ab\\x09c\\x7F"},
      {"\xC2\x9B"
       "2J",
       "\\xC2\\x9B2J"},  // the eight-bit control sequence introducer
      {"\x9B"
       "2J",
       "\\x9B2J"},                                          // the same in an eight-bit code page
      {"\xE2\x80\xAEsap.niaM", "\\xE2\\x80\\xAEsap.niaM"},  // right to left
      {"\xE2\x81\xA6x", "\\xE2\\x81\\xA6x"},
      {"\xE2\x80\xA8x", "\\xE2\\x80\\xA8x"},  // line separator
      {"\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80", "\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80"},
      {"\xC3\xA4\xE6\x97", "\xC3\xA4\\xE6\\x97"},
      {"\xC0\xAF\xF8", "\\xC0\\xAF\\xF8"},
  };
  for (const auto& [text, printed] : rows) EXPECT_EQ(PrintableName(text), printed);
}

}  // namespace
}  // namespace win
