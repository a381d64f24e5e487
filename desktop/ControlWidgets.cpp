#include "desktop/ControlWidgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <cstdlib>

#include "desktop/PathLine.h"
#include "desktop/PicturePixmap.h"
#include "desktop/QtText.h"
#include "rtl/forms/Application.h"
#include "rtl/forms/FormRows.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

constexpr int kIconSize = 48;
// The form itself makes the path in this edit full, from the folder of the run.
constexpr char kRelativeEdit[] = "cbBackupDir";

// Converts a path that the user typed to a full Windows path. A relative one stays as it is unless `isFull`:
// only some controls take it from the folder of the process. Returns a text that is no path unchanged.
std::string AsWindowsPath(const std::string& typed, bool isFull) {
  const bool isHostPath = typed.starts_with('/') || typed.starts_with("~/");
  const bool isRelative = !isHostPath && rtl::ExtractFileDrive(typed).empty();
  if (!isHostPath && (!isFull || !isRelative || typed.empty())) return typed;
  const char* home = std::getenv("HOME");
  const std::string host = typed.front() == '~' && home != nullptr ? home + typed.substr(1) : typed;
  const std::string path = win::ToWindowsPath(host);
  return path.empty() ? typed : path;
}

class TLabelWidget : public TControlWidget {
 public:
  TLabelWidget(const rtl::TLabel& label, QWidget* parent)
      : TControlWidget(label, new QLabel(parent)), FLabel(label), FView(static_cast<QLabel*>(Widget())) {
    FView->setTextFormat(Qt::PlainText);
    const bool scrolls = label.Scrolls();
    // Make scrolling text readable, and possible to copy, from the keyboard.
    if (scrolls) FView->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    FView->setWordWrap(!scrolls);
    FView->setAlignment(Qt::AlignLeading | (scrolls ? Qt::AlignTop : Qt::AlignVCenter));
    QFont font = FView->font();
    font.setBold(label.Bold());
    FView->setFont(font);
  }

 protected:
  void ShowText() override { FView->setText(ToQt(FLabel.Text())); }

 private:
  const rtl::TLabel& FLabel;
  QLabel* FView;
};

// The widget of a radio button, a check box or a button.
template <class TControl, class TQtButton>
class TClickWidget : public TControlWidget {
 public:
  TClickWidget(TControl& control, QWidget* parent, const TEventRunner& run)
      : TControlWidget(control, new TQtButton(parent)),
        FButton(control),
        FView(static_cast<TQtButton*>(Widget())) {
    QObject::connect(FView, &TQtButton::clicked, FView, [this, &run] {
      run([this] { FButton.Click(); });
      ShowChecked();
    });
  }

 protected:
  void ShowText() override { FView->setText(ToQt(FButton.Text())); }
  void ShowChecked() override {
    if constexpr (requires { FButton.Checked(); }) FView->setChecked(FButton.Checked());
  }

 private:
  TControl& FButton;
  TQtButton* FView;
};

// A line of text: an edit, or the edit line of a combo box.
class TEditWidget : public TControlWidget {
 public:
  TEditWidget(rtl::TEdit& edit, QWidget* parent, const TEventRunner& run)
      : TEditWidget(edit, new TPathLine(parent), run) {}

 protected:
  // `widget` is the line itself, or the widget that contains it.
  TEditWidget(rtl::TEdit& edit, QWidget* widget, QLineEdit* line, const TEventRunner& run)
      : TControlWidget(edit, widget), FEdit(edit), FLine(line) {
    QObject::connect(FLine, &QLineEdit::textEdited, FLine,
                     [this, &run](const QString& text) { run([&] { FEdit.Enter(FromQt(text)); }); });
  }
  void Settle() override { FEdit.Enter(AsWindowsPath(FEdit.Text(), FEdit.Name() != kRelativeEdit)); }
  void ShowText() override {
    const QString text = ToQt(FEdit.Text());
    if (FLine->text() != text) FLine->setText(text);
  }

 private:
  TEditWidget(rtl::TEdit& edit, QLineEdit* line, const TEventRunner& run)
      : TEditWidget(edit, line, line, run) {}

  rtl::TEdit& FEdit;
  QLineEdit* FLine;
};

class TComboWidget : public TEditWidget {
 public:
  TComboWidget(rtl::TComboBox& combo, QWidget* parent, const TEventRunner& run)
      : TComboWidget(combo, NewView(parent), run) {}

 protected:
  void ShowItems() override {
    const QSignalBlocker blocker(FView);
    FView->clear();
    for (int i = 0; i < FCombo.Items().Count(); ++i) FView->addItem(ToQt(FCombo.Items()[i]));
    FView->setCurrentIndex(-1);  // no entry yet, so the arrow keys start at the first one
    ShowText();
  }

 private:
  TComboWidget(rtl::TComboBox& combo, QComboBox* view, const TEventRunner& run)
      : TEditWidget(combo, view, view->lineEdit(), run), FCombo(combo), FView(view) {
    QObject::connect(FView, &QComboBox::activated, FView,
                     [this, &run](int index) { run([&] { FCombo.Pick(index); }); });
  }
  static QComboBox* NewView(QWidget* parent) {
    auto* const view = new QComboBox(parent);
    view->setEditable(true);
    view->setLineEdit(new TPathLine);
    view->setInsertPolicy(QComboBox::NoInsert);
    view->setCompleter(nullptr);
    view->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    view->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return view;
  }

  rtl::TComboBox& FCombo;
  QComboBox* FView;
};

