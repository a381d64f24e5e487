#include "desktop/RunReport.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <optional>
#include <utility>

#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/run/FileUtils.h"
#include "desktop/QtText.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

// The fields of a record under their names in the file. The same list writes and reads them.
template <class TRecord>
struct TField {
  const char* Name;
  std::string TRecord::*Text;
};

constexpr TField<report::TRunInfo> kRunFields[] = {
    {"version", &report::TRunInfo::Version},
    {"mode", &report::TRunInfo::Mode},
    {"scope", &report::TRunInfo::Scope},
    {"path", &report::TRunInfo::Path},
    {"folder", &report::TRunInfo::Folder},
    {"time", &report::TRunInfo::Time},
    {"backupFolder", &report::TRunInfo::BackupFolder},
};
constexpr TField<mig::TFileReport> kFileFields[] = {
    {"name", &mig::TFileReport::FileName},
    {"encoding", &mig::TFileReport::Encoding},
    {"backup", &mig::TFileReport::BackupName},
};
constexpr TField<mig::TFinding> kFindingFields[] = {
    {"object", &mig::TFinding::Object},     {"oldClass", &mig::TFinding::OldClass},
    {"newClass", &mig::TFinding::NewClass}, {"subject", &mig::TFinding::Subject},
    {"value", &mig::TFinding::Value},       {"detail", &mig::TFinding::Detail},
    {"advice", &mig::TFinding::Advice},     {"before", &mig::TFinding::Before},
    {"after", &mig::TFinding::After},
};
constexpr TField<mig::TConvertedClass> kConvertedFields[] = {
    {"oldClass", &mig::TConvertedClass::OldClass},
    {"newClass", &mig::TConvertedClass::NewClass},
};

struct TFlag {
  const char* Name;
  bool mig::TFileReport::*Flag;
};
constexpr TFlag kFileFlags[] = {
    {"unit", &mig::TFileReport::IsUnit},
    {"binary", &mig::TFileReport::IsBinary},
    {"inRun", &mig::TFileReport::IsInRun},
    {"changed", &mig::TFileReport::IsChanged},
    {"namesNewUnits", &mig::TFileReport::NamesNewUnits},
};

constexpr char kUndoTime[] = "undoFileTime";
constexpr char kRun[] = "run";
constexpr char kFiles[] = "files";
constexpr char kChanges[] = "changes";
constexpr char kConverted[] = "converted";
constexpr char kCount[] = "count";
constexpr char kFindings[] = "findings";
constexpr char kRule[] = "rule";
constexpr char kLevel[] = "level";
constexpr char kLine[] = "line";
constexpr char kColumn[] = "column";
constexpr char kEvent[] = "event";

template <class TRecord, size_t N>
QJsonObject Texts(const TRecord& record, const TField<TRecord> (&fields)[N]) {
  QJsonObject json;
  for (const TField<TRecord>& field : fields) {
    if (!(record.*field.Text).empty()) json[field.Name] = ToQt(record.*field.Text);
  }
  return json;
}

template <class TRecord, size_t N>
TRecord RecordOf(const QJsonObject& json, const TField<TRecord> (&fields)[N]) {
  TRecord record;
  for (const TField<TRecord>& field : fields) record.*field.Text = FromQt(json[field.Name].toString());
  return record;
}

QJsonObject JsonOf(const mig::TFinding& finding) {
  QJsonObject json = Texts(finding, kFindingFields);
  json[kRule] = ToQt(mig::RuleOf(finding.Rule).Name);
  json[kLevel] = static_cast<int>(finding.Level);
  json[kLine] = static_cast<qint64>(finding.Line);
  json[kColumn] = static_cast<qint64>(finding.Column);
  if (finding.IsEvent) json[kEvent] = true;
  return json;
}

QJsonObject JsonOf(const mig::TFileReport& file) {
  QJsonObject json = Texts(file, kFileFields);
  for (const TFlag& flag : kFileFlags) json[flag.Name] = file.*flag.Flag;
  json[kChanges] = file.Changes;
  QJsonArray converted, findings;
  for (const mig::TConvertedClass& each : file.Converted) {
    QJsonObject one = Texts(each, kConvertedFields);
    one[kCount] = static_cast<qint64>(each.Count);
    converted.append(one);
  }
  for (const mig::TFinding& finding : file.Findings) findings.append(JsonOf(finding));
  json[kConverted] = converted;
  json[kFindings] = findings;
  return json;
}

