#include "host/Modules.h"

#include <algorithm>
#include <array>

#include "host/Host.h"
#include "host/HostError.h"
#include "rtl/text/SysUtils.h"
#include "win/Diagnostics.h"
#include "win/Errors.h"

namespace host {

using toolsapi::IOTAEditor;
using toolsapi::IOTAProject;
using toolsapi::IOTASourceEditor;
using toolsapi::MakeIntf;
using toolsapi::TIntf;

namespace {

template <class TInterface, TEditorKind kKind>
class TEditorObject final : public toolsapi::TInterfacedObject<TInterface>, public TFileEditor {
 public:
  using TFileEditor::TFileEditor;
  std::string GetFileName() override { return Buffer().FileName(); }
  void Show() override { TFileEditor::Show(); }
  TEditorKind Kind() const override { return kKind; }
};

using TSourceEditor = TEditorObject<IOTASourceEditor, TEditorKind::Source>;
using TFormEditor = TEditorObject<IOTAEditor, TEditorKind::Form>;

constexpr std::array<std::string_view, 4> kFormExtensions = {".dfm", ".nfm", ".xfm", ".fmx"};

}  // namespace

bool IsFormFile(std::string_view fileName) {
  const std::string extension = rtl::ExtractFileExt(fileName);
  return std::any_of(kFormExtensions.begin(), kFormExtensions.end(),
                     [&](std::string_view form) { return rtl::SameText(extension, form); });
}

std::vector<std::string> FormFilesOf(std::string_view fileName) {
  std::vector<std::string> forms;
  if (!rtl::SameText(rtl::ExtractFileExt(fileName), ".pas")) return forms;
  for (const std::string_view extension : kFormExtensions) {
    std::string form = rtl::ChangeFileExt(fileName, extension);
    if (rtl::FileExists(form)) forms.push_back(std::move(form));
  }
  return forms;
}

TFileEditor::TFileEditor(TModule& module, std::string_view fileName) : FModule(&module), FBuffer(fileName) {
  FBuffer.OnChange = [this](TFileBuffer& buffer) {
    if (FModule && FModule->FHost) FModule->FHost->NotifyBufferChanged(buffer);
  };
}

void TFileEditor::Show() {
  if (FModule && FModule->FHost) FModule->FHost->NotifyEditorShown(*this);
}

TModule::~TModule() {
  for (const TSlot& slot : FEditors) slot.Editor->FModule = nullptr;
}

bool TModule::Modified() const {
  return std::any_of(FEditors.begin(), FEditors.end(),
                     [](const TSlot& slot) { return slot.Editor->Buffer().Modified(); });
}

void TModule::AddEditor(TEditorKind kind, std::string_view fileName) {
  const auto add = [this](const auto& editor) { FEditors.push_back({editor, editor.Get()}); };
  if (kind == TEditorKind::Source) {
    add(MakeIntf<TSourceEditor>(*this, fileName));
  } else {
    add(MakeIntf<TFormEditor>(*this, fileName));
  }
}

TIntf<IOTAEditor> TModule::EditorInterface(int index) const {
  return FEditors.at(static_cast<size_t>(index)).Interface;
}

bool TModule::SaveBuffers() {
  bool isSaved = true;
  for (const TSlot& slot : FEditors) isSaved = SaveBuffer(slot.Editor->Buffer()) && isSaved;
  return isSaved;
}

bool TModule::SaveBuffer(TFileBuffer& buffer) const {
  const bool isChanged = buffer.Modified() && buffer.ChangedOnDisk();
  try {
    static_cast<void>(buffer.Modified() ? buffer.Bytes() : std::string());
  } catch (const rtl::EParserError& error) {
    win::Diagnose(At(buffer.FileName(), 0, error.what()));
    return false;
  }
  if (isChanged && !(FHost && FHost->OnQueryOverwrite)) {
    win::Diagnose(
        At(buffer.FileName(), 0, "was changed on the disk since it was loaded, and is not overwritten."));
    return false;
  }
  if (isChanged) {
    switch (FHost->OnQueryOverwrite(buffer)) {
      case TOverwriteAnswer::Cancel:
        return false;
      case TOverwriteAnswer::Reload:
        if (buffer.Reload()) return true;
        win::Diagnose(At(buffer.FileName(), 0, "cannot be read."));
        return false;
      case TOverwriteAnswer::Overwrite:
        break;
    }
  }
  if (buffer.Save(/*overwriteChanged=*/isChanged)) return true;
  win::Diagnose(At(buffer.FileName(), 0, "cannot be saved. " + win::SysErrorMessage(win::GetLastError())));
  return false;
}

bool TModule::Save(bool changeName, bool forceSave) {
  if (changeName) return false;
  bool isSaved = true;
  for (TModule* module : Together()) {
    if (!module->Modified()) continue;
    const bool isWanted = forceSave || !FHost || FHost->QuerySave(*module) == TSaveAnswer::Yes;
    isSaved = isWanted && module->SaveBuffers() && isSaved;
  }
  return isSaved;
}

bool TModule::Close() {
  if (!FHost) return true;
  const TIntf<toolsapi::IOTAModule> alive = Interface();
  for (TModule* module : Together()) {
    if (!module->Modified()) continue;
    const TSaveAnswer answer = FHost->QuerySave(*module);
    if (answer == TSaveAnswer::Cancel) return false;
    if (answer == TSaveAnswer::Yes && !module->SaveBuffers()) return false;
  }
  THost& host = *FHost;
  LeaveHost(host);
  return true;
}

bool TModule::Reload() {
  bool isRead = true;
  for (const TSlot& slot : FEditors) isRead = slot.Editor->Buffer().Reload() && isRead;
  return isRead;
}

void TModule::Detach() {
  FHost = nullptr;
  for (const TSlot& slot : FEditors) slot.Editor->FModule = nullptr;
}

TUnitModule::TUnitModule(THost& host, std::string_view fileName) : TModuleObject(host, fileName) {
  AddEditor(TEditorKind::Source, fileName);
  for (const std::string& form : FormFilesOf(fileName)) AddEditor(TEditorKind::Form, form);
}

int TUnitModule::GetOwnerCount() {
  return Host() ? static_cast<int>(Host()->OwnersOf(FileName()).size()) : 0;
}

TIntf<IOTAProject> TUnitModule::GetOwner(int index) {
  if (!Host()) return nullptr;
  return Host()->OwnersOf(FileName()).at(static_cast<size_t>(index));
}

void TUnitModule::LeaveHost(THost& host) {
  host.RemoveUnits({this});
}

}  // namespace host
