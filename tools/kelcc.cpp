// kelcc: the library at work.
//
//   kelcc demo [DIR]                      convert the built-in test picture through every
//                                         registered round trip; PNGs to DIR (default .)
//   kelcc convert IN OUT [options]        convert between PNG/PPM pictures and raw layouts
//       --size WxH                        size of a raw input
//       --format F                        the raw side's format (picture <-> raw)
//       --from F --to G                   raw to raw (a direct move where one exists)
//   kelcc formats                         list the raw formats and direct moves
//   kelcc version                         print the library's version record
//   kelcc CMD --help                      the usage line and options of any command
//
// The families' own commands (gamma, demosaic, bench, ...) are registered by
// their tool files (tool::Command); this file only dispatches to them.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include "kelcc_tool.h"

using namespace tool;

namespace {

std::vector<Command>& builtins();

// Every command: the built-in ones, then the registered ones by name.
std::vector<const Command*> allCommands() {
  std::vector<const Command*> v;
  for (const Command& c : builtins()) v.push_back(&c);
  std::vector<const Command*> reg;
  for (const Command& c : commands()) reg.push_back(&c);
  std::sort(reg.begin(), reg.end(), [](const Command* a, const Command* b) { return a->name < b->name; });
  v.insert(v.end(), reg.begin(), reg.end());
  return v;
}

void printUsage(FILE* to) {
  const char* lead = "usage:";
  for (const Command* c : allCommands()) {
    std::fprintf(to, "%s kelcc %s%s%s\n", lead, c->name.c_str(), c->usage.empty() ? "" : " ", c->usage.c_str());
    lead = "      ";
  }
  std::fprintf(to, "       kelcc COMMAND --help   (the command's options)\n");
}

int usage() {
  printUsage(stderr);
  return 2;
}

int commandHelp(const Command& c) {
  std::printf("usage: kelcc %s%s%s\n", c.name.c_str(), c.usage.empty() ? "" : " ", c.usage.c_str());
  if (!c.help.empty()) std::printf("%s%s", c.help.c_str(), c.help.back() == '\n' ? "" : "\n");
  return 0;
}

struct Diff {
  int maxErr = 0;
  double psnr = 0;
};
Diff compare(const Image& a, const Image& b) {
  Diff d;
  double sse = 0;
  for (size_t i = 0; i < a.rgb.size(); ++i) {
    const int e = std::abs(int(a.rgb[i]) - int(b.rgb[i]));
    d.maxErr = std::max(d.maxErr, e);
    sse += double(e) * e;
  }
  const double mse = sse / std::max<size_t>(1, a.rgb.size());
  d.psnr = mse == 0 ? INFINITY : 10 * std::log10(255.0 * 255.0 / mse);
  return d;
}

int demo(const std::string& dir) {
  mkdir(dir.c_str(), 0755);
  const Image pic = testPicture(640, 480);
  if (!writePng(dir + "/original.png", pic)) {
    std::fprintf(stderr, "kelcc: cannot write to %s\n", dir.c_str());
    return 1;
  }
  const KelLibraryVersion* v = kelccGetLibVersion();
  std::printf("%s %s; test picture %dx%d -> %s/original.png\n\n", v->Name, v->Version, pic.w, pic.h, dir.c_str());
  std::printf("%-28s %8s %8s  %s\n", "conversion", "max err", "PSNR dB", "what");
  int failures = 0;
  for (const DemoStep& s : demoSteps()) {
    Image out(pic.w, pic.h);
    const KelStatus st = s.run(pic, out);
    if (st < 0) {
      std::printf("%-28s %8s %8s  %s (%s)\n", s.name.c_str(), "-", "-", s.what.c_str(), statusText(st).c_str());
      ++failures;
      continue;
    }
    writePng(dir + "/" + s.name + ".png", out);
    if (s.compare) {
      const Diff d = compare(pic, out);
      std::printf("%-28s %8d %8.2f  %s\n", s.name.c_str(), d.maxErr, d.psnr, s.what.c_str());
    } else {
      std::printf("%-28s %8s %8s  %s\n", s.name.c_str(), "", "", s.what.c_str());
    }
  }
  return failures ? 1 : 0;
}

const RawFormat* findFormat(const std::string& name) {
  for (const RawFormat& f : rawFormats())
    if (f.name == name) return &f;
  return nullptr;
}

bool isPicturePath(const std::string& p) {
  auto ends = [&](const char* e) {
    const size_t n = std::strlen(e);
    return p.size() >= n && strcasecmp(p.c_str() + p.size() - n, e) == 0;
  };
  return ends(".png") || ends(".ppm");
}

bool writeFile(const std::string& path, const std::vector<uint8_t>& data) {
  std::ofstream f(path, std::ios::binary);
  f.write(reinterpret_cast<const char*>(data.data()), static_cast<std::streamsize>(data.size()));
  return static_cast<bool>(f);
}
bool writePicture(const std::string& path, const Image& img, const std::string& as) {
  const bool png = as.size() >= 4 && strcasecmp(as.c_str() + as.size() - 4, ".png") == 0;
  return png ? writePng(path, img) : writePpm(path, img);
}

// A raw output, written whole or not at all.
int writeRaw(const std::string& out, const std::vector<uint8_t>& data) {
  if (writeWhole(out, [&](const std::string& p) { return writeFile(p, data); })) return 0;
  return fail("convert", out, std::string("cannot write: ") + std::strerror(errno));
}

// The file name's extension in lower case ("nv12" for "clip_1920x1080.NV12").
std::string extensionOf(const std::string& path) {
  const size_t slash = path.find_last_of('/'), dot = path.find_last_of('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
  std::string e = path.substr(dot + 1);
  for (char& c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return e;
}
// A size written in the file name, as in "clip_1920x1080.nv12".
bool sizeFromName(const std::string& path, int& w, int& h) {
  const size_t slash = path.find_last_of('/');
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  for (size_t i = 0; i < name.size(); ++i) {
    if (!std::isdigit(static_cast<unsigned char>(name[i])) || (i > 0 && std::isdigit(static_cast<unsigned char>(name[i - 1]))))
      continue;
    int a = 0, b = 0, n = 0;
    if (std::sscanf(name.c_str() + i, "%dx%d%n", &a, &b, &n) == 2 && a > 0 && b > 0) {
      w = a, h = b;
      return true;
    }
  }
  return false;
}

// The options of `kelcc convert` that hold for every file of a call.
struct ConvertOptions {
  std::string format, from, to;
  int w = 0, h = 0;
};

int convertOne(const std::string& in, const std::string& out, ConvertOptions o);

// kelcc convert IN OUT [options], or many inputs into a folder:
// kelcc convert A.png B.png ... --to i420 --out-dir D (a progress line on a
// terminal; every file is tried, the exit code tells whether all went).
int convert(int argc, char** argv) {
  ConvertOptions o;
  std::vector<std::string> files;
  std::string outDir;
  for (int i = 0; i < argc; ++i) {
    const std::string a = argv[i];
    auto next = [&]() -> std::string { return i + 1 < argc ? argv[++i] : std::string(); };
    if (a == "--size") {
      const std::string v = next();
      int n = 0;
      if (std::sscanf(v.c_str(), "%dx%d%n", &o.w, &o.h, &n) != 2 || v[n] || o.w < 1 || o.h < 1 || o.w > 65535 ||
          o.h > 65535)
        return fail("convert", "", "--size takes WxH (e.g. 1920x1080), got '" + v + "'", 2);
    } else if (a == "--format") {
      o.format = next();
    } else if (a == "--from") {
      o.from = next();
    } else if (a == "--to") {
      o.to = next();
    } else if (a == "--out-dir") {
      outDir = next();
    } else if (!a.empty() && a[0] == '-') {
      return std::fprintf(stderr, "kelcc convert: unknown option %s (see kelcc convert --help)\n", a.c_str()), 2;
    } else {
      files.push_back(a);
    }
  }
  if (outDir.empty()) {
    if (files.size() != 2)
      return fail("convert", "", "needs one input and one output (or --to G --out-dir DIR for many inputs)", 2);
    return convertOne(files[0], files[1], o);
  }
  if (files.empty() || o.to.empty())
    return std::fprintf(stderr, "kelcc convert: --out-dir needs --to FORMAT and at least one input\n"), 2;
  mkdir(outDir.c_str(), 0755);
  const bool progress = isatty(2);
  int failed = 0;
  for (size_t k = 0; k < files.size(); ++k) {
    const std::string& in = files[k];
    const size_t slash = in.find_last_of('/');
    std::string base = slash == std::string::npos ? in : in.substr(slash + 1);
    const size_t dot = base.find_last_of('.');
    if (dot != std::string::npos && dot > 0) base = base.substr(0, dot);
    const std::string out = outDir + "/" + base + "." + o.to;
    if (progress) std::fprintf(stderr, "\r[%zu/%zu] %s\033[K", k + 1, files.size(), in.c_str());
    ConvertOptions one = o;
    if (isPicturePath(out)) one.to.clear();
    if (convertOne(in, out, one) != 0) ++failed;
  }
  if (progress) std::fprintf(stderr, "\n");
  if (failed) std::fprintf(stderr, "kelcc convert: %d of %zu files failed\n", failed, files.size());
  return failed ? 1 : 0;
}

int convertOne(const std::string& in, const std::string& out, ConvertOptions o) {
  std::string &format = o.format, &from = o.from, &to = o.to;
  int &w = o.w, &h = o.h;
  const bool inPic = isPicturePath(in), outPic = isPicturePath(out);
  if (!inPic && from.empty()) from = format;
  if (!outPic && to.empty()) to = format;
  // A raw side without a named format takes its file's extension.
  if (!inPic && from.empty()) from = extensionOf(in);
  if (!outPic && to.empty()) to = extensionOf(out);
  if (!inPic && (w < 1 || h < 1)) sizeFromName(in, w, h);

  // Everything that can be known before the work is checked first.
  if (!inputOk("convert", in) || !outputOk("convert", out)) return 1;
  const RawFormat* rawOut = outPic ? nullptr : findFormat(to);
  if (!outPic && !rawOut)
    return fail("convert", out,
                to.empty() ? std::string("no format: name one with --format or an extension (see kelcc formats)")
                           : "unknown raw format '" + to + "' (see kelcc formats)",
                2);

  Image img;
  std::vector<uint8_t> raw;
  if (inPic) {
    if (!loadPicture("convert", in, img)) return 1;
    w = img.w, h = img.h;
  } else {
    const RawFormat* f = findFormat(from);
    if (!f)
      return fail("convert", in,
                  from.empty() ? std::string("no format: name one with --format or an extension (see kelcc formats)")
                               : "unknown raw format '" + from + "' (see kelcc formats; pictures are .png or .ppm)",
                  2);
    if (w < 1 || h < 1) return fail("convert", in, "a raw input needs its size: --size WxH, or WxH in its name", 2);
    if (!readFileBytes("convert", in, raw)) return 1;
    const size_t frame = f->bytes(w, h);
    if (raw.size() < frame)
      return fail("convert", in,
                  std::to_string(raw.size()) + " bytes, fewer than the " + std::to_string(frame) + " of one " +
                      std::to_string(w) + "x" + std::to_string(h) + " " + from + " frame (truncated, or another size?)");
    if (raw.size() % frame)
      return fail("convert", in,
                  std::to_string(raw.size()) + " bytes are not a whole number of " + std::to_string(w) + "x" +
                      std::to_string(h) + " " + from + " frames of " + std::to_string(frame) + " bytes (another size?)");
    if (raw.size() > frame)
      std::fprintf(stderr, "kelcc convert: note: %s holds %zu frames; converting the first\n", in.c_str(),
                   raw.size() / frame);
  }

  if (!inPic && !outPic) {
    // Raw to raw: a direct move where one is registered, else through RGB.
    for (const RawConverter& c : rawConverters())
      if (c.from == from && c.to == to) {
        std::vector<uint8_t> dst;
        const KelStatus st = c.convert(raw.data(), w, h, dst);
        if (st < 0) return fail("convert", in, from + " -> " + to + ": " + statusText(st));
        return writeRaw(out, dst);
      }
  }
  if (!inPic) {
    const KelStatus st = findFormat(from)->toRgb(raw.data(), w, h, img);
    if (st < 0) return fail("convert", in, from + " -> rgb: " + statusText(st));
  }
  if (outPic)
    return writePicture(out, img, out) ? 0 : fail("convert", out, std::string("cannot write: ") + std::strerror(errno));
  std::vector<uint8_t> dst;
  const KelStatus st = rawOut->fromRgb(img, dst);
  if (st < 0) return fail("convert", in, "rgb -> " + to + ": " + statusText(st));
  if (st > 0) std::fprintf(stderr, "kelcc convert: note: %s: %s\n", out.c_str(), statusText(st).c_str());
  if (const int rc = writeRaw(out, dst)) return rc;
  // A raw file does not carry its size: say it where the name does not.
  int nw = 0, nh = 0;
  if (!sizeFromName(out, nw, nh) || nw != w || nh != h)
    std::printf("%s: %dx%d %s (read it back with --size %dx%d, or put %dx%d in its name)\n", out.c_str(), w, h,
                to.c_str(), w, h, w, h);
  return 0;
}

int versionCmd(int, char**) {
  const KelLibraryVersion* v = kelccGetLibVersion();
  std::printf("%s %d.%d build %d.%d (%s), %s\n", v->Name, v->major, v->minor, v->majorBuild, v->build, v->targetCpu,
              v->BuildDate);
  return 0;
}

int formatsCmd(int, char**) {
  for (const RawFormat& f : rawFormats()) std::printf("%-10s %s\n", f.name.c_str(), f.what.c_str());
  for (const RawConverter& c : rawConverters()) std::printf("%s -> %s (direct)\n", c.from.c_str(), c.to.c_str());
  return 0;
}

int demoCmd(int argc, char** argv) {
  if (argc > 1) return std::fprintf(stderr, "kelcc demo: one folder at most (see kelcc demo --help)\n"), 2;
  return demo(argc > 0 ? argv[0] : ".");
}

std::vector<Command>& builtins() {
  static std::vector<Command> b = {
      {"demo", "[DIR]", demoCmd,
       "Renders the built-in test picture, runs every registered conversion round trip on it and\n"
       "prints each one's max error and PSNR; writes original.png and one PNG per step into DIR\n"
       "(default: the current folder)."},
      {"convert", "IN OUT [--size WxH] [--format F | --from F --to G]\n       kelcc convert IN... --to G --out-dir DIR",
       convert,
       "Pictures are PNG or PPM; a raw side's format comes from --format/--from/--to, else from\n"
       "its file extension (.i420, .nv12, .yuy2, ...); a raw input's size from --size, else from\n"
       "its name (clip_1920x1080.nv12). Outputs appear whole or not at all.\n"
       "  --size WxH        size of a raw input\n"
       "  --format F        the raw side's format (picture <-> raw)\n"
       "  --from F --to G   raw to raw (a direct move where one exists, else through RGB)\n"
       "  --out-dir DIR     many inputs, each written as DIR/NAME.G (needs --to)\n"
       "See kelcc formats for the raw formats."},
      {"formats", "", formatsCmd, "Lists the raw formats kelcc convert reads and writes, and the direct raw-to-raw moves."},
      {"version", "", versionCmd, "Prints the library's version record."},
  };
  return b;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage();
  const std::string cmd = argv[1];
  if (cmd == "--help" || cmd == "-h" || cmd == "help") {
    if (argc > 2)
      for (const Command* c : allCommands())
        if (c->name == argv[2]) return commandHelp(*c);
    printUsage(stdout);
    return 0;
  }
  for (const Command* c : allCommands()) {
    if (cmd != c->name) continue;
    for (int i = 2; i < argc; ++i)
      if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) return commandHelp(*c);
    return c->run(argc - 2, argv + 2);
  }
  std::fprintf(stderr, "kelcc: unknown command '%s'\n", cmd.c_str());
  return usage();
}
