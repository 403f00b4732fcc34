// Vector bodies of the AHD stages (see ahd.h for their scalar definitions).
#include "demosaic/ahd.h"
#include "frame/simdf.h"

namespace kel {
namespace KEL_ISA_NS {

extern const AhdKernels kAhdKernels = {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

}  // namespace KEL_ISA_NS
}  // namespace kel
