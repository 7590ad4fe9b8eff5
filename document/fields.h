#pragma once

// Strings as sequences of fields separated by a delimiter. All lists of the program (page entries, drawing
// records, glyph procedures, help lines) are taken apart and rebuilt with these routines only.
//
// Positions and field indexes count from 1. A field that begins with a double quote runs to the next quote;
// delimiters between the two do not split it. An empty delimiter makes the whole text one field.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// Number of fields, at least 1; a trailing delimiter is followed by an empty field. Throws Failure if there
// are more than 32,767.
std::int16_t CountFields(std::string_view text, std::string_view delimiter);

// Field `index`, without its quotes if it is quoted. Empty for an index below 1 or past the end.
std::string GetField(std::string_view text, std::int16_t index, std::string_view delimiter);

// Every field as GetField gives it, views into `text`: one walk where a caller wants them all. Any number.
std::vector<std::string_view> SplitFields(std::string_view text, std::string_view delimiter);

// Replaces field `index`, quotes included, and keeps the delimiter that ends it. Does nothing if a field up
// to and including `index` starts beyond the end of the text, which holds for every field of an empty text.
void ReplaceField(std::string& text, std::int16_t index, std::string_view delimiter, std::string_view value);

// Every occurrence of `find` from left to right; inserted text is not searched again. The text of a single
// blank is returned as it is. Throws Failure if a position passes 32,767.
std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view replacement);

// 1-based position of the last of the occurrences found from left to right without overlap; 0 if none.
int LastIndexOf(std::string_view text, std::string_view find);

// Upper-case hexadecimal digits; any other character counts as -1. Throws Failure outside 16 bits signed.
std::int16_t HexToInt(std::string_view digits);

// Replaces everything from the first dot of the file name on; appends where there is none.
std::string ChangeExtension(std::string_view path, std::string_view extension);
// What stands before the last backslash; empty if there is none.
std::string FolderOf(std::string_view path);
// The file name up to its first dot.
std::string FileTitleOf(std::string_view path);

// Backslashes and parentheses with a backslash before them.
std::string EscapePostScriptString(std::string_view text);
// Without the characters of code 224 and above, which switch typefaces and shift scripts.
std::string StripHighChars(std::string_view text);

// Without the blanks at either end.
std::string_view TrimBlanks(std::string_view text);
// With the letters a to z as capitals.
std::string UpperCase(std::string_view text);

}  // namespace kelvane
