#define KEL_ISA KEL_ISA_AVX2
#include "lumachroma/ycbcr444_vec.inl"
