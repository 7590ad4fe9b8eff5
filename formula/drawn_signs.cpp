#include "formula/drawn_signs.h"

#include <algorithm>

#include "document/numbers.h"

namespace kelvane::formula {
namespace {

using enum Atom;

// clang-format off
constexpr DrawnSign kSigns[] = {
    // Relations
    {"because", U'∵', Relation, 0.72F, "c 8 46 .04 .42 1;c 8 46 .44 .42 1;c 8 46 .24 .02 1"},
    {"lesssim", U'≲', Relation, 0.62F, "l .56 .66 .06 .44 .56 .22;c 8 126 .03 -.22 1"},
    {"gtrsim", U'≳', Relation, 0.62F, "l .06 .66 .56 .44 .06 .22;c 8 126 .03 -.22 1"},
    {"lessapprox", U'⪅', Relation, 0.62F, "l .56 .7 .06 .5 .56 .3;c 8 187 .03 -.22 1"},
    {"gtrapprox", U'⪆', Relation, 0.62F, "l .06 .7 .56 .5 .06 .3;c 8 187 .03 -.22 1"},
    {"lneq", U'⪇', Relation, 0.62F, "l .56 .66 .06 .42 .56 .18;l .06 .01 .31 .01 .23 -.1 .39 .12 .31 .01 .56 .01"},
    {"gneq", U'⪈', Relation, 0.62F, "l .06 .66 .56 .42 .06 .18;l .06 .01 .31 .01 .23 -.1 .39 .12 .31 .01 .56 .01"},
    {"lessgtr", U'≶', Relation, 0.62F, "l .56 .84 .06 .62 .56 .4;l .06 .2 .56 -.02 .06 -.24"},
    {"gtrless", U'≷', Relation, 0.62F, "l .06 .84 .56 .62 .06 .4;l .56 .2 .06 -.02 .56 -.24"},
    {"lll llless", U'⋘', Relation, 1.0F, "l .56 .5 .06 .25 .56 0;l .76 .5 .26 .25 .76 0;l .96 .5 .46 .25 .96 0"},
    {"ggg gggtr", U'⋙', Relation, 1.0F, "l .06 .5 .56 .25 .06 0;l .26 .5 .76 .25 .26 0;l .46 .5 .96 .25 .46 0"},
    {"lessdot", U'⋖', Relation, 0.62F, "l .56 .5 .06 .25 .56 0;c 8 215 .28 0 1"},
    {"gtrdot", U'⋗', Relation, 0.62F, "l .06 .5 .56 .25 .06 0;c 8 215 .1 0 1"},
    {"preceq preccurlyeq", U'⪯', Relation, 0.72F, "c 12 36 0 .08 1;l .07 -.08 .64 -.08"},
    {"succeq succcurlyeq", U'⪰', Relation, 0.72F, "c 12 37 0 .08 1;l .07 -.08 .64 -.08"},
    {"precsim", U'≾', Relation, 0.72F, "c 12 36 0 .1 1;c 8 126 .08 -.32 1"},
    {"succsim", U'≿', Relation, 0.72F, "c 12 37 0 .1 1;c 8 126 .08 -.32 1"},
    {"subsetneq varsubsetneq", U'⊊', Relation, 0.72F, "c 8 205 0 .03 1;l .26 -.26 .46 .1"},
    {"supsetneq varsupsetneq", U'⊋', Relation, 0.72F, "c 8 202 0 .03 1;l .26 -.26 .46 .1"},
    {"Subset", U'⋐', Relation, 0.72F, "c 8 204 0 0 1;c 8 204 .24 .12 .55"},
    {"Supset", U'⋑', Relation, 0.72F, "c 8 201 0 0 1;c 8 201 .08 .12 .55"},
    {"sqsubset", U'⊏', Relation, 0.68F, "l .62 .5 .06 .5 .06 0 .62 0"},
    {"sqsupset", U'⊐', Relation, 0.68F, "l .06 .5 .62 .5 .62 0 .06 0"},
    {"sqsubseteq", U'⊑', Relation, 0.68F, "l .62 .58 .06 .58 .06 .12 .62 .12;l .06 -.06 .62 -.06"},
    {"sqsupseteq", U'⊒', Relation, 0.68F, "l .06 .58 .62 .58 .62 .12 .06 .12;l .06 -.06 .62 -.06"},
    {"triangleq", U'≜', Relation, 0.62F, "c 8 61 .03 -.05 1;l .3 .72 .14 .46 .46 .46 .3 .72"},
    {"eqcirc", U'≖', Relation, 0.62F, "c 8 61 .03 0 1;o .3 .25 .1"},
    {"circeq", U'≗', Relation, 0.62F, "c 8 61 .03 -.05 1;o .3 .56 .1"},
    {"doteqdot Doteq", U'≑', Relation, 0.62F, "c 8 61 .03 0 1;c 8 215 .18 .25 1;c 8 215 .18 -.25 1"},
    {"fallingdotseq", U'≒', Relation, 0.62F, "c 8 61 .03 0 1;c 8 215 0 .25 1;c 8 215 .36 -.25 1"},
    {"risingdotseq", U'≓', Relation, 0.62F, "c 8 61 .03 0 1;c 8 215 .36 .25 1;c 8 215 0 -.25 1"},
    {"approxeq", U'≊', Relation, 0.62F, "c 8 187 .03 .06 1;l .06 -.06 .56 -.06"},
    {"eqsim", U'≂', Relation, 0.62F, "c 8 126 .03 .12 1;l .06 .14 .56 .14"},
    {"backsim", U'∽', Relation, 0.62F, "l .06 .14 b .16 .02 .3 .25 .46 .48 .56 .36"},
    {"asymp", U'≍', Relation, 0.62F, "l .06 .56 b .3 .2 .56 .56;l .06 -.06 b .3 .3 .56 -.06"},
    {"smile", U'⌣', Relation, 0.8F, "l .08 .34 b .4 -.06 .72 .34"},
    {"frown", U'⌢', Relation, 0.8F, "l .08 .14 b .4 .54 .72 .14"},
    {"bowtie Join", U'⋈', Relation, 0.8F, "l .08 0 .08 .5 .72 0 .72 .5 .08 0"},
    {"dashv", U'⊣', Relation, 0.62F, "l .56 -.05 .56 .55 .56 .25 .06 .25"},
    {"vDash", U'⊨', Relation, 0.62F, "l .06 -.05 .06 .15 .56 .15 .06 .15 .06 .35 .56 .35 .06 .35 .06 .55"},
    {"Vdash", U'⊩', Relation, 0.72F, "l .06 -.05 .06 .55;l .2 -.05 .2 .55 .2 .25 .66 .25"},
    {"nVdash", U'⊮', Relation, 0.72F, "l .06 -.05 .06 .55;l .2 -.05 .2 .55 .2 .25 .43 .25 .54 .55 .32 -.05 .43 .25 .66 .25"},
    {"nvDash", U'⊭', Relation, 0.62F, "l .06 -.05 .06 .15 .297 .15 .22 -.08 .44 .58 .297 .15 .56 .15 .06 .15 .06 .35 .56 .35 .06 .35 .06 .55"},
    {"nparallel", U'∦', Relation, 0.5F, "l .18 .72 .18 -.2 .18 .19 .06 .1 .34 .31 .34 -.2 .34 .72 .34 .31 .46 .4"},
    {"pitchfork", U'⋔', Relation, 0.68F, "l .08 -.05 b .04 .55 .33 .5 l .33 .68 .33 -.05 .33 .5 b .62 .55 .58 -.05"},
    {"triangleleft lhd vartriangleleft", U'⊲', Relation, 0.68F, "l .6 .53 .08 .25 .6 -.03 .6 .53"},
    {"triangleright rhd vartriangleright", U'⊳', Relation, 0.68F, "l .08 .53 .6 .25 .08 -.03 .08 .53"},
    {"trianglelefteq unlhd", U'⊴', Relation, 0.68F, "l .6 .62 .08 .36 .6 .1 .6 .62;l .08 -.06 .6 -.06"},
    {"trianglerighteq unrhd", U'⊵', Relation, 0.68F, "l .08 .62 .6 .36 .08 .1 .08 .62;l .08 -.06 .6 -.06"},
    {"blacktriangleleft", U'◀', Relation, 0.68F, "f .6 .53 .08 .25 .6 -.03 .6 .53"},
    {"blacktriangleright", U'▶', Relation, 0.68F, "f .08 .53 .6 .25 .08 -.03 .08 .53"},

    // Arrows
    {"nearrow", U'↗', Relation, 0.8F, "l .1 -.05 .7 .55 .42 .53 .7 .55 .68 .27"},
    {"searrow", U'↘', Relation, 0.8F, "l .1 .55 .7 -.05 .42 -.03 .7 -.05 .68 .23"},
    {"swarrow", U'↙', Relation, 0.8F, "l .7 .55 .1 -.05 .38 -.03 .1 -.05 .12 .23"},
    {"nwarrow", U'↖', Relation, 0.8F, "l .7 -.05 .1 .55 .38 .53 .1 .55 .12 .27"},
    {"updownarrow", U'↕', Relation, 0.5F, "l .1 .5 .25 .68 .4 .5 .25 .68 .25 -.18 .1 0 .25 -.18 .4 0"},
    {"Updownarrow", U'⇕', Relation, 0.56F, "l .06 .48 .28 .68 .5 .48 .36 .607 .36 -.107 .5 .02 .28 -.18 .06 .02 .2 -.107 .2 .607"},
    {"hookleftarrow", U'↩', Relation, 1.0F, "l .86 .41 b 1 .41 1 .33 1 .25 .86 .25 l .06 .25 .22 .4 .06 .25 .22 .1"},
    {"leftharpoonup", U'↼', Relation, 0.96F, "l .9 .25 .06 .25 .24 .42"},
    {"leftharpoondown", U'↽', Relation, 0.96F, "l .9 .25 .06 .25 .24 .08"},
    {"rightharpoonup", U'⇀', Relation, 0.96F, "l .06 .25 .9 .25 .72 .42"},
    {"rightharpoondown", U'⇁', Relation, 0.96F, "l .06 .25 .9 .25 .72 .08"},
    {"rightleftharpoons", U'⇌', Relation, 0.96F, "l .06 .33 .9 .33 .72 .5;l .9 .17 .06 .17 .24 0"},
    {"leftrightharpoons", U'⇋', Relation, 0.96F, "l .9 .33 .06 .33 .24 .5;l .06 .17 .9 .17 .72 0"},
    {"rightleftarrows", U'⇄', Relation, 1.0F, "c 8 174 .02 .225 .9;c 8 172 .02 -.175 .9"},
    {"leftrightarrows", U'⇆', Relation, 1.0F, "c 8 172 .02 .225 .9;c 8 174 .02 -.175 .9"},
    {"rightrightarrows", U'⇉', Relation, 1.0F, "c 8 174 .02 .225 .9;c 8 174 .02 -.175 .9"},
    {"leftleftarrows", U'⇇', Relation, 1.0F, "c 8 172 .02 .225 .9;c 8 172 .02 -.175 .9"},
    {"rightsquigarrow leadsto", U'⇝', Relation, 1.0F, "l .06 .25 b .14 .41 .22 .25 .3 .09 .38 .25 .46 .41 .54 .25 .6 .13 .66 .25 l .94 .25 .78 .4 .94 .25 .78 .1"},
    {"rightarrowtail", U'↣', Relation, 1.0F, "l .02 .4 .16 .25 .02 .1 .16 .25 .94 .25 .78 .4 .94 .25 .78 .1"},
    {"upharpoonright restriction", U'↾', Relation, 0.4F, "l .14 -.2 .14 .7 .32 .52"},

    // Operators
    {"sqcup", U'⊔', Binary, 0.66F, "l .1 .56 .1 0 .56 0 .56 .56"},
    {"sqcap", U'⊓', Binary, 0.66F, "l .1 0 .1 .56 .56 .56 .56 0"},
    {"uplus", U'⊎', Binary, 0.77F, "c 8 200 0 0 1;l .38 .16 .38 .44;l .24 .3 .52 .3"},
    {"oslash", U'⊘', Binary, 0.77F, "o .38 .25 .3;l .17 .04 .59 .46"},
    {"circledast", U'⊛', Binary, 0.77F, "o .38 .25 .3;c 8 42 .2 .07 .72"},
    {"circledcirc", U'⊚', Binary, 0.77F, "o .38 .25 .3;o .38 .25 .12"},
    {"circleddash", U'⊝', Binary, 0.77F, "o .38 .25 .3;l .24 .25 .52 .25"},
    {"boxplus", U'⊞', Binary, 0.76F, "l .38 .55 .38 -.05 .08 -.05 .08 .25 .68 .25 .08 .25 .08 .55 .68 .55 .68 -.05 .38 -.05"},
    {"boxtimes", U'⊠', Binary, 0.76F, "l .08 -.05 .68 -.05 .68 .55 .08 .55 .08 -.05 .68 .55 .68 -.05 .08 .55"},
    {"boxdot", U'⊡', Binary, 0.76F, "l .08 -.05 .68 -.05 .68 .55 .08 .55 .08 -.05;c 8 215 .255 0 1"},
    {"ltimes", U'⋉', Binary, 0.7F, "l .6 .5 .1 0 .1 .5 .6 0"},
    {"rtimes", U'⋊', Binary, 0.7F, "l .1 .5 .6 0 .6 .5 .1 0"},
    {"dotplus", U'∔', Binary, 0.6F, "c 8 43 .03 0 1;c 8 215 .175 .4 1"},
    {"divideontimes", U'⋇', Binary, 0.62F, "c 8 180 .03 0 1;c 8 215 .18 .24 1;c 8 215 .18 -.24 1"},
    {"barwedge", U'⊼', Binary, 0.66F, "l .08 0 .33 .46 .58 0;l .08 .6 .58 .6"},
    {"veebar", U'⊻', Binary, 0.66F, "l .08 .5 .33 .04 .58 .5;l .08 -.1 .58 -.1"},
    {"Cap doublecap", U'⋒', Binary, 0.77F, "c 8 199 0 0 1;c 8 199 .17 0 .55"},
    {"Cup doublecup", U'⋓', Binary, 0.77F, "c 8 200 0 0 1;c 8 200 .17 .19 .55"},
    {"wr", U'≀', Binary, 0.4F, "l .2 -.1 b .36 .06 .2 .25 .04 .44 .2 .6"},
    {"amalg", U'⨿', Binary, 0.72F, "l .08 .6 .24 .6 .16 .6 .16 0 .08 0 .64 0 .56 0 .56 .6 .48 .6 .64 .6"},
    {"diamond", U'⋄', Binary, 0.5F, "l .25 .47 .03 .25 .25 .03 .47 .25 .25 .47"},
    {"star", U'⋆', Binary, 0.5F, "f .25 .48 .3 .31 .47 .31 .33 .21 .39 .04 .25 .14 .11 .04 .17 .21 .03 .31 .2 .31 .25 .48"},
    {"bigtriangledown", U'▽', Binary, 0.8F, "l .08 .52 .72 .52 .4 -.05 .08 .52"},

    // Ordinary signs
    {"top", U'⊤', Ordinary, 0.7F, "l .06 .64 .64 .64 .35 .64 .35 0"},
    {"intercal", U'⊺', Binary, 0.6F, "l .06 .5 .54 .5 .3 .5 .3 0"},
    {"measuredangle", U'∡', Ordinary, 0.76F, "l .62 .64 .392 .37 b .54 .22 .5 0 .54 .22 .392 .37 l .08 0 .7 0"},
    {"sphericalangle", U'∢', Ordinary, 0.76F, "l .66 .44 .44 .326 b .58 .14 .44 -.046 .58 .14 .44 .326 l .08 .14 .66 -.16"},
    {"complement", U'∁', Ordinary, 0.5F, "l .42 .5 b .38 .74 .24 .74 .08 .74 .08 .34 .08 -.06 .24 -.06 .38 -.06 .42 .18"},
    {"flat", U'♭', Ordinary, 0.42F, "l .1 .76 .1 0 b .38 .16 .32 .3 .22 .42 .1 .26"},
    {"natural", U'♮', Ordinary, 0.42F, "l .1 .76 .1 .08 .32 .16 .32 -.1 .32 .58 .1 .5"},
    {"sharp", U'♯', Ordinary, 0.48F, "l .16 .72 .16 -.1 .16 .188 .06 .16 .42 .26 .32 .232 .32 -.04 .32 .78 .32 .512 .42 .54 .06 .44"},
    {"checkmark", U'✓', Ordinary, 0.76F, "f .08 .3 .16 .36 .27 .16 .64 .7 .7 .66 .27 -.02 .08 .3"},
    {"blacksquare", U'■', Ordinary, 0.7F, "f .08 0 .62 0 .62 .54 .08 .54 .08 0"},
    {"blacktriangle", U'▲', Ordinary, 0.7F, "f .06 0 .64 0 .35 .56 .06 0"},
    {"blacktriangledown", U'▼', Ordinary, 0.7F, "f .06 .56 .64 .56 .35 0 .06 .56"},
    {"blacklozenge", U'⧫', Ordinary, 0.6F, "f .3 .7 .06 .3 .3 -.1 .54 .3 .3 .7"},
    {"lozenge", U'◊', Ordinary, 0.6F, "l .3 .7 .06 .3 .3 -.1 .54 .3 .3 .7"},
    {"Diamond", U'◇', Ordinary, 0.8F, "l .4 .6 .06 .25 .4 -.1 .74 .25 .4 .6"},
    {"triangledown", U'▿', Ordinary, 0.7F, "l .08 .5 .62 .5 .35 .02 .08 .5"},
    {"bigstar", U'★', Ordinary, 0.86F, "f .43 .72 .52 .44 .81 .44 .57 .26 .66 -.02 .43 .15 .2 -.02 .29 .26 .05 .44 .34 .44 .43 .72"},
    {"diagup", U'╱', Ordinary, 0.6F, "l .08 -.1 .52 .7"},
    {"diagdown", U'╲', Ordinary, 0.6F, "l .08 .7 .52 -.1"},
    {"jmath", U'ȷ', Ordinary, 0.3F, "l .08 .38 .2 .42 .13 0 b .09 -.22 -.06 -.19"},
    {"backprime", U'‵', Ordinary, 0.28F, "f .06 .7 .14 .72 .22 .46 .18 .44 .06 .7"},

    // Large operators, which are set larger in display
    {"oiint", U'∯', Operator, 1.24F, "c 12 74 0 0 1;l 1 .25 b 1 .47 .62 .47 .24 .47 .24 .25 .24 .03 .62 .03 .99 .03 .995 .24"},
    {"bigsqcup", U'⨆', Operator, 0.9F, "l .1 .75 .1 -.25 .8 -.25 .8 .75"},
    {"biguplus", U'⨄', Operator, 0.9F, "l .1 .75 b .1 .3 .1 .1 .1 -.25 .45 -.25 .8 -.25 .8 .1 .8 .3 .8 .75;l .45 0 .45 .5;l .2 .25 .7 .25"},
    {"bigodot", U'⨀', Operator, 1.1F, "o .55 .25 .47;c 8 215 .35 -.15 1.6"},
};

// In the style of Math0's: strokes of one weight, the main one double.
constexpr DrawnSign kLetters[] = {
    {"", U'A', Ordinary, 0.72F, "l .22 0 0 0 .04 0 .3 .66 .4 .66 .68 0 .72 0 .58 0 .68 0 .41 .635 .16 0 .247 .22 .587 .22 .127 .22"},
    {"", U'B', Ordinary, 0.64F, "l .04 0 .08 0 .08 .66 .04 .66 .2 .66 .2 0 .08 0 .34 0 b .6 0 .6 .18 .6 .35 .34 .35 l .2 .35 .34 .35 b .56 .35 .56 .5 .56 .66 .34 .66 l .2 .66"},
    {"", U'D', Ordinary, 0.72F, "l .04 0 .08 0 .08 .66 .04 .66 .2 .66 .2 0 .08 0 .32 0 b .68 0 .68 .33 .68 .66 .32 .66 l .2 .66"},
    {"", U'E', Ordinary, 0.62F, "l .56 .52 .56 .66 .04 .66 .08 .66 .08 0 .04 0 .2 0 .2 .66 .2 .34 .46 .34 .2 .34 .2 0 .58 0 .58 .15"},
    {"", U'F', Ordinary, 0.6F, "l .56 .52 .56 .66 .04 .66 .08 .66 .08 0 .04 0 .26 0 .2 0 .2 .66 .2 .34 .46 .34"},
    {"", U'G', Ordinary, 0.74F, "l .62 .5 b .58 .68 .38 .68 .14 .6 .14 .33 .14 .06 .38 -.02 .06 -.02 .06 .33 .06 .68 .38 .68 .06 .68 .06 .33 .06 -.02 .38 -.02 .62 -.02 .64 .16 l .64 0 .64 .3 .44 .3"},
    {"", U'H', Ordinary, 0.76F, "l .04 0 .24 0 .2 0 .2 .66 .24 .66 .04 .66 .08 .66 .08 0 .2 0 .2 .34 .56 .34 .56 .66 .52 .66 .72 .66 .68 .66 .68 0 .72 0 .52 0 .56 0 .56 .34"},
    {"", U'I', Ordinary, 0.36F, "l .06 0 .3 0 .24 0 .24 .66 .3 .66 .06 .66 .12 .66 .12 0"},
    {"", U'J', Ordinary, 0.5F, "l .16 .66 .4 .66 .34 .66 .34 .2 b .34 -.02 .22 -.04 .1 -.06 .06 .08 .1 -.06 .22 -.04 l .22 .66"},
    {"", U'L', Ordinary, 0.6F, "l .04 .66 .26 .66 .2 .66 .2 0 .08 0 .08 .66 .08 0 .04 0 .54 0 .54 .16"},
    {"", U'M', Ordinary, 0.9F, "l .04 0 .26 0 .2 0 .2 .46 .2 0 .08 0 .08 .66 .04 .66 .08 .66 .42 .1 .76 .66 .86 .66 .82 .66 .82 0 .86 0 .64 0 .76 0 .76 .66"},
    {"", U'O', Ordinary, 0.76F, "l .38 .68 b .06 .68 .06 .33 .06 -.02 .38 -.02 .7 -.02 .7 .33 .7 .68 .38 .68 .14 .6 .14 .33 .14 .06 .38 -.02"},
    {"", U'P', Ordinary, 0.62F, "l .04 0 .26 0 .2 0 .2 .66 .04 .66 .08 .66 .08 0 .08 .66 .34 .66 b .58 .66 .58 .49 .58 .32 .34 .32 l .2 .32"},
    {"", U'S', Ordinary, 0.56F, "l .46 .52 b .44 .68 .28 .68 .18 .66 .19 .52 .2 .4 .28 .34 .1 .38 .1 .51 .1 .68 .28 .68 .1 .68 .1 .51 .1 .38 .28 .34 .48 .3 .48 .16 .48 -.02 .28 -.02 .1 -.02 .08 .15"},
    {"", U'T', Ordinary, 0.64F, "l .06 .52 .06 .66 .26 .66 .26 0 .2 0 .44 0 .38 0 .38 .66 .26 .66 .58 .66 .58 .52"},
    {"", U'U', Ordinary, 0.74F, "l .04 .66 .26 .66 .2 .66 .2 .22 b .2 .06 .36 -.02 .08 -.02 .08 .22 l .08 .66 .08 .22 b .08 -.02 .36 -.02 .62 -.02 .62 .22 l .62 .66 .56 .66 .68 .66"},
    {"", U'V', Ordinary, 0.72F, "l .02 .66 .06 .66 .34 0 .4 0 .429 .073 .18 .66 .06 .66 .24 .66 .18 .66 .429 .073 .66 .66 .58 .66 .72 .66"},
    {"", U'W', Ordinary, 0.98F, "l .02 .66 .06 .66 .26 0 .32 0 .345 .083 .17 .66 .06 .66 .24 .66 .17 .66 .345 .083 .5 .6 .68 0 .74 0 .92 .66 .86 .66 .98 .66"},
    {"", U'X', Ordinary, 0.72F, "l .02 .66 .06 .66 .52 0 .46 0 .68 0 .64 0 .18 .66 .06 .66 .24 .66 .18 .66 .382 .37 .62 .66 .56 .66 .68 .66 .62 .66 .08 0 .02 0 .14 0"},
    {"", U'Y', Ordinary, 0.7F, "l .02 .66 .06 .66 .29 .3 .29 0 .22 0 .48 0 .41 0 .41 .3 .17 .66 .06 .66 .24 .66 .17 .66 .41 .3 .64 .66 .58 .66 .7 .66"},
    {"", U'1', Ordinary, 0.44F, "l .08 .52 .2 .66 .2 0 .1 0 .42 0 .32 0 .32 .66 .2 .66"},
};
// clang-format on

template <typename Is>
const DrawnSign* Find(std::span<const DrawnSign> signs, Is is) {
  const auto found = std::ranges::find_if(signs, is);
  return found == signs.end() ? nullptr : &*found;
}

// Takes the next word off.
std::string_view TakeWord(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
  const std::string_view word = rest.substr(0, rest.find(' '));
  rest.remove_prefix(word.size());
  return word;
}

float TakeNumber(std::string_view& rest) {
  return ReadSingle(TakeWord(rest));
}

std::vector<Point> Circle(float x, float y, float radius) {
  static constexpr Point kWays[] = {{1, 0},   {1, 1},  {0, 1},  {-1, 1}, {-1, 0},
                                    {-1, -1}, {0, -1}, {1, -1}, {1, 0}};
  std::vector<Point> points;
  for (const Point way : kWays) points.push_back({x + way.x * radius, y + way.y * radius});
  return points;
}

// Points of a path that is straight until told otherwise.
std::vector<Point> Path(std::string_view rest) {
  std::vector<Point> points;
  bool straight = true;
  for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
    if (word == "l" || word == "b") {
      straight = word == "l";
      continue;
    }
    const float x = ReadSingle(word);
    const Point to{x, TakeNumber(rest)};
    if (straight && !points.empty()) points.push_back(to);
    points.push_back(to);
  }
  return points;
}

}  // namespace

