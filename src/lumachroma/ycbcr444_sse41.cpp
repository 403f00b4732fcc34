#define KEL_ISA KEL_ISA_SSE41
#include "lumachroma/ycbcr444_vec.inl"
