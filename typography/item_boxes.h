#pragma once

// Where the ink of an item is: its box, its distance from a point, and the place in a run that a point means.
// All as print shows the item; on the screen lines may be up to half a pixel wider.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "document/page.h"
#include "platform/canvas.h"

namespace kelvane {

// The ink of a character in ems from its origin, y downwards; of no size if it has none.
Box InkOfCharacter(int code, std::int16_t font);

// The least box that holds an item's ink, points. Blanks have none, and neither has what lies beyond the
// numbers; without any ink it is a box of no size at the item's point.
Box InkBoxOf(const TextEntry& entry);
Box InkBoxOf(const Drawing& drawing);
// That of a run at a point, before it is an entry.
Box InkBoxOf(std::string_view run, std::int16_t font, float size, int anchor, Point at);

inline constexpr float kAnyDistance = std::numeric_limits<float>::infinity();

// From a point to the nearest ink, points: 0 in the box of a character, in a filled area and on a line. What
// is further away than `within` may be told as infinitely far, which is much quicker. An entry without ink is
// as far away as its point.
float DistanceTo(const TextEntry& entry, Point point, float within = kAnyDistance);
float DistanceTo(const Drawing& drawing, Point point, float within = kAnyDistance);
// To the nearest point of a box.
float DistanceTo(const Box& box, Point point);

// The index in an entry's run where a click sets the caret: beside the character that is nearest to the
// point, or at the run's end.
std::size_t CaretAt(const TextEntry& entry, Point point);

}  // namespace kelvane
