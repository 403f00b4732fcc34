#define KEL_ISA KEL_ISA_AVX2
#include "chroma/layout_rows_vec.inl"
