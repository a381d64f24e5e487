#include "MigWizard/run/RunHooks.h"

namespace mig {

const char* NameOf(TRunPhase phase) {
  switch (phase) {
    case TRunPhase::Units:
      return "Converting units";
    case TRunPhase::Reading:
      return "Reading forms";
    case TRunPhase::Forms:
      return "Converting forms";
    case TRunPhase::Flushing:
      return "Writing to the disk";
    case TRunPhase::Replacing:
      return "Replacing original files";
    case TRunPhase::Removing:
      return "Removing temporary files";
    case TRunPhase::Restoring:
      break;
  }
  return "Restoring original files";
}

}  // namespace mig
