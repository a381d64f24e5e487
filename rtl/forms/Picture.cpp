#include "rtl/forms/Picture.h"

namespace rtl {

namespace {

// The distance of the control points that makes a Bezier curve nearly a quarter of a circle of radius 1.
constexpr double kCircle = 0.5522847498;

TOutlineStep LineTo(TPoint end) {
  return {.End = end};
}

}  // namespace

TOutline Polygon(const std::vector<TPoint>& corners) {
  TOutline outline;
  for (const TPoint corner : corners) outline.push_back(LineTo(corner));
  return outline;
}

TOutline Rectangle(TPoint topLeft, double width, double height) {
  return Polygon({topLeft,
                  {topLeft.X + width, topLeft.Y},
                  {topLeft.X + width, topLeft.Y + height},
                  {topLeft.X, topLeft.Y + height}});
}

void AddLowerHalf(TOutline& outline, TPoint center, double radiusX, double radiusY) {
  const auto at = [&](double x, double y) { return TPoint{center.X + x * radiusX, center.Y + y * radiusY}; };
  outline.push_back({true, at(-1, kCircle), at(-kCircle, 1), at(0, 1)});
  outline.push_back({true, at(kCircle, 1), at(1, kCircle), at(1, 0)});
}

TOutline Ellipse(TPoint center, double radiusX, double radiusY) {
  TOutline outline;
  AddLowerHalf(outline, center, radiusX, radiusY);
  AddLowerHalf(outline, center, -radiusX, -radiusY);
  return outline;
}

}  // namespace rtl
