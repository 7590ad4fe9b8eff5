#pragma once

// What the person sees of what they type: the view goes where the run goes, and the foot of the window warns
// of what would not be seen on paper.

namespace kelvane {

// Brings the end of the run being typed, or the cursor point, into view, and warns.
void FollowTyping();

// A size that shows nothing, a cursor point or a run outside the paper; takes a warning away that no longer
// holds.
void WarnOfTyping();

}  // namespace kelvane
