#include "formula/drawn_signs.h"

#include <algorithm>

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
    {"lneq", U'⪇', Relation, 0.62F, "l .56 .66 .06 .42 .56 .18;l .06 .02 .56 .02;l .22 -.14 .4 .18"},
    {"gneq", U'⪈', Relation, 0.62F, "l .06 .66 .56 .42 .06 .18;l .06 .02 .56 .02;l .22 -.14 .4 .18"},
    {"lessgtr", U'≶', Relation, 0.62F, "l .56 .84 .06 .62 .56 .4;l .06 .2 .56 -.02 .06 -.24"},
    {"gtrless", U'≷', Relation, 0.62F, "l .06 .84 .56 .62 .06 .4;l .56 .2 .06 -.02 .56 -.24"},
    {"lll llless", U'⋘', Relation, 1.0F, "l .56 .5 .06 .25 .56 0;l .76 .5 .26 .25 .76 0;l .96 .5 .46 .25 .96 0"},
    {"ggg gggtr", U'⋙', Relation, 1.0F, "l .06 .5 .56 .25 .06 0;l .26 .5 .76 .25 .26 0;l .46 .5 .96 .25 .46 0"},
    {"lessdot", U'⋖', Relation, 0.62F, "l .56 .5 .06 .25 .56 0;c 8 215 .28 0 1"},
    {"gtrdot", U'⋗', Relation, 0.62F, "l .06 .5 .56 .25 .06 0;c 8 215 .1 0 1"},
    {"preceq preccurlyeq", U'⪯', Relation, 0.72F, "c 12 36 0 .06 1;l .07 -.16 .64 -.16"},
    {"succeq succcurlyeq", U'⪰', Relation, 0.72F, "c 12 37 0 .06 1;l .07 -.16 .64 -.16"},
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
    {"backsim", U'∽', Relation, 0.62F, "b .06 .14 .16 .02 .3 .25 .46 .48 .56 .36"},
    {"asymp", U'≍', Relation, 0.62F, "b .06 .56 .3 .2 .56 .56;b .06 -.06 .3 .3 .56 -.06"},
    {"smile", U'⌣', Relation, 0.8F, "b .08 .34 .4 -.06 .72 .34"},
    {"frown", U'⌢', Relation, 0.8F, "b .08 .14 .4 .54 .72 .14"},
    {"bowtie Join", U'⋈', Relation, 0.8F, "l .08 0 .08 .5 .72 0 .72 .5 .08 0"},
    {"dashv", U'⊣', Relation, 0.62F, "l .56 -.05 .56 .55;l .06 .25 .56 .25"},
    {"vDash", U'⊨', Relation, 0.62F, "l .06 -.05 .06 .55;l .06 .35 .56 .35;l .06 .15 .56 .15"},
    {"Vdash", U'⊩', Relation, 0.72F, "l .06 -.05 .06 .55;l .2 -.05 .2 .55;l .2 .25 .66 .25"},
    {"nVdash", U'⊮', Relation, 0.72F, "l .06 -.05 .06 .55;l .2 -.05 .2 .55;l .2 .25 .66 .25;l .32 -.05 .54 .55"},
    {"nvDash", U'⊭', Relation, 0.62F, "l .06 -.05 .06 .55;l .06 .35 .56 .35;l .06 .15 .56 .15;l .22 -.08 .44 .58"},
    {"nparallel", U'∦', Relation, 0.5F, "l .18 -.2 .18 .72;l .34 -.2 .34 .72;l .06 .1 .46 .4"},
    {"pitchfork", U'⋔', Relation, 0.68F, "b .08 -.05 .04 .55 .33 .5 .62 .55 .58 -.05;l .33 -.05 .33 .68"},
    {"triangleleft lhd vartriangleleft", U'⊲', Relation, 0.68F, "l .6 .53 .08 .25 .6 -.03 .6 .53"},
    {"triangleright rhd vartriangleright", U'⊳', Relation, 0.68F, "l .08 .53 .6 .25 .08 -.03 .08 .53"},
    {"trianglelefteq unlhd", U'⊴', Relation, 0.68F, "l .6 .62 .08 .36 .6 .1 .6 .62;l .08 -.06 .6 -.06"},
    {"trianglerighteq unrhd", U'⊵', Relation, 0.68F, "l .08 .62 .6 .36 .08 .1 .08 .62;l .08 -.06 .6 -.06"},
    {"blacktriangleleft", U'◀', Relation, 0.68F, "f .6 .53 .08 .25 .6 -.03 .6 .53"},
    {"blacktriangleright", U'▶', Relation, 0.68F, "f .08 .53 .6 .25 .08 -.03 .08 .53"},

    // Arrows
    {"nearrow", U'↗', Relation, 0.8F, "l .1 -.05 .7 .55;l .42 .53 .7 .55 .68 .27"},
    {"searrow", U'↘', Relation, 0.8F, "l .1 .55 .7 -.05;l .42 -.03 .7 -.05 .68 .23"},
    {"swarrow", U'↙', Relation, 0.8F, "l .7 .55 .1 -.05;l .38 -.03 .1 -.05 .12 .23"},
    {"nwarrow", U'↖', Relation, 0.8F, "l .7 -.05 .1 .55;l .38 .53 .1 .55 .12 .27"},
    {"updownarrow", U'↕', Relation, 0.5F, "l .25 -.18 .25 .68;l .1 .5 .25 .68 .4 .5;l .1 0 .25 -.18 .4 0"},
    {"Updownarrow", U'⇕', Relation, 0.56F, "l .2 -.04 .2 .54;l .36 -.04 .36 .54;l .06 .48 .28 .68 .5 .48;l .06 .02 .28 -.18 .5 .02"},
    {"hookleftarrow", U'↩', Relation, 1.0F, "b .86 .41 1 .41 1 .33 1 .25 .86 .25;l .86 .25 .06 .25;l .22 .4 .06 .25 .22 .1"},
    {"leftharpoonup", U'↼', Relation, 0.96F, "l .9 .25 .06 .25 .24 .42"},
    {"leftharpoondown", U'↽', Relation, 0.96F, "l .9 .25 .06 .25 .24 .08"},
    {"rightharpoonup", U'⇀', Relation, 0.96F, "l .06 .25 .9 .25 .72 .42"},
    {"rightharpoondown", U'⇁', Relation, 0.96F, "l .06 .25 .9 .25 .72 .08"},
    {"rightleftharpoons", U'⇌', Relation, 0.96F, "l .06 .33 .9 .33 .72 .5;l .9 .17 .06 .17 .24 0"},
    {"leftrightharpoons", U'⇋', Relation, 0.96F, "l .9 .33 .06 .33 .24 .5;l .06 .17 .9 .17 .72 0"},
    {"rightleftarrows", U'⇄', Relation, 1.0F, "c 8 174 0 .17 1;c 8 172 0 -.17 1"},
    {"leftrightarrows", U'⇆', Relation, 1.0F, "c 8 172 0 .17 1;c 8 174 0 -.17 1"},
    {"rightrightarrows", U'⇉', Relation, 1.0F, "c 8 174 0 .17 1;c 8 174 0 -.17 1"},
    {"leftleftarrows", U'⇇', Relation, 1.0F, "c 8 172 0 .17 1;c 8 172 0 -.17 1"},
    {"rightsquigarrow leadsto", U'⇝', Relation, 1.0F, "b .06 .25 .14 .41 .22 .25 .3 .09 .38 .25 .46 .41 .54 .25 .6 .13 .66 .25;l .66 .25 .94 .25;l .78 .4 .94 .25 .78 .1"},
    {"rightarrowtail", U'↣', Relation, 1.0F, "c 8 174 0 0 1;l .02 .4 .16 .25 .02 .1"},
    {"upharpoonright restriction", U'↾', Relation, 0.4F, "l .14 -.2 .14 .7 .32 .52"},
    {"circlearrowleft", U'↺', Relation, 0.9F, "b .68 .47 .56 .6 .4 .58 .1 .56 .12 .25 .14 -.06 .45 -.05 .76 -.04 .76 .25;l .68 .25 .68 .47 .46 .47"},
    {"circlearrowright", U'↻', Relation, 0.9F, "b .2 .47 .32 .6 .48 .58 .78 .56 .76 .25 .74 -.06 .43 -.05 .12 -.04 .12 .25;l .2 .25 .2 .47 .42 .47"},

    // Operators
    {"sqcup", U'⊔', Binary, 0.66F, "l .1 .56 .1 0 .56 0 .56 .56"},
    {"sqcap", U'⊓', Binary, 0.66F, "l .1 0 .1 .56 .56 .56 .56 0"},
    {"uplus", U'⊎', Binary, 0.77F, "c 8 200 0 0 1;l .38 .16 .38 .44;l .24 .3 .52 .3"},
    {"oslash", U'⊘', Binary, 0.77F, "o .38 .25 .3;l .17 .04 .59 .46"},
    {"circledast", U'⊛', Binary, 0.77F, "o .38 .25 .3;c 8 42 .2 .07 .72"},
    {"circledcirc", U'⊚', Binary, 0.77F, "o .38 .25 .3;o .38 .25 .12"},
    {"circleddash", U'⊝', Binary, 0.77F, "o .38 .25 .3;l .24 .25 .52 .25"},
    {"boxplus", U'⊞', Binary, 0.76F, "l .08 -.05 .68 -.05 .68 .55 .08 .55 .08 -.05;l .38 -.05 .38 .55;l .08 .25 .68 .25"},
    {"boxtimes", U'⊠', Binary, 0.76F, "l .08 -.05 .68 -.05 .68 .55 .08 .55 .08 -.05 .68 .55;l .68 -.05 .08 .55"},
    {"boxdot", U'⊡', Binary, 0.76F, "l .08 -.05 .68 -.05 .68 .55 .08 .55 .08 -.05;c 8 215 .255 0 1"},
    {"ltimes", U'⋉', Binary, 0.7F, "l .1 0 .1 .5 .6 0;l .1 0 .6 .5"},
    {"rtimes", U'⋊', Binary, 0.7F, "l .6 0 .6 .5 .1 0;l .6 0 .1 .5"},
    {"dotplus", U'∔', Binary, 0.6F, "c 8 43 .03 0 1;c 8 215 .175 .4 1"},
    {"divideontimes", U'⋇', Binary, 0.62F, "c 8 180 .03 0 1;c 8 215 .18 .24 1;c 8 215 .18 -.24 1"},
    {"barwedge", U'⊼', Binary, 0.66F, "l .08 0 .33 .46 .58 0;l .08 .6 .58 .6"},
    {"veebar", U'⊻', Binary, 0.66F, "l .08 .5 .33 .04 .58 .5;l .08 -.1 .58 -.1"},
    {"Cap doublecap", U'⋒', Binary, 0.77F, "c 8 199 0 0 1;c 8 199 .17 0 .55"},
    {"Cup doublecup", U'⋓', Binary, 0.77F, "c 8 200 0 0 1;c 8 200 .17 .19 .55"},
    {"wr", U'≀', Binary, 0.4F, "b .2 -.1 .36 .06 .2 .25 .04 .44 .2 .6"},
    {"amalg", U'⨿', Binary, 0.72F, "l .16 .6 .16 0;l .56 .6 .56 0;l .08 0 .64 0;l .08 .6 .24 .6;l .48 .6 .64 .6"},
    {"diamond", U'⋄', Binary, 0.5F, "l .25 .47 .03 .25 .25 .03 .47 .25 .25 .47"},
    {"star", U'⋆', Binary, 0.5F, "f .25 .48 .3 .31 .47 .31 .33 .21 .39 .04 .25 .14 .11 .04 .17 .21 .03 .31 .2 .31 .25 .48"},
    {"bigtriangledown", U'▽', Binary, 0.8F, "l .08 .52 .72 .52 .4 -.05 .08 .52"},

    // Ordinary signs
    {"top", U'⊤', Ordinary, 0.7F, "l .06 .64 .64 .64;l .35 .64 .35 0"},
    {"intercal", U'⊺', Binary, 0.6F, "l .06 .5 .54 .5;l .3 .5 .3 0"},
    {"measuredangle", U'∡', Ordinary, 0.76F, "l .62 .64 .08 0 .7 0;b .38 .37 .54 .22 .5 0"},
    {"sphericalangle", U'∢', Ordinary, 0.76F, "l .66 .44 .08 .14 .66 -.16;b .46 .42 .6 .14 .46 -.14"},
    {"complement", U'∁', Ordinary, 0.5F, "b .42 .5 .38 .74 .24 .74 .08 .74 .08 .34 .08 -.06 .24 -.06 .38 -.06 .42 .18"},
    {"flat", U'♭', Ordinary, 0.42F, "l .1 .76 .1 0;b .1 .26 .22 .42 .32 .3 .38 .16 .1 0"},
    {"natural", U'♮', Ordinary, 0.42F, "l .1 .76 .1 .08 .32 .16;l .32 -.1 .32 .58 .1 .5"},
    {"sharp", U'♯', Ordinary, 0.48F, "l .16 .72 .16 -.1;l .32 .78 .32 -.04;l .06 .16 .42 .26;l .06 .44 .42 .54"},
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
    {"backprime", U'‵', Ordinary, 0.28F, "f .06 .7 .14 .72 .22 .46 .18 .44 .06 .7"},

    // Large operators, which are set larger in display
    {"bigsqcup", U'⨆', Operator, 0.9F, "l .1 .75 .1 -.25 .8 -.25 .8 .75"},
    {"biguplus", U'⨄', Operator, 0.9F, "b .1 .75 .1 .3 .1 .1 .1 -.25 .45 -.25 .8 -.25 .8 .1 .8 .3 .8 .75;l .45 0 .45 .5;l .2 .25 .7 .25"},
    {"bigodot", U'⨀', Operator, 1.1F, "o .55 .25 .47;o .55 .25 .04"},
};