class TCheckListWidget : public TControlWidget {
 public:
  TCheckListWidget(rtl::TCheckListBox& list, QWidget* parent, const TEventRunner& run)
      : TControlWidget(list, new QListWidget(parent)),
        FList(list),
        FView(static_cast<QListWidget*>(Widget())) {
    FView->setUniformItemSizes(true);
    FView->setMinimumHeight(FView->fontMetrics().lineSpacing() * rtl::kVisibleEntries);
    QObject::connect(FView, &QListWidget::itemChanged, FView, [this, &run](const QListWidgetItem* item) {
      run([&] { FList.SetChecked(FView->row(item), item->checkState() == Qt::Checked); });
    });
  }

 protected:
  void ShowItems() override {
    const QSignalBlocker blocker(FView);
    FView->clear();
    for (int i = 0; i < FList.Count(); ++i) FView->addItem(ToQt(FList.Entry(i)));
    ShowChecked();
    if (FView->count() > 0) FView->setCurrentRow(0);
  }
  void ShowChecked() override {
    const QSignalBlocker blocker(FView);
    for (int i = 0; i < FList.Count(); ++i) {
      FView->item(i)->setCheckState(FList.Checked(i) ? Qt::Checked : Qt::Unchecked);
    }
    FView->viewport()->update();
  }

 private:
  rtl::TCheckListBox& FList;
  QListWidget* FView;
};

class TPagesWidget : public TControlWidget {
 public:
  TPagesWidget(const rtl::TPageControl& pages, QWidget* parent)
      : TControlWidget(pages, new QStackedWidget(parent)),
        FPages(pages),
        FView(static_cast<QStackedWidget*>(Widget())) {}

 protected:
  void ShowActivePage() override { FView->setCurrentIndex(FPages.ActivePageIndex()); }

 private:
  const rtl::TPageControl& FPages;
  QStackedWidget* FView;
};

class TScrollWidget : public TControlWidget {
 public:
  TScrollWidget(const rtl::TControl& box, QWidget* parent)
      : TControlWidget(box, new QScrollArea(parent)), FInside(new QWidget) {
    auto* const view = static_cast<QScrollArea*>(Widget());
    view->setWidget(FInside);
    view->setWidgetResizable(true);
    view->setMinimumHeight(view->fontMetrics().lineSpacing() * rtl::kVisibleEntries);
    view->setBackgroundRole(QPalette::Base);
  }
  QWidget* Inside() const override { return FInside; }

 private:
  QWidget* FInside;
};

class TImageWidget : public TControlWidget {
 public:
  TImageWidget(const rtl::TImage& image, QWidget* parent)
      : TControlWidget(image, new QLabel(parent)), FImage(image), FView(static_cast<QLabel*>(Widget())) {
    FView->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
  }

 protected:
  void ShowPicture() override {
    if (FImage.SystemIcon() == rtl::IDI_QUESTION) {
      FView->setPixmap(FView->style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(kIconSize));
    } else {
      FView->setPixmap(PixmapOf(FImage.Picture(), FView->devicePixelRatioF()));
    }
  }

 private:
  const rtl::TImage& FImage;
  QLabel* FView;
};

// Returns a horizontal line in a colour that is unobtrusive on light and dark backgrounds.
QFrame* NewLine(QWidget* parent) {
  auto* const line = new QFrame(parent);
  line->setFrameShape(QFrame::HLine);
  line->setFrameShadow(QFrame::Plain);
  line->setForegroundRole(QPalette::Mid);
  return line;
}

// A control that only contains others, or a line.
class TPlainWidget : public TControlWidget {
 public:
  TPlainWidget(const rtl::TControl& control, QWidget* widget) : TControlWidget(control, widget) {}
};

}  // namespace

std::unique_ptr<TControlWidget> CreateControlWidget(rtl::TControl& control, QWidget* parent,
                                                    const TEventRunner& run) {
  using rtl::TControlKind;
  switch (control.Kind()) {
    case TControlKind::Label:
      return std::make_unique<TLabelWidget>(static_cast<rtl::TLabel&>(control), parent);
    case TControlKind::RadioButton:
      return std::make_unique<TClickWidget<rtl::TRadioButton, QRadioButton>>(
          static_cast<rtl::TRadioButton&>(control), parent, run);
    case TControlKind::CheckBox:
      return std::make_unique<TClickWidget<rtl::TCheckBox, QCheckBox>>(static_cast<rtl::TCheckBox&>(control),
                                                                       parent, run);
    case TControlKind::Button:
      return std::make_unique<TClickWidget<rtl::TButton, QPushButton>>(static_cast<rtl::TButton&>(control),
                                                                       parent, run);
    case TControlKind::Edit:
      return std::make_unique<TEditWidget>(static_cast<rtl::TEdit&>(control), parent, run);
    case TControlKind::ComboBox:
      return std::make_unique<TComboWidget>(static_cast<rtl::TComboBox&>(control), parent, run);
    case TControlKind::CheckListBox:
      return std::make_unique<TCheckListWidget>(static_cast<rtl::TCheckListBox&>(control), parent, run);
    case TControlKind::PageControl:
      return std::make_unique<TPagesWidget>(static_cast<rtl::TPageControl&>(control), parent);
    case TControlKind::Image:
      return std::make_unique<TImageWidget>(static_cast<rtl::TImage&>(control), parent);
    case TControlKind::ScrollBox:
      return std::make_unique<TScrollWidget>(control, parent);
    case TControlKind::Bevel:
      return std::make_unique<TPlainWidget>(control, NewLine(parent));
    case TControlKind::TabSheet:
      break;
  }
  return std::make_unique<TPlainWidget>(control, new QWidget(parent));
}

TControlWidget::TControlWidget(const rtl::TControl& control, QWidget* widget)
    : FControl(control), FWidget(widget) {
  widget->setObjectName(ToQt(control.Name()));
}

}  // namespace desktop
