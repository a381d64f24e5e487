#include "target/KVAPicture.h"

#include <algorithm>

namespace target {

namespace {

using rtl::TColor;
using rtl::TFill;
using rtl::TOutline;
using rtl::TPicture;

constexpr int kWidth = 120;
constexpr int kHeight = 260;
constexpr double kCenter = kWidth / 2.0;

TColor Lighter(TColor color) {
  const auto light = [](uint8_t part) { return static_cast<uint8_t>(std::min(255, part * 118 / 100)); };
  return {light(color.Red), light(color.Green), light(color.Blue)};
}

TFill Plain(TColor color) {
  return {{0, 0}, {kWidth, 0}, {{0, color}, {1, color}}};
}

// Draws lines of source text in the background. Longer lines are indented less.
void DrawSource(TPicture& picture) {
  constexpr int kLines[][2] = {{0, 58}, {10, 70}, {10, 44}, {20, 52}, {20, 30}, {10, 62}, {0, 36}};
  for (int y = 12, i = 0; y < kHeight; y += 9, i = (i + 1) % 7) {
    picture.Add(rtl::Rectangle({13.0 + kLines[i][0], y - 1.5}, kLines[i][1] - 8.0, 3),
                Plain({255, 255, 255, 26}));
  }
}

// Draws a database as a drum of disks, with its top at `top`.
void DrawDrum(TPicture& picture, double top, TColor light, TColor dark) {
  constexpr int kDisks = 3;
  constexpr double kRadius = 32;
  constexpr double kTilt = 9;
  constexpr double kDisk = 17;
  constexpr double kGap = 3;
  constexpr double kLeft = kCenter - kRadius;
  constexpr double kRight = kCenter + kRadius;
  // From the bottom up, so that each disk covers the one below it.
  for (int i = kDisks - 1; i >= 0; --i) {
    const double y = top + i * (kDisk + kGap) + kTilt;
    TOutline side = {{.End = {kRight, y}}, {.End = {kLeft, y}}, {.End = {kLeft, y + kDisk}}};
    rtl::AddLowerHalf(side, {kCenter, y + kDisk}, kRadius, kTilt);
    picture.Add(std::move(side), {{kLeft, 0}, {kRight, 0}, {{0, dark}, {0.35, light}, {1, dark}}});
    picture.Add(rtl::Ellipse({kCenter, y}, kRadius, kTilt), Plain(Lighter(light)));
  }
}

void DrawArrow(TPicture& picture, double top) {
  constexpr double kShaft = 7;
  constexpr double kHead = 18;
  constexpr double kLength = 40;
  picture.Add(rtl::Polygon({{kCenter - kShaft, top},
                            {kCenter + kShaft, top},
                            {kCenter + kShaft, top + kLength - kHead},
                            {kCenter + kHead, top + kLength - kHead},
                            {kCenter, top + kLength},
                            {kCenter - kHead, top + kLength - kHead},
                            {kCenter - kShaft, top + kLength - kHead}}),
              {{0, top}, {0, top + kLength}, {{0, {255, 255, 255, 60}}, {1, {255, 255, 255, 235}}}});
}

}  // namespace

TPicture KVAPicture() {
  TPicture picture{.Width = kWidth, .Height = kHeight};
  picture.Add(rtl::Rectangle({0, 0}, kWidth, kHeight),
              {{0, 0}, {kWidth, kHeight}, {{0, {24, 44, 84}}, {1, {16, 112, 128}}}});
  DrawSource(picture);
  DrawDrum(picture, 24, {150, 158, 172}, {86, 94, 110});
  DrawArrow(picture, 110);
  DrawDrum(picture, 160, {66, 200, 190}, {12, 120, 128});
  return picture;
}

}  // namespace target
