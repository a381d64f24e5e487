#include "desktop/ProgressWindow.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "MigWizard/wizard/Wizard.h"
#include "desktop/QtText.h"
#include "rtl/text/Exceptions.h"

namespace desktop {

namespace {

// Often enough to look smooth, rarely enough not to slow the run down.
constexpr qint64 kShowEvery = 40;  // milliseconds
constexpr int kWidth = 72;         // average characters

// A restore copies over the originals one by one, so it cannot be stopped halfway.
bool IsRestoring() {
  return mig::WizardForm && mig::WizardForm->GetReplacerIndex() == mig::kRestoreIndex;
}

// A dialog that no key closes before the run has ended.
class TRunDialog : public QDialog {
 public:
  using QDialog::QDialog;
  void reject() override {}
};

}  // namespace

TProgressWindow::TProgressWindow(std::vector<mig::TComponentReplacer*> replacers)
    : FReplacers(std::move(replacers)) {
  for (mig::TComponentReplacer* replacer : FReplacers) {
    replacer->OnProgress = [this, replacer](const mig::TRunProgress& progress) {
      Report(replacer->Options().GetTitle(), progress, !IsRestoring());
    };
    replacer->OnWarning = [this](std::string_view message) { FWarnings.append(message).append("\n"); };
  }
}

TProgressWindow::~TProgressWindow() {
  for (mig::TComponentReplacer* replacer : FReplacers) {
    replacer->OnProgress = nullptr;
    replacer->OnWarning = nullptr;
  }
}

void TProgressWindow::Report(const std::string& title, const mig::TRunProgress& progress, bool canStop) {
  if (!FWindow) Open(title, canStop);
  Show(progress);
}

void TProgressWindow::Open(const std::string& title, bool canStop) {
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
  rows->addWidget(FFileName);
  rows->addWidget(FBar);
  rows->addWidget(FStop, 0, Qt::AlignRight);
  FStopped = false;
  QObject::connect(FStop, &QPushButton::clicked, FWindow.get(), [this] {
    FStopped = true;
    FStop->setEnabled(false);
  });
  FWindow->show();
  FSinceShown.invalidate();
}

void TProgressWindow::Show(const mig::TRunProgress& progress) {
  const bool isLast = progress.Done >= progress.Known;
  if (FSinceShown.isValid() && FSinceShown.elapsed() < kShowEvery && !isLast) return;
  FBar->setRange(0, progress.Known);
  FBar->setValue(progress.Done);
  if (isLast) FStop->setEnabled(false);  // after this point originals are replaced
  const QString fileName = ToQt(progress.FileName);
  FFileName->setText(FFileName->fontMetrics().elidedText(fileName, Qt::ElideMiddle, FBar->width()));
  QApplication::processEvents();
  FSinceShown.start();
  if (FStopped && !isLast) {
    Close();
    throw rtl::EAbort("Stopped by the user.");
  }
}

void TProgressWindow::Close() {
  FWindow.reset();
}

}  // namespace desktop
