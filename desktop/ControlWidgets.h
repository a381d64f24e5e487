// The widget of a control: how each kind is drawn, and how what the user does there reaches the control.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string_view>

#include "rtl/forms/Controls.h"

namespace desktop {

// A control as a widget. The widget belongs to its Qt parent; this object lives as long as the window.
class TControlWidget {
 public:
  virtual ~TControlWidget() = default;

  QWidget* Widget() const { return FWidget; }
  // Where the widgets of the control's own controls stand: the widget itself, or what is inside it.
  virtual QWidget* Inside() const { return FWidget; }
  // Shows the control's present state of that sort. A widget that shows it already is not touched: a cursor
  // in a text, a scrolled list stay as they are.
  void Show(rtl::TChange what);
  void ShowAll();
  // Brings what the user has typed into its final form, before a click on a button goes by it.
  virtual void Settle() {}

 protected:
  TControlWidget(const rtl::TControl& control, QWidget* widget);
  virtual void ShowText() {}
  virtual void ShowChecked() {}
  virtual void ShowItems() {}
  virtual void ShowActivePage() {}
  virtual void ShowPicture() {}

 private:
  const rtl::TControl& FControl;
  QWidget* FWidget;
};

// What surrounds the widgets of a form: runs what the user does as one event, in which an exception goes to
// the application's handler.
using TEventRunner = std::function<void(const std::function<void()>&)>;

// `parent` is where the widget stands. `run` outlives the widget.
std::unique_ptr<TControlWidget> CreateControlWidget(rtl::TControl& control, QWidget* parent,
                                                    const TEventRunner& run);

}  // namespace desktop
