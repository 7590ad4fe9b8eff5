#pragma once

// What can be asked of the signs: by character, by name, by class, by place; and runs made of text and read
// as text.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "typography/sign_table.h"

namespace kelvane {

// The sign that a character means; null if no typeface can set it. Letters and digits of ASCII, and those of
// the mathematical alphabets, are no rows of the table, although SignsToRun knows them.
const Sign* SignOf(char32_t character);
// The sign that a typeface has under a code; null if it has none.
const Sign* SignAt(std::int16_t font, int code);

// The character under a code of a typeface; 0 if it has none that is known.
char32_t CharacterOf(std::int16_t font, int code);

// Signs with a name that begins so, without the backslash: those of that very name first, then in the order
// of the table. In names capitals differ from small letters.
std::vector<const Sign*> SignsNamed(std::string_view beginning);
// Whether a text holds every one of some words that have blanks between them. Capitals do not matter.
bool HasEveryWord(std::string_view text, std::string_view words);
// Signs whose names or plain words hold every word, in the order of the table.
std::vector<const Sign*> FindSigns(std::string_view words);
std::vector<const Sign*> SignsOfClass(SignClass kind);

// The first name that begins so, with its backslash, or the plain words of a sign that has no such name.
std::string NameOf(const Sign& sign, std::string_view beginning = {});
std::string WordsOf(const Sign& sign);
// Where the sign is: "Symbol, key a", "Math0, code 127", "the text faces, code 15"; of signs put together,
// the codes.
std::string HowTyped(const Sign& sign);

// What sets the sign in a run that is in typeface `font`, with the switches to where it is and back. The
// run's own typeface comes first, then Symbol, then Math0, and for letters Times-Roman where the run is in no
// text face.
std::string RunOf(const Sign& sign, std::int16_t font);

// Codes that move the pen by so many times 0.03 ems, in either direction. Fixed spaces and scripts that open
// and close in different ways are the steps: 12, 9 and 6 hundredths forward, 9 and 6 back.
std::string StepCodes(int threes);

// A text in UTF-8 as it is set in a run that is in typeface `font`: ASCII by its codes, whatever they are in
// that typeface, line ends as blanks, everything else as signs. Characters that no typeface has are left out
// and put into `missing`, each once, with blanks between them.
std::string SignsToRun(std::string_view utf8, std::int16_t font, std::string& missing);

// Codes of a run that say something together which they do not say one by one, such as an arrow in pieces, a
// letter with one of Math0's marks, a fraction put together.
struct SignInPieces {
  std::size_t begin = 0;  // in the run, first and behind the last
  std::size_t end = 0;
  std::string text;  // UTF-8
};
std::vector<SignInPieces> PiecesOfRun(std::string_view run, std::int16_t font);

// What a run says, in UTF-8: its signs without scripts, switches and fixed spaces.
std::string TextOfRun(std::string_view run, std::int16_t font);

}  // namespace kelvane