// Adds the finding to the file, unless this version does not know its rule.
void ReadFinding(const QJsonObject& json, mig::TFileReport& file) {
  const std::string name = FromQt(json[kRule].toString());
  const auto rule = std::find_if(mig::Rules().begin(), mig::Rules().end(),
                                 [&](const mig::TRule& each) { return each.Name == name; });
  if (rule == mig::Rules().end()) return;
  mig::TFinding& finding = file.Findings.emplace_back(RecordOf(json, kFindingFields));
  finding.Rule = rule->Id;
  const int level = std::clamp(json[kLevel].toInt(), 0, static_cast<int>(mig::TLevel::Error));
  finding.Level = static_cast<mig::TLevel>(level);
  finding.Line = static_cast<uint32_t>(json[kLine].toInt(1));
  finding.Column = static_cast<uint32_t>(json[kColumn].toInt(1));
  finding.IsEvent = json[kEvent].toBool();
}

mig::TFileReport FileOf(const QJsonObject& json) {
  mig::TFileReport file = RecordOf(json, kFileFields);
  for (const TFlag& flag : kFileFlags) file.*flag.Flag = json[flag.Name].toBool();
  file.Changes = json[kChanges].toInt();
  const QJsonArray converted = json[kConverted].toArray(), findings = json[kFindings].toArray();
  for (const auto& each : converted) {
    file.Converted.push_back(RecordOf(each.toObject(), kConvertedFields));
    file.Converted.back().Count = static_cast<size_t>(each.toObject()[kCount].toInt());
  }
  for (const auto& each : findings) ReadFinding(each.toObject(), file);
  return file;
}

std::string NameFor(const std::string& undoFile) {
  return mig::JoinPath(rtl::ExtractFileDir(undoFile), kKeptReportName);
}

// Replaces the file in one step.
bool WritePrivate(const std::string& fileName, const QByteArray& bytes) {
  const std::string newName = fileName + ".new";
  rtl::DeleteFile(newName);  // left by a program that was killed
  QFile file(ToQt(win::ToHostName(newName)));
  const bool isWritten =
      file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner) &&
      file.write(bytes) == bytes.size() && file.flush();
  file.close();
  if (isWritten && win::MoveFileReplacing(newName, fileName)) return true;
  file.remove();
  return false;
}

}  // namespace

TReportPtr ReportOf(const mig::TRunResult& result, std::vector<mig::TFileReport> files, bool isPreview) {
  auto report = std::make_shared<report::TReport>();
  report->Run.Version = KVA_VERSION;
  report->Run.Mode = result.Mode;
  report->Run.Scope = result.IsFolder ? "folder" : "project";
  report->Run.Path = win::ToHostName(result.Folder);
  report->Run.Folder = result.Folder;
  report->Run.Time = FromQt(QDateTime::currentDateTimeUtc().toString("yyyy-MM-ddTHH:mm:ssZ"));
  report->Run.IsPreview = isPreview;
  if (!result.BackupDir.empty()) report->Run.BackupFolder = win::ToHostName(result.BackupDir);
  report->Files = std::move(files);
  return report;
}

bool KeepReport(const report::TReport& report, const std::string& undoFile) {
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(undoFile);
  if (!stamp) return false;
  QJsonArray files;
  for (const mig::TFileReport& file : report.Files) files.append(JsonOf(file));
  const QJsonObject json = {
      {kUndoTime, QString::number(stamp->Modified)}, {kRun, Texts(report.Run, kRunFields)}, {kFiles, files}};
  return WritePrivate(NameFor(undoFile), QJsonDocument(json).toJson(QJsonDocument::Compact));
}

TReportPtr ReadKeptReport(const std::string& undoFile) {
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(undoFile);
  std::string text;
  try {
    text = rtl::ReadFile(NameFor(undoFile));
  } catch (const rtl::EStreamError&) {
    return nullptr;
  }
  const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
  if (!stamp || json[kUndoTime].toString() != QString::number(stamp->Modified)) return nullptr;
  auto report = std::make_shared<report::TReport>();
  report->Run = RecordOf(json[kRun].toObject(), kRunFields);
  const QJsonArray files = json[kFiles].toArray();
  for (const auto& file : files) report->Files.push_back(FileOf(file.toObject()));
  return report;
}

}  // namespace desktop
