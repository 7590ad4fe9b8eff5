// The formulas of the specimen.

#include "tools/math0/formula.h"
#include "tools/math0/specimen.h"

namespace kelvane::math0 {
namespace {

Row Stokes() {
  return Row().Integral('O', "`dS").Then("!F ~\xD7 d!r =").Integral('J', "S").Then("(`G ~\xB4 !F) ~\xD7 d!S");
}

Row Waves() {
  return Row("i`h;").Fraction("`d", "`dt").Then("~y = -").Fraction("`h^2", "2m").Then("`G^2~y + V~y");
}

Row Coproduct() {
  return Row("'Hom'(;").Large('U', "i").Then("X_i,;Y) `@").Large('P', "i").Then("'Hom'(X_i,;Y)");
}

Row Matrix() {
  return Row("A =")
      .Tall("7||1", 15)
      .Then(";")
      .Array({{"a_{11}", "a_{12}", "`.", "a_{1n}"},
              {"a_{21}", "a_{22}", "`.", "a_{2n}"},
              {"`:", "`:", "`\\", "`:"},
              {"a_{m1}", "a_{m2}", "`.", "a_{mn}"}},
             kCentre, 15, 10)
      .Then(";")
      .Tall("9||3", 15, kRight);
}

Row Cases() {
  return Row("f(x) =").Tall("741", 14).Then(";").Array({{"x^2", "'if 'x `e `Q"}, {"0", "'otherwise'"}}, kLeft,
                                                       20, kFormulaSize);
}

}  // namespace

void PutFormulas(Page& page, float y) {
  struct Line {
    float below;  // the line before
    Row left, right;
  };
  const Line lines[] = {
      {0, Row().Large('S', "n=1", "`8").Fraction("1", "n^2").Then("=").Fraction("~p^2", "6"),
       Row("~z(s) =").Large('P', "p' prime'").Fraction("1", "1 - p^{-s}")},
      {44, Row().Integral('I', "-`8", "`8").Then("e^{-x^2};dx =").Root('v', "~p"), Stokes()},
      {44, Waves(), Row().Large('n', "i`eI").Then("A_i `\x7F").Large('u', "i`eI").Then("A_i")},
      {44, Coproduct(), Row("T(V) =").Large('+', "k=0", "`8").Then(";").Large('*', "i=1", "k").Then("V")},
      {40, "`A~e > 0;;`E~d > 0:;`|x - a`| < ~d `Y `|f(x) - f(a)`| < ~e",
       "`N `c `Z `c `Q `c `R `c `C,@`|`R`| = 2^{~\xC0_0}"},
      {24, "p ~\xD9 (q ~\xDA r) `# (p ~\xD9 q) ~\xDA (p ~\xD9 r)", "~G `T ~j `B`Y ~G `M ~j"},
      {24, "A `\x7F B `B`Y `Ax;(x `e A `Y x `e B)", "a `W b `$ c `% d `X e,@x `k y `? z"},
      {24, "`L{f~\xA2}(s) = s;`L{f}(s) - f(0)", "`Ff(k) = `if(x);e^{-ikx};dx"},
      {24, "~\xC3~\xA2^2 = 4~\xC3^3 - g_2~\xC3 - g_3", "`s;a_{ii} = 'tr 'A,@A^{'\x86'}A = I;,@`H `@ `l^2"},
      {46, Matrix(), Cases()},
  };
  for (const Line& line : lines) {
    y += line.below;
    line.left.Set(page, 60, y);
    line.right.Set(page, 320, y);
  }
}

}  // namespace kelvane::math0
