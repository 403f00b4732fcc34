#define KEL_ISA KEL_ISA_AVX2
#include "lumachroma/yuvsub_vec.inl"
