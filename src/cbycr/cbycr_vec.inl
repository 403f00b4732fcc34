// Vector bodies of the CbYCr 4:2:2 conversions, written once on the lane
// words of frame/simd.h and compiled per instruction set. Each is the
// lane-wise form of the scalar body of the same name in cbycr.h.
#include "cbycr/cbycr.h"
#include "frame/simd422.h"

namespace kel {
namespace KEL_ISA_NS {
namespace {

using v = V::v;

// Pair means: luma of eight pixels, chroma of eight pairs (in range without
// a limit: 16..235 and 16..240).
struct MeanBody {
  static v y(v r8, v g8, v b8) { return lumaQ15<8422, 16515, 3212, 2112, 0, 255>(r8, g8, b8); }
  static void c(v sr, v sg, v sb, v& cb, v& cr) {
    cb = ChromaQ<true, 6, -9699, -19071, 28770, 16448, 7, 0, 255>::of(sr, sg, sb);
    cr = ChromaQ<true, 6, 28770, -24117, -4653, 16448, 7, 0, 255>::of(sr, sg, sb);
  }
};

}  // namespace

extern const CbYCrKernels kCbYCrKernels = {
    kernToC2<Pix::BGRX, MeanBody>,
    kernFromC2<Pix::RGB, cbycr::InvBody>,
    kernFromC2<Pix::BGRA, cbycr::InvBody>,
};

}  // namespace KEL_ISA_NS
}  // namespace kel
