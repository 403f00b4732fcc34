#define KEL_ISA KEL_ISA_SSE41
#include "chroma/layout_rows_vec.inl"
