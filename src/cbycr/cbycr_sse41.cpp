#define KEL_ISA KEL_ISA_SSE41
#include "cbycr/cbycr_vec.inl"
