#pragma once

// Colours on top of others, as far as they cover them.

#include <QRgb>
#include <cstddef>
#include <span>

namespace kelvane {

// Rows of pixels, RGB32 or premultiplied, and how much of each is covered, 0 to 255.
struct CoveredRows {
  QRgb* pixels = nullptr;
  std::ptrdiff_t stride = 0;  // pixels from row to row
  const uchar* coverage = nullptr;
  std::ptrdiff_t coverageStride = 0;  // bytes
  int count = 0;                      // of pixels in each row
  int rows = 1;
};

// Blends `colour` into the pixels as far as each is covered.
void Blend(const CoveredRows& rows, QRgb colour);

// The forms of it that this machine can run, from pixel by pixel to the one in use. All give the same pixels.
using BlendForm = void (*)(const CoveredRows& rows, QRgb colour);
std::span<const BlendForm> BlendForms();

}  // namespace kelvane
