#include "desktop/Census.h"

#include <QPromise>
#include <QtConcurrentRun>
#include <algorithm>
#include <map>

#include "desktop/QtText.h"
#include "host/Modules.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "target/KVAFormParser.h"
#include "target/OldNameList.h"
#include "win/FileSystem.h"

namespace desktop {

namespace {

constexpr std::string_view kOldUnit = "DBTABLES";  // only units need it
constexpr size_t kMostClasses = 6;                 // in a sentence

using TClassCounts = std::map<std::string, size_t>;

// Adds the objects of a form to the counts.
void Count(mig::TFileConverter& converter, const mig::TClassMap& map, const std::string& form,
           const std::string& bytes, TCensus::TCount& count, TClassCounts& classes) {
  const bool isUtf16 = bytes.starts_with("\xFF\xFE");
  if (!isUtf16 && !map.OldClasses().FindAny(bytes)) return;  // most forms, without the cost of a conversion
  const mig::TFileConversion conversion = converter.Convert(form, bytes);
  if (!conversion.Findings || conversion.Findings->Converted.empty()) return;
  ++count.Forms;
  for (const mig::TConvertedClass& converted : conversion.Findings->Converted) {
    count.Objects += converted.Count;
    classes[converted.OldClass] += converted.Count;
  }
}

}  // namespace

TCensus::TCensus()
    : FMigration(target::TCatalogue::BuiltIn()),
      FMaps{&FMigration.BDE().Classes(), &FMigration.IBX().Classes()},
      FOldNames{target::BuiltInOldNames(*FMaps[0]), target::BuiltInOldNames(*FMaps[1])} {
  for (size_t i = 0; i < FConverters.size(); ++i) {
    FConverters[i] = std::make_unique<mig::TFileConverter>(
        *FMaps[i], kOldUnit, std::string_view(),
        std::make_unique<target::TKVAFormParser>(mig::ParseStateClass<mig::TFormParseState>()));
    FConverters[i]->CollectFindings(FOldNames[i], mig::TFindingDetail::Counts);
  }
  FThread.setMaxThreadCount(1);
  QObject::connect(&FWatcher, &QFutureWatcherBase::finished, &FWatcher, [this] {
    FIsCounting = false;
    if (!FWatcher.isCanceled() && FWatcher.future().resultCount() > 0 && OnCounted)
      OnCounted(FWatcher.result());
  });
}

TCensus::~TCensus() {
  FWatcher.disconnect();
  FWatcher.cancel();
  FThread.waitForDone();
}

void TCensus::Start(std::vector<std::string> units) {
  FWatcher.cancel();
  FIsCounting = true;
  FWatcher.setFuture(
      QtConcurrent::run(&FThread, [this, units = std::move(units)](QPromise<TCounts>& promise) {
        const std::unique_ptr<win::TFileSystem> files = win::AnotherHostFileSystem();
        const win::TFileSystemOverride inForce(*files);
        TCounts counts;
        std::array<TClassCounts, 2> classes;
        for (const std::string& unit : units) {
          if (promise.isCanceled()) return;
          const std::vector<std::string> forms = host::FormFilesOf(unit);
          for (const std::string& form : forms) {
            try {
              const std::string bytes = rtl::ReadFile(form);
              for (size_t i = 0; i < counts.size(); ++i)
                Count(*FConverters[i], *FMaps[i], form, bytes, counts[i], classes[i]);
            } catch (const rtl::EStreamError&) {
              continue;
            }
          }
        }
        for (size_t i = 0; i < counts.size(); ++i) {
          counts[i].Classes.assign(classes[i].begin(), classes[i].end());
          std::stable_sort(counts[i].Classes.begin(), counts[i].Classes.end(),
                           [](const auto& left, const auto& right) { return left.second > right.second; });
        }
        promise.addResult(counts);
      }));
}

QString CountText(const TCensus::TCount& count) {
  if (count.Objects == 0) return "no objects";
  QString text = QString("%1 %2 in %3 %4: ")
                     .arg(count.Objects)
                     .arg(count.Objects == 1 ? "object" : "objects")
                     .arg(count.Forms)
                     .arg(count.Forms == 1 ? "form" : "forms");
  for (size_t i = 0; i < std::min(count.Classes.size(), kMostClasses); ++i)
    text +=
        QString(i == 0 ? "%1 %2" : ", %1 %2").arg(ToQt(count.Classes[i].first)).arg(count.Classes[i].second);
  if (count.Classes.size() > kMostClasses) text += ", ...";
  return text;
}

}  // namespace desktop
