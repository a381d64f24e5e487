// The widgets of controls: how each kind is drawn, and how user input reaches the control.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string_view>

#include "rtl/forms/ControlView.h"

namespace desktop {

// A control as a widget. The widget is owned by its Qt parent; this object lives as long as the window.
class TControlWidget : public rtl::TControlView {
 public:
  QWidget* Widget() const { return FWidget; }
  // Returns the parent for the widgets of contained controls: the widget itself, or a widget inside it.
  virtual QWidget* Inside() const { return FWidget; }
  // Converts the text that the user has typed to its final form, before a click on a button is handled.
  virtual void Settle() {}

 protected:
  TControlWidget(const rtl::TControl& control, QWidget* widget);
  // The operations that show a state do nothing if the widget shows it already, so the cursor in a text and
  // the position of a scrolled list are kept.
  void ShowEnabled() override { FWidget->setEnabled(FControl.Enabled()); }

 private:
  const rtl::TControl& FControl;
  QWidget* FWidget;
};

// Runs a function as one event of the user. Exceptions go to the application's handler.
using TEventRunner = std::function<void(const std::function<void()>&)>;

// `parent` is the parent of the new widget. `run` must outlive the widget.
std::unique_ptr<TControlWidget> CreateControlWidget(rtl::TControl& control, QWidget* parent,
                                                    const TEventRunner& run);

}  // namespace desktop
