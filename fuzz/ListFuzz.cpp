// Takes any bytes as each of the lists that are read from files: undo files, catalogues, patterns. A list
// that was written reads the same again.
#include "cli/PathPattern.h"
#include "fuzz/Require.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "target/Catalogue.h"

namespace {

void CheckLines(std::string_view text) {
  rtl::TStringList list, again;
  list.SetText(text);
  again.SetText(list.Text());
  fuzz::Require(list.Count() == again.Count() && list.Text() == again.Text(),
                "the same lines are read again");
  for (int i = 0; i < list.Count(); ++i) {
    const std::string& line = list[i];
    fuzz::Require(line.find_first_of("\r\n") == std::string::npos, "a line has no line end in it");
    const size_t equals = line.find('=');
    const std::string_view name = std::string_view(line).substr(0, equals == std::string::npos ? 0 : equals);
    fuzz::Require(list.Names(i) == name, "the name is what is before the first \"=\"");
  }
}

// The lines of a run's undo file: a list made by SetValue answers as the pairs that went into it.
void CheckUndoLines(std::string_view text) {
  rtl::TStringList lines, undo;
  lines.SetText(text);
  for (int i = 0; i < lines.Count(); ++i) {
    const std::string name(lines.Names(i));
    if (name.empty()) continue;
    const std::string value = lines[i].substr(name.size() + 1);
    undo.SetValue(name, value);
    fuzz::Require(undo.Values(name) == value, "the value is what was set");
  }
  rtl::TStringList read;
  read.SetText(undo.Text());
  fuzz::Require(read.Count() == undo.Count(), "an undo file has a line for each file");
  for (int i = 0; i < undo.Count(); ++i) {
    fuzz::Require(read.Names(i) == undo.Names(i), "an undo file names the same files");
    fuzz::Require(read.Values(read.Names(i)) == undo.Values(undo.Names(i)),
                  "an undo file names the same backups");
  }
}

void CheckCatalogue(std::string_view text) {
  try {
    const target::TCatalogue catalogue(text, "catalogue");
    fuzz::Require(target::TCatalogue(catalogue.Text(), "catalogue").Text() == catalogue.Text(),
                  "a catalogue is read again as it was written");
  } catch (const target::ECatalogue& error) {
    fuzz::Require(std::string_view(error.what()).find("catalogue") != std::string_view::npos,
                  "an error names where the text comes from");
  }
}

// The first line is a pattern, the second a path.
void CheckPattern(std::string_view text) {
  const size_t end = text.find('\n');
  if (end == std::string_view::npos || end == 0) return;
  const std::string pattern(text.substr(0, end));
  const std::string_view path = text.substr(end + 1);
  const bool fits = cli::TPathPatterns({pattern}).Match(path);
  fuzz::Require(cli::TPathPatterns({"*"}).Match(path), "\"*\" fits every path");
  fuzz::Require(!fits || cli::TPathPatterns({pattern + "*"}).Match(path),
                "what fits goes on fitting with a \"*\"");
  if (pattern.find_first_of("*?[]!") == std::string::npos)
    fuzz::Require(cli::TPathPatterns({pattern}).Match(pattern), "a path without wildcards fits itself");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckLines(text);
  CheckUndoLines(text);
  CheckCatalogue(text);
  CheckPattern(text);
  return 0;
}
