// Takes any bytes as the store of settings, which is a file that anybody can edit. A setting reads as it was
// written, and the others stay.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "fuzz/Require.h"
#include "rtl/text/Registry.h"

namespace {

constexpr char kRootKey[] = "Software\\Fuzz";

struct TStore {
  TStore() : Folder(std::filesystem::temp_directory_path() / ("kvafuzz" + std::to_string(getpid()))) {
    std::filesystem::create_directories(Folder);
    setenv("XDG_CONFIG_HOME", Folder.c_str(), 1);
    Name = (Folder / "Fuzz" / "registry.ini").string();
    std::filesystem::create_directories(Folder / "Fuzz");
  }
  ~TStore() { std::filesystem::remove_all(Folder); }
  std::filesystem::path Folder;
  std::string Name;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const TStore store;
  std::string value(reinterpret_cast<const char*>(data), size);
  std::ofstream(store.Name, std::ios::binary | std::ios::trunc) << value;

  rtl::TRegIniFile settings(kRootKey, rtl::KEY_READ_WRITE);
  const std::string other = settings.ReadString("Section", "Other", "none");
  const int32_t number = settings.ReadInteger("Section", "Number", 7);
  settings.WriteString("Section", "Key", value);
  settings.WriteInteger("Section", "Own", -42);
  settings.WriteBool("Section", "Flag", true);

  const rtl::TRegIniFile again(kRootKey, rtl::KEY_READ_WRITE);
  fuzz::Require(again.ReadString("Section", "Key", "none") == value, "a text is read as it was written");
  fuzz::Require(again.ReadInteger("section", "OWN", 0) == -42, "a number is read as it was written");
  fuzz::Require(again.ReadBool("Section", "Flag", false), "a Boolean is read as it was written");
  fuzz::Require(again.ReadString("Section", "Other", "none") == other, "the other settings stay");
  fuzz::Require(again.ReadInteger("Section", "Number", 7) == number, "the other numbers stay");
  return 0;
}
