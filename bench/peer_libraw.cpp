// LibRaw's demosaicing beside ours on the same 16-bit RGGB mosaic. LibRaw
// takes a Bayer frame from memory with open_bayer (16-bit little-endian
// samples, no file), unpacks it once at registration, and each timed call is
// one dcraw_process: AHD (user_qual 3) beside DemosaicAHD_16u, bilinear
// (user_qual 0) beside CFAToRGB_16u. Its processing is a pipeline, not a
// demosaic alone: it also copies the mosaic into its four-channel image,
// scales the channels (white balance of 1) and makes a pass for the
// histogram; with raw colour out (output_color 0), no automatic brightness
// and 16 bits, those are a few passes over the frame beside the
// interpolation. Its 8-bit path goes through the same 16-bit pipeline, so
// only the 16-bit groups have this peer. LibRaw threads with OpenMP: its
// team follows the run's thread count.
// Built where LibRaw is found (KB_HAVE_LIBRAW).
#if KB_HAVE_LIBRAW
#include <libraw/libraw.h>
#include <omp.h>

#include "common.h"

namespace {

void registerLibRaw() {
  using namespace kb;
  omp_set_num_threads(threads());
  const size_t px = size_t(kW) * kH;
  static Plane raw16(2 * kW, kH, 300);
  const std::string t = threads() == 2 ? "@2t" : "";  // as bench_demosaic names its groups
  struct Line {
    const char* group;
    int quality;
  };
  for (const Line& l : {Line{"DemosaicAHD_16u", 3}, Line{"CFAToRGB_16u", 0}}) {
    auto* proc = new LibRaw;  // kept for the whole run
    if (proc->open_bayer(raw16.p, static_cast<unsigned>(raw16.bytes), static_cast<ushort>(kW), static_cast<ushort>(kH),
                         0, 0, 0, 0, 0, LIBRAW_OPENBAYER_RGGB, 0, 0, 0) != LIBRAW_SUCCESS ||
        proc->unpack() != LIBRAW_SUCCESS) {
      delete proc;
      continue;
    }
    libraw_output_params_t& o = proc->imgdata.params;
    o.user_qual = l.quality;
    o.output_color = 0;
    o.output_bps = 16;
    o.no_auto_bright = 1;
    o.use_camera_wb = 0;
    o.use_auto_wb = 0;
    for (int c = 0; c < 4; ++c) o.user_mul[c] = 1.0f;
    add(l.group + t, "libraw", 8 * px, [proc] { proc->dcraw_process(); });
  }
}
KB_REGISTER(registerLibRaw);

}  // namespace
#endif
