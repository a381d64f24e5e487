#include "desktop/DifferenceWindow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <QtConcurrentRun>

#include "desktop/DiffView.h"
#include "desktop/QtText.h"

namespace desktop {

namespace {

constexpr QSize kSize(1000, 600);
constexpr TDiffLayout kLayout = {.SideBySide = true};

}  // namespace

TDifferenceWindow::TDifferenceWindow(const QString& fileName, const QString& left, const QString& right,
                                     const std::function<std::shared_ptr<const TFileDiff>()>& compare,
                                     QWidget* parent)
    : QDialog(parent), FView(new TDiffView(nullptr)) {
  setObjectName("DifferenceWindow");
  setWindowTitle(fileName);
  auto* const sides = new QHBoxLayout;
  for (const QString& side : {left, right}) sides->addWidget(new QLabel(side), 1);
  auto* const close = new QPushButton("Close");
  close->setObjectName("Close");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* const rows = new QVBoxLayout(this);
  rows->addLayout(sides);
  rows->addWidget(FView, 1);
  rows->addWidget(close, 0, Qt::AlignRight);
  resize(kSize.boundedTo(screen()->availableSize() * 9 / 10));
  FView->ShowNote("Comparing...");
  connect(&FTask, &QFutureWatcherBase::finished, this, [this] {
    FIsComparing = false;
    ShowResult(FTask.result());
  });
  FTask.setFuture(QtConcurrent::run(Compare, compare));
}

TDifferenceWindow::TResult TDifferenceWindow::Compare(
    const std::function<std::shared_ptr<const TFileDiff>()>& compare) {
  TResult result;
  try {
    result.Page = MakeDiffPage(*compare(), kLayout);
  } catch (const std::exception& error) {
    result.Failure = ToQt(error.what());
  }
  return result;
}

void TDifferenceWindow::ShowResult(TResult result) {
  if (!result.Failure.isEmpty()) return FView->ShowNote(result.Failure);
  if (result.Page.Changes.empty()) return FView->ShowNote("There is no difference.");
  FView->ShowPage(std::move(result.Page), kLayout, /*atLastChange=*/false);
}

}  // namespace desktop
