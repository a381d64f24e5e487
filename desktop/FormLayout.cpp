#include "desktop/FormLayout.h"

#include <QFrame>
#include <algorithm>
#include <string_view>

namespace desktop {

namespace {

constexpr int kIndent = 22;  // about the width of a check mark, to align dependent controls with its text
constexpr int kGap = 10;
constexpr int kSpacing = 6;
constexpr int kMargin = 14;

// The position of a control that does not simply follow the previous one.
struct TPlace {
  std::string_view Name;
  bool Beside = false;  // in the row of the previous control
  bool Indented = false;
  bool GapAbove = false;
};

constexpr TPlace kPlaces[] = {
    {.Name = "Label1", .GapAbove = true},
    {.Name = "Label11", .GapAbove = true},
    {.Name = "rbModeReplace", .GapAbove = true},
    {.Name = "lUndo", .GapAbove = true},
    {.Name = "btRestoreBrowse", .Beside = true},
    {.Name = "Label5", .GapAbove = true},
    {.Name = "rbDestProject", .GapAbove = true},
    {.Name = "Label7", .GapAbove = true},
    {.Name = "lbModules", .GapAbove = true},
    {.Name = "btDeselect", .Beside = true},
    {.Name = "lSource", .GapAbove = true},
    {.Name = "btBrowseFolder", .Beside = true},
    {.Name = "chSubDirs", .GapAbove = true},
    {.Name = "chMakeBackup", .GapAbove = true},
    {.Name = "lBackupFolder", .Indented = true},
    {.Name = "cbBackupDir", .Indented = true},
    {.Name = "btBrowseBackFolder", .Beside = true},
    {.Name = "chWriteLog", .GapAbove = true},
    {.Name = "lblLogNote", .Indented = true},
    {.Name = "chViewLog", .Indented = true},
    {.Name = "Label15", .GapAbove = true},
    {.Name = "Label14", .GapAbove = true},
    {.Name = "lblNote", .Beside = true},
    {.Name = "chkDontAsk", .GapAbove = true},
};

TPlace PlaceOf(const rtl::TControl& control) {
  const auto* const place = std::find_if(std::begin(kPlaces), std::end(kPlaces),
                                         [&](const TPlace& row) { return row.Name == control.Name(); });
  return place != std::end(kPlaces) ? *place : TPlace{};
}

// Returns whether a control takes the remaining height.
bool Grows(const rtl::TControl& control) {
  using rtl::TControlKind;
  return control.Kind() == TControlKind::CheckListBox || control.Kind() == TControlKind::ScrollBox ||
         control.Kind() == TControlKind::PageControl;
}

// Returns whether a control takes the remaining width of its row. Of labels, only the last one of a row
// does.
bool Widens(const rtl::TControl& control, bool isLast) {
  using rtl::TControlKind;
  switch (control.Kind()) {
    case TControlKind::Button:
      return false;
    case TControlKind::Label:
      return isLast;
    default:
      return true;
  }
}

void LayOutRows(const std::vector<rtl::TControl*>& controls, QVBoxLayout& rows, const TWidgetOf& widgetOf) {
  bool grows = false;
  for (size_t i = 0; i < controls.size();) {
    const TPlace place = PlaceOf(*controls[i]);
    size_t end = i + 1;
    while (end < controls.size() && PlaceOf(*controls[end]).Beside) ++end;
    if (place.GapAbove) rows.addSpacing(kGap);
    auto* const row = new QHBoxLayout;
    if (place.Indented) row->addSpacing(kIndent);
    for (size_t j = i; j < end; ++j)
      row->addWidget(widgetOf(*controls[j]), Widens(*controls[j], j + 1 == end) ? 1 : 0);
    if (controls[end - 1]->Kind() == rtl::TControlKind::Button && !Widens(*controls[i], false))
      row->addStretch(1);
    rows.addLayout(row, Grows(*controls[i]) ? 1 : 0);
    grows = grows || Grows(*controls[i]);
    i = end;
  }
  if (!grows) rows.addStretch(1);
}

}  // namespace

QFrame* NewLine(QWidget* parent) {
  auto* const line = new QFrame(parent);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Plain);
  line->setForegroundRole(QPalette::Mid);
  return line;
}

void LayOutBox(const std::vector<rtl::TControl*>& controls, QWidget* inside, const TWidgetOf& widgetOf) {
  auto* const rows = new QVBoxLayout(inside);
  rows->setSpacing(kSpacing);
  LayOutRows(controls, *rows, widgetOf);
}

void LayOutForm(const rtl::TForm& form, QWidget* window, const TWidgetOf& widgetOf) {
  std::vector<rtl::TControl*> body;
  auto* const top = new QHBoxLayout;
  auto* const buttons = new QHBoxLayout;
  QWidget* line = nullptr;
  top->setSpacing(kMargin);
  buttons->addStretch(1);
  for (rtl::TControl* control : form.Controls()) {
    QWidget* const widget = widgetOf(*control);
    switch (control->Kind()) {
      case rtl::TControlKind::Image:
        top->addWidget(widget, 0, Qt::AlignTop);
        break;
      case rtl::TControlKind::Button:
        buttons->addWidget(widget);
        break;
      case rtl::TControlKind::Bevel:
        line = widget;
        break;
      default:
        body.push_back(control);
        break;
    }
  }
  auto* const rows = new QVBoxLayout;
  rows->setSpacing(kSpacing);
  LayOutRows(body, *rows, widgetOf);
  top->addLayout(rows, 1);

  if (line == nullptr) line = NewLine(window);
  auto* const all = new QVBoxLayout(window);
  all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  all->setSpacing(kMargin);
  all->addLayout(top, 1);
  all->addWidget(line);
  all->addLayout(buttons);
}

}  // namespace desktop
