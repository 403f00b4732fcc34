// `kelcc bench`: a quick throughput table of this machine. One representative
// member of each family converts a 1920x1080 picture of random samples for a
// fixed time; each line gives its throughput (bytes read plus bytes written
// per second) beside memcpy of the same bytes, measured in the same run
// right after it, and the ratio of the two. The full comparison with the
// peer libraries is the benchmark suite (scripts/bench.sh).
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include <kelcore.h>

#include "kelcc_tool.h"

namespace {

// Source and destination memory of one member: planes laid out one after
// another, 64-byte aligned, with room for 4 bytes a pixel in three planes.
struct Pool {
  int w, h;
  std::vector<uint8_t> src, dst, tmp;
  std::vector<float> fsrc;
  Pool(int w_, int h_) : w(w_), h(h_), src(size(w_, h_)), dst(size(w_, h_)), fsrc(static_cast<size_t>(w_) * h_) {
    std::mt19937 g(1);
    for (auto& b : src) b = static_cast<uint8_t>(g());
    std::uniform_real_distribution<float> u(0.f, 4.f);
    for (auto& f : fsrc) f = u(g);
    tmp.resize(KELCC_AHD_TMP_BYTES(static_cast<size_t>(w), 1));
  }
  static size_t size(int w, int h) { return static_cast<size_t>(w) * h * 12 + 256; }
  KeliSize roi() const { return {w, h}; }
  // Three planes of a picture whose chroma is (w / xs) x (h / ys), `bpp` bytes a sample.
  struct Planes {
    uint8_t* p[3];
    int step[3];
  };
  static Planes planes(uint8_t* base, int w, int h, int xs, int ys) {
    Planes pl;
    const size_t y = static_cast<size_t>(w) * h, c = static_cast<size_t>(w / xs) * (h / ys);
    pl.p[0] = base, pl.p[1] = base + y, pl.p[2] = base + y + c;
    pl.step[0] = w, pl.step[1] = pl.step[2] = w / xs;
    return pl;
  }
  Planes srcPlanes(int xs, int ys) { return planes(src.data(), w, h, xs, ys); }
  Planes dstPlanes(int xs, int ys) { return planes(dst.data(), w, h, xs, ys); }
};

struct Row {
  const char* family;
  const char* member;
  double srcBpp, dstBpp;  // bytes a pixel read and written
  std::function<KelStatus(Pool&)> run;
};

using P = Pool&;
std::vector<Row> rows() {
  return {
      {"yuv", "RGBToYUV_8u_C3R", 3, 3,
       [](P p) { return keliRGBToYUV_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"ycbcr444", "RGBToYCbCr_8u_C3R", 3, 3,
       [](P p) { return keliRGBToYCbCr_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"yuv-subsampled", "RGBToYUV420_8u_C3P3R", 3, 1.5,
       [](P p) {
         auto d = p.dstPlanes(2, 2);
         return keliRGBToYUV420_8u_C3P3R(p.src.data(), 3 * p.w, d.p, d.step, p.roi());
       }},
      {"ycbcr-subsampled", "YCbCr420ToRGB_8u_P3C3R", 1.5, 3,
       [](P p) {
         auto s = p.srcPlanes(2, 2);
         return keliYCbCr420ToRGB_8u_P3C3R(s.p, s.step, p.dst.data(), 3 * p.w, p.roi());
       }},
      {"packed-sources", "BGR565ToYCbCr420_16u8u_C3P3R", 2, 1.5,
       [](P p) {
         auto d = p.dstPlanes(2, 2);
         return keliBGR565ToYCbCr420_16u8u_C3P3R(reinterpret_cast<const Kel16u*>(p.src.data()), 2 * p.w, d.p, d.step,
                                                 p.roi());
       }},
      {"packed-outputs", "YCbCr420ToBGR565Dither_8u16u_P3C3R", 1.5, 2,
       [](P p) {
         auto s = p.srcPlanes(2, 2);
         return keliYCbCr420ToBGR565Dither_8u16u_P3C3R(s.p, s.step, reinterpret_cast<Kel16u*>(p.dst.data()), 2 * p.w,
                                                       p.roi());
       }},
      {"rec709", "BGRToYCbCr420_709CSC_8u_C3P3R", 3, 1.5,
       [](P p) {
         auto d = p.dstPlanes(2, 2);
         return keliBGRToYCbCr420_709CSC_8u_C3P3R(p.src.data(), 3 * p.w, d.p, d.step, p.roi());
       }},
      {"cbycr", "RGBToCbYCr422_8u_C3C2R", 3, 2,
       [](P p) { return keliRGBToCbYCr422_8u_C3C2R(p.src.data(), 3 * p.w, p.dst.data(), 2 * p.w, p.roi()); }},
      {"rgb565", "RGBToRGB565_8u16u_C3R", 3, 2,
       [](P p) {
         return keliRGBToRGB565_8u16u_C3R(p.src.data(), 3 * p.w, reinterpret_cast<Kel16u*>(p.dst.data()), 2 * p.w,
                                          p.roi());
       }},
      {"layouts", "YCbCr422_8u_C2P3R", 2, 2,
       [](P p) {
         auto d = p.dstPlanes(2, 1);
         return keliYCbCr422_8u_C2P3R(p.src.data(), 2 * p.w, d.p, d.step, p.roi());
       }},
      {"nv12", "YCbCr420ToYCbCr422_8u_P2C2R", 1.5, 2,
       [](P p) {
         const uint8_t* uv = p.src.data() + static_cast<size_t>(p.w) * p.h;
         return keliYCbCr420ToYCbCr422_8u_P2C2R(p.src.data(), p.w, uv, p.w, p.dst.data(), 2 * p.w, p.roi());
       }},
      {"interlace", "YCbCr420To422_Interlace_8u_P3R", 1.5, 2,
       [](P p) {
         auto s = p.srcPlanes(2, 2);
         auto d = p.dstPlanes(2, 1);
         return keliYCbCr420To422_Interlace_8u_P3R(s.p, s.step, d.p, d.step, p.roi());
       }},
      {"filter", "YCbCr420ToYCbCr422_Filter_8u_P3R", 1.5, 2,
       [](P p) {
         auto s = p.srcPlanes(2, 2);
         auto d = p.dstPlanes(2, 1);
         return keliYCbCr420ToYCbCr422_Filter_8u_P3R(s.p, s.step, d.p, d.step, p.roi());
       }},
      {"planes1620", "YCbCr420To411_8u_P3R", 1.5, 1.5,
       [](P p) {
         auto s = p.srcPlanes(2, 2);
         auto d = p.dstPlanes(4, 1);
         return keliYCbCr420To411_8u_P3R(s.p, s.step, d.p, d.step, p.roi());
       }},
      {"xyz-ycc", "RGBToXYZ_8u_C3R", 3, 3,
       [](P p) { return keliRGBToXYZ_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"hls-hsv", "RGBToHSV_8u_C3R", 3, 3,
       [](P p) { return keliRGBToHSV_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"luv", "RGBToLUV_8u_C3R", 3, 3,
       [](P p) { return keliRGBToLUV_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"lab", "BGRToLab_8u_C3R", 3, 3,
       [](P p) { return keliBGRToLab_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"gray", "RGBToGray_8u_C3C1R", 3, 1,
       [](P p) { return keliRGBToGray_8u_C3C1R(p.src.data(), 3 * p.w, p.dst.data(), p.w, p.roi()); }},
      {"gamma", "GammaFwd_8u_C3R", 3, 3,
       [](P p) { return keliGammaFwd_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi()); }},
      {"twist", "ColorTwist32f_8u_C3R", 3, 3,
       [](P p) {
         static const Kel32f m[3][4] = {{0.393f, 0.769f, 0.189f, 0}, {0.349f, 0.686f, 0.168f, 0}, {0.272f, 0.534f, 0.131f, 0}};
         return keliColorTwist32f_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi(), m);
       }},
      {"tonemap", "ToneMapMean_32f8u_C1R", 4, 1,
       [](P p) { return keliToneMapMean_32f8u_C1R(p.fsrc.data(), 4 * p.w, p.dst.data(), p.w, p.roi()); }},
      {"reduce", "ReduceBits_8u_C3R (fs, 16 levels)", 3, 3,
       [](P p) {
         return keliReduceBits_8u_C3R(p.src.data(), 3 * p.w, p.dst.data(), 3 * p.w, p.roi(), 0, kelDitherFloydSteinberg,
                                      16);
       }},
      {"demosaic", "CFAToRGB_8u_C1C3R", 1, 3,
       [](P p) {
         return keliCFAToRGB_8u_C1C3R(p.src.data(), KeliRect{0, 0, p.w, p.h}, p.roi(), p.w, p.dst.data(), 3 * p.w,
                                      kelBayerRGGB);
       }},
      {"demosaic", "DemosaicAHD_8u_C1C3R", 1, 3,
       [](P p) {
         return keliDemosaicAHD_8u_C1C3R(p.src.data(), KeliRect{0, 0, p.w, p.h}, p.roi(), p.w, p.dst.data(), 3 * p.w,
                                         kelBayerRGGB, p.tmp.data(), KELCC_AHD_TMP_STEP(p.w, 1));
       }},
      {"ycocg", "BGRToYCoCg_Rev_8u16s_C3P3R", 3, 6,
       [](P p) {
         Kel16s* d[3];
         for (int i = 0; i < 3; ++i) d[i] = reinterpret_cast<Kel16s*>(p.dst.data()) + static_cast<size_t>(i) * p.w * p.h;
         return keliBGRToYCoCg_Rev_8u16s_C3P3R(p.src.data(), 3 * p.w, d, 2 * p.w, p.roi());
       }},
  };
}

using Clock = std::chrono::steady_clock;

// Calls per second of `f` over about `ms` milliseconds (after one warm-up
// call): the best of five slices, so that a moment when other processes take
// the cores or the memory bus does not decide a line.
double rate(const std::function<void()>& f, double ms) {
  f();
  double best = 0;
  for (int slice = 0; slice < 5; ++slice) {
    long n = 0;
    const auto t0 = Clock::now();
    double spent = 0;
    do {
      f();
      ++n;
      spent = std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
    } while (spent < ms / 5);
    best = std::max(best, n / (spent / 1000));
  }
  return best;
}

int benchCommand(int argc, char** argv) {
  int w = 1920, h = 1080;
  double ms = 200;
  std::string filter;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    auto value = [&]() -> const char* {
      if (i + 1 < argc) return argv[++i];
      std::fprintf(stderr, "kelcc bench: %s needs a value\n", a.c_str());
      std::exit(2);
    };
    if (a == "--quick") {
      w = 64, h = 64, ms = 2;
    } else if (a == "--ms") {
      char* end = nullptr;
      const char* v = value();
      ms = std::strtod(v, &end);
      if (*end || !(ms > 0 && ms <= 60000))
        return std::fprintf(stderr, "kelcc bench: --ms takes milliseconds (0 < ms <= 60000), got '%s'\n", v), 2;
    } else if (a == "--size") {
      const char* v = value();
      int n = 0;
      if (std::sscanf(v, "%dx%d%n", &w, &h, &n) != 2 || v[n] || w < 8 || h < 8 || w % 8 || h % 8 || w > 16384 ||
          h > 16384)
        return std::fprintf(stderr, "kelcc bench: --size takes WxH, multiples of 8 from 8 to 16384, got '%s'\n", v), 2;
    } else if (a == "--filter") {
      filter = value();
    } else {
      return std::fprintf(stderr, "kelcc bench: unknown argument '%s' (see kelcc bench --help)\n", a.c_str()), 2;
    }
  }
  Pool pool(w, h);
  std::vector<uint8_t> a(pool.src.size()), b(pool.src.size());
  const KelLibraryVersion* v = kelccGetLibVersion();
  std::printf("%s %s: %dx%d, about %.0f ms a member and as long for memcpy, %d thread(s)\n", v->Name, v->Version, w, h,
              ms, kelGetNumThreads());
  std::printf("%-16s %-36s %10s %12s %7s\n", "family", "member", "MB/s", "memcpy MB/s", "ratio");
  int failed = 0, shown = 0;
  for (const Row& r : rows()) {
    if (!filter.empty() && std::string(r.family).find(filter) == std::string::npos &&
        std::string(r.member).find(filter) == std::string::npos)
      continue;
    const double px = static_cast<double>(w) * h;
    const double bytes = (r.srcBpp + r.dstBpp) * px;
    KelStatus st = kelStatusOk;
    const double ours = rate([&] { st = r.run(pool); }, ms) * bytes / 1e6;
    if (st < 0) {
      std::printf("%-16s %-36s %10s   (status %d)\n", r.family, r.member, "-", st);
      ++failed;
      continue;
    }
    // memcpy of the same traffic: reads and writes the larger of the two sides.
    const size_t n = static_cast<size_t>(std::max(r.srcBpp, r.dstBpp) * px);
    const double copy = rate([&] { std::memcpy(b.data(), a.data(), n); }, ms) * bytes / 1e6;
    std::printf("%-16s %-36s %10.0f %12.0f %6.2fx\n", r.family, r.member, ours, copy, ours / copy);
    ++shown;
  }
  if (!shown && !failed) return std::fprintf(stderr, "kelcc bench: no member matches '%s'\n", filter.c_str()), 2;
  return failed ? 1 : 0;
}

KELCC_TOOL_REGISTER(tool::Command{
    "bench", "[--quick] [--ms N] [--size WxH] [--filter WORD]", benchCommand,
    "A quick throughput table of this machine: one member of each family converts a picture of\n"
    "random samples for about 200 ms, then memcpy moves the same bytes for as long (each the best\n"
    "of five slices). MB/s counts bytes read plus bytes written; ratio is ours / memcpy (1.00x: as fast as copying the data).\n"
    "Threaded members use the team size of OMP_NUM_THREADS / kelSetNumThreads.\n"
    "  --quick          a 64x64 picture for about 2 ms a member (a smoke test)\n"
    "  --ms N           milliseconds a member (default 200)\n"
    "  --size WxH       picture size (default 1920x1080; multiples of 8)\n"
    "  --filter WORD    only the members whose family or name contains WORD"});

}  // namespace
