// The built-in test picture and picture file I/O.
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

#include "kelcc_tool.h"

namespace tool {

std::vector<DemoStep>& demoSteps() {
  static std::vector<DemoStep> v;
  return v;
}
std::vector<RawFormat>& rawFormats() {
  static std::vector<RawFormat> v;
  return v;
}
std::vector<RawConverter>& rawConverters() {
  static std::vector<RawConverter> v;
  return v;
}
std::vector<Command>& commands() {
  static std::vector<Command> v;
  return v;
}

// Four bands: 75% colour bars; grey and primary ramps; a zone plate; skin
// tones with soft shading. Every band is generated, nothing is loaded.
Image testPicture(int w, int h) {
  Image img(w, h);
  const int b1 = h / 4, b2 = h / 2, b3 = 3 * h / 4;
  static const uint8_t bars[8][3] = {{191, 191, 191}, {191, 191, 0}, {0, 191, 191}, {0, 191, 0},
                                     {191, 0, 191},   {191, 0, 0},   {0, 0, 191},   {16, 16, 16}};
  static const uint8_t skin[6][3] = {{255, 224, 196}, {241, 194, 125}, {224, 172, 105},
                                     {198, 134, 66},  {141, 85, 36},   {92, 56, 32}};
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      uint8_t* p = &img.rgb[3 * (static_cast<size_t>(y) * w + x)];
      if (y < b1) {
        std::memcpy(p, bars[std::min(7, 8 * x / w)], 3);
      } else if (y < b2) {
        const int v = 255 * x / std::max(1, w - 1);
        const int row = 4 * (y - b1) / std::max(1, b2 - b1);
        p[0] = static_cast<uint8_t>(row == 0 || row == 1 ? v : 0);
        p[1] = static_cast<uint8_t>(row == 0 || row == 2 ? v : 0);
        p[2] = static_cast<uint8_t>(row == 0 || row == 3 ? v : 0);
      } else if (y < b3) {
        const double cx = x - w / 2.0, cy = y - (b2 + b3) / 2.0;
        const double k = 3.14159265358979 / (1.6 * w);
        const uint8_t v = static_cast<uint8_t>(std::lround(127.5 + 127.5 * std::cos(k * (cx * cx + cy * cy))));
        p[0] = p[1] = p[2] = v;
      } else {
        const uint8_t* s = skin[std::min(5, 6 * x / w)];
        const double shade = 0.75 + 0.25 * std::sin(6.2831853 * (y - b3) / std::max(1, h - b3));
        for (int k = 0; k < 3; ++k) p[k] = static_cast<uint8_t>(std::lround(std::min(255.0, s[k] * shade)));
      }
    }
  }
  return img;
}

bool writeWhole(const std::string& path, const std::function<bool(const std::string& tmp)>& write) {
  const std::string tmp = path + ".kelcc-tmp-" + std::to_string(getpid());
  if (write(tmp) && std::rename(tmp.c_str(), path.c_str()) == 0) return true;
  std::remove(tmp.c_str());
  return false;
}

namespace {
// libpng's warnings (say, about an embedded colour profile) are not the
// user's business; its errors are kept for the message and end the read.
struct PngErr {
  std::string msg;
};
void pngError(png_structp png, png_const_charp msg) {
  if (auto* e = static_cast<PngErr*>(png_get_error_ptr(png))) e->msg = msg;
  png_longjmp(png, 1);
}
void pngWarning(png_structp, png_const_charp) {}

bool writePngFile(const std::string& path, int w, int h, int colorType, const std::function<const uint8_t*(int)>& row,
                  int bitDepth) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, pngError, pngWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!png || !info || setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    std::fclose(f);
    return false;
  }
  png_init_io(png, f);
  png_set_IHDR(png, info, w, h, bitDepth, colorType, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (int y = 0; y < h; ++y) png_write_row(png, const_cast<png_bytep>(row(y)));
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return std::fclose(f) == 0;
}
bool writePngRows(const std::string& path, int w, int h, int colorType, const std::function<const uint8_t*(int)>& row,
                  int bitDepth = 8) {
  return writeWhole(path, [&](const std::string& tmp) { return writePngFile(tmp, w, h, colorType, row, bitDepth); });
}
}  // namespace

