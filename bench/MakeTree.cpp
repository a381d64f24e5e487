// kva_maketree: generates trees of units and forms. The same arguments give the same bytes on every
// machine.
//
//   kva_maketree DIR [--seed N] [--units N] [--forms N] [--changing P] [--dense] [--utf16 P] [--ibx]
//                [--list FILE]
//     DIR/Mod01/Sub2/Unit00123.pas and its .dfm beside it, 2 to 60 KB each. P percent of the units (50)
//     change, and of those the forms too; P percent of the files (0) are in UTF-16. FILE receives the names
//     of the changing files below DIR, one per line. With --dense the files are as in database applications:
//     10 to 60 KB, 20 folders, and a form that changes has a component to convert on every 1,500 bytes.
//   kva_maketree DIR --form BYTES [--objects N] [--lists] [--seed N] [--utf16 P] [--ibx] [--list FILE]
//     DIR/Big.pas and DIR/Big.dfm, the form of BYTES bytes with N objects to convert; with --lists most of
//     it is in SQL lists. The unit itself does not change.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "FormText.h"
#include "UnitText.h"

namespace bench {
namespace {

struct TArguments {
  std::filesystem::path Dir;
  std::filesystem::path List;
  uint64_t Seed = 1;
  size_t Units = 100;
  size_t Forms = 100;
  size_t Changing = 50;
  size_t Utf16 = 0;
  size_t FormBytes = 0;  // if not 0, only one form is generated
  size_t Objects = 1;
  bool Dense = false;
  bool Lists = false;
  bool Ibx = false;
};

TArguments Read(int argc, char** argv) {
  TArguments result;
  int at = 1;
  const auto text = [&]() -> std::string {
    if (at >= argc) throw std::invalid_argument("a value is missing at the end");
    return argv[at++];
  };
  const auto number = [&] { return static_cast<size_t>(std::stoull(text())); };
  while (at < argc) {
    const std::string_view name = argv[at++];
    if (name == "--seed") {
      result.Seed = number();
    } else if (name == "--units") {
      result.Units = number();
    } else if (name == "--forms") {
      result.Forms = number();
    } else if (name == "--changing") {
      result.Changing = number();
    } else if (name == "--utf16") {
      result.Utf16 = number();
    } else if (name == "--form") {
      result.FormBytes = number();
    } else if (name == "--objects") {
      result.Objects = number();
    } else if (name == "--list") {
      result.List = text();
    } else if (name == "--dense") {
      result.Dense = true;
    } else if (name == "--lists") {
      result.Lists = true;
    } else if (name == "--ibx") {
      result.Ibx = true;
    } else if (name.starts_with("-") || !result.Dir.empty()) {
      throw std::invalid_argument("not understood: " + std::string(name));
    } else {
      result.Dir = name;
    }
  }
  if (result.Dir.empty()) throw std::invalid_argument("the folder is missing");
  return result;
}

// Returns a random file size. Most files are small: 2, 4, 8, 16 or 32 KB plus up to as much again, at most
// 60 KB.
size_t FileSize(TRandom& random, bool dense) {
  if (dense) return 1024 * random.Between(10, random.Between(20, 60));
  const size_t base = size_t{2048} << std::min(random.Below(5), random.Below(5));
  return std::min<size_t>(base + random.Below(base), size_t{60} * 1024);
}

// Converts text to UTF-16. The generated text is ASCII, so every byte is a unit.
std::string Utf16(std::string_view text) {
  std::string bytes = "\xFF\xFE";
  bytes.reserve(2 + 2 * text.size());
  for (const char c : text) bytes.append({c, '\0'});
  return bytes;
}

class TTree {
 public:
  explicit TTree(const TArguments& arguments) : FArguments(arguments) {
    if (!arguments.List.empty()) FList.open(arguments.List, std::ios::binary | std::ios::trunc);
  }

  void Units() {
    for (size_t i = 0; i < std::max(FArguments.Units, FArguments.Forms); ++i) Unit(i);
  }

  void OneForm() {
    TRandom random(FArguments.Seed);
    Save("Big.pas", MakeUnitText(random, {"Big", 2048, false, true, FArguments.Ibx}), random, false);
    const TFormShape shape = FArguments.Lists ? TFormShape::Lists : TFormShape::Mixed;
    Save("Big.dfm",
         MakeFormText(random, {"Big", FArguments.FormBytes, FArguments.Objects, shape, FArguments.Ibx}),
         random, FArguments.Objects > 0);
  }

  void Finish() {
    if (FList.is_open() && !FList.flush()) throw std::runtime_error("cannot write the list");
  }

 private:
  // Each unit has its own seed, so that the file does not depend on the number of units.
  void Unit(size_t index) {
    TRandom random(FArguments.Seed ^ (0x9E3779B97F4A7C15u * (index + 1)));
    char name[32];
    std::snprintf(name, sizeof name, "Unit%05zu", index);
    std::string folder = "Mod" + std::to_string(random.Between(10, 29)) + "/";
    if (!FArguments.Dense) folder += "Sub" + std::to_string(random.Between(1, 5)) + "/";
    const bool changing = random.Percent(FArguments.Changing);
    const bool form = index < FArguments.Forms;
    if (index < FArguments.Units) {
      const std::string text =
          MakeUnitText(random, {name, FileSize(random, FArguments.Dense), changing, form, FArguments.Ibx});
      Save(folder + name + ".pas", text, random, changing);
    }
    if (form) {
      const size_t bytes = FileSize(random, FArguments.Dense);
      const size_t some =
          FArguments.Dense ? bytes / 1500 : 1 + std::min(random.Below(1 + bytes / 1500), size_t{12});
      const size_t objects = changing ? some : 0;
      const std::string text =
          MakeFormText(random, {name, bytes, objects, TFormShape::Mixed, FArguments.Ibx});
      Save(folder + name + ".dfm", text, random, changing);
    }
  }

  void Save(const std::string& name, const std::string& text, TRandom& random, bool changing) {
    const std::filesystem::path path = FArguments.Dir / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    const std::string bytes = random.Percent(FArguments.Utf16) ? Utf16(text) : text;
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
      throw std::runtime_error("cannot write " + path.string());
    }
    if (changing && FList.is_open()) FList << name << '\n';
  }

  const TArguments& FArguments;
  std::ofstream FList;
};

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  try {
    const bench::TArguments arguments = bench::Read(argc, argv);
    bench::TTree tree(arguments);
    if (arguments.FormBytes > 0) {
      tree.OneForm();
    } else {
      tree.Units();
    }
    tree.Finish();
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "kva_maketree: %s\n", e.what());
    return 2;
  }
}
