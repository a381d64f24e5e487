#include "target/KVAFormParser.h"

#include <algorithm>
#include <iterator>

#include "MigWizard/form/PropertyRules.h"
#include "rtl/text/SysUtils.h"

namespace target {
namespace {

using mig::TPropertyEffect;

constexpr mig::TLoginField kInterBaseLogin[] = {
    {"USER_NAME", "Username"},
    {"PASSWORD", "Password"},
};

// The first matching row decides; without one, the rules of TFormParser apply.
constexpr mig::TPropertyRule kRules[] = {
    {"Database", {}, TPropertyEffect::Rename, "Connection"},
    {"DefaultDatabase", {}, TPropertyEffect::Rename, "DefaultConnection"},
    {"DatabaseName", {"TIBDatabase"}, TPropertyEffect::Rename, "Database"},
    {"Params.Strings", {"TIBDatabase"}, TPropertyEffect::Login, {}, kInterBaseLogin},
    {"DefaultAction", {"TIBTransaction"}, TPropertyEffect::Rename, "DefaultCloseAction"},
    {"SelectSQL.Strings", {"TIBDataSet"}, TPropertyEffect::Rename, "SQL.Strings"},
    {"RefreshSQL.Strings", {"TIBDataSet"}, TPropertyEffect::Rename, "SQLRefresh.Strings"},
    {"InsertSQL.Strings", {"TIBDataSet"}, TPropertyEffect::Rename, "SQLInsert.Strings"},
    {"ModifySQL.Strings", {"TIBDataSet"}, TPropertyEffect::Rename, "SQLUpdate.Strings"},
    {"DeleteSQL.Strings", {"TIBDataSet"}, TPropertyEffect::Rename, "SQLDelete.Strings"},
    {"Script.Strings", {"TIBScript"}, TPropertyEffect::Rename, "SQL.Strings"},
    {"Terminator", {"TIBScript"}, TPropertyEffect::Rename, "Delimiter"},
    {"DataSource", {"TIBQuery", "TIBDataSet"}, TPropertyEffect::Rename, "MasterSource"},
    {"IndexFieldNames",
     {"TIBDataSet", "TTable", "TIBTable", "TIBQuery"},
     TPropertyEffect::Rename,
     "DetailFields"},
};

// Old classes that are replaced by the target's data sets, in lower case.
constexpr std::string_view kAutoCommitClasses[] = {
    "tquery",   "ttable",   "tstoredproc",   "twwquery",   "twwtable",  "twwstoredproc",
    "tibquery", "tibtable", "tibstoredproc", "tibdataset", "tibscript", "tibsql",
};

}  // namespace

void TKVAFormParser::ConvertProperty(std::string_view propName, std::string_view propValue) {
  if (const mig::TPropertyRule* rule = mig::FindPropertyRule(kRules, propName, FormState().ObjType)) {
    ApplyRule(*rule, propName, propValue);
  } else {
    TFormParser::ConvertProperty(propName, propValue);
  }
}

void TKVAFormParser::PrintObject(int level, std::string& text) {
  const std::string oldClass = rtl::LowerCase(FormState().ObjType);
  const auto place = std::find(std::begin(kAutoCommitClasses), std::end(kAutoCommitClasses), oldClass);
  if (place != std::end(kAutoCommitClasses)) AddProperty("AutoCommit", "True");
  TFormParser::PrintObject(level, text);
}

}  // namespace target
