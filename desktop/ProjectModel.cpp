#include "desktop/ProjectModel.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

#include "desktop/FormSummary.h"
#include "desktop/KindIcons.h"
#include "desktop/QtText.h"
#include "host/Host.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/FileNames.h"

namespace desktop {

struct TProjectModel::TNode {
  TKind Kind = TKind::Root;
  TNode* Parent = nullptr;
  int Row = 0;  // among the children of the parent
  host::TProject* Project = nullptr;
  std::string FileName;
  std::string Text;    // what the first column shows
  std::string Form;    // the form's name in the project
  std::string Reason;  // of a missing unit
  std::vector<std::unique_ptr<TNode>> Children;
  std::optional<std::vector<std::string>> Forms;  // of a unit; nullopt until looked for
  std::optional<std::string> Summary;  // of a form, or of the first form of a unit; nullopt until read

  TNode& Add(TKind kind, std::string fileName, std::string text) {
    TNode& node = *Children.emplace_back(std::make_unique<TNode>());
    node.Kind = kind;
    node.Parent = this;
    node.Row = static_cast<int>(Children.size()) - 1;
    node.Project = Project;
    node.FileName = std::move(fileName);
    node.Text = std::move(text);
    return node;
  }
};

namespace {

// Returns the path of a file below the folder of its project, or its full path.
std::string PathInProject(std::string_view fileName, std::string_view project) {
  const size_t folder = project.size() - rtl::ExtractFileName(project).size();
  const bool isBelow = rtl::SameText(fileName.substr(0, folder), project.substr(0, folder));
  return std::string(isBelow ? fileName.substr(folder) : fileName);
}

}  // namespace

TProjectModel::TProjectModel(host::THost& host)
    : FHost(host),
      FRoot(std::make_unique<TNode>()),
      FGroupIcon(QApplication::style()->standardIcon(QStyle::SP_DirHomeIcon)),
      FProjectIcon(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      FUnitIcon(UnitIcon()),
      FFormIcon(FormIcon()) {
  FBold.setBold(true);
}

TProjectModel::~TProjectModel() = default;

void TProjectModel::Fill() {
  beginResetModel();
  FRoot = std::make_unique<TNode>();
  FShownUnits = FAllUnits = 0;
  if (host::TProjectGroup* const group = FHost.Group()) {
    TNode* top = FRoot.get();
    if (!group->FileName().empty())
      top = &top->Add(TKind::Group, group->FileName(), rtl::ExtractFileName(group->FileName()));
    for (int i = 0; i < group->Count(); ++i) AddProject(*top, (*group)[i]);
  }
  endResetModel();
}

void TProjectModel::AddProject(TNode& parent, host::TProject& project) {
  TNode& node = parent.Add(TKind::Project, project.FileName(), rtl::ExtractFileName(project.FileName()));
  node.Project = &project;
  FAllUnits += static_cast<int>(project.Units().size() + project.Missing().size());
  for (const host::TFileReference& unit : project.Units()) {
    std::string text = PathInProject(unit.Name, project.FileName());
    if (Matches(text) || Matches(unit.FormName))
      node.Add(TKind::Unit, unit.Name, std::move(text)).Form = unit.FormName;
  }
  for (const host::TMissingFile& missing : project.Missing()) {
    std::string text = PathInProject(missing.Name, project.FileName());
    if (Matches(text)) node.Add(TKind::MissingUnit, missing.Name, std::move(text)).Reason = missing.Message;
  }
  FShownUnits += static_cast<int>(node.Children.size());
}

bool TProjectModel::Matches(const std::string& text) const {
  return FFilter.empty() || win::UpperFileName(text).find(FFilter) != std::string::npos;
}

void TProjectModel::SetFilter(const QString& text) {
  FFilter = win::UpperFileName(FromQt(text.trimmed()));
  Fill();
}

void TProjectModel::MarkActive() {
  const QModelIndex top = FRoot->Children.empty() || FRoot->Children.front()->Kind != TKind::Group
                              ? QModelIndex()
                              : index(0, coName);
  const int count = rowCount(top);
  if (count > 0) emit dataChanged(index(0, coName, top), index(count - 1, coName, top), {Qt::FontRole});
}

// --- Rows ---

TProjectModel::TNode& TProjectModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? *static_cast<TNode*>(index.internalPointer()) : *FRoot;
}

TProjectModel::TKind TProjectModel::KindOf(const QModelIndex& index) const {
  return NodeOf(index).Kind;
}

const std::string& TProjectModel::FileOf(const QModelIndex& index) const {
  return NodeOf(index).FileName;
}

host::TProject* TProjectModel::ProjectOf(const QModelIndex& index) const {
  return NodeOf(index).Project;
}

QModelIndex TProjectModel::index(int row, int column, const QModelIndex& parent) const {
  const TNode& node = NodeOf(parent);
  if (row < 0 || row >= static_cast<int>(node.Children.size()) || column < 0 || column >= kColumns) return {};
  return createIndex(row, column, node.Children[static_cast<size_t>(row)].get());
}

QModelIndex TProjectModel::parent(const QModelIndex& child) const {
  TNode* const parent = NodeOf(child).Parent;
  if (parent == nullptr || parent->Kind == TKind::Root) return {};
  return createIndex(parent->Row, coName, parent);
}

int TProjectModel::rowCount(const QModelIndex& parent) const {
  return parent.column() > coName ? 0 : static_cast<int>(NodeOf(parent).Children.size());
}

const std::vector<std::string>& TProjectModel::FormsOf(TNode& unit) const {
  if (!unit.Forms) unit.Forms = host::FormFilesOf(unit.FileName);
  return *unit.Forms;
}

bool TProjectModel::hasChildren(const QModelIndex& parent) const {
  TNode& node = NodeOf(parent);
  if (parent.column() > coName) return false;
  return node.Kind == TKind::Unit ? !FormsOf(node).empty() : !node.Children.empty();
}

bool TProjectModel::canFetchMore(const QModelIndex& parent) const {
  TNode& node = NodeOf(parent);
  return node.Kind == TKind::Unit && node.Children.size() < FormsOf(node).size();
}

void TProjectModel::fetchMore(const QModelIndex& parent) {
  TNode& node = NodeOf(parent);
  const std::vector<std::string>& forms = FormsOf(node);
  beginInsertRows(parent, 0, static_cast<int>(forms.size()) - 1);
  for (const std::string& form : forms) node.Add(TKind::Form, form, rtl::ExtractFileName(form));
  endInsertRows();
}

// --- Contents ---

// Returns the form of the row, as "MainForm: TMainForm".
const std::string& TProjectModel::SummaryOf(TNode& node) const {
  if (!node.Summary) {
    const std::string form = node.Kind == TKind::Form                             ? node.FileName
                             : node.Kind == TKind::Unit && !FormsOf(node).empty() ? node.Forms->front()
                                                                                  : std::string();
    node.Summary = form.empty() ? std::string() : FormSummary(form);
  }
  return *node.Summary;
}

const QIcon& TProjectModel::IconOf(TKind kind) const {
  switch (kind) {
    case TKind::Group:
      return FGroupIcon;
    case TKind::Project:
      return FProjectIcon;
    case TKind::Form:
      return FFormIcon;
    default:
      return FUnitIcon;
  }
}

QVariant TProjectModel::data(const QModelIndex& index, int role) const {
  TNode& node = NodeOf(index);
  const bool isName = index.column() == coName;
  switch (role) {
    case Qt::DisplayRole:
      return ToQt(isName ? node.Text : SummaryOf(node));
    case Qt::ToolTipRole:
      return ToQt(node.Reason.empty() ? node.FileName : node.Reason);
    case Qt::DecorationRole:
      return isName ? QVariant(IconOf(node.Kind)) : QVariant();
    case Qt::FontRole:
      return node.Kind == TKind::Project && node.Project == FHost.ActiveProject() ? QVariant(FBold)
                                                                                  : QVariant();
    case Qt::ForegroundRole:
      if (isName && node.Kind != TKind::MissingUnit) return {};
      return QApplication::palette().brush(QPalette::PlaceholderText);
    default:
      return {};
  }
}

}  // namespace desktop
