#define KEL_ISA KEL_ISA_AVX2
#include "cbycr/cbycr_vec.inl"
