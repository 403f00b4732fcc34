#define KEL_ISA KEL_ISA_SSE41
#include "colour/xyz_vec.inl"
