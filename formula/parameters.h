#pragma once

// Everything in the layout that is a matter of measure. The rules are those of Appendix G of Donald E.
// Knuth's "The TeXbook" (1984); their sigma and xi parameters belong to other fonts, so each stands here with
// where ours comes from. All in ems of the size in force unless said otherwise.

namespace kelvane::formula {

inline constexpr float kScriptFactor = 0.8F;  // of the program's script codes, for each of two levels
inline constexpr float kXHeight = 0.45F;      // sigma 5: ink of Times-Italic x, 0.441, and its overshoot
inline constexpr float kAxis = 0.25F;         // sigma 22: Math0 is drawn about it, Times' minus lies at 0.253
inline constexpr float kRule = 0.04F;         // xi 8: Appendix G's 0.04, and the bar of Math0's roots

// Scripts. The shifts are those of the script codes, whatever the style, so that a script is a code.
inline constexpr float kSuperscript = 0.36F;        // sigma 13 to 15: 0.413, 0.363, 0.289 there
inline constexpr float kSubscript = 0.24F;          // sigma 16: 0.15 there; sigma 17: 0.247
inline constexpr float kSuperscriptDrop = 0.27F;    // sigma 18, as there: 0.386 of 0.7
inline constexpr float kLikeSign = 0.7F;            // groups no higher carry scripts as a single sign does
inline constexpr float kSubscriptDrop = 0.035F;     // sigma 19, as there: 0.05 of 0.7
inline constexpr float kScriptClearance = 0.04F;    // rule 18e has 4 xi 8; figures over figures leave 0.05
inline constexpr float kSuperscriptLowest = 0.25F;  // rule 18c, of the x-height
inline constexpr float kSubscriptHighest = 0.8F;    // rules 18b and 18e, of the x-height
inline constexpr float kItalicSuperscript = 0.09F;  // what the codes of italic superscripts go to the right
inline constexpr float kScriptSpace = 0.05F;        // plain TeX's \scriptspace; runs have none, tall signs do
inline constexpr float kItalicLeast = 0.03F;        // a letter that leans out by less has plain ones
inline constexpr float kPrimeTop = 0.75F;           // how high Symbol's prime reaches
inline constexpr float kPrimeLean = 0.03F;          // of a prime's box that its slant leaves empty

// Fractions.
inline constexpr float kNumeratorDisplay = 0.677F;    // sigma 8, as there
inline constexpr float kNumerator = 0.394F;           // sigma 9, as there
inline constexpr float kNumeratorBare = 0.444F;       // sigma 10, as there: without a bar
inline constexpr float kDenominatorDisplay = 0.686F;  // sigma 11, as there
inline constexpr float kDenominator = 0.345F;         // sigma 12, as there
inline constexpr float kFractionGap = 2;  // rules from ink to bar in display: 3 there, for smaller scripts
inline constexpr float kFractionSide = 0.12F;  // plain TeX's \nulldelimiterspace, 1.2 points of 10

// Limits of large operators.
inline constexpr float kLimitAboveGap = 0.111F;     // xi 9, as there
inline constexpr float kLimitBelowGap = 0.111F;     // xi 10: 0.167 there, but our scripts are taller
inline constexpr float kLimitAboveBaseline = 0.2F;  // xi 11, as there
inline constexpr float kLimitBelowBaseline = 0.6F;  // xi 12, as there
inline constexpr float kOperatorRise =
    1.01F;  // boxes of cmex's large signs reach so far up and down; Math0's
inline constexpr float kOperatorFall = 0.51F;    // sum is a little smaller, and limits keep their places
inline constexpr float kDisplayOperator = 1.2F;  // of signs that Math0 has lower than its sum
inline constexpr float kDrawnOperator = 1.4F;    // of drawn ones, in display
inline constexpr float kTextOperator = 0.72F;    // of a large sign that Math0 has in one size only
inline constexpr float kDisplayIntegral = 1.2F;  // of Math0's: cmex's is 2.22 ems tall, Math0's 1.84
inline constexpr float kIntegralLean = 0.36F;    // from Math0's integrals: how far the head leads the foot

// Spaces between atoms, measured from ink to ink where a sign brings room of its own. Runs have fixed spaces
// of 0.12 only; what is left after whole fixed spaces is below half of one.
inline constexpr float kFixedSpace = 0.12F;
inline constexpr float kThinSpace = 0.12F;      // 3 mu are 0.167
inline constexpr float kThinExact = 0.167F;     // where no run goes on, beside fractions and tall brackets
inline constexpr float kMediumSpace = 0.28F;    // 4 mu are 0.222; the signs there bring 0.056 of their own
inline constexpr float kThickSpace = 0.33F;     // 5 mu are 0.278, and 0.056
inline constexpr float kSpaceBias = 0.15F;      // of a fixed space, towards the wider number of them
inline constexpr float kStep = 0.03F;           // what fixed spaces and script codes can make together
inline constexpr float kInkGap = 0.0F;          // ink of neighbours comes no closer,
inline constexpr float kLetterOverlap = 0.06F;  // but slanted letters may lean over each other, as in words

// Delimiters and roots.
inline constexpr float kDelimiterFactor = 0.901F;   // plain TeX's \delimiterfactor
inline constexpr float kDelimiterShortfall = 0.5F;  // plain TeX's \delimitershortfall, 5 points of 10
inline constexpr float kBinomialDisplay = 2.39F;    // sigma 20, as there
inline constexpr float kBinomial = 1.157F;          // sigma 21: 1.01 there for smaller scripts
inline constexpr float kDelimiterSide = 0.1F;       // room beside a drawn bracket; those of type bring theirs
inline constexpr float kRootIndexRise = 0.6F;       // plain TeX's \root, of the height of the root
inline constexpr float kRootSide = 0.03F;           // how far the bar of a root goes on behind its ink
inline constexpr float kLeastDrawn = 1.2F;          // heights of cmex's delimiters: 1.2 and every 0.6 more
inline constexpr float kDelimiterStep = 0.6F;
inline constexpr float kTextDelimiter = 1.0F;  // a bracket of type is enough up to this, as there

// Tables.
inline constexpr float kRowHeight = 0.84F;       // LaTeX's strut of an array, 0.7 of 1.2
inline constexpr float kRowDepth = 0.36F;        // 0.3 of 1.2
inline constexpr float kCasesStretch = 1.2F;     // amsmath's \arraystretch of cases
inline constexpr float kSmallStretch = 0.75F;    // of smallmatrix, besides its size
inline constexpr float kRowGap = 0.1F;           // between the ink of tall rows; plain TeX's \lineskip is 0.1
inline constexpr float kColumnGap = 1.0F;        // LaTeX's \arraycolsep on both sides
inline constexpr float kAlignedGap = 0.3F;       // LaTeX's \jot
inline constexpr float kPairGap = 2.0F;          // between pairs of aligned columns
inline constexpr float kSmallColumnGap = 0.36F;  // a thick space on either side
inline constexpr float kSubstackGap = 0.15F;     // between the ink of its lines

// Marks.
inline constexpr float kTallLetter = 0.53F;    // letters higher than this carry accents raised as a script is
inline constexpr float kLineGap = 0.12F;       // rule 9: 3 xi 8 between a line and what it is over
inline constexpr float kBraceGap = 0.28F;      // of a brace from what is in it; plain TeX: 3 points of 10
inline constexpr float kBoxGap = 0.3F;         // LaTeX's \fboxsep, 3 points of 10
inline constexpr float kStroke = 0.05F;        // of drawn signs: Symbol's equals sign has 0.055
inline constexpr float kLetterStroke = 0.04F;  // of drawn letters, as Math0's double-struck ones
inline constexpr float kCancelReach = 0.06F;   // of a stroke across, beyond the ink of what it takes away
inline constexpr float kEmptyPlace = 0.5F;     // room of an empty place

}  // namespace kelvane::formula
