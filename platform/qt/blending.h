#pragma once

// Colours on top of others, as far as they cover them.

#include <QRgb>
#include <cstddef>

namespace kelvane {

// Blends `colour` into a row of pixels, RGB32 or premultiplied, as far as each is covered.
void BlendRow(QRgb* pixels, const uchar* coverage, int count, QRgb colour);
// The same for rows that lie so many pixels apart, with coverage that lies so many bytes apart.
void BlendRows(QRgb* pixels, std::ptrdiff_t stride, const uchar* coverage, std::ptrdiff_t coverageStride,
               int count, int rows, QRgb colour);
// The same, pixel by pixel: what the other one does for machines without vectors and for the last few.
void BlendRowPlainly(QRgb* pixels, const uchar* coverage, int count, QRgb colour);

}  // namespace kelvane
