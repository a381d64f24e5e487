#include "MigWizard/form/DatabaseEngineRules.h"

#include <algorithm>
#include <iterator>

namespace mig {
namespace {

constexpr TLoginField kDatabaseLogin[] = {
    {"USER NAME", "Username"},
    {"PASSWORD", "Password"},
    {"SERVER NAME", "Server"},
};

constexpr TPropertyRule kRules[] = {
    {"DatabaseName", {"TDatabase"}, TPropertyEffect::Drop},
    {"DatabaseName", {}, TPropertyEffect::Reference, "Connection"},
    {"Params.Strings", {"TDatabase"}, TPropertyEffect::Login, {}, kDatabaseLogin},
    {"DataSource", {"TQuery"}, TPropertyEffect::Rename, "MasterSource"},
    {"ParamData", {"TQuery", "TStoredProc"}, TPropertyEffect::Rename, "ParamData"},
};

constexpr std::string_view kDesignerProperties[] = {"Left", "Top"};

}  // namespace

std::span<const TPropertyRule> DatabaseEngineRules() {
  return kRules;
}

bool IsDesignerProperty(std::string_view propName) {
  return std::find(std::begin(kDesignerProperties), std::end(kDesignerProperties), propName) !=
         std::end(kDesignerProperties);
}

}  // namespace mig
