// Writes trees of units and forms in every encoding and with every kind of line ends.
#pragma once

#include <string>

#include "MigWizard/passes/FormFile.h"
#include "bench/FormText.h"
#include "bench/UnitText.h"
#include "tests/TempTree.h"

namespace tests {

// Writes 48 units and their forms below `folder`, half of which change. "~" in the texts is a letter of the
// encoding.
inline void WriteGeneratedTree(const TTempTree& tree, const std::string& folder, uint64_t seed, bool isIbx) {
  enum TEncoding { Cp1252, Cp1251, Utf8, MarkedUtf8, LittleUtf16, BigUtf16, Binary, Count };
  const auto encoded = [](const std::string& text, int encoding) {
    std::string bytes;
    if (encoding == MarkedUtf8) bytes = "\xEF\xBB\xBF";
    if (encoding == LittleUtf16) bytes = "\xFF\xFE";
    if (encoding == BigUtf16) bytes = "\xFE\xFF";
    for (const char c : text) {
      const bool isLetter = c == '~';
      if (encoding == LittleUtf16 || encoding == BigUtf16) {
        const char low = isLetter ? '\x36' : c, high = isLetter ? '\x04' : '\0';
        bytes.append({encoding == BigUtf16 ? high : low, encoding == BigUtf16 ? low : high});
      } else if (isLetter) {
        bytes += encoding == Cp1251                           ? "\xC6"
                 : encoding == Utf8 || encoding == MarkedUtf8 ? "\xD0\xB6"
                                                              : "\xE4";
      } else {
        bytes += c;
      }
    }
    return bytes;
  };
  const auto withLineEnds = [](const std::string& text, size_t kind) {
    static constexpr const char* kEnds[] = {"\r\n", "\n", "\r\r\n"};
    std::string result;
    size_t line = 0;
    for (const char c : text) {
      if (c == '\n') result += kEnds[kind < 3 ? kind : line++ % 3];
      if (c != '\n' && c != '\r') result += c;
    }
    return result;
  };
  const auto withLine = [](std::string text, const std::string& line) {
    return text.insert(text.find('\n') + 1, line);
  };
  for (size_t i = 0; i < 48; ++i) {
    bench::TRandom random(seed * 1000 + i);
    const std::string name = "U" + std::to_string(i);
    const int encoding = static_cast<int>(i) % Count;
    const std::string unit = bench::MakeUnitText(random, {name, 2000, i % 2 == 0, /*Form=*/true, isIbx});
    const std::string form =
        bench::MakeFormText(random, {name, 3000, i % 2 == 0 ? 4u : 0u, bench::TFormShape::Mixed, isIbx});
    const std::string path = folder + "/" + (i % 3 == 0 ? "Sub ~/" : "") + name;
    tree.Write(path + ".pas", encoded(withLineEnds(withLine(unit, "{ ~ }\r\n"), i / 7 % 4), encoding));
    const std::string text = encoded(withLineEnds(withLine(form, "  Hint = '~'\r\n"), i / 7 % 4), encoding);
    if (encoding == Binary) {
      rtl::TMemoryStream file;
      mig::TFormFile binary;
      binary.IsBinary = true;
      mig::WriteFormFile(file, text, binary);
      tree.Write(path + ".dfm", file.TakeBytes());
    } else {
      tree.Write(path + ".dfm", text);
    }
  }
}

}  // namespace tests
