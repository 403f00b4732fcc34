// Test hooks of the core layer. Only the static core library that the tests
// link is built with them (KELCORE_TEST_HOOKS); the shared library has none.
#pragma once

namespace kelcore_test {
// Makes the n-th call of kelMalloc from now on (1 = the next one) return
// null; later calls succeed again. n below 1 turns the injection off.
void failAllocation(long n);
// kelMalloc calls so far (failed ones included).
long allocations();
// Blocks handed out by kelMalloc and not yet released by kelFree.
long liveBlocks();
}  // namespace kelcore_test
