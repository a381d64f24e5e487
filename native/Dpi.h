// The resolution of windows, and the lengths and fonts that follow from it.
//
// Windows before version 10 has one resolution for all monitors. The functions that know of more are looked
// up when first called, so the program starts without them.
#pragma once

#include "native/WindowsHeaders.h"

namespace native {

inline constexpr int kStandardDpi = 96;  // one pixel is one device-independent pixel

// Return the resolution of the window's monitor, and that of the desktop when the user signed in.
int DpiOf(HWND window);
int SystemDpi();

// Returns the size of a window whose client area is `client`.
SIZE WindowSize(SIZE client, DWORD style, DWORD extendedStyle, int dpi);

// The fonts of dialogs for a resolution, and lengths in pixels that depend on them.
class TMetrics {
 public:
  explicit TMetrics(int dpi);
  ~TMetrics();
  TMetrics(const TMetrics&) = delete;
  TMetrics& operator=(const TMetrics&) = delete;

  int Dpi() const { return FDpi; }
  HFONT Font(bool bold = false) const { return bold ? FBold : FFont; }
  int CharWidth() const { return FCharWidth; }  // the average of the letters
  int LineHeight() const { return FLineHeight; }
  // Converts a length in device-independent pixels.
  int Scale(int length) const { return MulDiv(length, FDpi, kStandardDpi); }
  // Returns the size of a text, without accelerator marks if `isPrefixed`. Breaks lines between words if
  // `width` is not 0.
  SIZE SizeOf(const wchar_t* text, bool bold, int width, bool isPrefixed) const;

 private:
  int FDpi;
  HFONT FFont;
  HFONT FBold;
  int FCharWidth = 0;
  int FLineHeight = 0;
};

}  // namespace native
