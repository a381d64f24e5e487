#include "MigWizard/run/Replacer.h"

#include <new>

#include "MigWizard/run/Finally.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/Restore.h"
#include "MigWizard/run/Run.h"
#include "MigWizard/run/UnitList.h"
#include "qrl/QrlVcl.h"
#include "rtl/text/SysUtils.h"
#include "win/FileSystem.h"
#include "win/Shell.h"

namespace mig {
namespace {

constexpr char kLogName[] = "Wiz_Log.txt";

}  // namespace

TComponentReplacer::TComponentReplacer(const TFormParserClass& parserClass, std::string_view oldUnit,
                                       std::string_view newUnits, TReplaceOptions& options)
    : FOldUnit(rtl::UpperCase(oldUnit)),
      FNewUnits(newUnits),
      FConverter(FClasses, FOldUnit, FNewUnits, parserClass(ParseStateClass<TFormParseState>())),
      FOtherConverter(FClasses, FOldUnit, FNewUnits, parserClass(ParseStateClass<TFormParseState>())),
      FOptions(options) {
  for (TFileConverter* const converter : {&FConverter, &FOtherConverter}) {
    converter->OnGetReplacement = [this](std::string_view oldClass, std::string_view newClass) {
      return GetReplacement(oldClass, newClass);
    };
  }
  FLog.SetTitle(FOptions.GetTitle() + SLog);
  FLog.SetCreatedCaption(SCreatedAt);
  FLog.SetDoubleSpaced(true);
}

TComponentReplacer::~TComponentReplacer() = default;

std::string TComponentReplacer::GetReplacement(std::string_view, std::string_view newClass) {
  return std::string(newClass);
}

std::string TComponentReplacer::LogFileName() const {
  return FOptions.WriteLog && !FIsRestoring ? JoinPath(RunFolder(FOptions), kLogName) : std::string();
}

bool TComponentReplacer::Replace() {
  try {
    return ReplaceFiles();
  } catch (const std::bad_alloc&) {
    throw rtl::EOutOfMemory("Not enough memory.");
  }
}

bool TComponentReplacer::ReplaceFiles() {
  const std::string logName = LogFileName();
  const TFinally forgetWritten([] { win::FileSystem().ForgetWritten(); });
  FLeftOut.clear();
  TRunLock runLock(FOptions);
  if (FOptions.WriteLog) FLog.Open(logName);
  bool succeeded = false;
  {
    qrl::StartWait();
    const TFinally closeLog([this] {
      FLog.Close();
      qrl::StopWait();
    });
    succeeded =
        TRun({FOptions, *this, runLock, FLog, FConverter, FOtherConverter, FLeftOut, FSelection}).Execute();
    if (succeeded) FLog.WriteLine(SReplaceSuccess);
  }
  if (FOptions.WriteLog && FOptions.ViewLog) win::ShellExecuteA("open", logName);
  return succeeded;
}

void TComponentReplacer::Preview(TRunPlan* plan) {
  qrl::StartWait();
  const TFinally stopWait([] { qrl::StopWait(); });
  FLeftOut.clear();
  TReplaceOptions unlocked = FOptions;  // a preview needs no lock, because it only reads
  unlocked.Policy.Strict = false;
  TRunLock runLock(unlocked);
  TRun({FOptions, *this, runLock, FLog, FConverter, FOtherConverter, FLeftOut, FSelection, plan}).Preview();
}

void TComponentReplacer::CollectFindings(const TOldNames& names, TFindingDetail detail) {
  FConverter.CollectFindings(names, detail);
  FOtherConverter.CollectFindings(names, detail);
}

bool TComponentReplacer::Restore(std::string_view undoFile) {
  TRestorePlan plan;
  plan.Add(undoFile);
  return Restore(plan);
}

bool TComponentReplacer::Restore(const TRestorePlan& plan) {
  const int count = static_cast<int>(plan.Lines().size());
  FIsRestoring = true;
  const TFinally end([this] { FIsRestoring = false; });
  return plan.Execute(
      [&](int done, const TRestoreLine& line) {
        Report({done, count, line.Original, TRunPhase::Restoring, done, count});
      },
      OnWarning, [&] { ReportReplacing(TRunPhase::Flushing, count, count); });
}

}  // namespace mig