bool writePng16(const std::string& path, const uint16_t* rgb, int w, int h) {
  // PNG keeps 16-bit samples big-endian.
  std::vector<uint8_t> be(static_cast<size_t>(6) * w);
  return writePngRows(
      path, w, h, PNG_COLOR_TYPE_RGB,
      [&](int y) {
        const uint16_t* s = rgb + static_cast<size_t>(3) * w * y;
        for (int k = 0; k < 3 * w; ++k) be[2 * k] = static_cast<uint8_t>(s[k] >> 8), be[2 * k + 1] = s[k] & 255;
        return be.data();
      },
      16);
}

bool writePng(const std::string& path, const Image& img) {
  return writePngRows(path, img.w, img.h, PNG_COLOR_TYPE_RGB,
                      [&](int y) { return &img.rgb[static_cast<size_t>(y) * img.step()]; });
}
bool writePngGray(const std::string& path, const uint8_t* gray, int w, int h, int step) {
  return writePngRows(path, w, h, PNG_COLOR_TYPE_GRAY, [&](int y) { return gray + static_cast<ptrdiff_t>(y) * step; });
}

bool writePpm(const std::string& path, const Image& img) {
  return writeWhole(path, [&](const std::string& tmp) {
    FILE* f = std::fopen(tmp.c_str(), "wb");
    if (!f) return false;
    std::fprintf(f, "P6\n%d %d\n255\n", img.w, img.h);
    const bool ok = std::fwrite(img.rgb.data(), 1, img.rgb.size(), f) == img.rgb.size();
    return std::fclose(f) == 0 && ok;
  });
}

namespace {
// Pictures up to 2^28 pixels (16384 x 16384): larger sizes in a header are
// taken as a damaged file rather than an allocation to attempt.
bool sizeOk(long long w, long long h) { return w >= 1 && h >= 1 && w <= 65535 && h <= 65535 && w * h <= (1LL << 28); }

bool readPpm(FILE* f, Image& img, std::string& why) {
  int w, h, maxv;
  if (std::fscanf(f, "P6 %d %d %d", &w, &h, &maxv) != 3 || maxv != 255)
    return why = "not a PNG or an 8-bit binary PPM (P6) picture", false;
  if (!sizeOk(w, h)) return why = "PPM header gives an impossible size " + std::to_string(w) + "x" + std::to_string(h), false;
  std::fgetc(f);
  img = Image(w, h);
  if (std::fread(img.rgb.data(), 1, img.rgb.size(), f) != img.rgb.size())
    return why = "truncated PPM (fewer than the " + std::to_string(img.rgb.size()) + " bytes of its pixels)", false;
  return true;
}
bool readPng(FILE* f, Image& img, std::string& why) {
  PngErr err;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &err, pngError, pngWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!png || !info || setjmp(png_jmpbuf(png))) {
    png_destroy_read_struct(&png, &info, nullptr);
    why = "damaged or truncated PNG (" + (err.msg.empty() ? std::string("read error") : err.msg) + ")";
    return false;
  }
  png_init_io(png, f);
  png_read_info(png, info);
  const long long w = png_get_image_width(png, info), h = png_get_image_height(png, info);
  if (!sizeOk(w, h)) {
    png_destroy_read_struct(&png, &info, nullptr);
    why = "PNG of " + std::to_string(w) + "x" + std::to_string(h) + " pixels is larger than kelcc reads";
    return false;
  }
  // Whatever the file holds, read 8-bit RGB.
  png_set_strip_16(png);
  png_set_palette_to_rgb(png);
  png_set_expand_gray_1_2_4_to_8(png);
  png_set_gray_to_rgb(png);
  png_set_strip_alpha(png);
  png_read_update_info(png, info);
  img = Image(static_cast<int>(w), static_cast<int>(h));
  for (int y = 0; y < img.h; ++y) png_read_row(png, &img.rgb[static_cast<size_t>(y) * img.step()], nullptr);
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
  return true;
}

// Why a file cannot be opened for reading ("no such file", "a folder", ...).
std::string openProblem(const std::string& path) {
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return errno == ENOENT ? "no such file" : std::strerror(errno);
  if (S_ISDIR(st.st_mode)) return "is a folder, not a file";
  return std::strerror(errno);
}
}  // namespace

