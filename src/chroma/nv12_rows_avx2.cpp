#define KEL_ISA KEL_ISA_AVX2
#include "chroma/nv12_rows_vec.inl"
