#pragma once

// What the program holds of the machine's memory.

namespace kelvane {

// Has blocks of this many bytes and more go back to the machine as soon as they are freed. Without it the
// first large picture that goes makes those after it part of the heap, where small blocks that live longer
// hold their room. To be called before memory is used much.
inline constexpr int kLargeBlock = 256 << 10;
void KeepLargeBlocksApart();

// Gives what was freed in the heap back to the machine. It takes a millisecond or so: for the end of
// something large.
void GiveBackMemory();

}  // namespace kelvane
