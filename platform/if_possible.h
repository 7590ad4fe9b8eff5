#pragma once

#include "platform/failure.h"

namespace kelvane {

// A step whose failure nobody must hear of: one of clearing up, mostly after another failure.
template <typename Step>
void IfPossible(Step step) {
  try {
    step();
  } catch (const Failure&) {
  }
}

}  // namespace kelvane
