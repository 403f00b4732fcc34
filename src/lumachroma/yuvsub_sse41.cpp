#define KEL_ISA KEL_ISA_SSE41
#include "lumachroma/yuvsub_vec.inl"
