// Uses the dialogs of another program as a user does.
//
//   usewizard CAPTION ACT [CAPTION ACT]...
//
// For each pair, waits for an enabled dialog with that caption and does the act in it: a click on the button
// of that text, with "=TEXT" the input of a text into the first field, or with "!TEXT" the question of the
// system, while that button is there, whether the session may end. Prints the caption, the texts of the dialog
// and the act, with the answer to the question. Exits with 1, after printing what is there instead, if a
// dialog does not come.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "win/windows/WindowsApi.h"
#include "win/windows/WindowsText.h"

namespace {

constexpr int kPatience = 600;  // times kPause
constexpr DWORD kPause = 100;   // milliseconds

std::wstring TextOf(HWND window) {
  std::wstring text(32768, L'\0');
  DWORD_PTR length = 0;
  SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_NORMAL,
                      5000, &length);
  text.resize(length);
  return text;
}

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

std::wstring WithoutMarks(std::wstring text) {
  std::erase(text, L'&');
  return text;
}

BOOL CALLBACK Append(HWND window, LPARAM list) {
  if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

// Return the visible dialogs of the desktop, and the visible controls of a dialog.
std::vector<HWND> Dialogs() {
  std::vector<HWND> windows;
  EnumWindows(Append, reinterpret_cast<LPARAM>(&windows));
  std::erase_if(windows, [](HWND window) { return ClassOf(window) != L"#32770"; });
  return windows;
}
std::vector<HWND> Controls(HWND dialog) {
  std::vector<HWND> controls;
  EnumChildWindows(dialog, Append, reinterpret_cast<LPARAM>(&controls));
  return controls;
}

// Returns the control that the act needs, or null if it is not there or disabled.
HWND FindControl(HWND dialog, const std::wstring& act) {
  for (const HWND control : Controls(dialog)) {
    if (IsWindowEnabled(control) == FALSE) continue;
    const bool isField = act.starts_with(L'=');
    const std::wstring kind = ClassOf(control);
    const std::wstring button = act.starts_with(L'!') ? act.substr(1) : act;
    if (isField ? kind == L"Edit" : kind == L"Button" && WithoutMarks(TextOf(control)) == button)
      return control;
  }
  return nullptr;
}

void Print(const std::wstring& line) {
  std::printf("%s\n", win::ToUtf8OrReplaced(line).c_str());
}

void PrintTexts(HWND dialog) {
  Print(L"[" + TextOf(dialog) + L"]");
  for (const HWND control : Controls(dialog)) {
    const std::wstring text = TextOf(control);
    const bool isOn =
        ClassOf(control) == L"Button" && SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED;
    const std::wstring state = IsWindowEnabled(control) == FALSE ? L" (disabled)" : isOn ? L" (on)" : L"";
    if (!text.empty()) Print(L"  " + WithoutMarks(text) + state);
  }
}

// Asks as the system does before it ends the session, and returns the answer.
std::wstring AskForEndOfSession(HWND window) {
  constexpr UINT kWait = 60000;  // milliseconds
  DWORD_PTR answer = 0;
  const LRESULT done = SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, kWait, &answer);
  return done == 0 ? L"no answer" : answer == 0 ? L"the session must not end" : L"the session may end";
}

bool Do(const std::wstring& caption, const std::wstring& act) {
  for (int i = 0; i < kPatience; ++i, Sleep(kPause)) {
    for (const HWND dialog : Dialogs()) {
      if (IsWindowEnabled(dialog) == FALSE || TextOf(dialog) != caption) continue;
      const HWND control = FindControl(dialog, act);
      if (control == nullptr) continue;
      PrintTexts(dialog);
      Print(L"  > " + act);
      if (act.starts_with(L'=')) {
        SendMessageW(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(act.c_str() + 1));
      } else if (act.starts_with(L'!')) {
        Print(L"  " + AskForEndOfSession(dialog));
      } else {
        PostMessageW(control, BM_CLICK, 0, 0);  // does not wait for what the click starts
      }
      return true;
    }
  }
  std::fprintf(stderr, "No dialog \"%s\" with \"%s\". What is there:\n",
               win::ToUtf8OrReplaced(caption).c_str(), win::ToUtf8OrReplaced(act).c_str());
  for (const HWND dialog : Dialogs()) PrintTexts(dialog);
  return false;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  for (int i = 1; i + 1 < count; i += 2) {
    if (!Do(arguments[i], arguments[i + 1])) return 1;
  }
  return 0;
}