// In the style of Math0's: strokes of one weight, the main one double.
constexpr DrawnSign kLetters[] = {
    {"", U'A', Ordinary, 0.72F, "l .04 0 .3 .66 .4 .66 .68 0;l .16 0 .36 .5;l .1 .22 .56 .22;l 0 0 .22 0;l .58 0 .72 0"},
    {"", U'B', Ordinary, 0.64F, "l .2 0 .2 .66;l .08 0 .08 .66;b .04 .66 .2 .66 .34 .66 .56 .66 .56 .5 .56 .35 .34 .35 .28 .35 .2 .35;b .34 .35 .6 .35 .6 .18 .6 0 .34 0 .2 0 .04 0"},
    {"", U'D', Ordinary, 0.72F, "l .2 0 .2 .66;l .08 0 .08 .66;b .04 .66 .2 .66 .32 .66 .68 .66 .68 .33 .68 0 .32 0 .2 0 .04 0"},
    {"", U'E', Ordinary, 0.62F, "l .56 .52 .56 .66 .04 .66;l .08 .66 .08 0;l .2 .66 .2 0;l .04 0 .58 0 .58 .15;l .2 .34 .46 .34"},
    {"", U'F', Ordinary, 0.6F, "l .56 .52 .56 .66 .04 .66;l .08 .66 .08 0;l .2 .66 .2 0;l .04 0 .26 0;l .2 .34 .46 .34"},
    {"", U'G', Ordinary, 0.74F, "b .62 .5 .58 .68 .38 .68 .06 .68 .06 .33 .06 -.02 .38 -.02 .62 -.02 .64 .16;l .64 .0 .64 .3 .44 .3;b .2 .62 .16 .5 .16 .33 .16 .16 .2 .04"},
    {"", U'H', Ordinary, 0.76F, "l .08 0 .08 .66;l .2 0 .2 .66;l .56 0 .56 .66;l .68 0 .68 .66;l .2 .34 .56 .34;l .04 .66 .24 .66;l .04 0 .24 0;l .52 .66 .72 .66;l .52 0 .72 0"},
    {"", U'I', Ordinary, 0.36F, "l .12 0 .12 .66;l .24 0 .24 .66;l .06 .66 .3 .66;l .06 0 .3 0"},
    {"", U'J', Ordinary, 0.5F, "b .06 .08 .1 -.06 .22 -.04 .34 -.02 .34 .2;l .34 .2 .34 .66;l .22 .0 .22 .66;l .16 .66 .4 .66"},
    {"", U'L', Ordinary, 0.6F, "l .08 .66 .08 0;l .2 .66 .2 0;l .04 0 .54 0 .54 .16;l .04 .66 .26 .66"},
    {"", U'M', Ordinary, 0.9F, "l .08 0 .08 .66 .42 .1 .76 .66 .76 0;l .2 0 .2 .46;l .04 0 .26 0;l .64 0 .86 0;l .04 .66 .1 .66;l .74 .66 .86 .66;l .82 0 .82 .66"},
    {"", U'O', Ordinary, 0.76F, "b .7 .33 .7 .68 .38 .68 .06 .68 .06 .33 .06 -.02 .38 -.02 .7 -.02 .7 .33;b .2 .62 .16 .5 .16 .33 .16 .16 .2 .04;b .56 .62 .6 .5 .6 .33 .6 .16 .56 .04"},
    {"", U'P', Ordinary, 0.62F, "l .2 0 .2 .66;l .08 0 .08 .66;b .04 .66 .2 .66 .34 .66 .58 .66 .58 .49 .58 .32 .34 .32 .28 .32 .2 .32;l .04 0 .26 0"},
    {"", U'S', Ordinary, 0.56F, "b .46 .52 .44 .68 .28 .68 .1 .68 .1 .51 .1 .38 .28 .34 .48 .3 .48 .16 .48 -.02 .28 -.02 .1 -.02 .08 .15;b .21 .62 .19 .56 .2 .5 .22 .42 .36 .38"},
    {"", U'T', Ordinary, 0.64F, "l .06 .52 .06 .66 .58 .66 .58 .52;l .26 .66 .26 0;l .38 .66 .38 0;l .2 0 .44 0"},
    {"", U'U', Ordinary, 0.74F, "b .08 .66 .08 .4 .08 .22 .08 -.02 .36 -.02 .62 -.02 .62 .22 .62 .4 .62 .66;b .2 .66 .2 .4 .2 .22 .2 .1 .26 .02;l .04 .66 .26 .66;l .56 .66 .68 .66"},
    {"", U'V', Ordinary, 0.72F, "l .06 .66 .34 0 .4 0 .66 .66;l .18 .66 .4 .12;l .02 .66 .24 .66;l .58 .66 .72 .66"},
    {"", U'W', Ordinary, 0.98F, "l .06 .66 .26 0 .32 0 .5 .6 .68 0 .74 0 .92 .66;l .17 .66 .34 .1;l .58 .5 .74 0;l .02 .66 .24 .66;l .86 .66 .98 .66"},
    {"", U'X', Ordinary, 0.72F, "l .06 .66 .52 0;l .18 .66 .64 0;l .62 .66 .08 0;l .02 .66 .24 .66;l .46 0 .68 0;l .56 .66 .68 .66;l .02 0 .14 0"},
    {"", U'Y', Ordinary, 0.7F, "l .06 .66 .29 .3 .29 0;l .17 .66 .41 .3 .41 0;l .64 .66 .41 .3;l .02 .66 .24 .66;l .58 .66 .7 .66;l .22 0 .48 0"},
    {"", U'1', Ordinary, 0.44F, "l .08 .52 .2 .66 .2 0;l .32 0 .32 .66 .2 .66;l .1 0 .42 0"},
};
// clang-format on

template <typename Is>
const DrawnSign* Find(std::span<const DrawnSign> signs, Is is) {
  const auto found = std::ranges::find_if(signs, is);
  return found == signs.end() ? nullptr : &*found;
}

}  // namespace

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
