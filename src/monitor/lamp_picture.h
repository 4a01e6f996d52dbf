#pragma once

#include "monitor/indicators.h"
#include "ui/bitmap.h"

namespace korvane {

inline constexpr int lampSize = 16;  // pixels on a screen of 96 dots per inch

// The lamp's picture, `size` pixels wide and high, on the ground of a dialog. Empty when the system
// refuses it.
Bitmap lampPicture(Lamp lamp, int size);

}  // namespace korvane
