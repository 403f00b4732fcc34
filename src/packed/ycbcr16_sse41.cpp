#define KEL_ISA KEL_ISA_SSE41
#include "packed/ycbcr16_vec.inl"
