// The kelcc command-line tool: shared types and the registries that each
// family's tool file fills at load time.
//
//   demo steps   a conversion round trip (or rendition) of an RGB picture,
//                reported with max error / PSNR and written as PNG
//   raw formats  a raw image layout (i420, nv12, yuy2, ...) that `kelcc
//                convert` can read into RGB and write from RGB
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <kelcc.h>

namespace tool {

// 8-bit interleaved RGB, rows tightly packed.
struct Image {
  int w = 0, h = 0;
  std::vector<uint8_t> rgb;
  Image() = default;
  Image(int w_, int h_) : w(w_), h(h_), rgb(static_cast<size_t>(3) * w_ * h_) {}
  int step() const { return 3 * w; }
  KeliSize size() const { return {w, h}; }
};

// Interleaved 3-sample pixels with the first and third samples exchanged
// (RGB <-> BGR), for the conversions that take B, G, R.
inline std::vector<uint8_t> swappedRB(const std::vector<uint8_t>& px) {
  std::vector<uint8_t> v(px);
  for (size_t i = 0; i + 2 < v.size(); i += 3) std::swap(v[i], v[i + 2]);
  return v;
}

struct DemoStep {
  std::string name;  // also the PNG file name
  std::string what;  // one line for the report
  // Converts `in` and back (or renders it); `out` is compared with `in`
  // when `compare` is true. Returns a status; negative skips the step.
  std::function<KelStatus(const Image& in, Image& out)> run;
  bool compare = true;
};

struct RawFormat {
  std::string name;  // e.g. "i420"
  std::string what;
  size_t (*bytes)(int w, int h);
  // raw -> RGB and RGB -> raw; return a status.
  KelStatus (*toRgb)(const uint8_t* raw, int w, int h, Image& out);
  KelStatus (*fromRgb)(const Image& in, std::vector<uint8_t>& raw);
};

// A direct conversion between two raw formats (a layout move that needs no
// trip through RGB).
struct RawConverter {
  std::string from, to;
  KelStatus (*convert)(const uint8_t* raw, int w, int h, std::vector<uint8_t>& out);
};

// A command of its own (`kelcc gamma ...`), added by a family's tool file.
// `run` gets the arguments after the command name and returns the exit code.
// `kelcc NAME --help` (or -h) prints the usage line and `help` and exits 0
// without calling `run`.
struct Command {
  std::string name;
  std::string usage;  // one line: the arguments, e.g. "IN.png OUT.png --gamma fwd|inv"
  int (*run)(int argc, char** argv);
  std::string help = {};  // what it does and its options, one per line
};

std::vector<DemoStep>& demoSteps();
std::vector<Command>& commands();
std::vector<RawFormat>& rawFormats();
std::vector<RawConverter>& rawConverters();

struct Registrar {
  explicit Registrar(DemoStep s) { demoSteps().push_back(std::move(s)); }
  explicit Registrar(RawFormat f) { rawFormats().push_back(std::move(f)); }
  explicit Registrar(RawConverter c) { rawConverters().push_back(std::move(c)); }
  explicit Registrar(Command c) { commands().push_back(std::move(c)); }
};
#define KELCC_CAT2(a, b) a##b
#define KELCC_CAT(a, b) KELCC_CAT2(a, b)
// KELCC_TOOL_REGISTER(tool::DemoStep{...}), (tool::RawFormat{...}), (tool::RawConverter{...})
// or (tool::Command{...})
#define KELCC_TOOL_REGISTER(...) static ::tool::Registrar KELCC_CAT(toolReg_, __LINE__)(__VA_ARGS__)

// Picture I/O (PNG via libpng, binary PPM). Every writer writes the file
// whole or not at all (a temporary name beside it, renamed at the end).
bool writePng(const std::string& path, const Image& img);
// Interleaved 16-bit RGB, rows tightly packed.
bool writePng16(const std::string& path, const uint16_t* rgb, int w, int h);
bool writePngGray(const std::string& path, const uint8_t* gray, int w, int h, int step);
// PNG or PPM, by content. On failure `why` (when given) says what is wrong
// with the file: missing, a folder, not a picture, damaged, too large.
bool readImage(const std::string& path, Image& img, std::string* why = nullptr);
bool writePpm(const std::string& path, const Image& img);
// Writes `path` whole or not at all: `write` fills a temporary file beside
// it, which is renamed to `path` when it succeeded and removed otherwise.
bool writeWhole(const std::string& path, const std::function<bool(const std::string& tmp)>& write);

// ---- messages of the commands: one line "kelcc CMD: FILE: problem" on stderr.
// Each returns false / the exit code after printing, so that a command can
// `return fail(...)`.
int fail(const std::string& cmd, const std::string& file, const std::string& problem, int code = 1);
// Reads a picture, or says why not.
bool loadPicture(const std::string& cmd, const std::string& path, Image& img);
// Whether `path` can be an output file: not a folder, in a folder that
// exists. Commands check before they work, so that nothing is half done.
bool outputOk(const std::string& cmd, const std::string& path);
// A whole number option in lo..hi, or a message naming the option and value.
bool intOption(const std::string& cmd, const std::string& opt, const char* value, int lo, int hi, int& out);
// What a status means, e.g. "levels out of range (kelStatusBadLevels)".
std::string statusText(KelStatus st);
// Whether `path` is a readable file, or a message why not.
bool inputOk(const std::string& cmd, const std::string& path);
// Reads a whole file, or says why not.
bool readFileBytes(const std::string& cmd, const std::string& path, std::vector<uint8_t>& data);

// The built-in test picture.
Image testPicture(int w, int h);

}  // namespace tool
