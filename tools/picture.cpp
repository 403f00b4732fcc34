// The built-in test picture and picture file I/O.
#include <png.h>

#include <cmath>
#include <cstdio>
#include <cstring>
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

namespace {
bool writePngRows(const std::string& path, int w, int h, int colorType, const std::function<const uint8_t*(int)>& row,
                  int bitDepth = 8) {
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
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
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f) return false;
  std::fprintf(f, "P6\n%d %d\n255\n", img.w, img.h);
  const bool ok = std::fwrite(img.rgb.data(), 1, img.rgb.size(), f) == img.rgb.size();
  return std::fclose(f) == 0 && ok;
}

namespace {
bool readPpm(FILE* f, Image& img) {
  int w, h, maxv;
  if (std::fscanf(f, "P6 %d %d %d", &w, &h, &maxv) != 3 || maxv != 255 || w < 1 || h < 1) return false;
  std::fgetc(f);
  img = Image(w, h);
  return std::fread(img.rgb.data(), 1, img.rgb.size(), f) == img.rgb.size();
}
bool readPng(FILE* f, Image& img) {
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  if (!png || !info || setjmp(png_jmpbuf(png))) {
    png_destroy_read_struct(&png, &info, nullptr);
    return false;
  }
  png_init_io(png, f);
  png_read_info(png, info);
  // Whatever the file holds, read 8-bit RGB.
  png_set_strip_16(png);
  png_set_palette_to_rgb(png);
  png_set_expand_gray_1_2_4_to_8(png);
  png_set_gray_to_rgb(png);
  png_set_strip_alpha(png);
  png_read_update_info(png, info);
  img = Image(static_cast<int>(png_get_image_width(png, info)), static_cast<int>(png_get_image_height(png, info)));
  for (int y = 0; y < img.h; ++y) png_read_row(png, &img.rgb[static_cast<size_t>(y) * img.step()], nullptr);
  png_read_end(png, nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
  return true;
}
}  // namespace

bool readImage(const std::string& path, Image& img) {
  FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return false;
  unsigned char sig[8] = {};
  const size_t n = std::fread(sig, 1, 8, f);
  std::rewind(f);
  const bool ok = (n == 8 && png_sig_cmp(sig, 0, 8) == 0) ? readPng(f, img) : readPpm(f, img);
  std::fclose(f);
  return ok;
}

}  // namespace tool
