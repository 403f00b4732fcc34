#include "kelcc.h"

namespace {
constexpr KelLibraryVersion kVersion = {
    6, 1, 137, 754, {'e', '9', 0, 0}, "libkelcce9.so.6.1", "6.1 build 137.56", "Mar 17 2010"};
}

extern "C" const KelLibraryVersion* kelccGetLibVersion(void) { return &kVersion; }
