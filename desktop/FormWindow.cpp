#include "desktop/FormWindow.h"

#include <QAbstractEventDispatcher>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTimer>

#include "desktop/FormLayout.h"
#include "desktop/QtText.h"
#include "rtl/forms/Application.h"

namespace desktop {

TFormWindow::TFormWindow(rtl::TForm& form, QWidget* parent) : QDialog(parent), FForm(form) {
  FRunner = [this](const auto& event) { RunEvent(event); };
  FClickRunner = [this](const auto& click) {
    RunEvent([&] {
      for (const auto& [control, widget] : FWidgets) widget->Settle();
      click();
    });
  };
  setObjectName(ToQt(form.Name()));
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowCloseButtonHint);
  AddWidgets(form.Controls(), this);
  LayOutForm(form, this, [this](const rtl::TControl& control) { return WidgetOf(control); });
  ConnectLabels();
  SetTabOrder();
  for (const auto& [control, widget] : FWidgets) widget->ShowAll();
  setMinimumWidth(fontMetrics().averageCharWidth() * form.MinimumWidth());
  form.SetView(this);
  CaptionChanged();
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
          [this] { BeIdle(); });
}

TFormWindow::~TFormWindow() {
  FForm.SetView(nullptr);
}

void TFormWindow::AddWidgets(const std::vector<rtl::TControl*>& controls, QWidget* parent) {
  for (rtl::TControl* control : controls) {
    const bool isButton = control->Kind() == rtl::TControlKind::Button;
    auto widget = CreateControlWidget(*control, parent, isButton ? FClickRunner : FRunner);
    FOrder.push_back(control);
    QWidget* const inside = widget->Inside();
    FWidgets.emplace(control, std::move(widget));
    if (control->Controls().empty()) continue;
    AddWidgets(control->Controls(), inside);
    if (control->Kind() == rtl::TControlKind::PageControl) {
      auto* const pages = static_cast<QStackedWidget*>(inside);
      for (const rtl::TControl* page : control->Controls()) pages->addWidget(WidgetOf(*page));
      const rtl::TPlace& place = control->Place();
      inside->setMinimumSize(fontMetrics().averageCharWidth() * place.Width, place.Height);
    } else {
      LayOutBox(control->Controls(), inside, [this](const rtl::TControl& inner) { return WidgetOf(inner); });
      if (control->Kind() == rtl::TControlKind::TabSheet) inside->layout()->setContentsMargins(0, 0, 0, 0);
    }
  }
}

void TFormWindow::ConnectLabels() {
  for (const rtl::TControl* control : FOrder) {
    if (control->Kind() != rtl::TControlKind::Label) continue;
    const rtl::TControl* const target = static_cast<const rtl::TLabel*>(control)->FocusControl();
    if (target != nullptr) static_cast<QLabel*>(WidgetOf(*control))->setBuddy(WidgetOf(*target));
  }
}

void TFormWindow::SetTabOrder() {
  QWidget* last = nullptr;
  for (const rtl::TControl* control : FOrder) {
    QWidget* const widget = WidgetOf(*control);
    if (widget->focusPolicy() == Qt::NoFocus) continue;
    if (last != nullptr) setTabOrder(last, widget);
    last = widget;
  }
}

void TFormWindow::Run() {
  if (FForm.ModalResult() != rtl::mrNone) return;
  Place();
  exec();
  FForm.SetLeft(x());
  FForm.SetTop(y());
}

// Makes the window large enough for all texts. The style measures some of them only when they are shown.
void TFormWindow::Fit() {
  layout()->activate();
  const int width = isVisible() ? this->width() : sizeHint().expandedTo(minimumSize()).width();
  const int height =
      layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : sizeHint().height();
  setFixedSize(width, isVisible() ? qMax(height, this->height()) : height);
}

bool TFormWindow::event(QEvent* event) {
  const bool isHandled = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest && isVisible()) Fit();
  return isHandled;
}

void TFormWindow::Place() {
  Fit();
  const QRect wanted(QPoint(FForm.Left(), FForm.Top()), size());
  const QScreen* const screen = QGuiApplication::screenAt(wanted.center());
  if (!FForm.Centered() && screen != nullptr) {
    move(wanted.topLeft());
  } else if (QGuiApplication::primaryScreen() != nullptr) {
    move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
  }
}

void TFormWindow::RunEvent(const std::function<void()>& event) {
  try {
    event();
  } catch (const std::exception& exception) {
    rtl::Application().HandleException(exception);
  }
}

void TFormWindow::BeIdle() {
  if (FIsIdle || !isVisible()) return;
  FIsIdle = true;  // showing a change may process events, and so become idle again
  RunEvent([this] { FForm.UpdateActions(); });
  const rtl::TButton* const defaultButton = FForm.DefaultButton();
  if (defaultButton != nullptr) static_cast<QPushButton*>(WidgetOf(*defaultButton))->setDefault(true);
  const rtl::TControl* const first = FPageTurned ? FForm.FirstControl() : nullptr;
  if (first != nullptr) WidgetOf(*first)->setFocus();
  FPageTurned = false;
  FIsIdle = false;
}

void TFormWindow::ControlChanged(const rtl::TControl& control, rtl::TChange what) {
  FWidgets.at(&control)->Show(what);
  if (what == rtl::TChange::ActivePage) FPageTurned = true;
}

void TFormWindow::FocusChanged(const rtl::TControl& control) {
  WidgetOf(control)->setFocus();
}

void TFormWindow::CaptionChanged() {
  setWindowTitle(ToQt(FForm.Caption()));
}

void TFormWindow::ModalResultChanged() {
  QTimer::singleShot(0, this, [this] { done(FForm.ModalResult()); });
}

void TFormWindow::reject() {
  if (rtl::TButton* const button = FForm.CancelButton()) {
    RunEvent([button] { button->Click(); });
  } else {
    FForm.Close();
  }
}

void TFormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  FForm.Close();
}

}  // namespace desktop
