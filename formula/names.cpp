#include "formula/names.h"

#include <algorithm>
#include <array>
#include <unordered_map>

#include "typography/signs.h"

namespace kelvane::formula {
namespace {

using enum Atom;
using enum Does;

constexpr int kAbove = static_cast<int>(Side::Above);
constexpr int kBelow = static_cast<int>(Side::Below);

constexpr Name Say(std::string_view name, std::string_view text, int limits = 0) {
  return {.name = name, .does = Function, .value = limits, .atom = Operator, .text = text};
}
constexpr Name Quotient(std::string_view name, FractionForm form) {
  return {.name = name, .does = Fraction, .value = static_cast<int>(form), .atom = Inner, .places = 2};
}
constexpr Name Over(std::string_view name, FractionForm form) {
  return {.name = name, .does = Old, .value = static_cast<int>(form)};
}
constexpr Name Mark(std::string_view name, char32_t character, int wide = 0) {
  return {.name = name, .does = Accent, .value = wide, .character = character, .places = 1};
}
constexpr Name Size(std::string_view name, int step, Atom atom) {
  return {.name = name, .does = Big, .value = step, .atom = atom};
}
constexpr Name Room(std::string_view name, int amount) {
  return {.name = name, .does = Space, .value = amount};
}
constexpr Name Set(std::string_view name, Does does, Face face) {
  return {.name = name, .does = does, .face = face, .places = does == Declared ? 0 : 1};
}
constexpr Name As(std::string_view name, char32_t character, Atom atom = Ordinary) {
  return {.name = name, .does = Sign, .character = character, .atom = atom};
}
constexpr Name Long(std::string_view name, char32_t character) {
  return {.name = name, .does = Reach, .character = character, .atom = Relation, .places = 1};
}
constexpr Name Do(std::string_view name, Does does, int value = 0, int places = 0) {
  return {.name = name, .does = does, .value = value, .places = places};
}
constexpr Name Change(std::string_view name, StyleChange change) {
  return {.name = name, .does = Style, .value = static_cast<int>(change)};
}
constexpr Name ClassOf(std::string_view name, Atom atom) {
  return {.name = name, .does = Class, .atom = atom, .places = 1};
}
constexpr Name Pass(std::string_view name, char32_t character, int side) {
  return {.name = name, .does = OverArrow, .value = side, .character = character, .places = 1};
}
constexpr Name Enclose(std::string_view name, char32_t opening, char32_t closing) {
  return {
      .name = name, .does = Between, .value = static_cast<int>(closing), .character = opening, .places = 1};
}
constexpr Name Slant(std::string_view name, char32_t character) {
  return {.name = name, .does = Sign, .character = character, .face = Face::Italic};
}
constexpr Name Hide(std::string_view name, PhantomForm form) {
  return {.name = name, .does = Phantom, .value = static_cast<int>(form), .places = 1};
}

// clang-format off
constexpr Name kNames[] = {
    Say("sin", "sin"), Say("cos", "cos"), Say("tan", "tan"), Say("cot", "cot"), Say("sec", "sec"),
    Say("csc", "csc"), Say("arcsin", "arcsin"), Say("arccos", "arccos"), Say("arctan", "arctan"),
    Say("arccot", "arccot"), Say("arcsec", "arcsec"), Say("arccsc", "arccsc"),
    Say("sinh", "sinh"), Say("cosh", "cosh"), Say("tanh", "tanh"), Say("coth", "coth"),
    Say("sech", "sech"), Say("csch", "csch"), Say("arsinh", "arsinh"), Say("arcosh", "arcosh"),
    Say("artanh", "artanh"), Say("tg", "tg"), Say("ctg", "ctg"), Say("arctg", "arctg"),
    Say("log", "log"), Say("ln", "ln"), Say("lg", "lg"), Say("lb", "lb"), Say("exp", "exp"),
    Say("arg", "arg"), Say("deg", "deg"), Say("dim", "dim"), Say("hom", "hom"), Say("ker", "ker"),
    Say("sgn", "sgn"), Say("sign", "sign"), Say("tr", "tr"), Say("Tr", "Tr"), Say("rank", "rank"),
    Say("rk", "rk"), Say("grad", "grad"), Say("div", "div"), Say("rot", "rot"), Say("curl", "curl"),
    Say("diag", "diag"), Say("span", "span"), Say("id", "id"), Say("ord", "ord"), Say("adj", "adj"),
    Say("Hom", "Hom"), Say("End", "End"), Say("Aut", "Aut"), Say("erf", "erf"), Say("lcm", "lcm"),
    Say("det", "det", 1), Say("gcd", "gcd", 1), Say("inf", "inf", 1), Say("lim", "lim", 1),
    Say("max", "max", 1), Say("min", "min", 1), Say("sup", "sup", 1), Say("Pr", "Pr", 1),
    Say("liminf", "lim inf", 1), Say("limsup", "lim sup", 1), Say("injlim", "inj lim", 1),
    Say("projlim", "proj lim", 1),
    {.name = "varlimsup", .does = Barred, .value = kAbove, .text = "lim"},
    {.name = "varliminf", .does = Barred, .value = kBelow, .text = "lim"}, Say("argmax", "arg max", 1), Say("argmin", "arg min", 1),
    Say("esssup", "ess sup", 1), Say("plim", "plim", 1),
    {.name = "operatorname", .does = Named, .atom = Operator, .places = 1},

    Quotient("frac", FractionForm::AsUsual), Quotient("dfrac", FractionForm::Display),
    Quotient("tfrac", FractionForm::Text), Quotient("cfrac", FractionForm::Continued),
    Quotient("binom", FractionForm::Binomial), Quotient("dbinom", FractionForm::DisplayBinomial),
    Quotient("tbinom", FractionForm::TextBinomial),
    Over("over", FractionForm::AsUsual), Over("atop", FractionForm::Bare),
    Over("choose", FractionForm::Binomial),
    Do("sqrt", Root, 0, 1), Do("root", Root, 1),

    Do("left", Left), Do("middle", Middle), Do("right", Right),
    Size("big", 1, Ordinary), Size("Big", 2, Ordinary), Size("bigg", 3, Ordinary), Size("Bigg", 4, Ordinary),
    Size("bigl", 1, Opening), Size("Bigl", 2, Opening), Size("biggl", 3, Opening), Size("Biggl", 4, Opening),
    Size("bigr", 1, Closing), Size("Bigr", 2, Closing), Size("biggr", 3, Closing), Size("Biggr", 4, Closing),
    Size("bigm", 1, Relation), Size("Bigm", 2, Relation), Size("biggm", 3, Relation), Size("Biggm", 4, Relation),

    Mark("hat", U'\u0302'), Mark("tilde", U'\u0303'), Mark("bar", U'\u0304'), Mark("dot", U'\u0307'),
    Mark("ddot", U'\u0308'), Mark("dddot", U'\u20DB'), Mark("vec", U'\u20D7'), Mark("acute", U'\u0301'),
    Mark("grave", U'\u0300'), Mark("check", U'\u030C'), Mark("breve", U'\u0306'),
    Mark("mathring", U'\u030A'),
    Mark("widehat", U'\u0302', 1), Mark("widetilde", U'\u0303', 1), Mark("widecheck", U'\u030C', 1),
    Mark("overparen", U'\u0311', 1), Mark("overarc", U'\u0311', 1), Mark("wideparen", U'\u0311', 1),
    Do("overline", Line, kAbove, 1), Do("underline", Line, kBelow, 1), Do("underbar", Line, kBelow, 1),
    Do("overbrace", Brace, kAbove, 1), Do("underbrace", Brace, kBelow, 1),
    Pass("overrightarrow", U'→', kAbove), Pass("overleftarrow", U'←', kAbove),
    Pass("overleftrightarrow", U'↔', kAbove), Pass("underrightarrow", U'→', kBelow),
    Pass("underleftarrow", U'←', kBelow), Pass("underleftrightarrow", U'↔', kBelow),
    {.name = "overset", .does = Stack, .value = kAbove, .places = 2},
    {.name = "underset", .does = Stack, .value = kBelow, .places = 2},
    {.name = "stackrel", .does = Stack, .value = kAbove, .atom = Relation, .places = 2},
    Long("xrightarrow", U'→'), Long("xleftarrow", U'←'), Long("xleftrightarrow", U'↔'),
    Long("xRightarrow", U'⇒'), Long("xLeftarrow", U'⇐'), Long("xLeftrightarrow", U'⇔'),
    Long("xmapsto", U'↦'), Long("xhookrightarrow", U'↪'), Long("xlongequal", U'='),

    Set("text", Text, Face::Words), Set("textrm", Text, Face::Words), Set("textnormal", Text, Face::Words),
    Set("mbox", Text, Face::Words), Set("hbox", Text, Face::Words), Set("textit", Text, Face::Italic),
    Set("emph", Text, Face::Italic), Set("textbf", Text, Face::Bold), Set("textsf", Text, Face::Sans),
    Set("texttt", Text, Face::Mono), Set("intertext", Text, Face::Words),
    Set("mathrm", Alphabet, Face::Roman), Set("mathnormal", Alphabet, Face::Usual),
    Set("mathit", Alphabet, Face::Italic), Set("mathbf", Alphabet, Face::Bold),
    Set("boldsymbol", Alphabet, Face::BoldItalic), Set("bm", Alphabet, Face::BoldItalic),
    Set("mathbb", Alphabet, Face::DoubleStruck),
    Set("mathds", Alphabet, Face::DoubleStruck), Set("mathbbm", Alphabet, Face::DoubleStruck),
    Set("Bbb", Alphabet, Face::DoubleStruck), Set("pmb", Alphabet, Face::BoldItalic),
    Set("textup", Text, Face::Words), Set("textmd", Text, Face::Words), Set("mathcal", Alphabet, Face::Script),
    Set("mathscr", Alphabet, Face::Script), Set("mathsf", Alphabet, Face::Sans),
    Set("mathtt", Alphabet, Face::Mono),
    Set("rm", Declared, Face::Roman), Set("it", Declared, Face::Italic), Set("bf", Declared, Face::Bold),
    Set("sf", Declared, Face::Sans), Set("tt", Declared, Face::Mono), Set("cal", Declared, Face::Script),

    Room(",", 3), Room("thinspace", 3), Room(":", 4), Room(">", 4), Room("medspace", 4), Room(";", 5),
    Room("thickspace", 5), Room("!", -3), Room("negthinspace", -3), Room("negspace", -3),
    Room("negmedspace", -4), Room("negthickspace", -5), Room("quad", 18), Room("qquad", 36),
    Room("enspace", 9), Room(" ", 6), Room("space", 6), Room("/", 1), Room("nobreakspace", 6),
    Do("hspace", Length, 1, 1), Do("mspace", Length, 1, 1), Do("mskip", Length), Do("kern", Length),
    Do("mkern", Length), Do("hskip", Length),
    Change("displaystyle", StyleChange::Display), Change("textstyle", StyleChange::Text),
    Change("scriptstyle", StyleChange::Script), Change("scriptscriptstyle", StyleChange::ScriptScript),

    Do("begin", Begin), Do("end", End), Do("\\", LineEnd), Do("cr", LineEnd), Do("newline", LineEnd),
    Do("hline", RowRule), Do("hdashline", RowRule), Do("substack", Substack, 0, 1),
    Do("pmod", Modulo, 0, 1), Do("bmod", Modulo, 1), Do("mod", Modulo, 2, 1), Do("pod", Modulo, 3, 1),
    Do("boxed", Framed, 0, 1), {.name = "fbox", .does = Framed, .face = Face::Words, .places = 1},
    Do("cancel", Framed, static_cast<int>(Frame::Rising), 1),
    Do("bcancel", Framed, static_cast<int>(Frame::Falling), 1),
    Do("xcancel", Framed, static_cast<int>(Frame::Crossed), 1),
    Enclose("abs", U'|', U'|'), Enclose("norm", U'‖', U'‖'), Enclose("bra", U'⟨', U'|'),
    Enclose("ket", U'|', U'⟩'), Enclose("braket", U'⟨', U'⟩'), Enclose("Bra", U'⟨', U'|'),
    Enclose("Ket", U'|', U'⟩'), Enclose("Braket", U'⟨', U'⟩'),
    Hide("phantom", PhantomForm::Whole), Hide("hphantom", PhantomForm::Wide),
    Hide("vphantom", PhantomForm::Tall), Hide("smash", PhantomForm::Smash),
    Do("color", Colour, 0, 1), Do("textcolor", Colour, 1, 2),
    Do("not", Negated), Do("limits", Limits, static_cast<int>(Limits::Stacked)),
    Do("nolimits", Limits, static_cast<int>(Limits::Beside)),
    Do("displaylimits", Limits, static_cast<int>(Limits::AsUsual)),
    ClassOf("mathord", Ordinary), ClassOf("mathop", Operator), ClassOf("mathbin", Binary),
    ClassOf("mathrel", Relation), ClassOf("mathopen", Opening), ClassOf("mathclose", Closing),
    ClassOf("mathpunct", Punctuation), ClassOf("mathinner", Inner),
    Do("label", Leave, 1, 1), Do("tag", Leave, 1, 1), Do("nonumber", Leave), Do("notag", Leave),
    Do("allowbreak", Leave), Do("nobreak", Leave), Do("noindent", Leave), Do("relax", Leave),
    Do("mathstrut", Leave), Do("strut", Leave), Do("centering", Leave), Do("unboldmath", Leave),
    Do("ref", Leave, 1, 1), Do("eqref", Leave, 1, 1), Do("vspace", Leave, 1, 1), Do("-", Leave), Do("leftroot", Leave, 1, 1), Do("uproot", Leave, 1, 1),
    Do("tiny", Leave), Do("scriptsize", Leave), Do("footnotesize", Leave), Do("small", Leave),
    Do("normalsize", Leave), Do("large", Leave), Do("Large", Leave), Do("hfill", Leave), Do("hfil", Leave),
    Do("ensuremath", Argument), Do("mathchoice", Argument, 1),

    // Signs under other names, or of another class than their character has.
    As("leqslant", U'≤', Relation), As("geqslant", U'≥', Relation), As("leqq", U'≤', Relation),
    As("geqq", U'≥', Relation), As("varrho", U'ρ'), As("varkappa", U'κ'), As("hslash", U'ℏ'),
    As("dagger", U'†', Binary), As("dag", U'†', Binary), As("ddagger", U'‡', Binary),
    As("ast", U'∗', Binary), As("bullet", U'•', Binary),
    As("perp", U'⊥', Relation), As("bot", U'⊥'), As("lvert", U'|', Opening), As("rvert", U'|', Closing),
    As("lVert", U'‖', Opening), As("rVert", U'‖', Closing), As("|", U'‖'), As("vert", U'|'),
    As("mid", U'|', Relation), As("parallel", U'‖', Relation), As("divides", U'|', Relation),
    As("nmid", U'∤', Relation), As("colon", U':', Punctuation), As("lbrace", U'{', Opening),
    As("rbrace", U'}', Closing), As("{", U'{', Opening), As("}", U'}', Closing), As("%", U'%'),
    As("$", U'$'), As("#", U'#'), As("&", U'&'), As("_", U'_'), As("to", U'→', Relation),
    As("gets", U'←', Relation), As("iff", U'⟺', Relation), As("implies", U'⟹', Relation),
    As("impliedby", U'⟸', Relation), As("land", U'∧', Binary), As("lor", U'∨', Binary),
    As("dots", U'…', Inner), As("ldots", U'…', Inner), As("dotsc", U'…', Inner), As("dotso", U'…', Inner),
    As("cdots", U'⋯', Inner), As("dotsb", U'⋯', Inner), As("dotsm", U'⋯', Inner), As("dotsi", U'⋯', Inner),
    As("ddots", U'⋱', Inner), As("iddots", U'⋰', Inner), As("adots", U'⋰', Inner), As("vdots", U'⋮'),
    As("colonequals", U'≔', Relation), As("coloneqq", U'≔', Relation), As("eqqcolon", U'≕', Relation),
    As("smallint", U'∫', Operator), As("lt", U'<', Relation), As("gt", U'>', Relation),
    As("triangle", U'Δ'), As("bigtriangleup", U'Δ', Binary), As("vartriangle", U'Δ'),
    As("backslash", U'\\'), As("setminus", U'∖', Binary), As("smallsetminus", U'∖', Binary),
    As("prime", U'′'), As("slash", U'/'), As("AA", U'Å'), As("i", U'ı'), 
    As("thetasym", U'ϑ'), As("vdash", U'⊢', Relation),
    As("ngtr", U'≯', Relation), As("nless", U'≮', Relation), As("ne", U'≠', Relation),
    As("thickapprox", U'≈', Relation), As("thicksim", U'∼', Relation), 
    As("bigwedge", U'⋀', Operator), As("bigvee", U'⋁', Operator), 
    As("lgroup", U'(', Opening), As("rgroup", U')', Closing), As("uparrow", U'↑', Relation),
    As("hyphen", U'-'), As("angle", U'∠'), As("Box", U'□'), As("square", U'□'),
    As("qed", U'□'),
    As("isin", U'∈', Relation), As("exist", U'∃'), As("empty", U'∅'), As("infin", U'∞'), As("alef", U'ℵ'),
    As("sub", U'⊂', Relation), As("sube", U'⊆', Relation), As("supe", U'⊇', Relation), As("real", U'ℜ'),
    As("Reals", U'ℝ'), As("reals", U'ℝ'), As("natnums", U'ℕ'), As("cnums", U'ℂ'), As("Bbbk", U'𝕂'),
    Slant("varGamma", U'Γ'), Slant("varDelta", U'Δ'), Slant("varTheta", U'Θ'), Slant("varLambda", U'Λ'),
    Slant("varXi", U'Ξ'), Slant("varPi", U'Π'), Slant("varSigma", U'Σ'), Slant("varPhi", U'Φ'),
    Slant("varPsi", U'Ψ'), Slant("varOmega", U'Ω'),
    As("varpropto", U'∝', Relation), As("subseteqq", U'⊆', Relation), As("supseteqq", U'⊇', Relation),
    As("shortmid", U'|', Relation), As("shortparallel", U'‖', Relation), As("cdotp", U'·', Punctuation),
    As("ldotp", U'.', Punctuation), As("dblcolon", U'∷', Relation), As("vcentcolon", U':', Relation),
    As("circledR", U'®'), As("centerdot", U'⋅', Binary),
    As("longrightarrow", U'⟶', Relation), As("N", U'ℕ'), As("Z", U'ℤ'), As("Q", U'ℚ'), As("R", U'ℝ'),
    As("C", U'ℂ'), As("enskip", U'\u2002'),
};

constexpr Environment kEnvironments[] = {
    {.name = "matrix"},
    {.name = "pmatrix", .opening = U'(', .closing = U')'},
    {.name = "bmatrix", .opening = U'[', .closing = U']'},
    {.name = "Bmatrix", .opening = U'{', .closing = U'}'},
    {.name = "vmatrix", .opening = U'|', .closing = U'|'},
    {.name = "Vmatrix", .opening = U'‖', .closing = U'‖'},
    {.name = "smallmatrix", .small = true},
    {.name = "psmallmatrix", .opening = U'(', .closing = U')', .small = true},
    {.name = "bsmallmatrix", .opening = U'[', .closing = U']', .small = true},
    {.name = "array", .given = true},
    {.name = "subarray", .given = true, .lines = true},
    {.name = "tabular", .given = true},
    {.name = "cases", .opening = U'{', .columns = "l", .cases = true},
    {.name = "dcases", .opening = U'{', .columns = "l", .display = true, .cases = true},
    {.name = "rcases", .closing = U'}', .columns = "l", .cases = true},
    {.name = "aligned", .display = true, .pairs = true},
    {.name = "align", .display = true, .pairs = true},
    {.name = "align*", .display = true, .pairs = true},
    {.name = "alignat", .display = true, .pairs = true, .arguments = 1},
    {.name = "alignat*", .display = true, .pairs = true, .arguments = 1},
    {.name = "alignedat", .display = true, .pairs = true, .arguments = 1},
    {.name = "flalign", .display = true, .pairs = true},
    {.name = "flalign*", .display = true, .pairs = true},
    {.name = "split", .display = true, .pairs = true},
    {.name = "eqnarray", .columns = "rcl", .display = true},
    {.name = "eqnarray*", .columns = "rcl", .display = true},
    {.name = "gathered", .display = true},
    {.name = "gather", .display = true},
    {.name = "gather*", .display = true},
    {.name = "multline", .display = true},
    {.name = "multline*", .display = true},
    {.name = "equation", .outer = true},
    {.name = "equation*", .outer = true},
    {.name = "displaymath", .outer = true},
    {.name = "math", .outer = true},
};
// clang-format on

}  // namespace

std::span<const Name> Names() {
  return kNames;
}

std::span<const Environment> Environments() {
  return kEnvironments;
}

const Name* FindName(std::string_view name) {
  static const std::unordered_map<std::string_view, const Name*> found = [] {
    std::unordered_map<std::string_view, const Name*> made;
    for (const Name& one : kNames) made.emplace(one.name, &one);
    return made;
  }();
  const auto at = found.find(name);
  return at == found.end() ? nullptr : at->second;
}

const kelvane::Sign* SignNamed(std::string_view name) {
  static const std::unordered_map<std::string_view, const kelvane::Sign*> found = [] {
    std::unordered_map<std::string_view, const kelvane::Sign*> made;
    for (const kelvane::Sign& sign : SignTable()) {
      std::string_view names = sign.names;
      names = names.substr(0, names.find('|'));
      while (!names.empty()) {
        const std::size_t end = std::min(names.find(' '), names.size());
        made.emplace(names.substr(0, end), &sign);
        names.remove_prefix(std::min(end + 1, names.size()));
      }
    }
    return made;
  }();
  const auto at = found.find(name);
  return at == found.end() ? nullptr : at->second;
}

const kelvane::Sign* SignMeant(char32_t character) {
  if (character >= 128) return SignOf(character);
  static const std::array<const kelvane::Sign*, 128> found = [] {
    std::array<const kelvane::Sign*, 128> made{};
    for (const kelvane::Sign& sign : SignTable())
      if (sign.character < 128 && !sign.only) made[sign.character] = &sign;
    return made;
  }();
  return found[character];
}

Atom AtomOf(char32_t character, const kelvane::Sign* sign) {
  switch (character) {
    case U'/':
    case U'\\':
    case U'.':
      return Ordinary;
    case U'!':
    case U'?':
      return Closing;
    case U',':
    case U';':
      return Punctuation;
    case U':':
    case U'∶':
    case U'∣':
    case U'∥':
      return Relation;
    case U'…':
    case U'⋯':
    case U'⋱':
    case U'⋰':
      return Inner;
    default:
      break;
  }
  if (!sign) return Ordinary;
  switch (sign->kind) {
    case SignClass::Operator:
      return Binary;
    case SignClass::Relation:
    case SignClass::Arrow:
      return Relation;
    case SignClass::Opening:
      return Opening;
    case SignClass::Closing:
      return Closing;
    case SignClass::LargeOperator:
      return Operator;
    default:
      return Ordinary;
  }
}

const Environment* FindEnvironment(std::string_view name) {
  const auto found = std::ranges::find(kEnvironments, name, &Environment::name);
  return found == std::end(kEnvironments) ? nullptr : found;
}

}  // namespace kelvane::formula
