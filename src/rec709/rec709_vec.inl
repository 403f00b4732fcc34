#include "frame/simd.h"
#include "rec709/rec709.h"
namespace kel { namespace KEL_ISA_NS {
extern const Rec709Kernels kRec709Kernels = {};
}}
