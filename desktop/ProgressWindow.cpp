#include "desktop/ProgressWindow.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/QtText.h"

namespace desktop {

namespace {

constexpr int kWidth = 72;  // average characters

// A dialog that no key closes before the run has ended.
class TRunDialog : public QDialog {
 public:
  using QDialog::QDialog;
  void reject() override {}
};

}  // namespace

TProgressWindow::TProgressWindow() = default;
TProgressWindow::~TProgressWindow() = default;

void TProgressWindow::OpenWindow(const std::string& title, bool canStop) {
  FWindow = std::make_unique<TRunDialog>(QApplication::activeWindow());
  FWindow->setObjectName("ProgressWindow");
  FWindow->setWindowTitle(ToQt(title));
  FWindow->setModal(true);
  FWindow->setMinimumWidth(FWindow->fontMetrics().averageCharWidth() * kWidth);
  auto* const rows = new QVBoxLayout(FWindow.get());
  FFileName = new QLabel(FWindow.get());
  FFileName->setTextFormat(Qt::PlainText);
  FBar = new QProgressBar(FWindow.get());
  FBar->setFormat("%v of %m");
  FStop = new QPushButton("&Stop", FWindow.get());
  FStop->setObjectName("Stop");
  FStop->setAutoDefault(false);  // the Enter key that started the run must not stop it
  FStop->setVisible(canStop);
  FPhase = new QLabel(FWindow.get());
  FPhase->setObjectName("Phase");
  rows->addWidget(FPhase);
  rows->addWidget(FFileName);
  rows->addWidget(FBar);
  rows->addWidget(FStop, 0, Qt::AlignRight);
  QObject::connect(FStop, &QPushButton::clicked, FWindow.get(), [this] {
    Stop();
    FStop->setEnabled(false);
  });
  FWindow->show();
}

void TProgressWindow::ShowState(const mig::TRunProgress& progress, bool canStop) {
  FPhase->setText(mig::NameOf(progress.Phase));
  FBar->setRange(0, progress.PhaseTotal);
  FBar->setValue(progress.PhaseDone);
  if (!canStop) FStop->setEnabled(false);
  const QString fileName = ToQt(progress.FileName);
  FFileName->setText(FFileName->fontMetrics().elidedText(fileName, Qt::ElideMiddle, FBar->width()));
  QApplication::processEvents();
}

void TProgressWindow::CloseWindow() {
  FWindow.reset();
}

}  // namespace desktop
