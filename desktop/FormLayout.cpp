#include "desktop/FormLayout.h"

#include "rtl/forms/FormRows.h"

namespace desktop {

namespace {

void LayOutRows(const std::vector<rtl::TControl*>& controls, QVBoxLayout& rows, const TWidgetOf& widgetOf) {
  bool grows = false;
  rows.setSpacing(rtl::kRowSpacing);
  for (const rtl::TFormRow& row : rtl::RowsOf(controls)) {
    bool widens = false;
    auto* const line = new QHBoxLayout;
    if (row.Place().GapAbove) rows.addSpacing(rtl::kRowGap);
    if (row.Place().Indented) line->addSpacing(rtl::kRowIndent);
    for (size_t i = 0; i < row.Controls.size(); ++i) {
      line->addWidget(widgetOf(*row.Controls[i]), row.Widens(i) ? 1 : 0);
      widens = widens || row.Widens(i);
    }
    if (!widens) line->addStretch(1);
    rows.addLayout(line, row.Grows() ? 1 : 0);
    grows = grows || row.Grows();
  }
  if (!grows) rows.addStretch(1);
}

}  // namespace

void LayOutBox(const std::vector<rtl::TControl*>& controls, QWidget* inside, const TWidgetOf& widgetOf) {
  LayOutRows(controls, *new QVBoxLayout(inside), widgetOf);
}

void LayOutForm(const rtl::TForm& form, QWidget* window, const TWidgetOf& widgetOf) {
  const rtl::TFormParts parts(form);
  auto* const top = new QHBoxLayout;
  top->setSpacing(rtl::kFormMargin);
  for (const rtl::TControl* picture : parts.Pictures) top->addWidget(widgetOf(*picture), 0, Qt::AlignTop);
  auto* const body = new QVBoxLayout;
  LayOutRows(parts.Body, *body, widgetOf);
  top->addLayout(body, 1);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch(1);
  for (const rtl::TControl* button : parts.Buttons) buttons->addWidget(widgetOf(*button));

  auto* const all = new QVBoxLayout(window);
  all->setContentsMargins(rtl::kFormMargin, rtl::kFormMargin, rtl::kFormMargin, rtl::kFormMargin);
  all->setSpacing(rtl::kFormMargin);
  all->addLayout(top, 1);
  if (parts.Line != nullptr) all->addWidget(widgetOf(*parts.Line));
  all->addLayout(buttons);
}

}  // namespace desktop
