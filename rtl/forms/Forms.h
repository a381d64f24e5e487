// TForm: a dialog as state and published handlers, independent of any toolkit.
//
// A form is built from its resource, a table of controls and actions. A derived form adds a table of its
// own: a row with a new name adds a control at the end of its parent; a row with a known name changes that
// control and moves it to the end of its parent. An event looks its handler up by name when it fires, so a
// derived form replaces an inherited handler by publishing its own under the same name.
//
//   class TAskForm : public rtl::TForm {
//    public:
//     TAskForm() : TForm(kAskForm), edName(Control<rtl::TEdit>("edName")) { Publish("btOkClick", ...); }
//     rtl::TEdit& edName;
//   };
//   if (form.ShowModal() == rtl::mrOk) ...
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/forms/Actions.h"
#include "rtl/forms/Controls.h"
#include "rtl/text/Exceptions.h"

namespace rtl {

// Notifications to the front end that shows a form. Calls come from within the operation that changed the
// state.
class IFormView {
 public:
  virtual ~IFormView() = default;
  virtual void ControlChanged(const TControl& control, TChange what) = 0;
  virtual void FocusChanged(const TControl& control) = 0;
  virtual void CaptionChanged() = 0;
  // The modal result was set. The form must close as soon as the current handler has returned.
  virtual void ModalResultChanged() = 0;
};

struct TFormResource {
  std::string_view Name;
  std::string_view Caption;
  std::string_view OnShow = {};
  std::string_view OnClose = {};
  int MinimumWidth = 0;  // of the window, in average characters of the font
  std::span<const TActionRow> Actions = {};
  std::span<const TControlRow> Controls = {};
};

class TForm {
 public:
  // Empty fields of `derived` leave those of `resource` unchanged.
  explicit TForm(const TFormResource& resource, const TFormResource& derived = {});
  virtual ~TForm();
  TForm(const TForm&) = delete;
  TForm& operator=(const TForm&) = delete;

  const std::string& Name() const { return FName; }
  const std::string& Caption() const { return FCaption; }
  void SetCaption(std::string_view caption);

  // The form's bounds on the screen, in device-independent pixels. The form is centred on the screen until
  // its bounds differ from the initial ones.
  int Left() const { return FLeft; }
  int Top() const { return FTop; }
  void SetLeft(int left) { FLeft = left; }
  void SetTop(int top) { FTop = top; }
  bool Centered() const { return FLeft == 0 && FTop == 0; }

  // Returns the minimum width of the window, in average characters of the font.
  int MinimumWidth() const { return FMinimumWidth; }

  // Shows the form until it has a modal result, and returns it. Fires OnShow first and OnClose last.
  int ShowModal();
  int ModalResult() const { return FModalResult; }
  void SetModalResult(int result);
  // User input: closes the form by its system menu. Sets the modal result to mrCancel.
  void Close() { SetModalResult(mrCancel); }

  // Calls Update of all actions. The front end calls it whenever it is idle.
  void UpdateActions();

  // Return the button for the Enter or the Cancel key: the first enabled one with that property, or null.
  TButton* DefaultButton() const { return FindButton(&TButton::Default); }
  TButton* CancelButton() const { return FindButton(&TButton::Cancel); }
  // Returns the control that gets the focus when a page appears: the first enabled one on the page that takes
  // input (of radio buttons, the checked one), or else the default button; null if there is neither. So the
  // Enter key alone is enough to step through all pages and to answer a question.
  TControl* FirstControl() const;

  // Return the control of that name, ignoring case. If there is none, the first returns null, the second
  // raises EAssertionFailed.
  TControl* FindControl(std::string_view name) const;
  template <typename T>
  T& Control(std::string_view name) const {
    auto* const control = dynamic_cast<T*>(FindControl(name));
    Assert(control != nullptr, "No such control");
    return *control;
  }
  TAction& Action(std::string_view name) const;
  const std::vector<TControl*>& Controls() const { return FControls; }  // directly on the form, in tab order

  // Calls the published handler of that name. Raises EAssertionFailed if there is none.
  void Call(std::string_view handler);

  // The view is not owned; null if there is none.
  IFormView* View() const { return FView; }
  void SetView(IFormView* view) { FView = view; }

 protected:
  // Publishes a handler. It replaces an inherited one of that name.
  void Publish(std::string_view name, std::function<void()> handler);

 private:
  void Read(const TFormResource& resource);
  void ReadControl(const TControlRow& row);
  TButton* FindButton(bool (TButton::*role)() const) const;

  std::string FName;
  std::string FCaption;
  std::string FOnShow;
  std::string FOnClose;
  std::vector<std::unique_ptr<TAction>> FActions;
  std::vector<std::unique_ptr<TControl>> FOwned;
  std::vector<TControl*> FControls;
  std::map<std::string, std::function<void()>, std::less<>> FHandlers;
  IFormView* FView = nullptr;
  int FModalResult = mrNone;
  int FLeft = 0;
  int FTop = 0;
  int FMinimumWidth = 0;
};

}  // namespace rtl
