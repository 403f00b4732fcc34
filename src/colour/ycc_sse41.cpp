#define KEL_ISA KEL_ISA_SSE41
#include "colour/ycc_vec.inl"
