#include "MigWizard/passes/FindingRules.h"

#include <algorithm>
#include <iterator>

#include "MigWizard/passes/WordSearch.h"

namespace mig {
namespace {

using enum TLevel;
using enum TRuleId;

constexpr size_t kMostShown = 200;
constexpr std::string_view kWithheld = "(withheld)";
constexpr std::string_view kSecretWords[] = {"password",   "passwd", "pwd",
                                             "passphrase", "secret", "credential"};

// clang-format off
constexpr TRule kRules[] = {
    {DroppedProperty, "dropped-property", Warning,
     "the {detail} {subject} of {object} is dropped, because {newClass} does not publish it",
     "Find out what the property did, and set what takes its place in the form or in code. An event handler stays in "
     "the unit, but nothing calls it any more.",
     "A property line of a converted object whose name, up to the first dot, is not in the new object, and which was "
     "not renamed or converted into one that is. Properties of nested objects are not counted with their parent.",
     "object Query1: TQuery\n  SessionName = 'Reports'"},
    {DroppedLoginEntry, "dropped-login-entry", Warning,
     "the login entry {subject} of {object} is dropped, because {newClass} has no property for it",
     "Set the option of the new connection that does the same, if there is one.",
     "An entry of the Params list of a database that became a connection, other than the user name, the password "
     "and the server. Only its name is shown.",
     "object Database1: TDatabase\n  Params.Strings = (\n    'LANGDRIVER=DBWINWE0')"},
    {LostConnection, "lost-connection", Error,
     "{object} has lost its connection: {detail}",
     "Set its Connection property. Only a run over a project looks for aliases, on the forms of that project.",
     "A data set whose DatabaseName names an alias for which the run found no TDatabase. A run over a folder looks "
     "for none, so all data sets with a DatabaseName are listed.",
     "object Query1: TQuery\n  DatabaseName = 'Sales'"},
    {OrderBecameDetail, "order-became-detail", Warning,
     "IndexFieldNames of {object} became DetailFields, but the data set has no master: {value}",
     "Move the field names to the property that sorts the data set.",
     "IndexFieldNames both sorts a table and links it to a master. It becomes DetailFields, which sorts nothing "
     "where there is no master.",
     "object Table1: TTable\n  IndexFieldNames = 'NAME'"},
    {OldValue, "old-value", Error,
     "{subject} of {object} has the value {value}, which {newClass} does not know",
     "Replace the value by the one of the new class, or the form will not load.",
     "A constant of the old components that the conversion carried over.",
     "object IBTransaction1: TIBTransaction\n  DefaultAction = TARollback"},
    {UnparsedObject, "unparsed-object", Error,
     "{object} is not converted, because its {detail} cannot be read",
     "Mend the form text there, or convert the object by hand.",
     "An object of a class of the map whose text does not follow the grammar of forms. Its properties stay as they are.",
     "object Query1: TQuery\n  Tag = $FF"},
    {InheritedObject, "inherited-object", Warning,
     "{object} is declared with \"{subject}\" and keeps its class {oldClass}{detail}",
     "Change its class to {newClass}, and remove the properties that the new class lacks.",
     "An object of a class of the map that a form inherits. It is not converted, while its ancestor is. It is an "
     "error where the object sets properties that the new class lacks, because the form does not load then.",
     "inherited Query1: TQuery\n  SessionName = 'Reports'"},
    {NestedObject, "nested-object", Error,
     "{object} lies in a converted object and keeps its class {oldClass}",
     "Change its class to {newClass}, and its properties as in other objects.",
     "An object of a class of the map within an object that was converted. Nested objects are copied as they are.",
     "object Database1: TDatabase\n  object Query1: TQuery"},
    {UnmappedClass, "unmapped-class", Warning,
     "{object} is a {oldClass}, which nothing takes the place of",
     "Remove the component, and replace what it did.",
     "An object of a class of the old components that is not in the map.",
     "object Session1: TSession"},
    {NoPublishedList, "no-published-list", Note,
     "{object} keeps all its properties, because it is not known what {newClass} publishes",
     "Open the form in the IDE, and remove the properties that it asks about.",
     "A converted object whose new class is in no catalogue.",
     "object BatchMove1: TBatchMove"},
    {FormNotInRun, "form-not-in-run", Warning,
     "the form has {value} object(s) to convert, but no unit of the run names it",
     "Name it in its unit's resource directive, in letters only, or convert it in a run of its own.",
     "A form file below the folder, or beside a unit of the project, that has objects of classes of the map and that "
     "no resource directive leads to.",
     "Unit1.dfm, named by {$R Unit1.dfm}"},
    {MissingForm, "missing-form", Warning,
     "the form file {subject} is not there",
     "Restore the file, or remove the directive.",
     "A resource directive that names a form file which does not exist.",
     "{$R *.dfm}"},
    {LostMark, "lost-mark", Warning,
     "the file is written without its UTF-8 byte order mark",
     "Add the mark again in an editor, or compilers take the file for one in the system's code page.",
     "A changed file that began with a UTF-8 byte order mark. It is a note where all characters are ASCII.",
     "EF BB BF"},
    {MixedLineEnds, "mixed-line-ends", Note,
     "the file has {value} line end(s) other than CR LF, and the conversion writes CR LF",
     "Convert the line ends in an editor.",
     "A changed file with line ends of its own kind, into which the conversion wrote lines that end in CR LF.",
     "object Query1: TQuery (LF)"},
    {NoNewUnits, "no-new-units", Error,
     "the unit names {newClass}, but uses none of {value}",
     "Add the units to its uses clause.",
     "A unit that names a new class in code and has none of the new units in a uses clause.",
     "uses Classes, IBQuery;\nvar Query1: TIBQuery;"},
    {DoubledUnits, "doubled-units", Error,
     "the uses clauses name {subject} {value} times",
     "Remove the units that are named twice.",
     "A new unit that the uses clauses of one unit name more than once after the run.",
     "uses DBTables;\nimplementation\nuses DBTables;"},
    {SecondConversion, "second-conversion", Warning,
     "the unit used {subject} before the run",
     "It has probably been converted before: remove DBTables from its uses clauses, or leave the unit out.",
     "A unit that has one of the new units and that the run changes all the same.",
     "uses DBTables, Quorel, KVA, Velmar, KVAError;"},
    {OldUnit, "old-unit", Warning,
     "the unit uses {subject}, a unit of the old components",
     "Remove it from the uses clause when nothing of it is used any more.",
     "A unit of the old components in a uses clause, with or without unit scope.",
     "uses DBTables, BDE;"},
    {TransactionLine, "transaction-line", Error,
     "TDatabase brings a line \"Transaction: TKVATransaction\" here, in {detail}",
     "Undo the line where it is not a field of its own; a class can have one member of that name.",
     "Each TDatabase in code becomes two declarations. That is right for the first component field of a class; then "
     "it is a note. In a parameter list, a call or a class heading it does not compile.",
     "Db := TDatabase.Create(nil);"},
    {OldClass, "old-class", Warning,
     "{subject} is a class of the old components",
     "Replace it by hand.",
     "A class of the old components that is not in the map, in code.",
     "Session: TSession;"},
    {OldCall, "old-call", Warning,
     "{subject} is part of the old components",
     "Replace the call by hand.",
     "A function or global object of the old components, in code.",
     "Check(DbiSaveChanges(Table1.Handle));"},
    {OldMember, "old-member", Warning,
     "{newClass} has no member {subject}; {value} is declared {detail}",
     "Replace it by hand.",
     "A member that the new class lacks, after a name that a unit of the run declares with a converted class.",
     "Table1.SetRange([1], [2]);"},
    {ChangedText, "changed-text", Note,
     "{value} became {newClass} within a comment",
     "Read the comment again. In a compiler directive, change the name back.",
     "A class name that was replaced in a comment. In a compiler directive it is a warning.",
     "{ fills the TQuery }"},
    {Deselected, "deselected", Note,
     "{subject} is left as it was, because it was deselected",
     "Convert it in a later run, or by hand.",
     "An object or a name that the user took out of the run in a preview.",
     "object Query1: TQuery"},
    {NotCompleted, "not-completed", Warning,
     "{subject} is not completed, because {detail}",
     "Add what is missing by hand.",
     "Something that --complete leaves as it is, because it is not certain: a connection that gets no transaction, or "
     "a unit whose interface needs a new unit that stays in the implementation's uses clause. The second is an error.",
     "DB: TDatabase;\nTransaction: TIBTransaction;"},
};
// clang-format on

static_assert([] {
  for (size_t i = 0; i < std::size(kRules); ++i)
    if (static_cast<size_t>(kRules[i].Id) != i) return false;
  return true;
}());

std::string_view FieldOf(const TFinding& finding, std::string_view name) {
  if (name == "object") return finding.Object;
  if (name == "oldClass") return finding.OldClass;
  if (name == "newClass") return finding.NewClass;
  if (name == "subject") return finding.Subject;
  if (name == "value") return finding.Value;
  return finding.Detail;
}

std::string Fill(std::string_view pattern, const TFinding& finding) {
  std::string text;
  for (size_t open; (open = pattern.find('{')) != std::string_view::npos;) {
    const size_t close = pattern.find('}', open);
    text.append(pattern.substr(0, open)).append(FieldOf(finding, pattern.substr(open + 1, close - open - 1)));
    pattern.remove_prefix(close + 1);
  }
  return text.append(pattern);
}

}  // namespace

const TRule& RuleOf(TRuleId id) {
  return kRules[static_cast<size_t>(id)];
}

const std::vector<TRule>& Rules() {
  static const std::vector<TRule> rules(std::begin(kRules), std::end(kRules));
  return rules;
}

std::string_view LevelName(TLevel level) {
  return level == Error ? "error" : level == Warning ? "warning" : "note";
}

std::string MessageOf(const TFinding& finding) {
  return Fill(RuleOf(finding.Rule).Message, finding);
}

std::string AdviceOf(const TFinding& finding) {
  return Fill(finding.Advice.empty() ? RuleOf(finding.Rule).Advice : std::string_view(finding.Advice),
              finding);
}

bool CouldBeSecret(std::string_view name, std::string_view value) {
  static const TWordSearch words = [] {
    TWordSearch search;
    for (const std::string_view word : kSecretWords) search.Add(word);
    return search;
  }();
  return words.FindAny(name) || words.FindAny(value);
}

std::string ShownValue(std::string_view name, std::string_view value) {
  if (CouldBeSecret(name, value)) return std::string(kWithheld);
  std::string shown;
  bool isBlank = false;
  for (const char c : value) {
    const auto byte = static_cast<uint8_t>(c);
    isBlank = isBlank || byte <= ' ';
    if (byte <= ' ') continue;
    if (isBlank && !shown.empty()) shown += ' ';
    isBlank = false;
    shown += c;
    // Cuts only after an ASCII character, and so never within a UTF-8 character.
    if (shown.size() > kMostShown && byte < 0x80) return shown + " ...";
  }
  return shown;
}

}  // namespace mig
