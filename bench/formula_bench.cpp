// How long it takes from a notation to boxes, and to the lines of a page, which a person waits for at each
// key.

#include <benchmark/benchmark.h>

#include <string_view>

#include "formula/formula.h"

namespace kelvane {
namespace {

// About fifty signs each.
constexpr std::string_view kNotations[] = {
    "x_{1,2}=-\\frac{p}{2}\\pm\\sqrt{\\left(\\frac{p}{2}\\right)^2-q}\\quad\\sum_{k=0}^n\\binom nk "
    "a^{n-k}b^k=(a+b)^n+"
    "\\int_0^1 f(x)\\,dx",
    "A=\\begin{pmatrix}a_{11}&a_{12}&\\cdots&a_{1n}\\\\a_{21}&a_{22}&\\cdots&a_{2n}\\\\\\vdots&\\vdots&"
    "\\ddots&\\vdots"
    "\\\\a_{m1}&a_{m2}&\\cdots&a_{mn}\\end{pmatrix}",
    "x^2+y^2=z^2+2ab+c_1d_2-e^{i\\pi}+\\sin^2\\alpha+\\cos^2\\alpha+f'(x)g(y)-h_{ij}\\le\\hat A+\\bar b\\vec "
    "v",
};

void SetNotation(benchmark::State& state) {
  const std::string_view notation = kNotations[state.range(0)];
  for (auto _ : state) benchmark::DoNotOptimize(SetFormula(notation, {}));
}
BENCHMARK(SetNotation)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->Repetitions(5);

void PutNotationOnPage(benchmark::State& state) {
  const std::string_view notation = kNotations[state.range(0)];
  for (auto _ : state) {
    const auto set = SetFormula(notation, {});
    benchmark::DoNotOptimize(PageOfFormula(std::get<Formula>(set), {100, 100}));
  }
}
BENCHMARK(PutNotationOnPage)->DenseRange(0, 2)->Unit(benchmark::kMillisecond)->Repetitions(5);

}  // namespace
}  // namespace kelvane
