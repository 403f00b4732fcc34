#include "frame/simd.h"
#include "cbycr/cbycr.h"
namespace kel { namespace KEL_ISA_NS {
extern const CbYCrKernels kCbYCrKernels = {};
}}