std::vector<DrawnPart> PartsOf(const DrawnSign& sign) {
  std::vector<DrawnPart> parts;
  for (std::string_view rest = sign.parts; !rest.empty();) {
    std::string_view one = rest.substr(0, rest.find(';'));
    rest.remove_prefix(std::min(one.size() + 1, rest.size()));
    DrawnPart& part = parts.emplace_back();
    const std::string_view kind = TakeWord(one);
    const auto number = [&one] { return TakeNumber(one); };
    if (kind == "c") {
      part.font = static_cast<std::int16_t>(number());
      part.code = static_cast<int>(number());
      const float x = number();
      part.points.push_back({x, number()});
      part.size = number();
      continue;
    }
    part.area = kind == "f";
    if (kind == "o") {
      const float x = number(), y = number();
      part.points = Circle(x, y, number());
    } else {
      part.points = Path(one);
    }
    // A line that closes would be an area: it goes over its first piece once more.
    std::vector<Point>& points = part.points;
    const bool closes = points.front().x == points.back().x && points.front().y == points.back().y;
    if (!part.area && closes) points.insert(points.end(), {points[1], points[2]});
  }
  return parts;
}

std::span<const DrawnSign> DrawnSigns() {
  return kSigns;
}

const DrawnSign* DrawnSignNamed(std::string_view name) {
  return Find(kSigns, [name](const DrawnSign& sign) {
    const std::size_t at = sign.names.find(name);
    if (at == sign.names.npos || name.empty()) return false;
    const std::size_t end = at + name.size();
    return (at == 0 || sign.names[at - 1] == ' ') && (end == sign.names.size() || sign.names[end] == ' ');
  });
}

const DrawnSign* DrawnSignOf(char32_t character) {
  return Find(kSigns, [character](const DrawnSign& sign) { return sign.character == character; });
}

const DrawnSign* DrawnLetter(char32_t letter) {
  return Find(kLetters, [letter](const DrawnSign& sign) { return sign.character == letter; });
}

}  // namespace kelvane::formula
