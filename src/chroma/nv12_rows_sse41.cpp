#define KEL_ISA KEL_ISA_SSE41
#include "chroma/nv12_rows_vec.inl"
