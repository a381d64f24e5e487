// The settings in the registry: HKEY_CURRENT_USER, root key, section; each value as text.
#include "rtl/text/SettingsStore.h"

#include "win/windows/WindowsApi.h"
#include "win/windows/WindowsText.h"

namespace rtl {

namespace {

class TRegistryStore : public ISettingsStore {
 public:
  explicit TRegistryStore(std::string_view rootKey) : FRootKey(win::ToWideOrReplaced(rootKey)) {}

  std::optional<std::string> Read(std::string_view section, std::string_view key) const override {
    const std::wstring path = KeyOf(section), name = win::ToWideOrReplaced(key);
    const auto get = [&](DWORD types, void* data, DWORD& size) {
      return RegGetValueW(HKEY_CURRENT_USER, path.c_str(), name.c_str(), types, nullptr, data, &size);
    };
    DWORD number = 0, size = sizeof number;
    if (get(RRF_RT_REG_DWORD, &number, size) == 0) return std::to_string(static_cast<int32_t>(number));
    size = 0;
    if (get(RRF_RT_REG_SZ, nullptr, size) != 0) return std::nullopt;
    std::wstring value(size / sizeof(wchar_t) + 1, L'\0');
    size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    if (get(RRF_RT_REG_SZ, value.data(), size) != 0) return std::nullopt;
    value.resize(value.find(L'\0'));
    return win::ToUtf8(value);
  }

  void Write(std::string_view section, std::string_view key, std::string_view value) override {
    const std::wstring text = win::ToWideOrReplaced(value);
    RegSetKeyValueW(HKEY_CURRENT_USER, KeyOf(section).c_str(), win::ToWideOrReplaced(key).c_str(), REG_SZ,
                    text.c_str(), static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

 private:
  std::wstring KeyOf(std::string_view section) const {
    return FRootKey + L"\\" + win::ToWideOrReplaced(section);
  }

  std::wstring FRootKey;
};

}  // namespace

std::unique_ptr<ISettingsStore> OpenSettingsStore(std::string_view rootKey) {
  return std::make_unique<TRegistryStore>(rootKey);
}

}  // namespace rtl
