// A picture as filled shapes, independent of any toolkit. A front end draws it, sharp at every resolution.
//
//   TPicture picture{.Width = 20, .Height = 20};
//   picture.Add(Polygon({{2, 18}, {10, 2}, {18, 18}}), {{0, 0}, {0, 20}, {{0, {255, 0, 0}}, {1, {0, 0, 255}}}});
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace rtl {

struct TColor {
  uint8_t Red = 0;
  uint8_t Green = 0;
  uint8_t Blue = 0;
  uint8_t Opacity = 255;
};

// In device-independent pixels, from the top left corner.
struct TPoint {
  double X = 0;
  double Y = 0;
};

// A closed outline. Each step starts at the end of the one before it, the first at the end of the last.
struct TOutlineStep {
  bool IsCurve = false;  // a cubic Bezier curve with these control points, otherwise a line
  TPoint Control1 = {};
  TPoint Control2 = {};
  TPoint End;
};
using TOutline = std::vector<TOutlineStep>;

// A fill whose colour changes from `Start` to `End`. Offsets are from 0 to 1, in ascending order; the first
// one is 0, the last one 1.
struct TFill {
  struct TStop {
    double Offset = 0;
    TColor Color;
  };
  TPoint Start;
  TPoint End;
  std::vector<TStop> Stops;
};

struct TPicture {
  struct TShape {
    TOutline Outline;
    TFill Fill;
  };
  int Width = 0;  // in device-independent pixels
  int Height = 0;
  std::vector<TShape> Shapes = {};  // the first one is the lowest

  void Add(TOutline outline, TFill fill) { Shapes.push_back({std::move(outline), std::move(fill)}); }
};

TOutline Polygon(const std::vector<TPoint>& corners);
TOutline Rectangle(TPoint topLeft, double width, double height);
TOutline Ellipse(TPoint center, double radiusX, double radiusY);
// Appends the lower half of an ellipse, from its left end, where the outline ends, to its right end.
void AddLowerHalf(TOutline& outline, TPoint center, double radiusX, double radiusY);

}  // namespace rtl
