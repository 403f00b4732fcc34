#define KEL_ISA KEL_ISA_AVX2
#include "packed/ycbcr16_vec.inl"
