#include "native/Pickers.h"

#include <commdlg.h>
#include <vector>

#include "win/windows/WindowsText.h"

namespace native {

namespace {

// A reference to an object of the system.
template <class TInterface>
class TRef {
 public:
  TRef() = default;
  ~TRef() {
    if (FObject != nullptr) FObject->Release();
  }
  TRef(const TRef&) = delete;
  TRef& operator=(const TRef&) = delete;
  TInterface* operator->() const { return FObject; }
  TInterface* Get() const { return FObject; }
  TInterface** Receive() { return &FObject; }
  explicit operator bool() const { return FObject != nullptr; }

 private:
  TInterface* FObject = nullptr;
};

// A filter as pairs of a name and a pattern.
class TFilter {
 public:
  explicit TFilter(std::string_view filter) : FText(win::ToWideOrReplaced(filter) + L'|') {
    std::vector<const wchar_t*> parts;
    for (size_t start = 0, end = 0; (end = FText.find(L'|', start)) != std::wstring::npos; start = end + 1) {
      FText[end] = L'\0';
      parts.push_back(FText.c_str() + start);
    }
    for (size_t i = 0; i + 1 < parts.size(); i += 2) FRows.push_back({parts[i], parts[i + 1]});
  }
  const std::vector<COMDLG_FILTERSPEC>& Rows() const { return FRows; }
  // Returns the texts with a NUL after each, as the dialog before Windows 6 takes them.
  const wchar_t* Text() const { return FText.c_str(); }

 private:
  std::wstring FText;
  std::vector<COMDLG_FILTERSPEC> FRows;
};

void StartIn(IFileOpenDialog& dialog, std::string_view folder) {
  TRef<IShellItem> item;
  if (!folder.empty() && SUCCEEDED(SHCreateItemFromParsingName(win::ToWideOrReplaced(folder).c_str(), nullptr,
                                                               IID_PPV_ARGS(item.Receive()))))
    dialog.SetFolder(item.Get());
}

std::optional<std::string> Show(IFileOpenDialog& dialog, HWND owner, DWORD options) {
  dialog.SetOptions(options | FOS_FORCEFILESYSTEM | FOS_NOCHANGEDIR);
  TRef<IShellItem> item;
  if (FAILED(dialog.Show(owner)) || FAILED(dialog.GetResult(item.Receive()))) return std::nullopt;
  wchar_t* path = nullptr;
  if (FAILED(item->GetDisplayName(SIGDN_FILESYSPATH, &path))) return std::nullopt;
  std::string result = win::ToUtf8OrReplaced(path);
  CoTaskMemFree(path);
  return result;
}

// The dialog before Windows 6, which takes no start folder.
std::optional<std::string> BrowseForFolder(HWND owner, const std::wstring& caption) {
  BROWSEINFOW browse{};
  browse.hwndOwner = owner;
  browse.lpszTitle = caption.c_str();
  browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  wchar_t path[MAX_PATH] = {};
  LPITEMIDLIST const item = SHBrowseForFolderW(&browse);
  const bool isChosen = item != nullptr && SHGetPathFromIDListW(item, path) != FALSE;
  CoTaskMemFree(item);
  if (!isChosen) return std::nullopt;
  return win::ToUtf8OrReplaced(path);
}

std::optional<std::string> OpenFileName(HWND owner, const TFilter& filter, const std::wstring& folder,
                                        DWORD flags) {
  wchar_t path[MAX_PATH] = {};
  OPENFILENAMEW open{};
  open.lStructSize = sizeof open;
  open.hwndOwner = owner;
  open.lpstrFilter = filter.Text();
  open.lpstrFile = path;
  open.nMaxFile = MAX_PATH;
  open.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
  open.Flags = flags | OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY;
  if (GetOpenFileNameW(&open) == FALSE) return std::nullopt;
  return win::ToUtf8OrReplaced(path);
}

bool Create(TRef<IFileOpenDialog>& dialog) {
  return SUCCEEDED(
      CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(dialog.Receive())));
}

}  // namespace

std::optional<std::string> PickFolder(HWND owner, std::string_view caption, std::string_view start) {
  const std::wstring title = win::ToWideOrReplaced(caption);
  TRef<IFileOpenDialog> dialog;
  if (!Create(dialog)) return BrowseForFolder(owner, title);
  dialog->SetTitle(title.c_str());
  StartIn(*dialog.Get(), start);
  return Show(*dialog.Get(), owner, FOS_PICKFOLDERS | FOS_PATHMUSTEXIST);
}

std::optional<std::string> PickFile(HWND owner, const rtl::TOpenDialog& open) {
  const TFilter filter(open.Filter);
  TRef<IFileOpenDialog> dialog;
  if (!Create(dialog)) {
    const DWORD flags =
        (open.PathMustExist ? OFN_PATHMUSTEXIST : 0) | (open.FileMustExist ? OFN_FILEMUSTEXIST : 0);
    return OpenFileName(owner, filter, win::ToWideOrReplaced(open.InitialDir), flags);
  }
  dialog->SetFileTypes(static_cast<UINT>(filter.Rows().size()), filter.Rows().data());
  StartIn(*dialog.Get(), open.InitialDir);
  return Show(*dialog.Get(), owner,
              (open.PathMustExist ? DWORD{FOS_PATHMUSTEXIST} : 0) |
                  (open.FileMustExist ? DWORD{FOS_FILEMUSTEXIST} : 0));
}

}  // namespace native