bool readImage(const std::string& path, Image& img, std::string* why) {
  std::string w;
  struct stat st;
  bool ok = false;
  FILE* f = nullptr;
  if (stat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode) || !(f = std::fopen(path.c_str(), "rb"))) {
    w = openProblem(path);
  } else {
    unsigned char sig[8] = {};
    const size_t n = std::fread(sig, 1, 8, f);
    std::rewind(f);
    if (n == 0) w = "empty file";
    else ok = (n == 8 && png_sig_cmp(sig, 0, 8) == 0) ? readPng(f, img, w) : readPpm(f, img, w);
    std::fclose(f);
  }
  if (why) *why = w;
  return ok;
}

int fail(const std::string& cmd, const std::string& file, const std::string& problem, int code) {
  std::fprintf(stderr, "kelcc %s: %s%s%s\n", cmd.c_str(), file.c_str(), file.empty() ? "" : ": ", problem.c_str());
  return code;
}

bool loadPicture(const std::string& cmd, const std::string& path, Image& img) {
  std::string why;
  if (readImage(path, img, &why)) return true;
  fail(cmd, path, why);
  return false;
}

bool outputOk(const std::string& cmd, const std::string& path) {
  struct stat st;
  if (path.empty()) return fail(cmd, "", "no output file given"), false;
  if (path.back() == '/' || (stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)))
    return fail(cmd, path, "is a folder; give an output file name"), false;
  const size_t slash = path.find_last_of('/');
  const std::string dir = slash == std::string::npos ? "." : (slash == 0 ? "/" : path.substr(0, slash));
  if (stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) return fail(cmd, path, "no folder " + dir), false;
  if (access(dir.c_str(), W_OK) != 0) return fail(cmd, path, "cannot write in folder " + dir), false;
  return true;
}

bool intOption(const std::string& cmd, const std::string& opt, const char* value, int lo, int hi, int& out) {
  char* end = nullptr;
  errno = 0;
  const long v = value ? std::strtol(value, &end, 10) : 0;
  if (!value || !*value || *end || errno || v < lo || v > hi) {
    fail(cmd, "", opt + " takes a whole number from " + std::to_string(lo) + " to " + std::to_string(hi) + ", got '" +
                      (value ? value : "") + "'",
         2);
    return false;
  }
  out = static_cast<int>(v);
  return true;
}

std::string statusText(KelStatus st) {
  switch (st) {
    case kelStatusOk: return "ok";
    case kelStatusNothingDone: return "nothing done (kelStatusNothingDone)";
    case kelStatusOddSizeTrimmed: return "odd last row or column left as it was (kelStatusOddSizeTrimmed)";
    case kelStatusBadArgument: return "bad argument (kelStatusBadArgument)";
    case kelStatusBadSize: return "size not supported by this conversion (kelStatusBadSize)";
    case kelStatusNullPointer: return "null pointer (kelStatusNullPointer)";
    case kelStatusNoMemory: return "out of memory (kelStatusNoMemory)";
    case kelStatusBadStep: return "bad row step (kelStatusBadStep)";
    case kelStatusBadRange: return "bad value range (kelStatusBadRange)";
    case kelStatusBadLevels: return "levels out of range (kelStatusBadLevels)";
    case kelStatusBadNoise: return "noise out of range (kelStatusBadNoise)";
    default: return "status " + std::to_string(st);
  }
}

bool inputOk(const std::string& cmd, const std::string& path) {
  struct stat st;
  if (stat(path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode) && access(path.c_str(), R_OK) == 0) return true;
  fail(cmd, path, openProblem(path));
  return false;
}

bool readFileBytes(const std::string& cmd, const std::string& path, std::vector<uint8_t>& data) {
  struct stat st;
  if (stat(path.c_str(), &st) != 0 || S_ISDIR(st.st_mode)) return fail(cmd, path, openProblem(path)), false;
  std::ifstream f(path, std::ios::binary);
  if (!f) return fail(cmd, path, std::strerror(errno)), false;
  data.assign(std::istreambuf_iterator<char>(f), {});
  return true;
}

}  // namespace tool
