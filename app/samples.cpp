#include "app/samples.h"

#include "document/paper.h"
#include "editing/notes.h"
#include "papers/paper_commands.h"
#include "platform/files.h"

namespace kelvane {

std::span<const SamplePaper> SamplePapers() {
  static constexpr SamplePaper kPapers[] = {
      {"&Calculus", "CALCULUS", 3},          {"&Matrices", "MATRICES", 3}, {"&Diagrams", "DIAGRAM", 2},
      {"&Examination", "EXAM", 3},           {"&Fields", "FIELDS", 2},     {"F&ormulas", "FORMULAS", 3},
      {"&Specimen of Math0", "SPECIMEN", 2},
  };
  return kPapers;
}

bool OpenSample(const SamplePaper& paper, int page) {
  if (!OpenCopyOf(PageFileName(ProgramFolder + paper.name + ".001", page))) return false;
  ShowNote("A copy: Save gives it a name of its own");
  return true;
}

}  // namespace kelvane
