// Vector bodies of the packed 16-bit sources, on the lane words of
// frame/simd.h and compiled per instruction set.
#include "frame/simd.h"
#include "lumachroma/packedsrc.h"

namespace kel {
namespace KEL_ISA_NS {

extern const PackedSrcKernels kPackedSrcKernels = {};

}  // namespace KEL_ISA_NS
}  // namespace kel
