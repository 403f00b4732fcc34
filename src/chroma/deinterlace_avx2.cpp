#define KEL_ISA KEL_ISA_AVX2
#include "chroma/deinterlace_vec.inl"
