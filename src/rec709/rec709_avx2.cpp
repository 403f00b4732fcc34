#define KEL_ISA KEL_ISA_AVX2
#include "rec709/rec709_vec.inl"
