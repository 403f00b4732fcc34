#define KEL_ISA KEL_ISA_SSE41
#include "rec709/rec709_vec.inl"
