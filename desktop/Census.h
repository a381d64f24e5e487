// Counts the objects of both component families in the forms of a project, before a mode is chosen. The forms
// are converted in memory by a task, with the rules of a run, so that the counts are those of a run.
//
//   TCensus census;
//   census.OnCounted = [&](const TCensus::TCounts& counts) { ... };
//   census.Start(units);
#pragma once

#include <QFutureWatcher>
#include <QString>
#include <QThreadPool>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "MigWizard/passes/FileConversion.h"
#include "target/KVAReplacer.h"

namespace desktop {

enum class TFamily { BDE, IBX };

class TCensus {
 public:
  // The objects of one family.
  struct TCount {
    size_t Objects = 0;
    size_t Forms = 0;                                     // forms with such objects
    std::vector<std::pair<std::string, size_t>> Classes;  // the most frequent first
  };
  using TCounts = std::array<TCount, 2>;  // by TFamily

  TCensus();
  ~TCensus();
  TCensus(const TCensus&) = delete;
  TCensus& operator=(const TCensus&) = delete;

  // Counts the objects in the forms of these units, full Windows paths, in place of an earlier count that has
  // not ended. Forms that cannot be read or converted do not count.
  void Start(std::vector<std::string> units);
  bool IsIdle() const { return !FIsCounting; }

  // Called when the count has ended.
  std::function<void(const TCounts& counts)> OnCounted;

 private:
  target::TKVAMigration FMigration;
  // By TFamily. A converter converts one file at a time, so it is used by a single thread.
  std::array<const mig::TClassMap*, 2> FMaps;
  std::array<mig::TOldNames, 2> FOldNames;
  std::array<std::unique_ptr<mig::TFileConverter>, 2> FConverters;
  QThreadPool FThread;
  QFutureWatcher<TCounts> FWatcher;
  bool FIsCounting = false;  // until OnCounted was called, which is after the task has finished
};

// Returns a sentence: "24 objects in 5 forms: TQuery 12, TTable 8, ...".
QString CountText(const TCensus::TCount& count);

}  // namespace desktop
