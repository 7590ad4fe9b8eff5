#pragma once

// The names that PostScript fonts have for the characters of the text faces.

namespace kelvane {

// The name of the glyph that a text face shows for a code below 224; null where it has none.
const char* GlyphNameOfText(int code);

}  // namespace kelvane
