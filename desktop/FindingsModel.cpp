#include "desktop/FindingsModel.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>
#include <map>

#include "MigWizard/passes/FindingRules.h"
#include "desktop/QtText.h"
#include "desktop/SourceLexer.h"
#include "report/Fingerprints.h"

namespace desktop {

namespace {

// The internal number of the row of a group; that of an entry is its index.
constexpr quintptr kGroup = static_cast<quintptr>(-1);

}  // namespace

void TFindingsModel::Show(const report::TReport& report, TReviewMarks& marks) {
  beginResetModel();
  FMarks = &marks;
  FEntries.clear();
  for (const mig::TFileReport& file : report.Files) {
    const std::string path = report::PathOf(report, file);
    report::TFingerprints fingerprints(path);
    for (const mig::TFinding& finding : file.Findings)
      FEntries.push_back({&file, &finding, path, fingerprints.Next(finding)});
  }
  MakeGroups();
  endResetModel();
}

void TFindingsModel::SetGrouping(TGrouping grouping) {
  beginResetModel();
  FGrouping = grouping;
  MakeGroups();
  endResetModel();
}

void TFindingsModel::MakeGroups() {
  FGroups.clear();
  if (FGrouping == TGrouping::None) FGroups.emplace_back();
  std::map<std::string, int> known;
  for (size_t i = 0; i < FEntries.size(); ++i) {
    TEntry& entry = FEntries[i];
    if (FGrouping != TGrouping::None) {
      const std::string key =
          FGrouping == TGrouping::ByFile ? entry.Path : std::string(mig::RuleOf(entry.Finding->Rule).Name);
      const auto [place, isNew] = known.try_emplace(key, static_cast<int>(FGroups.size()));
      if (isNew) FGroups.push_back({ToQt(key), {}});
      entry.Group = place->second;
    } else {
      entry.Group = 0;
    }
    std::vector<int>& entries = FGroups[static_cast<size_t>(entry.Group)].Entries;
    entry.Row = static_cast<int>(entries.size());
    entries.push_back(static_cast<int>(i));
  }
}

const TFindingsModel::TEntry* TFindingsModel::EntryAt(const QModelIndex& index) const {
  return !index.isValid() || index.internalId() == kGroup ? nullptr : &FEntries[index.internalId()];
}

const mig::TFinding* TFindingsModel::FindingAt(const QModelIndex& index) const {
  const TEntry* const entry = EntryAt(index);
  return entry == nullptr ? nullptr : entry->Finding;
}

const mig::TFileReport* TFindingsModel::FileAt(const QModelIndex& index) const {
  const TEntry* const entry = EntryAt(index);
  return entry == nullptr ? nullptr : entry->File;
}

// --- Ticks ---

bool TFindingsModel::IsDone(const TEntry& entry) const {
  return FMarks->Has(TReviewMarks::TKind::Done, entry.Fingerprint);
}

int TFindingsModel::Done() const {
  return static_cast<int>(
      std::count_if(FEntries.begin(), FEntries.end(), [this](const TEntry& entry) { return IsDone(entry); }));
}

Qt::CheckState TFindingsModel::TickOf(const QModelIndex& index) const {
  if (const TEntry* const entry = EntryAt(index)) return IsDone(*entry) ? Qt::Checked : Qt::Unchecked;
  const std::vector<int>& entries = FGroups[static_cast<size_t>(index.row())].Entries;
  const auto done = std::count_if(entries.begin(), entries.end(),
                                  [this](int i) { return IsDone(FEntries[static_cast<size_t>(i)]); });
  if (done == 0) return Qt::Unchecked;
  return done == static_cast<std::ptrdiff_t>(entries.size()) ? Qt::Checked : Qt::PartiallyChecked;
}

void TFindingsModel::SetDone(int entry, bool isDone) {
  FMarks->Set(TReviewMarks::TKind::Done, FEntries[static_cast<size_t>(entry)].Fingerprint, isDone);
}

void TFindingsModel::SetTick(const QModelIndex& index, bool isTicked) {
  if (EntryAt(index) != nullptr) {
    SetDone(static_cast<int>(index.internalId()), isTicked);
    emit dataChanged(index, index.siblingAtColumn(Message));
    if (index.parent().isValid()) emit dataChanged(index.parent(), index.parent());
  } else {
    const std::vector<int>& entries = FGroups[static_cast<size_t>(index.row())].Entries;
    for (const int entry : entries) SetDone(entry, isTicked);
    emit dataChanged(index, index);
    emit dataChanged(this->index(0, 0, index),
                     this->index(static_cast<int>(entries.size()) - 1, Message, index));
  }
}

// --- The model ---

QModelIndex TFindingsModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || row >= rowCount(parent)) return {};
  if (FGrouping != TGrouping::None && !parent.isValid()) return createIndex(row, column, kGroup);
  const std::vector<int>& entries = FGroups[static_cast<size_t>(qMax(0, parent.row()))].Entries;
  return createIndex(row, column, static_cast<quintptr>(entries[static_cast<size_t>(row)]));
}

QModelIndex TFindingsModel::parent(const QModelIndex& index) const {
  const TEntry* const entry = EntryAt(index);
  if (entry == nullptr || FGrouping == TGrouping::None) return {};
  return createIndex(entry->Group, 0, kGroup);
}

int TFindingsModel::rowCount(const QModelIndex& parent) const {
  if (FGroups.empty() || parent.column() > 0 || EntryAt(parent) != nullptr) return 0;
  if (FGrouping != TGrouping::None && !parent.isValid()) return static_cast<int>(FGroups.size());
  return static_cast<int>(FGroups[static_cast<size_t>(qMax(0, parent.row()))].Entries.size());
}

QString TFindingsModel::TextOf(const TEntry& entry, int column) const {
  switch (column) {
    case Rule:
      return ToQt(mig::RuleOf(entry.Finding->Rule).Name);
    case Level:
      return ToQt(mig::LevelName(entry.Finding->Level));
    case Place:
      return QString("%1(%2)").arg(ToQt(entry.Path)).arg(entry.Finding->Line);
    case Object:
      return ToQt(entry.Finding->Object);
    default:
      return ToQt(mig::MessageOf(*entry.Finding));
  }
}

QVariant TFindingsModel::data(const QModelIndex& index, int role) const {
  const TEntry* const entry = EntryAt(index);
  if (role == Qt::CheckStateRole) return index.column() == Rule ? QVariant(TickOf(index)) : QVariant();
  if (role == DoneRole) return TickOf(index) == Qt::Checked;
  if (entry == nullptr) {
    const TGroup& group = FGroups[static_cast<size_t>(index.row())];
    if (role == Qt::DisplayRole && index.column() == Rule)
      return QString("%1 (%2)").arg(group.Title).arg(group.Entries.size());
    return role == SortRole ? QVariant(index.row()) : QVariant();
  }
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return TextOf(*entry, index.column());
    case Qt::ForegroundRole:
      return index.column() == Place ? QVariant(LinkColor(QApplication::palette())) : QVariant();
    case SortRole:
      if (index.column() == Level) return static_cast<int>(entry->Finding->Level);
      if (index.column() == Place)
        return QString("%1\n%2").arg(ToQt(entry->Path)).arg(entry->Finding->Line, 9, 10, QChar('0'));
      return TextOf(*entry, index.column());
    default:
      return {};
  }
}

}  // namespace desktop
