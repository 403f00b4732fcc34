#define KEL_ISA KEL_ISA_AVX2
#include "packed/rgb565_vec.inl"
