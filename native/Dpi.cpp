#include "native/Dpi.h"

#include <string_view>

namespace native {

namespace {

// Returns a function of user32.dll, or null if this version of Windows lacks it.
template <class TFunction>
TFunction UserFunction(const char* name) {
  const FARPROC function = GetProcAddress(GetModuleHandleW(L"user32.dll"), name);
  return reinterpret_cast<TFunction>(reinterpret_cast<void*>(function));
}

// Measures with a font on the screen.
class TScreenText {
 public:
  explicit TScreenText(HFONT font) : FScreen(GetDC(nullptr)), FOld(SelectObject(FScreen, font)) {}
  ~TScreenText() {
    SelectObject(FScreen, FOld);
    ReleaseDC(nullptr, FScreen);
  }
  TScreenText(const TScreenText&) = delete;
  TScreenText& operator=(const TScreenText&) = delete;
  HDC Context() const { return FScreen; }

 private:
  HDC FScreen;
  HGDIOBJ FOld;
};

// Returns the font of message boxes.
LOGFONTW MessageFont(int dpi) {
  using TForDpi = BOOL(WINAPI*)(UINT, UINT, PVOID, UINT, UINT);
  static const auto forDpi = UserFunction<TForDpi>("SystemParametersInfoForDpi");
  constexpr UINT kSize = sizeof(NONCLIENTMETRICSW);
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = kSize;
  if (forDpi != nullptr && forDpi(SPI_GETNONCLIENTMETRICS, kSize, &metrics, 0, static_cast<UINT>(dpi)) != 0)
    return metrics.lfMessageFont;
  // Windows before version 6 refuses the size with the last field.
  if (SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, kSize, &metrics, 0) == 0) {
    metrics.cbSize = kSize - static_cast<UINT>(sizeof metrics.iPaddedBorderWidth);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
  }
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, SystemDpi());
  return metrics.lfMessageFont;
}

}  // namespace

int DpiOf(HWND window) {
  static const auto ofWindow = UserFunction<UINT(WINAPI*)(HWND)>("GetDpiForWindow");
  const UINT dpi = ofWindow != nullptr ? ofWindow(window) : 0;
  return dpi != 0 ? static_cast<int>(dpi) : SystemDpi();
}

int SystemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi;
}

SIZE WindowSize(SIZE client, DWORD style, DWORD extendedStyle, int dpi) {
  using TForDpi = BOOL(WINAPI*)(RECT*, DWORD, BOOL, DWORD, UINT);
  static const auto forDpi = UserFunction<TForDpi>("AdjustWindowRectExForDpi");
  RECT frame = {0, 0, client.cx, client.cy};
  if (forDpi != nullptr) {
    forDpi(&frame, style, FALSE, extendedStyle, static_cast<UINT>(dpi));
  } else {
    AdjustWindowRectEx(&frame, style, FALSE, extendedStyle);
  }
  return {frame.right - frame.left, frame.bottom - frame.top};
}

TMetrics::TMetrics(int dpi) : FDpi(dpi) {
  LOGFONTW font = MessageFont(dpi);
  FFont = CreateFontIndirectW(&font);
  font.lfWeight = FW_BOLD;
  FBold = CreateFontIndirectW(&font);
  constexpr std::wstring_view kLetters = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  const TScreenText text(FFont);
  SIZE size{};
  GetTextExtentPoint32W(text.Context(), kLetters.data(), static_cast<int>(kLetters.size()), &size);
  FCharWidth =
      (static_cast<int>(size.cx) + static_cast<int>(kLetters.size()) / 2) / static_cast<int>(kLetters.size());
  FLineHeight = size.cy;
}

TMetrics::~TMetrics() {
  DeleteObject(FFont);
  DeleteObject(FBold);
}

SIZE TMetrics::SizeOf(const wchar_t* text, bool bold, int width, bool isPrefixed) const {
  const TScreenText measure(Font(bold));
  RECT size = {0, 0, width, 0};
  const UINT flags = DT_CALCRECT | (width > 0 ? DT_WORDBREAK : 0U) | (isPrefixed ? 0U : DT_NOPREFIX);
  DrawTextW(measure.Context(), text, -1, &size, flags);
  return {size.right, size.bottom};
}

}  // namespace native
