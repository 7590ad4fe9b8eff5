#include "platform/outlines.h"

namespace kelvane {

std::function<Path(const ScreenFace&, unsigned char)> ScreenOutline;

}  // namespace kelvane
