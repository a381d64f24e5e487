// An action: a command of the user, shared by the controls that invoke it. The controls show its caption
// and are enabled with it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rtl {

class TControl;
class TForm;

// One row of a form resource. The events are names of published handlers of the form.
struct TActionRow {
  std::string_view Name;
  std::string_view Caption;
  std::string_view OnExecute;
  std::string_view OnUpdate;
};

class TAction {
 public:
  TAction(TForm& form, const TActionRow& row);
  TAction(const TAction&) = delete;
  TAction& operator=(const TAction&) = delete;

  const std::string& Name() const { return FName; }
  const std::string& Caption() const { return FCaption; }
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool enabled);

  // Fires OnUpdate, whose handler sets whether the action is enabled.
  void Update();
  // Calls Update, then fires OnExecute if the action is enabled.
  void Execute();

  // Called by the controls that invoke this action.
  void Link(TControl& control);
  void Unlink(TControl& control);

 private:
  TForm& FForm;
  std::string FName;
  std::string FCaption;
  std::string FOnExecute;
  std::string FOnUpdate;
  std::vector<TControl*> FControls;
  bool FEnabled = true;
};

}  // namespace rtl
