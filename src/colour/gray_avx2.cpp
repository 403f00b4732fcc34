#define KEL_ISA KEL_ISA_AVX2
#include "colour/gray_vec.inl"
