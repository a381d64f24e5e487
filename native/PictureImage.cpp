#include "native/PictureImage.h"

#include <gdiplus.h>
#include <utility>
#include <vector>

#include "native/Dpi.h"

namespace native {

namespace {

constexpr int kIconSize = 48;  // in device-independent pixels

// Keeps the drawing library loaded until the program ends.
void LoadDrawing() {
  static const Gdiplus::Status kStatus = [] {
    ULONG_PTR token = 0;
    const Gdiplus::GdiplusStartupInput input;
    return Gdiplus::GdiplusStartup(&token, &input, nullptr);
  }();
  static_cast<void>(kStatus);
}

Gdiplus::PointF At(rtl::TPoint point) {
  return {static_cast<float>(point.X), static_cast<float>(point.Y)};
}

void AddOutline(Gdiplus::GraphicsPath& path, const rtl::TOutline& outline) {
  rtl::TPoint start = outline.back().End;
  for (const rtl::TOutlineStep& step : outline) {
    if (step.IsCurve) {
      path.AddBezier(At(start), At(step.Control1), At(step.Control2), At(step.End));
    } else {
      path.AddLine(At(start), At(step.End));
    }
    start = step.End;
  }
  path.CloseFigure();
}

void Fill(Gdiplus::Graphics& graphics, const Gdiplus::GraphicsPath& path, const rtl::TFill& fill) {
  std::vector<Gdiplus::Color> colors;
  std::vector<float> offsets;
  for (const auto& [offset, color] : fill.Stops) {
    colors.emplace_back(color.Opacity, color.Red, color.Green, color.Blue);
    offsets.push_back(static_cast<float>(offset));
  }
  Gdiplus::LinearGradientBrush brush(At(fill.Start), At(fill.End), colors.front(), colors.back());
  brush.SetInterpolationColors(colors.data(), offsets.data(), static_cast<int>(colors.size()));
  brush.SetWrapMode(Gdiplus::WrapModeTileFlipXY);
  graphics.FillPath(&brush, &path);
}

HBITMAP Render(const rtl::TPicture& picture, SIZE size) {
  LoadDrawing();
  Gdiplus::Bitmap bitmap(size.cx, size.cy, PixelFormat32bppPARGB);
  Gdiplus::Graphics graphics(&bitmap);
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
  graphics.SetPixelOffsetMode(Gdiplus::PixelOffsetModeHalf);
  graphics.ScaleTransform(static_cast<float>(size.cx) / static_cast<float>(picture.Width),
                          static_cast<float>(size.cy) / static_cast<float>(picture.Height));
  for (const auto& [outline, fill] : picture.Shapes) {
    Gdiplus::GraphicsPath path;
    AddOutline(path, outline);
    Fill(graphics, path, fill);
  }
  Gdiplus::Color background;
  background.SetFromCOLORREF(GetSysColor(COLOR_3DFACE));
  HBITMAP result = nullptr;
  bitmap.GetHBITMAP(background, &result);
  return result;
}

// Returns a system icon of at least the usual size; Windows before version 6 have only that one.
HICON LoadSystemIcon(int identifier, int size) {
  using TLoad = HRESULT(WINAPI*)(HINSTANCE, PCWSTR, int, int, HICON*);
  static const auto load = reinterpret_cast<TLoad>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"comctl32.dll"), "LoadIconWithScaleDown")));
  HICON icon = nullptr;
  if (load != nullptr && load(nullptr, MAKEINTRESOURCEW(identifier), size, size, &icon) == S_OK) return icon;
  return CopyIcon(LoadIconW(nullptr, MAKEINTRESOURCEW(identifier)));
}

}  // namespace

TPictureImage::TPictureImage(const rtl::TImage& image, int dpi) {
  const auto scale = [dpi](int length) { return MulDiv(length, dpi, kStandardDpi); };
  if (image.SystemIcon() != 0) {
    const int size = scale(kIconSize);
    FIcon = LoadSystemIcon(image.SystemIcon(), size);
    FSize = {size, size};
    return;
  }
  const rtl::TPicture picture = image.Picture();
  if (picture.Shapes.empty()) return;
  FSize = {scale(picture.Width), scale(picture.Height)};
  FBitmap = Render(picture, FSize);
}

TPictureImage::~TPictureImage() {
  if (FBitmap != nullptr) DeleteObject(FBitmap);
  if (FIcon != nullptr) DestroyIcon(FIcon);
}

TPictureImage::TPictureImage(TPictureImage&& other) noexcept
    : FSize(other.FSize),
      FBitmap(std::exchange(other.FBitmap, nullptr)),
      FIcon(std::exchange(other.FIcon, nullptr)) {}

TPictureImage& TPictureImage::operator=(TPictureImage&& other) noexcept {
  std::swap(FSize, other.FSize);
  std::swap(FBitmap, other.FBitmap);
  std::swap(FIcon, other.FIcon);
  return *this;
}

void TPictureImage::Draw(HDC context) const {
  const RECT place = {0, 0, FSize.cx, FSize.cy};
  FillRect(context, &place, GetSysColorBrush(COLOR_3DFACE));
  if (FIcon != nullptr) DrawIconEx(context, 0, 0, FIcon, FSize.cx, FSize.cy, 0, nullptr, DI_NORMAL);
  if (FBitmap == nullptr) return;
  const HDC source = CreateCompatibleDC(context);
  const HGDIOBJ old = SelectObject(source, FBitmap);
  BitBlt(context, 0, 0, FSize.cx, FSize.cy, source, 0, 0, SRCCOPY);
  SelectObject(source, old);
  DeleteDC(source);
}

}  // namespace native
