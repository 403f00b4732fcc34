// ffmpeg's swscale beside our conversions that do the same work at the same
// size: one pixel format to another, no scaling (SWS_POINT, so that the
// 4:2:0 and 4:2:2 chroma is taken, not filtered, where swscale has a
// choice). Each line joins the group of our conversion between the same
// layouts; the matrices may differ (swscale's default is BT.601 studio
// range), the work per pixel is the same. Calls go through sws_scale_frame,
// so that the run's thread count becomes swscale's slice threads.
// Built where libswscale and libavutil are found (KB_HAVE_SWSCALE).
#if KB_HAVE_SWSCALE
extern "C" {
#include <libavutil/frame.h>
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include "common.h"

namespace {

// One image of a pixel format at the run's size, every plane a kb::Plane
// (so that cold runs flush it), wrapped in an AVFrame whose buffers are
// references that never free (swscale refs frames; unreferenced ones it
// would copy).
struct Image {
  explicit Image(AVPixelFormat fmt, uint32_t seed) : frame(av_frame_alloc()) {
    int lines[4] = {};
    av_image_fill_linesizes(lines, fmt, kb::kW);
    const AVPixFmtDescriptor* d = av_pix_fmt_desc_get(fmt);
    const int n = av_pix_fmt_count_planes(fmt);
    for (int i = 0; i < n; ++i) {
      lines[i] = FFALIGN(lines[i], 64);  // ffmpeg's own frames have aligned rows; its SIMD relies on them
      const int rows = (i == 1 || i == 2) ? AV_CEIL_RSHIFT(kb::kH, d->log2_chroma_h) : kb::kH;
      planes.emplace_back(std::make_unique<kb::Plane>(lines[i], rows, seed + i));
      frame->data[i] = planes.back()->p;
      frame->linesize[i] = lines[i];
      frame->buf[i] = av_buffer_create(planes.back()->p, static_cast<size_t>(lines[i]) * rows, [](void*, uint8_t*) {},
                                       nullptr, 0);
      bytes += static_cast<size_t>(lines[i]) * rows;
    }
    frame->format = fmt;
    frame->width = kb::kW;
    frame->height = kb::kH;
  }
  std::vector<std::unique_ptr<kb::Plane>> planes;
  AVFrame* frame;
  size_t bytes = 0;
};

SwsContext* context(AVPixelFormat from, AVPixelFormat to) {
  SwsContext* c = sws_alloc_context();
  av_opt_set_int(c, "srcw", kb::kW, 0);
  av_opt_set_int(c, "srch", kb::kH, 0);
  av_opt_set_int(c, "src_format", from, 0);
  av_opt_set_int(c, "dstw", kb::kW, 0);
  av_opt_set_int(c, "dsth", kb::kH, 0);
  av_opt_set_int(c, "dst_format", to, 0);
  av_opt_set_int(c, "sws_flags", SWS_POINT, 0);
  av_opt_set_int(c, "threads", kb::threads(), 0);
  if (sws_init_context(c, nullptr, nullptr) < 0) {
    sws_freeContext(c);
    return nullptr;
  }
  return c;
}

void registerSwscale() {
  av_log_set_level(AV_LOG_ERROR);
  struct Case {
    const char* group;
    AVPixelFormat from, to;
  };
  static const Case cases[] = {
      // RGB to YUV / YCbCr and back
      {"RGBToYUV420_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV420P},
      {"RGBToYCbCr420_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV420P},
      {"BGRToYCbCr420_8u_C3P3R", AV_PIX_FMT_BGR24, AV_PIX_FMT_YUV420P},
      {"BGRToYUV420_8u_AC4P3R", AV_PIX_FMT_BGRA, AV_PIX_FMT_YUV420P},
      {"RGBToYUV422_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV422P},
      {"BGRToYCbCr422_8u_C3P3R", AV_PIX_FMT_BGR24, AV_PIX_FMT_YUV422P},
      {"RGBToYUV422_8u_C3C2R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUYV422},
      {"RGBToYCbCr422_8u_C3C2R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUYV422},
      {"RGBToYUV_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV444P},
      {"RGBToYCbCr_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV444P},
      {"RGBToGray_8u_C3C1R", AV_PIX_FMT_RGB24, AV_PIX_FMT_GRAY8},
      {"YUVToRGB_8u_P3C3R", AV_PIX_FMT_YUV444P, AV_PIX_FMT_RGB24},
      {"YCbCrToRGB_8u_P3C3R", AV_PIX_FMT_YUV444P, AV_PIX_FMT_RGB24},
      {"I444To709BGR", AV_PIX_FMT_YUV444P, AV_PIX_FMT_BGR24},
      {"YUV420ToRGB_8u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB24},
      {"YCbCr420ToRGB_8u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB24},
      {"YUV420ToBGR_8u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGR24},
      {"YCbCr420ToBGR_8u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGR24},
      {"I420To709BGR", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGR24},
      {"YCbCr420ToBGR_8u_P3C4R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGRA},
      {"I420To709FullBGRA", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGRA},
      {"YUV420ToRGB_8u_P3AC4R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGBA},
      {"YUV422ToRGB_8u_P3C3R", AV_PIX_FMT_YUV422P, AV_PIX_FMT_RGB24},
      {"YCbCr422ToRGB_8u_P3C3R", AV_PIX_FMT_YUV422P, AV_PIX_FMT_RGB24},
      {"YUV422ToRGB_8u_P3AC4R", AV_PIX_FMT_YUV422P, AV_PIX_FMT_RGBA},
      {"YUV422ToRGB_8u_C2C3R", AV_PIX_FMT_YUYV422, AV_PIX_FMT_RGB24},
      {"YCbCr422ToRGB_8u_C2C3R", AV_PIX_FMT_YUYV422, AV_PIX_FMT_RGB24},
      {"UYVYToRGB", AV_PIX_FMT_UYVY422, AV_PIX_FMT_RGB24},
      {"UYVYToBGRA", AV_PIX_FMT_UYVY422, AV_PIX_FMT_BGRA},
      {"BGRAToUYVY", AV_PIX_FMT_BGRA, AV_PIX_FMT_UYVY422},
      // 16-bit pixels
      {"RGBToRGB565_8u16u_C3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB565LE},
      {"RGB565ToRGB_16u8u_C3R", AV_PIX_FMT_RGB565LE, AV_PIX_FMT_RGB24},
      {"YCbCr420ToRGB565_8u16u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB565LE},
      {"YUV420ToRGB555_8u16u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB555LE},
      {"BGR565ToYCbCr420_16u8u_C3P3R", AV_PIX_FMT_BGR565LE, AV_PIX_FMT_YUV420P},
      {"BGR555ToYCbCr420_16u8u_C3P3R", AV_PIX_FMT_BGR555LE, AV_PIX_FMT_YUV420P},
      // layouts: planes, semi-planar, packed 4:2:2
      {"NV12ToI420", AV_PIX_FMT_NV12, AV_PIX_FMT_YUV420P},
      {"NV12ToYV12", AV_PIX_FMT_NV12, AV_PIX_FMT_YUV420P},
      {"I420ToNV12", AV_PIX_FMT_YUV420P, AV_PIX_FMT_NV12},
      {"YV12ToNV12", AV_PIX_FMT_YUV420P, AV_PIX_FMT_NV12},
      {"YUY2ToI420", AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV420P},
      {"YUY2ToYV12", AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV420P},
      {"UYVYToI420", AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV420P},
      {"UYVYToYV12", AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV420P},
      {"YUY2ToI422", AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV422P},
      {"UYVYToI422", AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV422P},
      {"I422ToYUY2", AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUYV422},
      {"I422ToYVYU", AV_PIX_FMT_YUV422P, AV_PIX_FMT_YVYU422},
      {"YUY2ToUYVY", AV_PIX_FMT_YUYV422, AV_PIX_FMT_UYVY422},
      {"YV12ToYUY2", AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUYV422},
      {"YV12ToUYVY", AV_PIX_FMT_YUV420P, AV_PIX_FMT_UYVY422},
      {"NV12ToYUY2", AV_PIX_FMT_NV12, AV_PIX_FMT_YUYV422},
      {"NV12ToUYVY", AV_PIX_FMT_NV12, AV_PIX_FMT_UYVY422},
      {"YUY2ToNV12", AV_PIX_FMT_YUYV422, AV_PIX_FMT_NV12},
      {"UYVYToNV12", AV_PIX_FMT_UYVY422, AV_PIX_FMT_NV12},
      {"I420ToI422", AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P},
      {"I422ToI420", AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUV420P},
      // Bayer mosaics to RGB (swscale interpolates bilinearly)
      {"CFAToRGB_8u", AV_PIX_FMT_BAYER_RGGB8, AV_PIX_FMT_RGB24},
      {"CFAToRGB_16u", AV_PIX_FMT_BAYER_RGGB16LE, AV_PIX_FMT_RGB48LE},
  };
  const std::string suffix = kb::threads() == 2 ? "@2t" : "";  // as the families name their threaded groups
  uint32_t seed = 100;
  for (const Case& c : cases) {
    SwsContext* ctx = context(c.from, c.to);
    if (!ctx) continue;  // a conversion this swscale lacks
    auto* src = new Image(c.from, seed++);  // kept for the whole run
    auto* dst = new Image(c.to, seed++);
    // Our threaded families name their groups with the thread count.
    std::string group = c.group;
    for (const char* threaded : {"RGBToRGB565_8u16u_C3R", "RGB565ToRGB_16u8u_C3R", "CFAToRGB_8u", "CFAToRGB_16u"})
      if (group == threaded) group += suffix;
    kb::add(group, "swscale", src->bytes + dst->bytes, [ctx, src, dst] { sws_scale_frame(ctx, dst->frame, src->frame); });
  }
}
KB_REGISTER(registerSwscale);

}  // namespace
#endif
