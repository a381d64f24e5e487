// The pictures and icons of forms, as the system's images.
#pragma once

#include "native/WindowsHeaders.h"
#include "rtl/forms/Controls.h"

namespace native {

// A bitmap, an icon, or nothing.
class TPictureImage {
 public:
  TPictureImage() = default;
  // Draws the image's picture, or loads its system icon, for that resolution.
  TPictureImage(const rtl::TImage& image, int dpi);
  ~TPictureImage();
  TPictureImage(TPictureImage&& other) noexcept;
  TPictureImage& operator=(TPictureImage&& other) noexcept;

  SIZE Size() const { return FSize; }  // in pixels
  // Draws it at the top left corner.
  void Draw(HDC context) const;

 private:
  SIZE FSize{};
  HBITMAP FBitmap = nullptr;
  HICON FIcon = nullptr;
};

}  // namespace native
