#define KEL_ISA KEL_ISA_SSE41
#include "packed/rgb565_vec.inl"
