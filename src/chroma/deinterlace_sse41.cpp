#define KEL_ISA KEL_ISA_SSE41
#include "chroma/deinterlace_vec.inl"
