// Takes any bytes as a project and as a project group of each kind. They are refused, with the file's name,
// or give references with names and lines.
#include <algorithm>
#include <vector>

#include "fuzz/Require.h"
#include "host/HostError.h"
#include "host/MakeGroup.h"
#include "host/ProjectSource.h"
#include "host/ProjectXml.h"

namespace {

constexpr char kFileName[] = "C:\\App\\App.dproj";

void CheckReferences(const std::vector<host::TFileReference>& references, std::string_view text) {
  const auto lines =
      1 + std::count(text.begin(), text.end(), '\n') + std::count(text.begin(), text.end(), '\r');
  for (const host::TFileReference& reference : references) {
    fuzz::Require(!reference.Name.empty(), "a reference has a name");
    fuzz::Require(reference.Line >= 0 && reference.Line <= lines, "a reference has a line of the text");
  }
}

template <typename TRead>
void CheckList(std::string_view text, TRead read) {
  try {
    CheckReferences(read(text, kFileName), text);
  } catch (const host::EHostError& error) {
    fuzz::Require(std::string_view(error.what()).find(kFileName) != std::string_view::npos,
                  "an error names the file");
  }
}

void CheckSource(std::string_view text) {
  for (const qrl::TEncoding* encoding : {&qrl::TEncoding::Default(), &qrl::TEncoding::UTF8()}) {
    try {
      for (const host::TSourceUnit& unit : host::ReadProjectSource(text, *encoding, kFileName)) {
        fuzz::Require(!unit.UnitName.empty(), "a unit has a name");
        fuzz::Require(unit.Line >= 1, "a unit has a line");
      }
    } catch (const host::EHostError&) {
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  CheckList(text, host::ReadBpg);
  CheckList(text, host::ReadGroupproj);
  CheckList(text, host::ReadBdsgroup);
  CheckList(text,
            [](std::string_view xml, std::string_view name) { return host::ReadDproj(xml, name).Units; });
  CheckList(text,
            [](std::string_view xml, std::string_view name) { return host::ReadBdsproj(xml, name).Units; });
  CheckSource(text);
  return 0;
}
