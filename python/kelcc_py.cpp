// Python bindings of libkelcce9 over numpy arrays.
//
// Images are numpy arrays of shape (H, W, C), or (H, W) for one channel;
// planes are (H, W). The C functions take a pointer to the first pixel and a
// row step in bytes, so an array is passed as it stands (zero copy) whenever
// its pixels are contiguous: samples itemsize apart, pixels itemsize * C
// apart. The row stride may be anything that fits an int: padded, negative
// (a[::-1]), or the stride of a crop. Inputs whose pixels are not contiguous
// (a[:, ::2], a[..., ::-1], Fortran order) are copied to a C-contiguous array
// first; an `out=` array must already be laid out that way, since writing
// through a copy would lose the result.
//
// A negative status raises kelcc.KelError (a RuntimeError carrying the
// status code and its name; nothing was written); a positive one issues a
// kelcc.KelWarning (the work was done). The GIL is released around every
// call into the library.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/eval.h>
#include <pybind11/stl.h>

#include <kelcc.h>
#include <kelcore.h>

#include <array>
#include <climits>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace py = pybind11;
using namespace py::literals;

namespace {

// ------------------------------------------------------------------ statuses

struct StatusName {
  KelStatus code;
  const char* name;
};
constexpr StatusName kStatusNames[] = {
    {kelStatusOk, "kelStatusOk"},
    {kelStatusNothingDone, "kelStatusNothingDone"},
    {kelStatusOddSizeTrimmed, "kelStatusOddSizeTrimmed"},
    {kelStatusBadArgument, "kelStatusBadArgument"},
    {kelStatusBadSize, "kelStatusBadSize"},
    {kelStatusNullPointer, "kelStatusNullPointer"},
    {kelStatusNoMemory, "kelStatusNoMemory"},
    {kelStatusBadStep, "kelStatusBadStep"},
    {kelStatusBadContext, "kelStatusBadContext"},
    {kelStatusBadRange, "kelStatusBadRange"},
    {kelStatusBadLevels, "kelStatusBadLevels"},
    {kelStatusBadNoise, "kelStatusBadNoise"},
};

std::string statusName(KelStatus st) {
  for (const auto& s : kStatusNames)
    if (s.code == st) return s.name;
  return "kelStatus(" + std::to_string(st) + ")";
}

// The exception and warning classes, created once at import and kept for
// the life of the process (never released: the interpreter may already be
// gone when static destructors run).
PyObject* gKelError = nullptr;
PyObject* gKelWarning = nullptr;

// Turns a status into the Python outcome; called with the GIL held.
void report(KelStatus st, const char* function) {
  if (st == kelStatusOk) return;
  std::string name = statusName(st);
  if (st < 0) {
    py::object err = py::reinterpret_borrow<py::object>(gKelError)(st, name, function);
    PyErr_SetObject(gKelError, err.ptr());
    throw py::error_already_set();
  }
  std::string msg = std::string(function) + ": " + name + " (" + std::to_string(st) + ")";
  if (PyErr_WarnEx(gKelWarning, msg.c_str(), 1) < 0) throw py::error_already_set();
}

// Runs one library call without the GIL, then reports its status.
template <class F>
void run(const char* function, F&& f) {
  KelStatus st;
  {
    py::gil_scoped_release nogil;
    st = f();
  }
  report(st, function);
}

// ------------------------------------------------------------------ sample types

enum class Dt { u8, s8, u16, s16, s32, f32 };

const char* dtName(Dt d) {
  switch (d) {
    case Dt::u8: return "uint8";
    case Dt::s8: return "int8";
    case Dt::u16: return "uint16";
    case Dt::s16: return "int16";
    case Dt::s32: return "int32";
    case Dt::f32: return "float32";
  }
  return "?";
}

py::dtype npDtype(Dt d) { return py::dtype(dtName(d)); }

std::optional<Dt> dtOf(const py::dtype& t) {
  const char k = t.kind();
  const auto n = t.itemsize();
  if (k == 'u' && n == 1) return Dt::u8;
  if (k == 'i' && n == 1) return Dt::s8;
  if (k == 'u' && n == 2) return Dt::u16;
  if (k == 'i' && n == 2) return Dt::s16;
  if (k == 'i' && n == 4) return Dt::s32;
  if (k == 'f' && n == 4) return Dt::f32;
  return std::nullopt;
}

std::string dtList(std::initializer_list<Dt> ds) {
  std::string s;
  for (Dt d : ds) s += (s.empty() ? "" : ", ") + std::string(dtName(d));
  return s;
}

Dt requireDt(const py::array& a, const char* what, std::initializer_list<Dt> allowed) {
  auto d = dtOf(a.dtype());
  if (d)
    for (Dt x : allowed)
      if (x == *d) return *d;
  throw py::type_error(std::string(what) + ": dtype " + std::string(py::str(a.dtype())) +
                       " is not supported (expected " + dtList(allowed) + ")");
}

std::optional<Dt> dtArg(const py::object& o) {
  if (o.is_none()) return std::nullopt;
  auto d = dtOf(py::dtype::from_args(o));
  if (!d) throw py::type_error("unsupported dtype " + std::string(py::str(o)));
  return d;
}

py::array asArray(const py::object& o, const char* what) {
  if (!py::isinstance<py::array>(o))
    throw py::type_error(std::string(what) + ": expected a numpy array, got " +
                         std::string(py::str(o.get_type().attr("__name__"))));
  return py::reinterpret_borrow<py::array>(o);
}

// ------------------------------------------------------------------ images

// One image or plane as the library sees it.
struct Image {
  py::array arr;  // keeps the memory alive (a copy when the input needed one)
  void* data = nullptr;
  int step = 0;
  int h = 0, w = 0, c = 0;
  Dt dt = Dt::u8;
};

std::string shapeStr(const py::array& a) {
  std::string s = "(";
  for (py::ssize_t i = 0; i < a.ndim(); ++i) {
    if (i) s += ", ";
    s += std::to_string(a.shape(i));
  }
  s += a.ndim() == 1 ? ",)" : ")";
  return s;
}

int channelsOf(const py::array& a, const char* what) {
  if (a.ndim() == 2) return 1;
  if (a.ndim() == 3) return static_cast<int>(a.shape(2));
  throw py::value_error(std::string(what) + ": expected an (H, W) or (H, W, C) array, got shape " + shapeStr(a));
}

// Whether the library can take the array as it stands: contiguous pixels and
// a row stride (and sizes) that fit an int.
bool passable(const py::array& a) {
  if (a.size() == 0) return true;  // numpy gives empty arrays zero strides
  const auto item = a.itemsize();
  const py::ssize_t c = a.ndim() == 3 ? a.shape(2) : 1;
  if (a.ndim() == 3 && c > 1 && a.strides(2) != item) return false;
  if (a.shape(1) > 1 && a.strides(1) != item * c) return false;
  const py::ssize_t rs = a.strides(0);
  if (rs > INT_MAX || rs < INT_MIN) return false;
  // Rows apart by at least their length (no broadcast or overlapping rows).
  if (a.shape(0) > 1 && (rs < 0 ? -rs : rs) < a.shape(1) * c * item) return false;
  return a.shape(0) <= INT_MAX && a.shape(1) <= INT_MAX && a.shape(1) * c * item <= INT_MAX;
}

Image makeImage(py::array a, Dt dt) {
  Image im;
  im.h = static_cast<int>(a.shape(0));
  im.w = static_cast<int>(a.shape(1));
  im.c = a.ndim() == 3 ? static_cast<int>(a.shape(2)) : 1;
  im.dt = dt;
  im.data = const_cast<void*>(a.data());
  // With one row the stride is never used for addressing; a tight value
  // keeps step checks quiet for views numpy gives odd strides to.
  im.step = im.h > 1 && a.size() > 0 ? static_cast<int>(a.strides(0)) : static_cast<int>(im.w * im.c * a.itemsize());
  im.arr = std::move(a);
  return im;
}

// An input image; copied to C order when the library cannot read it in place.
Image inputImage(const py::object& o, const char* what, Dt dt) {
  py::array a = asArray(o, what);
  channelsOf(a, what);
  if (!passable(a)) a = py::array::ensure(a, py::array::c_style);
  if (!passable(a)) throw py::value_error(std::string(what) + ": the image is too large");
  return makeImage(std::move(a), dt);
}

std::vector<py::ssize_t> shapeOf(int h, int w, int c) {
  if (c == 1) return {h, w};
  return {h, w, c};
}

// The destination: a new zeroed array, or the caller's `out` after checks.
Image outputImage(const py::object& out, const char* what, int h, int w, int c, Dt dt) {
  if (out.is_none()) {
    py::array a(npDtype(dt), shapeOf(h, w, c));
    std::memset(a.mutable_data(), 0, static_cast<size_t>(a.nbytes()));
    return makeImage(std::move(a), dt);
  }
  py::array a = asArray(out, what);
  auto d = dtOf(a.dtype());
  if (!d || *d != dt)
    throw py::type_error(std::string(what) + ": dtype must be " + dtName(dt) + ", got " +
                         std::string(py::str(a.dtype())));
  auto want = shapeOf(h, w, c);
  bool same = a.ndim() == static_cast<py::ssize_t>(want.size());
  for (size_t i = 0; same && i < want.size(); ++i) same = a.shape(i) == want[i];
  if (!same) {
    std::string s = "(" + std::to_string(h) + ", " + std::to_string(w) + (c == 1 ? "" : ", " + std::to_string(c)) + ")";
    throw py::value_error(std::string(what) + ": shape must be " + s + ", got " + shapeStr(a));
  }
  if (!a.writeable()) throw py::value_error(std::string(what) + ": the array is read-only");
  if (!passable(a))
    throw py::value_error(std::string(what) +
                          ": samples and pixels must be contiguous, rows at least a row apart (any sign) "
                          "and the row stride must fit an int");
  return makeImage(std::move(a), dt);
}

void requireShape(const Image& im, const char* what, int h, int w) {
  if (im.h != h || im.w != w)
    throw py::value_error(std::string(what) + ": expected " + std::to_string(h) + " x " + std::to_string(w) +
                          " pixels, got " + std::to_string(im.h) + " x " + std::to_string(im.w));
}

void requireChannels(const Image& im, const char* what, std::initializer_list<int> cs) {
  std::string s;
  for (int c : cs) {
    if (c == im.c) return;
    s += (s.empty() ? "" : " or ") + std::to_string(c);
  }
  throw py::value_error(std::string(what) + ": expected " + s + " channels, got " + std::to_string(im.c));
}

// A chroma plane of a 4:2:0 picture: half the luma size, rounded down or up.
void requireHalf(const Image& im, const char* what, int h, int w) {
  if ((im.h != h / 2 && im.h != (h + 1) / 2) || (im.w != w / 2 && im.w != (w + 1) / 2))
    throw py::value_error(std::string(what) + ": expected about half of " + std::to_string(h) + " x " +
                          std::to_string(w) + " pixels, got " + std::to_string(im.h) + " x " + std::to_string(im.w));
}

// Three planes of one size and one row step (the members with a single step
// for all planes). Given planes with different steps are gathered into one
// buffer when they are inputs; an output must share its step already.
struct Planes {
  py::array buf;  // (3, H, W) when allocated or gathered
  py::tuple views;
  void* p[3] = {};
  int step = 0;
};

Planes newPlanes(int h, int w, Dt dt) {
  Planes pl;
  pl.buf = py::array(npDtype(dt), std::vector<py::ssize_t>{3, h, w});
  std::memset(pl.buf.mutable_data(), 0, static_cast<size_t>(pl.buf.nbytes()));
  pl.views = py::make_tuple(pl.buf[py::int_(0)], pl.buf[py::int_(1)], pl.buf[py::int_(2)]);
  for (int i = 0; i < 3; ++i) pl.p[i] = static_cast<char*>(pl.buf.mutable_data()) + i * pl.buf.strides(0);
  pl.step = h > 1 ? static_cast<int>(pl.buf.strides(1)) : static_cast<int>(w * pl.buf.itemsize());
  return pl;
}

Planes sharedStepPlanes(const std::vector<Image>& ims, bool isOutput, const char* what) {
  const Image& a = ims[0];
  bool same = true;
  for (const auto& im : ims) same = same && im.step == a.step;
  Planes pl;
  if (same) {
    for (int i = 0; i < 3; ++i) pl.p[i] = ims[i].data;
    pl.step = a.step;
    pl.views = py::make_tuple(ims[0].arr, ims[1].arr, ims[2].arr);
    return pl;
  }
  if (isOutput) throw py::value_error(std::string(what) + ": the three planes must share one row stride");
  pl = newPlanes(a.h, a.w, a.dt);
  for (int i = 0; i < 3; ++i) pl.buf[py::int_(i)].attr("__setitem__")(py::ellipsis(), ims[i].arr);
  return pl;
}

Image inputPlane(const py::object& o, const char* what, Dt dt) {
  requireDt(asArray(o, what), what, {dt});
  Image im = inputImage(o, what, dt);
  requireChannels(im, what, {1});
  if (im.arr.ndim() != 2) throw py::value_error(std::string(what) + ": a plane must be an (H, W) array");
  return im;
}

std::vector<Image> outputPlanes(const py::object& out, const char* what, const std::vector<std::array<int, 3>>& shapes,
                                Dt dt) {
  std::vector<Image> r;
  if (out.is_none()) {
    for (auto s : shapes) r.push_back(outputImage(py::none(), what, s[0], s[1], s[2], dt));
    return r;
  }
  if (!py::isinstance<py::tuple>(out) && !py::isinstance<py::list>(out))
    throw py::type_error(std::string(what) + ": expected a tuple of " + std::to_string(shapes.size()) + " arrays");
  py::sequence seq = py::reinterpret_borrow<py::sequence>(out);
  if (seq.size() != shapes.size())
    throw py::value_error(std::string(what) + ": expected a tuple of " + std::to_string(shapes.size()) + " arrays");
  size_t i = 0;
  for (auto s : shapes) r.push_back(outputImage(seq[i++], what, s[0], s[1], s[2], dt));
  return r;
}

py::object imagesTuple(const std::vector<Image>& ims) {
  py::tuple t(ims.size());
  for (size_t i = 0; i < ims.size(); ++i) t[i] = ims[i].arr;
  return t;
}

KeliSize roiOf(const Image& im) { return KeliSize{im.w, im.h}; }

// ------------------------------------------------------------------ pixel members
//
// Most members map one interleaved image to another of the same size; they
// differ in sample types, channel counts and a few extra arguments. Each is
// entered in a table as (input dtype, input channels, output dtype, output
// channels, thunk); the thunk passes the extra arguments its member takes.

struct Extra {
  Kel32f vmin = 0.f, vmax = 1.f;
  const Kel32f* twist = nullptr;
  const Kel32f* coeffs = nullptr;
  int noise = 0;
  KelDitherType dither = kelDitherNone;
  int levels = 0;
  int alpha = 255;
};

using Thunk = KelStatus (*)(const void*, int, void*, int, KeliSize, const Extra&);
using InPlace = KelStatus (*)(void*, int, KeliSize, const Extra&);

struct Entry {
  Dt in;
  int inC;
  Dt out;
  int outC;
  Thunk fn;
  const char* cname;
  InPlace ip = nullptr;  // the member's in-place form, where it has one
  const char* ipname = nullptr;
};

Entry withInPlace(Entry e, InPlace ip, const char* ipname) {
  e.ip = ip;
  e.ipname = ipname;
  return e;
}

template <class S, class D, KelStatus (*F)(const S*, int, D*, int, KeliSize)>
KelStatus plain(const void* s, int ss, void* d, int ds, KeliSize r, const Extra&) {
  return F(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, r);
}
template <class T, KelStatus (*F)(const T*, int, T*, int, KeliSize, Kel32f, Kel32f)>
KelStatus ranged(const void* s, int ss, void* d, int ds, KeliSize r, const Extra& e) {
  return F(static_cast<const T*>(s), ss, static_cast<T*>(d), ds, r, e.vmin, e.vmax);
}
template <class T, KelStatus (*F)(const T*, int, T*, int, KeliSize, const Kel32f (*)[4])>
KelStatus twisted(const void* s, int ss, void* d, int ds, KeliSize r, const Extra& e) {
  return F(static_cast<const T*>(s), ss, static_cast<T*>(d), ds, r, reinterpret_cast<const Kel32f(*)[4]>(e.twist));
}
template <class T, KelStatus (*F)(const T*, int, T*, int, KeliSize, const Kel32f*)>
KelStatus weighted(const void* s, int ss, void* d, int ds, KeliSize r, const Extra& e) {
  return F(static_cast<const T*>(s), ss, static_cast<T*>(d), ds, r, e.coeffs);
}
template <class S, class D, KelStatus (*F)(const S*, int, D*, int, KeliSize, int, KelDitherType, int)>
KelStatus reduced(const void* s, int ss, void* d, int ds, KeliSize r, const Extra& e) {
  return F(static_cast<const S*>(s), ss, static_cast<D*>(d), ds, r, e.noise, e.dither, e.levels);
}

template <class T, KelStatus (*F)(T*, int, KeliSize)>
KelStatus plainIP(void* p, int ps, KeliSize r, const Extra&) {
  return F(static_cast<T*>(p), ps, r);
}
template <class T, KelStatus (*F)(T*, int, KeliSize, Kel32f, Kel32f)>
KelStatus rangedIP(void* p, int ps, KeliSize r, const Extra& e) {
  return F(static_cast<T*>(p), ps, r, e.vmin, e.vmax);
}
template <class T, KelStatus (*F)(T*, int, KeliSize, const Kel32f (*)[4])>
KelStatus twistedIP(void* p, int ps, KeliSize r, const Extra& e) {
  return F(static_cast<T*>(p), ps, r, reinterpret_cast<const Kel32f(*)[4]>(e.twist));
}

using T_u8 = Kel8u;
using T_s8 = Kel8s;
using T_u16 = Kel16u;
using T_s16 = Kel16s;
using T_f32 = Kel32f;

#define PLAIN(S, D, ic, oc, f) Entry{Dt::S, ic, Dt::D, oc, &plain<T_##S, T_##D, f>, #f}
#define RANGED(T, c, f) Entry{Dt::T, c, Dt::T, c, &ranged<T_##T, f>, #f}
#define TWIST(T, c, f) Entry{Dt::T, c, Dt::T, c, &twisted<T_##T, f>, #f}
#define GRAY(T, c, f) Entry{Dt::T, c, Dt::T, 1, &weighted<T_##T, f>, #f}
// A member and its in-place form, from the name without the final R / IR.
#define PLAIN_IP(T, c, stem) withInPlace(PLAIN(T, T, c, c, stem##R), &plainIP<T_##T, stem##IR>, #stem "IR")
#define RANGED_IP(T, c, stem) withInPlace(RANGED(T, c, stem##R), &rangedIP<T_##T, stem##IR>, #stem "IR")
#define TWIST_IP(T, c, stem) withInPlace(TWIST(T, c, stem##R), &twistedIP<T_##T, stem##IR>, #stem "IR")
#define REDUCE(S, D, c, f) Entry{Dt::S, c, Dt::D, c, &reduced<T_##S, T_##D, f>, #f}

// The same-type colour-model pairs: C3 and AC4 at one depth, or at the four
// depths most colour-model families offer.
#define M2(T, suffix, name) \
  PLAIN(T, T, 3, 3, keli##name##_##suffix##_C3R), PLAIN(T, T, 4, 4, keli##name##_##suffix##_AC4R)
#define ALL4(name) M2(u8, 8u, name), M2(u16, 16u, name), M2(s16, 16s, name), M2(f32, 32f, name)

const std::vector<Entry> kYUV = {M2(u8, 8u, RGBToYUV)};
const std::vector<Entry> kYUVInv = {M2(u8, 8u, YUVToRGB)};
const std::vector<Entry> kXYZ = {ALL4(RGBToXYZ)};
const std::vector<Entry> kXYZInv = {ALL4(XYZToRGB)};
const std::vector<Entry> kYCC = {ALL4(RGBToYCC)};
const std::vector<Entry> kYCCInv = {ALL4(YCCToRGB)};
const std::vector<Entry> kHLS = {ALL4(RGBToHLS)};
const std::vector<Entry> kHLSInv = {ALL4(HLSToRGB)};
const std::vector<Entry> kLUV = {ALL4(RGBToLUV)};
const std::vector<Entry> kLUVInv = {ALL4(LUVToRGB)};
const std::vector<Entry> kHSV = {M2(u8, 8u, RGBToHSV), M2(u16, 16u, RGBToHSV)};
const std::vector<Entry> kHSVInv = {M2(u8, 8u, HSVToRGB), M2(u16, 16u, HSVToRGB)};
const std::vector<Entry> kLab = {PLAIN(u8, u8, 3, 3, keliBGRToLab_8u_C3R), PLAIN(u8, u16, 3, 3, keliBGRToLab_8u16u_C3R)};
const std::vector<Entry> kLabInv = {PLAIN(u8, u8, 3, 3, keliLabToBGR_8u_C3R), PLAIN(u16, u8, 3, 3, keliLabToBGR_16u8u_C3R)};
const std::vector<Entry> kGray = {
    PLAIN(u8, u8, 3, 1, keliRGBToGray_8u_C3C1R),     PLAIN(u8, u8, 4, 1, keliRGBToGray_8u_AC4C1R),
    PLAIN(u16, u16, 3, 1, keliRGBToGray_16u_C3C1R),  PLAIN(u16, u16, 4, 1, keliRGBToGray_16u_AC4C1R),
    PLAIN(s16, s16, 3, 1, keliRGBToGray_16s_C3C1R),  PLAIN(s16, s16, 4, 1, keliRGBToGray_16s_AC4C1R),
    PLAIN(f32, f32, 3, 1, keliRGBToGray_32f_C3C1R),  PLAIN(f32, f32, 4, 1, keliRGBToGray_32f_AC4C1R)};
const std::vector<Entry> kColorGray = {
    GRAY(u8, 3, keliColorToGray_8u_C3C1R),   GRAY(u8, 4, keliColorToGray_8u_AC4C1R),
    GRAY(u16, 3, keliColorToGray_16u_C3C1R), GRAY(u16, 4, keliColorToGray_16u_AC4C1R),
    GRAY(s16, 3, keliColorToGray_16s_C3C1R), GRAY(s16, 4, keliColorToGray_16s_AC4C1R),
    GRAY(f32, 3, keliColorToGray_32f_C3C1R), GRAY(f32, 4, keliColorToGray_32f_AC4C1R)};
#define GAMMA_IP(name)                                                                           \
  PLAIN_IP(u8, 3, keli##name##_8u_C3), PLAIN_IP(u8, 4, keli##name##_8u_AC4),                     \
      PLAIN_IP(u16, 3, keli##name##_16u_C3), PLAIN_IP(u16, 4, keli##name##_16u_AC4),             \
      RANGED_IP(f32, 3, keli##name##_32f_C3), RANGED_IP(f32, 4, keli##name##_32f_AC4)
const std::vector<Entry> kGammaFwd = {GAMMA_IP(GammaFwd)};
const std::vector<Entry> kGammaInv = {GAMMA_IP(GammaInv)};
const std::vector<Entry> kTwist = {
    TWIST_IP(u8, 3, keliColorTwist32f_8u_C3),   TWIST_IP(u8, 4, keliColorTwist32f_8u_AC4),
    TWIST_IP(s8, 3, keliColorTwist32f_8s_C3),   TWIST_IP(s8, 4, keliColorTwist32f_8s_AC4),
    TWIST_IP(u16, 3, keliColorTwist32f_16u_C3), TWIST_IP(u16, 4, keliColorTwist32f_16u_AC4),
    TWIST_IP(s16, 3, keliColorTwist32f_16s_C3), TWIST_IP(s16, 4, keliColorTwist32f_16s_AC4),
    TWIST_IP(f32, 3, keliColorTwist_32f_C3),    TWIST_IP(f32, 4, keliColorTwist_32f_AC4)};
const std::vector<Entry> kTwist4 = {TWIST(f32, 4, keliColorTwist_32f_C4R)};
const std::vector<Entry> kToneLinear = {PLAIN(f32, u8, 1, 1, keliToneMapLinear_32f8u_C1R)};
const std::vector<Entry> kToneMean = {PLAIN(f32, u8, 1, 1, keliToneMapMean_32f8u_C1R)};

#define RED3(S, D, sfx) \
  REDUCE(S, D, 1, keliReduceBits_##sfx##_C1R), REDUCE(S, D, 3, keliReduceBits_##sfx##_C3R), \
      REDUCE(S, D, 4, keliReduceBits_##sfx##_C4R)
// Listed with each source's default destination first.
const std::vector<Entry> kReduce = {RED3(u8, u8, 8u),      RED3(u16, u16, 16u),   RED3(s16, s16, 16s),
                                    RED3(f32, u8, 32f8u),  RED3(u16, u8, 16u8u),  RED3(s16, u8, 16s8u),
                                    RED3(f32, u16, 32f16u), RED3(f32, s16, 32f16s)};
const std::vector<Entry> kReduceAlpha = {
    REDUCE(u8, u8, 4, keliReduceBits_8u_AC4R),       REDUCE(u16, u16, 4, keliReduceBits_16u_AC4R),
    REDUCE(s16, s16, 4, keliReduceBits_16s_AC4R),    REDUCE(f32, u8, 4, keliReduceBits_32f8u_AC4R),
    REDUCE(u16, u8, 4, keliReduceBits_16u8u_AC4R),   REDUCE(s16, u8, 4, keliReduceBits_16s8u_AC4R),
    REDUCE(f32, u16, 4, keliReduceBits_32f16u_AC4R), REDUCE(f32, s16, 4, keliReduceBits_32f16s_AC4R)};

std::string supported(const std::vector<Entry>& table) {
  std::string s;
  for (const auto& e : table) {
    std::string one = std::string(dtName(e.in)) + " x" + std::to_string(e.inC);
    if (s.find(one) == std::string::npos) s += (s.empty() ? "" : ", ") + one;
  }
  return s;
}

const Entry& pick(const std::vector<Entry>& table, const char* fname, const py::array& a, std::optional<Dt> outDt) {
  auto d = dtOf(a.dtype());
  const int c = channelsOf(a, fname);
  bool dtKnown = false;
  for (const auto& e : table) {
    if (!d || e.in != *d) continue;
    dtKnown = true;
    if (e.inC == c && (!outDt || *outDt == e.out)) return e;
  }
  std::string got = std::string(py::str(a.dtype())) + " x" + std::to_string(c);
  if (!dtKnown)
    throw py::type_error(std::string(fname) + ": dtype " + std::string(py::str(a.dtype())) +
                         " is not supported (supported: " + supported(table) + ")");
  if (outDt) {
    for (const auto& e : table)
      if (e.in == *d && e.inC == c)
        throw py::type_error(std::string(fname) + ": no " + got + " -> " + dtName(*outDt) + " form");
  }
  throw py::value_error(std::string(fname) + ": " + std::to_string(c) + " channels are not supported (supported: " +
                        supported(table) + ")");
}

bool mayShare(const py::array& a, const py::array& b) {
  return py::module_::import("numpy").attr("may_share_memory")(a, b).cast<bool>();
}

py::array copyOf(const py::array& a) { return py::module_::import("numpy").attr("array")(a, "copy"_a = true, "order"_a = "C"); }

bool positiveStepsOnly(const char* cname) {
  for (const char* prefix : {"keliGamma", "keliColorTwist"})
    if (std::strncmp(cname, prefix, std::strlen(prefix)) == 0) return true;
  return false;
}

py::object pixelOp(const std::vector<Entry>& table, const char* fname, const py::object& src, const py::object& out,
                   const Extra& extra = Extra{}, std::optional<Dt> outDt = std::nullopt) {
  py::array a = asArray(src, fname);
  const Entry& e = pick(table, fname, a, outDt);
  Image in = inputImage(a, fname, e.in);
  Image o = outputImage(out, "out", in.h, in.w, e.outC, e.out);
  // out=img on a member with an in-place form: that form, with no copy. Its
  // rows are independent, so a bottom-up image is walked top-down instead
  // (these members take positive steps only).
  if (e.ip && !out.is_none() && o.data == in.data && o.step == in.step) {
    char* p = static_cast<char*>(o.data);
    int step = o.step;
    if (step < 0 && o.h > 1) {
      p += static_cast<std::ptrdiff_t>(step) * (o.h - 1);
      step = -step;
    }
    run(e.ipname, [&] { return e.ip(p, step, roiOf(o), extra); });
    return o.arr;
  }
  // A destination over the source's memory: the source is read from a copy,
  // since a member may read samples its row has already written.
  if (!out.is_none() && mayShare(in.arr, o.arr)) in = makeImage(copyOf(in.arr), e.in);
  // Some members take positive steps only: a bottom-up input is read from a
  // copy, a bottom-up destination is refused.
  if (positiveStepsOnly(e.cname) && in.h > 1) {
    if (o.step <= 0) throw py::value_error(std::string(fname) + ": out needs a positive row stride");
    if (in.step <= 0) in = makeImage(copyOf(in.arr), e.in);
  }
  run(e.cname, [&] { return e.fn(in.data, in.step, o.data, o.step, roiOf(in), extra); });
  return o.arr;
}

// ------------------------------------------------------------------ enumerations by name

// The value a keyword names, or a ValueError listing the names.
template <class E>
E byName(const char* what, const std::string& s, std::initializer_list<std::pair<const char*, E>> names) {
  std::string all;
  for (const auto& [n, v] : names) {
    if (s == n) return v;
    all += (all.empty() ? "'" : ", '") + std::string(n) + "'";
  }
  throw py::value_error(std::string(what) + " must be one of " + all + ", got '" + s + "'");
}

KelBayerGrid gridOf(const std::string& g) {
  return byName<KelBayerGrid>(
      "grid", g, {{"bggr", kelBayerBGGR}, {"rggb", kelBayerRGGB}, {"gbrg", kelBayerGBRG}, {"grbg", kelBayerGRBG}});
}

KelDitherType ditherOf(const std::string& d) {
  return byName<KelDitherType>("dither", d,
                               {{"none", kelDitherNone}, {"fs", kelDitherFloydSteinberg},
                                {"jjn", kelDitherJarvisJudiceNinke}, {"stucki", kelDitherStucki}, {"bayer", kelDitherBayer}});
}

bool bgrOrder(const std::string& order) { return byName<bool>("order", order, {{"rgb", false}, {"bgr", true}}); }

std::vector<Kel32f> floatMatrix(const py::object& m, int rows, int cols, const char* what) {
  py::array_t<Kel32f, py::array::c_style | py::array::forcecast> a;
  try {
    a = py::array_t<Kel32f, py::array::c_style | py::array::forcecast>::ensure(m);
  } catch (py::error_already_set&) {
    a = {};
  }
  if (!a) throw py::type_error(std::string(what) + ": expected an array of numbers");
  if (a.size() != rows * cols)
    throw py::value_error(std::string(what) + ": expected " + std::to_string(rows) + " x " + std::to_string(cols) +
                          " numbers, got " + std::to_string(a.size()));
  return std::vector<Kel32f>(a.data(), a.data() + a.size());
}

// ------------------------------------------------------------------ 4:2:0 planes

py::object rgbToYCbCr420(const py::object& img, const std::string& order, const py::object& out) {
  const bool bgr = bgrOrder(order);
  py::array a = asArray(img, "rgb_to_ycbcr420");
  requireDt(a, "rgb_to_ycbcr420", {Dt::u8});
  Image in = inputImage(a, "rgb_to_ycbcr420", Dt::u8);
  requireChannels(in, "rgb_to_ycbcr420", {3});
  auto o = outputPlanes(out, "out", {{in.h, in.w, 1}, {in.h / 2, in.w / 2, 1}, {in.h / 2, in.w / 2, 1}}, Dt::u8);
  Kel8u* dst[3] = {static_cast<Kel8u*>(o[0].data), static_cast<Kel8u*>(o[1].data), static_cast<Kel8u*>(o[2].data)};
  const int steps[3] = {o[0].step, o[1].step, o[2].step};
  const char* name = bgr ? "keliBGRToYCbCr420_8u_C3P3R" : "keliRGBToYCbCr420_8u_C3P3R";
  run(name, [&] {
    auto s = static_cast<const Kel8u*>(in.data);
    return bgr ? keliBGRToYCbCr420_8u_C3P3R(s, in.step, dst, steps, roiOf(in))
               : keliRGBToYCbCr420_8u_C3P3R(s, in.step, dst, steps, roiOf(in));
  });
  return imagesTuple(o);
}

py::object ycbcr420ToRgb(const py::object& y, const py::object& cb, const py::object& cr, const std::string& order,
                         const py::object& out) {
  const bool bgr = bgrOrder(order);
  Image py_ = inputPlane(y, "y", Dt::u8), pcb = inputPlane(cb, "cb", Dt::u8), pcr = inputPlane(cr, "cr", Dt::u8);
  requireHalf(pcb, "cb", py_.h, py_.w);
  requireHalf(pcr, "cr", py_.h, py_.w);
  Image o = outputImage(out, "out", py_.h, py_.w, 3, Dt::u8);
  const Kel8u* src[3] = {static_cast<const Kel8u*>(py_.data), static_cast<const Kel8u*>(pcb.data),
                         static_cast<const Kel8u*>(pcr.data)};
  const int steps[3] = {py_.step, pcb.step, pcr.step};
  const char* name = bgr ? "keliYCbCr420ToBGR_8u_P3C3R" : "keliYCbCr420ToRGB_8u_P3C3R";
  run(name, [&] {
    auto d = static_cast<Kel8u*>(o.data);
    return bgr ? keliYCbCr420ToBGR_8u_P3C3R(src, steps, d, o.step, roiOf(py_))
               : keliYCbCr420ToRGB_8u_P3C3R(src, steps, d, o.step, roiOf(py_));
  });
  return o.arr;
}

// NV12 chroma: (H/2, W/2, 2) pairs, or the same bytes as an (H/2, W) plane.
Image chromaPairs(const py::object& uv, int h, int w) {
  py::array a = asArray(uv, "uv");
  requireDt(a, "uv", {Dt::u8});
  if (a.ndim() == 2) {
    if (a.shape(1) % 2) throw py::value_error("uv: an (H/2, W) plane needs an even width");
    a = a.attr("reshape")(a.shape(0), a.shape(1) / 2, 2);
  }
  Image im = inputImage(a, "uv", Dt::u8);
  requireChannels(im, "uv", {2});
  requireHalf(im, "uv", h, w);
  return im;
}

py::object nv12ToI420(const py::object& y, const py::object& uv, const py::object& out) {
  Image py_ = inputPlane(y, "y", Dt::u8);
  Image puv = chromaPairs(uv, py_.h, py_.w);
  auto o = outputPlanes(out, "out", {{py_.h, py_.w, 1}, {puv.h, puv.w, 1}, {puv.h, puv.w, 1}}, Dt::u8);
  Kel8u* dst[3] = {static_cast<Kel8u*>(o[0].data), static_cast<Kel8u*>(o[1].data), static_cast<Kel8u*>(o[2].data)};
  const int steps[3] = {o[0].step, o[1].step, o[2].step};
  run("keliYCbCr420_8u_P2P3R", [&] {
    return keliYCbCr420_8u_P2P3R(static_cast<const Kel8u*>(py_.data), py_.step, static_cast<const Kel8u*>(puv.data),
                                 puv.step, dst, steps, roiOf(py_));
  });
  return imagesTuple(o);
}

py::object i420ToNv12(const py::object& y, const py::object& u, const py::object& v, const py::object& out) {
  Image py_ = inputPlane(y, "y", Dt::u8), pu = inputPlane(u, "u", Dt::u8), pv = inputPlane(v, "v", Dt::u8);
  requireHalf(pu, "u", py_.h, py_.w);
  requireShape(pv, "v", pu.h, pu.w);
  auto o = outputPlanes(out, "out", {{py_.h, py_.w, 1}, {pu.h, pu.w, 2}}, Dt::u8);
  const Kel8u* src[3] = {static_cast<const Kel8u*>(py_.data), static_cast<const Kel8u*>(pu.data),
                         static_cast<const Kel8u*>(pv.data)};
  const int steps[3] = {py_.step, pu.step, pv.step};
  run("keliYCbCr420_8u_P3P2R", [&] {
    return keliYCbCr420_8u_P3P2R(src, steps, static_cast<Kel8u*>(o[0].data), o[0].step, static_cast<Kel8u*>(o[1].data),
                                 o[1].step, roiOf(py_));
  });
  return imagesTuple(o);
}

// ------------------------------------------------------------------ Bayer

template <class T>
py::object demosaic(const py::object& raw, const std::string& grid, const py::object& out, bool ahd, const char* fname) {
  const KelBayerGrid g = gridOf(grid);
  py::array a = asArray(raw, fname);
  const Dt dt = requireDt(a, fname, {Dt::u8, Dt::u16});
  Image in = inputImage(a, fname, dt);
  requireChannels(in, fname, {1});
  Image o = outputImage(out, "out", in.h, in.w, 3, dt);
  const KeliRect roi{0, 0, in.w, in.h};
  const KeliSize size{in.w, in.h};
  auto s = static_cast<const T*>(in.data);
  auto d = static_cast<T*>(o.data);
  if (!ahd) {
    const char* name = sizeof(T) == 1 ? "keliCFAToRGB_8u_C1C3R" : "keliCFAToRGB_16u_C1C3R";
    run(name, [&]() -> KelStatus {
      if constexpr (sizeof(T) == 1) return keliCFAToRGB_8u_C1C3R(s, roi, size, in.step, d, o.step, g);
      else return keliCFAToRGB_16u_C1C3R(s, roi, size, in.step, d, o.step, g);
    });
    return o.arr;
  }
  const char* name = sizeof(T) == 1 ? "keliDemosaicAHD_8u_C1C3R" : "keliDemosaicAHD_16u_C1C3R";
  run(name, [&]() -> KelStatus {
    // The work rows live only for this call, so that callers on several
    // threads never share them.
    const long long stepBytes = KELCC_AHD_TMP_STEP(static_cast<long long>(in.w), static_cast<long long>(sizeof(T)));
    if (stepBytes > INT_MAX) return kelStatusBadSize;
    std::vector<T> tmp(static_cast<size_t>(KELCC_AHD_TMP_ROWS * stepBytes / sizeof(T)));
    if constexpr (sizeof(T) == 1)
      return keliDemosaicAHD_8u_C1C3R(s, roi, size, in.step, d, o.step, g, tmp.data(), static_cast<int>(stepBytes));
    else
      return keliDemosaicAHD_16u_C1C3R(s, roi, size, in.step, d, o.step, g, tmp.data(), static_cast<int>(stepBytes));
  });
  return o.arr;
}

py::object demosaicAny(const py::object& raw, const std::string& grid, const py::object& out, bool ahd) {
  const char* fname = ahd ? "demosaic_ahd" : "cfa_to_rgb";
  py::array a = asArray(raw, fname);
  return requireDt(a, fname, {Dt::u8, Dt::u16}) == Dt::u8 ? demosaic<Kel8u>(raw, grid, out, ahd, fname)
                                                          : demosaic<Kel16u>(raw, grid, out, ahd, fname);
}

// ------------------------------------------------------------------ YCoCg

using Fwd8 = KelStatus (*)(const Kel8u*, int, Kel16s**, int, KeliSize);
using Fwd16 = KelStatus (*)(const Kel16s*, int, Kel16s**, int, KeliSize);
using Fwd32 = KelStatus (*)(const Kel16s*, int, Kel32s**, int, KeliSize);

py::object bgrToYCoCg(const py::object& img, bool reversible, const py::object& outDtype, const py::object& out) {
  const char* fname = "bgr_to_ycocg";
  py::array a = asArray(img, fname);
  const Dt dt = requireDt(a, fname, {Dt::u8, Dt::s16});
  Image in = inputImage(a, fname, dt);
  requireChannels(in, fname, {3, 4});
  const bool c4 = in.c == 4;
  Dt od = dtArg(outDtype).value_or(Dt::s16);
  if (od != Dt::s16 && !(dt == Dt::s16 && od == Dt::s32))
    throw py::type_error(std::string(fname) + ": out_dtype " + dtName(od) + " is not available for " + dtName(dt) +
                         " input (int16, or int32 from int16)");
  Planes pl;
  if (out.is_none()) {
    pl = newPlanes(in.h, in.w, od);
  } else {
    auto o = outputPlanes(out, "out", {{in.h, in.w, 1}, {in.h, in.w, 1}, {in.h, in.w, 1}}, od);
    pl = sharedStepPlanes(o, true, "out");
  }
  const KeliSize roi = roiOf(in);
  std::string name;
  if (dt == Dt::u8) {
    Fwd8 f = reversible ? (c4 ? keliBGRToYCoCg_Rev_8u16s_C4P3R : keliBGRToYCoCg_Rev_8u16s_C3P3R)
                        : (c4 ? keliBGRToYCoCg_8u16s_C4P3R : keliBGRToYCoCg_8u16s_C3P3R);
    name = std::string("keliBGRToYCoCg") + (reversible ? "_Rev" : "") + "_8u16s_C" + (c4 ? "4" : "3") + "P3R";
    Kel16s* d[3] = {static_cast<Kel16s*>(pl.p[0]), static_cast<Kel16s*>(pl.p[1]), static_cast<Kel16s*>(pl.p[2])};
    run(name.c_str(), [&] { return f(static_cast<const Kel8u*>(in.data), in.step, d, pl.step, roi); });
  } else if (od == Dt::s16) {
    Fwd16 f = reversible ? (c4 ? keliSBGRToYCoCg_Rev_16s_C4P3R : keliSBGRToYCoCg_Rev_16s_C3P3R)
                         : (c4 ? keliSBGRToYCoCg_16s_C4P3R : keliSBGRToYCoCg_16s_C3P3R);
    name = std::string("keliSBGRToYCoCg") + (reversible ? "_Rev" : "") + "_16s_C" + (c4 ? "4" : "3") + "P3R";
    Kel16s* d[3] = {static_cast<Kel16s*>(pl.p[0]), static_cast<Kel16s*>(pl.p[1]), static_cast<Kel16s*>(pl.p[2])};
    run(name.c_str(), [&] { return f(static_cast<const Kel16s*>(in.data), in.step, d, pl.step, roi); });
  } else {
    Fwd32 f = reversible ? (c4 ? keliSBGRToYCoCg_Rev_16s32s_C4P3R : keliSBGRToYCoCg_Rev_16s32s_C3P3R)
                         : (c4 ? keliSBGRToYCoCg_16s32s_C4P3R : keliSBGRToYCoCg_16s32s_C3P3R);
    name = std::string("keliSBGRToYCoCg") + (reversible ? "_Rev" : "") + "_16s32s_C" + (c4 ? "4" : "3") + "P3R";
    Kel32s* d[3] = {static_cast<Kel32s*>(pl.p[0]), static_cast<Kel32s*>(pl.p[1]), static_cast<Kel32s*>(pl.p[2])};
    run(name.c_str(), [&] { return f(static_cast<const Kel16s*>(in.data), in.step, d, pl.step, roi); });
  }
  return pl.views;
}

template <class S, class D>
using Inv3 = KelStatus (*)(const S* const*, int, D*, int, KeliSize);
template <class S, class D, class A>
using Inv4 = KelStatus (*)(const S* const*, int, D*, int, KeliSize, A);

template <class S, class D, class A>
void ycocgInvCall(const char* name, Inv3<S, D> f3, Inv4<S, D, A> f4, const Planes& pl, const Image& o, KeliSize roi,
                  const py::object& alpha) {
  const S* s[3] = {static_cast<const S*>(pl.p[0]), static_cast<const S*>(pl.p[1]), static_cast<const S*>(pl.p[2])};
  auto d = static_cast<D*>(o.data);
  if (alpha.is_none()) {
    run(name, [&] { return f3(s, pl.step, d, o.step, roi); });
  } else {
    const long long v = alpha.cast<long long>();
    const long long lo = std::is_signed_v<A> ? -32768 : 0, hi = std::is_signed_v<A> ? 32767 : 255;
    if (v < lo || v > hi)
      throw py::value_error("alpha must be in " + std::to_string(lo) + ".." + std::to_string(hi) + ", got " +
                            std::to_string(v));
    const A al = static_cast<A>(v);
    run(name, [&] { return f4(s, pl.step, d, o.step, roi, al); });
  }
}

py::object yCoCgToBgr(const py::object& y, const py::object& co, const py::object& cg, bool reversible,
                      const py::object& alpha, const py::object& outDtype, const py::object& out) {
  const char* fname = "ycocg_to_bgr";
  py::array ay = asArray(y, "y");
  const Dt dt = requireDt(ay, "y", {Dt::s16, Dt::s32});
  std::vector<Image> ins = {inputPlane(y, "y", dt), inputPlane(co, "co", dt), inputPlane(cg, "cg", dt)};
  const char* names[3] = {"y", "co", "cg"};
  for (int i = 0; i < 3; ++i) requireShape(ins[i], names[i], ins[0].h, ins[0].w);
  const Dt od = dtArg(outDtype).value_or(dt == Dt::s16 ? Dt::u8 : Dt::s16);
  if (!((dt == Dt::s16 && (od == Dt::u8 || od == Dt::s16)) || (dt == Dt::s32 && od == Dt::s16)))
    throw py::type_error(std::string(fname) + ": out_dtype " + dtName(od) + " is not available for " + dtName(dt) +
                         " planes (int16 -> uint8 or int16, int32 -> int16)");
  Planes pl = sharedStepPlanes(ins, false, fname);
  const int c = alpha.is_none() ? 3 : 4;
  Image o = outputImage(out, "out", ins[0].h, ins[0].w, c, od);
  const KeliSize roi = roiOf(ins[0]);
  const bool r = reversible;
  std::string name = std::string(od == Dt::u8 ? "keliYCoCgToBGR" : "keliYCoCgToSBGR") + (r ? "_Rev" : "") + "_" +
                     (dt == Dt::s32 ? "32s16s" : od == Dt::u8 ? "16s8u" : "16s") + "_P3C" + std::to_string(c) + "R";
  if (od == Dt::u8)
    ycocgInvCall<Kel16s, Kel8u, Kel8u>(name.c_str(), r ? keliYCoCgToBGR_Rev_16s8u_P3C3R : keliYCoCgToBGR_16s8u_P3C3R,
                                       r ? keliYCoCgToBGR_Rev_16s8u_P3C4R : keliYCoCgToBGR_16s8u_P3C4R, pl, o, roi, alpha);
  else if (dt == Dt::s16)
    ycocgInvCall<Kel16s, Kel16s, Kel16s>(name.c_str(), r ? keliYCoCgToSBGR_Rev_16s_P3C3R : keliYCoCgToSBGR_16s_P3C3R,
                                         r ? keliYCoCgToSBGR_Rev_16s_P3C4R : keliYCoCgToSBGR_16s_P3C4R, pl, o, roi, alpha);
  else
    ycocgInvCall<Kel32s, Kel16s, Kel16s>(name.c_str(),
                                         r ? keliYCoCgToSBGR_Rev_32s16s_P3C3R : keliYCoCgToSBGR_32s16s_P3C3R,
                                         r ? keliYCoCgToSBGR_Rev_32s16s_P3C4R : keliYCoCgToSBGR_32s16s_P3C4R, pl, o, roi,
                                         alpha);
  return o.arr;
}

// ------------------------------------------------------------------ layout conversions
//
// The subsampled, packed 16-bit, BT.709, CbYCr and chroma-grid members move
// pictures between layouts: one interleaved image, three planes with a step
// each (chroma planes smaller by the member's grid), three full planes with
// one common step, or a luma plane with interleaved chroma pairs (NV12
// style). A member is entered once as (key, source form, destination form,
// extra arguments); the form types both describe the arrays Python passes
// and hand the C member its pointers and steps in argument order, so one
// generic call (convOp) serves every member.

enum class Lay { C, P3, P3S, P2 };

struct Side {
  Lay lay;
  Dt dt;
  int c;       // channels of an interleaved image (C), 2 for the pairs of P2, else 1
  int sx, sy;  // chroma grid of P3 / P2: luma columns and rows per chroma sample
};

struct Bufs {
  Kel8u* p[3] = {};
  int step[3] = {};
};

template <class T>
constexpr Dt dtFor() {
  return std::is_same_v<T, Kel8u> ? Dt::u8 : Dt::u16;
}

// One interleaved image of C channels of T (16-bit packed pixels: T = Kel16u, C = 1).
template <class T, int C>
struct FC {
  static constexpr Side side{Lay::C, dtFor<T>(), C, 1, 1};
  static auto in(const Bufs& b) { return std::make_tuple(reinterpret_cast<const T*>(b.p[0]), b.step[0]); }
  static auto out(const Bufs& b) { return std::make_tuple(reinterpret_cast<T*>(b.p[0]), b.step[0]); }
};
// Three 8-bit planes, each with its own step; SX x SY luma pixels share a chroma sample.
template <int SX, int SY>
struct FP3 {
  static constexpr Side side{Lay::P3, Dt::u8, 1, SX, SY};
  static auto in(const Bufs& b) {
    return std::make_tuple(static_cast<const Kel8u* const*>(b.p), static_cast<const int*>(b.step));
  }
  static auto out(const Bufs& b) { return std::make_tuple(const_cast<Kel8u**>(b.p), static_cast<const int*>(b.step)); }
};
// Three full 8-bit planes with one common step.
struct FP3S {
  static constexpr Side side{Lay::P3S, Dt::u8, 1, 1, 1};
  static auto in(const Bufs& b) { return std::make_tuple(static_cast<const Kel8u* const*>(b.p), b.step[0]); }
  static auto out(const Bufs& b) { return std::make_tuple(const_cast<Kel8u**>(b.p), b.step[0]); }
};
// A luma plane and a plane of interleaved chroma pairs.
template <int SX, int SY>
struct FP2 {
  static constexpr Side side{Lay::P2, Dt::u8, 2, SX, SY};
  static auto in(const Bufs& b) {
    return std::make_tuple(static_cast<const Kel8u*>(b.p[0]), b.step[0], static_cast<const Kel8u*>(b.p[1]), b.step[1]);
  }
  static auto out(const Bufs& b) { return std::make_tuple(b.p[0], b.step[0], b.p[1], b.step[1]); }
};

struct NoTail {
  static constexpr bool alpha = false;
  static auto args(const Extra&) { return std::tuple<>(); }
};
struct AlphaTail {
  static constexpr bool alpha = true;
  static auto args(const Extra& e) { return std::make_tuple(e.alpha); }
};

using ConvThunk = KelStatus (*)(const Bufs&, const Bufs&, KeliSize, const Extra&);

template <class In, class Out, class Tail, auto F>
KelStatus conv(const Bufs& i, const Bufs& o, KeliSize r, const Extra& e) {
  return std::apply(F, std::tuple_cat(In::in(i), Out::out(o), std::make_tuple(r), Tail::args(e)));
}

struct Variant {
  const char* key;  // the value of `order=` that names it ("rgb", "bgr", "rgb565", ...)
  const char* cname;
  Side in, out;
  bool alpha;  // takes an alpha value for a fourth output channel
  ConvThunk fn;
  bool positiveSteps = false;  // takes steps as unsigned numbers (or rejects those below 1)
};

#define CV(key, In, Out, Tail, f) Variant{key, #f, In::side, Out::side, Tail::alpha, &conv<In, Out, Tail, f>}
#define CVPOS(key, In, Out, Tail, f) Variant{key, #f, In::side, Out::side, Tail::alpha, &conv<In, Out, Tail, f>, true}

using C3 = FC<Kel8u, 3>;
using C4 = FC<Kel8u, 4>;
using C2 = FC<Kel8u, 2>;   // packed 4:2:2: two bytes a pixel
using W16 = FC<Kel16u, 1>;  // 16-bit packed RGB: one word a pixel
using P3S = FP3S;
using P422 = FP3<2, 1>;
using P420 = FP3<2, 2>;
using P411 = FP3<4, 1>;
using P1620 = FP3<4, 4>;
using NV12 = FP2<2, 2>;
using NV411 = FP2<4, 1>;
using A = AlphaTail;
using N = NoTail;

struct ConvFn {
  const char* name;
  const char* doc;
  std::vector<Variant> variants;
};

// The twelve 16-bit outputs of one source form: RGB/BGR x 565/555/444, plain and dithered.
#define PK16(In, pre, sfx)                                                                                      \
  CV("rgb565", In, W16, N, keli##pre##ToRGB565_8u16u_##sfx), CV("rgb555", In, W16, N, keli##pre##ToRGB555_8u16u_##sfx), \
      CV("rgb444", In, W16, N, keli##pre##ToRGB444_8u16u_##sfx),                                                     \
      CV("bgr565", In, W16, N, keli##pre##ToBGR565_8u16u_##sfx),                                                     \
      CV("bgr555", In, W16, N, keli##pre##ToBGR555_8u16u_##sfx),                                                     \
      CV("bgr444", In, W16, N, keli##pre##ToBGR444_8u16u_##sfx),                                                     \
      CV("rgb565-dither", In, W16, N, keli##pre##ToRGB565Dither_8u16u_##sfx),                                        \
      CV("rgb555-dither", In, W16, N, keli##pre##ToRGB555Dither_8u16u_##sfx),                                        \
      CV("rgb444-dither", In, W16, N, keli##pre##ToRGB444Dither_8u16u_##sfx),                                        \
      CV("bgr565-dither", In, W16, N, keli##pre##ToBGR565Dither_8u16u_##sfx),                                        \
      CV("bgr555-dither", In, W16, N, keli##pre##ToBGR555Dither_8u16u_##sfx),                                        \
      CV("bgr444-dither", In, W16, N, keli##pre##ToBGR444Dither_8u16u_##sfx)

const std::vector<ConvFn>& convFns() {
  static const std::vector<ConvFn> fns = {
      // ---- analogue YUV at 4:2:2 and 4:2:0
      {"rgb_to_yuv422", "RGB (H, W, 3), or three RGB planes, to YUV 4:2:2 planes (y, u, v).",
       {CV("rgb", C3, P422, N, keliRGBToYUV422_8u_C3P3R), CV("rgb", P3S, P422, N, keliRGBToYUV422_8u_P3R)}},
      {"yuv422_to_rgb", "YUV 4:2:2 planes to RGB (H, W, 3); order='rgbx': 4 channels, the fourth 0; "
                        "'rgb-planes': three planes.",
       {CV("rgb", P422, C3, N, keliYUV422ToRGB_8u_P3C3R), CV("rgbx", P422, C4, N, keliYUV422ToRGB_8u_P3AC4R),
        CV("rgb-planes", P422, P3S, N, keliYUV422ToRGB_8u_P3R)}},
      {"rgb_to_yuv422_packed", "RGB (H, W, 3) to packed YUV 4:2:2 (H, W, 2): Y0 U Y1 V.",
       {CV("rgb", C3, C2, N, keliRGBToYUV422_8u_C3C2R)}},
      {"yuv422_packed_to_rgb", "Packed YUV 4:2:2 (H, W, 2) to RGB (H, W, 3).",
       {CV("rgb", C2, C3, N, keliYUV422ToRGB_8u_C2C3R)}},
      {"rgb_to_yuv420", "RGB (H, W, 3) or three RGB planes, or BGR (H, W, 4) with order='bgr', to YUV 4:2:0 planes.",
       {CV("rgb", C3, P420, N, keliRGBToYUV420_8u_C3P3R), CV("rgb", P3S, P420, N, keliRGBToYUV420_8u_P3R),
        CV("bgr", C4, P420, N, keliBGRToYUV420_8u_AC4P3R)}},
      {"yuv420_to_rgb", "YUV 4:2:0 planes to RGB (order='bgr': BGR) (H, W, 3); 'rgbx': 4 channels, the fourth 0; "
                        "'rgb-planes': three planes.",
       {CV("rgb", P420, C3, N, keliYUV420ToRGB_8u_P3C3R), CV("bgr", P420, C3, N, keliYUV420ToBGR_8u_P3C3R),
        CV("rgbx", P420, C4, N, keliYUV420ToRGB_8u_P3AC4R), CV("rgb-planes", P420, P3S, N, keliYUV420ToRGB_8u_P3R)}},
      // ---- studio-range YCbCr at 4:2:2, 4:1:1 and YCrCb 4:2:0
      {"rgb_to_ycbcr422", "RGB (order='bgr': BGR, 3 or 4 channels) to studio-range 4:2:2 planes (y, cb, cr).",
       {CV("rgb", C3, P422, N, keliRGBToYCbCr422_8u_C3P3R), CV("bgr", C3, P422, N, keliBGRToYCbCr422_8u_C3P3R),
        CV("bgr", C4, P422, N, keliBGRToYCbCr422_8u_AC4P3R)}},
      {"ycbcr422_to_rgb", "Studio-range 4:2:2 planes (y, cb, cr) to RGB (order='bgr': BGR) (H, W, 3).",
       {CV("rgb", P422, C3, N, keliYCbCr422ToRGB_8u_P3C3R), CV("bgr", P422, C3, N, keliYCbCr422ToBGR_8u_P3C3R)}},
      {"rgb_to_yuy2", "RGB (H, W, 3) or three RGB planes (order='bgr': BGR, 3 or 4 channels) to packed YCbCr 4:2:2 "
                      "(H, W, 2): Y0 Cb Y1 Cr.",
       {CV("rgb", C3, C2, N, keliRGBToYCbCr422_8u_C3C2R), CV("rgb", P3S, C2, N, keliRGBToYCbCr422_8u_P3C2R),
        CV("bgr", C3, C2, N, keliBGRToYCbCr422_8u_C3C2R), CV("bgr", C4, C2, N, keliBGRToYCbCr422_8u_AC4C2R)}},
      {"yuy2_to_rgb", "Packed YCbCr 4:2:2 (H, W, 2) to RGB (H, W, 3); order='bgr': BGR, with alpha= BGRA; "
                      "'rgb-planes': three planes.",
       {CV("rgb", C2, C3, N, keliYCbCr422ToRGB_8u_C2C3R), CV("bgr", C2, C3, N, keliYCbCr422ToBGR_8u_C2C3R),
        CV("bgr", C2, C4, A, keliYCbCr422ToBGR_8u_C2C4R), CV("rgb-planes", C2, P3S, N, keliYCbCr422ToRGB_8u_C2P3R)}},
      {"rgb_to_yvyu", "RGB (H, W, 3) or three RGB planes to packed YCrCb 4:2:2 (H, W, 2): Y0 Cr Y1 Cb.",
       {CV("rgb", C3, C2, N, keliRGBToYCrCb422_8u_C3C2R), CV("rgb", P3S, C2, N, keliRGBToYCrCb422_8u_P3C2R)}},
      {"yvyu_to_rgb", "Packed YCrCb 4:2:2 (H, W, 2) to RGB (H, W, 3); 'rgb-planes': three planes.",
       {CV("rgb", C2, C3, N, keliYCrCb422ToRGB_8u_C2C3R), CV("rgb-planes", C2, P3S, N, keliYCrCb422ToRGB_8u_C2P3R)}},
      {"rgb_to_ycrcb420", "BGR (3 or 4 channels; order='rgb': RGB with 4 channels) to studio-range 4:2:0 planes "
                          "(y, cr, cb).",
       {CV("bgr", C3, P420, N, keliBGRToYCrCb420_8u_C3P3R), CV("bgr", C4, P420, N, keliBGRToYCrCb420_8u_AC4P3R),
        CV("rgb", C4, P420, N, keliRGBToYCrCb420_8u_AC4P3R)}},
      {"ycrcb420_to_rgb", "Studio-range 4:2:0 planes (y, cr, cb) to RGB with a fourth channel of `alpha`.",
       {CV("rgb", P420, C4, A, keliYCrCb420ToRGB_8u_P3C4R)}},
      {"ycbcr420_to_bgra", "Studio-range 4:2:0 planes (y, cb, cr) to BGR with a fourth channel of `alpha`.",
       {CV("bgr", P420, C4, A, keliYCbCr420ToBGR_8u_P3C4R)}},
      {"rgb_to_ycbcr411", "BGR (3 or 4 channels) to studio-range 4:1:1 planes (y, cb, cr); chroma (H, W/4).",
       {CV("bgr", C3, P411, N, keliBGRToYCbCr411_8u_C3P3R), CV("bgr", C4, P411, N, keliBGRToYCbCr411_8u_AC4P3R)}},
      {"ycbcr411_to_rgb", "Studio-range 4:1:1 planes to BGR (H, W, 3), with alpha= (H, W, 4).",
       {CV("bgr", P411, C3, N, keliYCbCr411ToBGR_8u_P3C3R), CV("bgr", P411, C4, A, keliYCbCr411ToBGR_8u_P3C4R)}},
      // ---- 16-bit packed RGB
      {"rgb_to_rgb565", "RGB uint8 (H, W, 3) to 16-bit 565 words (H, W) (order='bgr': BGR to BGR565).",
       {CV("rgb", C3, W16, N, keliRGBToRGB565_8u16u_C3R), CV("bgr", C3, W16, N, keliBGRToBGR565_8u16u_C3R)}},
      {"rgb565_to_rgb", "16-bit 565 words (H, W) to RGB uint8 (H, W, 3) (order='bgr': BGR565 to BGR).",
       {CV("rgb", W16, C3, N, keliRGB565ToRGB_16u8u_C3R), CV("bgr", W16, C3, N, keliBGR565ToBGR_16u8u_C3R)}},
      {"ycbcr_to_packed16", "YCbCr (H, W, 3) or three planes with one row stride to 16-bit words (H, W); order: "
                            "rgb565 (default), rgb555, rgb444, bgr565, bgr555, bgr444, each also '-dither'.",
       {PK16(C3, YCbCr, C3R), PK16(P3S, YCbCr, P3C3R)}},
      {"ycbcr422_to_packed16", "Packed YCbCr 4:2:2 (H, W, 2) or 4:2:2 planes to 16-bit words; order as "
                               "ycbcr_to_packed16.",
       {PK16(C2, YCbCr422, C2C3R), PK16(P422, YCbCr422, P3C3R)}},
      {"ycbcr420_to_packed16", "YCbCr 4:2:0 planes to 16-bit words; order as ycbcr_to_packed16.",
       {PK16(P420, YCbCr420, P3C3R)}},
      {"yuv420_to_packed16", "YUV 4:2:0 planes to 16-bit words; order as ycbcr_to_packed16.",
       {PK16(P420, YUV420, P3C3R)}},
      {"ycbcr411_to_packed16", "YCbCr 4:1:1 planes to 16-bit words, order='bgr555' or 'bgr565'.",
       {CV("bgr555", P411, W16, N, keliYCbCr411ToBGR555_8u16u_P3C3R),
        CV("bgr565", P411, W16, N, keliYCbCr411ToBGR565_8u16u_P3C3R)}},
      {"packed16_to_ycbcr420", "BGR555 or BGR565 words (H, W) (order='bgr555' / 'bgr565') to YCbCr 4:2:0 planes.",
       {CV("bgr565", W16, P420, N, keliBGR565ToYCbCr420_16u8u_C3P3R),
        CV("bgr555", W16, P420, N, keliBGR555ToYCbCr420_16u8u_C3P3R)}},
      {"packed16_to_ycrcb420", "BGR555 or BGR565 words to YCrCb 4:2:0 planes (y, cr, cb).",
       {CV("bgr565", W16, P420, N, keliBGR565ToYCrCb420_16u8u_C3P3R),
        CV("bgr555", W16, P420, N, keliBGR555ToYCrCb420_16u8u_C3P3R)}},
      {"packed16_to_ycbcr422", "BGR555 or BGR565 words to YCbCr 4:2:2 planes.",
       {CV("bgr565", W16, P422, N, keliBGR565ToYCbCr422_16u8u_C3P3R),
        CV("bgr555", W16, P422, N, keliBGR555ToYCbCr422_16u8u_C3P3R)}},
      {"packed16_to_yuy2", "BGR555 or BGR565 words to packed YCbCr 4:2:2 (H, W, 2).",
       {CV("bgr565", W16, C2, N, keliBGR565ToYCbCr422_16u8u_C3C2R),
        CV("bgr555", W16, C2, N, keliBGR555ToYCbCr422_16u8u_C3C2R)}},
      {"packed16_to_ycbcr411", "BGR555 or BGR565 words to YCbCr 4:1:1 planes.",
       {CV("bgr565", W16, P411, N, keliBGR565ToYCbCr411_16u8u_C3P3R),
        CV("bgr555", W16, P411, N, keliBGR555ToYCbCr411_16u8u_C3P3R)}},
      {"packed16_to_yuv420", "BGR565, BGR555 or RGB565 words to YUV 4:2:0 planes.",
       {CV("bgr565", W16, P420, N, keliBGR565ToYUV420_16u8u_C3P3R),
        CV("bgr555", W16, P420, N, keliBGR555ToYUV420_16u8u_C3P3R),
        CV("rgb565", W16, P420, N, keliRGB565ToYUV420_16u8u_C3P3R)}},
      {"packed16_to_yuv422", "RGB565 words to YUV 4:2:2 planes.",
       {CV("rgb565", W16, P422, N, keliRGB565ToYUV422_16u8u_C3P3R)}},
      // ---- BT.709
      {"bgr_to_ycbcr420_709csc", "BGR (3 or 4 channels) to BT.709 studio-swing 4:2:0 planes (y, cb, cr).",
       {CV("bgr", C3, P420, N, keliBGRToYCbCr420_709CSC_8u_C3P3R),
        CV("bgr", C4, P420, N, keliBGRToYCbCr420_709CSC_8u_AC4P3R)}},
      {"bgr_to_ycrcb420_709csc", "BGR (3 or 4 channels) to BT.709 studio-swing 4:2:0 planes (y, cr, cb).",
       {CV("bgr", C3, P420, N, keliBGRToYCrCb420_709CSC_8u_C3P3R),
        CV("bgr", C4, P420, N, keliBGRToYCrCb420_709CSC_8u_AC4P3R)}},
      {"bgr_to_ycbcr420_709hdtv", "BGRA (H, W, 4) to BT.709 full-swing 4:2:0 planes (outputs limited to 1..254).",
       {CV("bgr", C4, P420, N, keliBGRToYCbCr420_709HDTV_8u_AC4P3R)}},
      {"ycbcr420_709csc_to_bgr", "BT.709 studio-swing 4:2:0 planes to BGR (H, W, 3).",
       {CV("bgr", P420, C3, N, keliYCbCr420ToBGR_709CSC_8u_P3C3R)}},
      {"ycbcr420_709hdtv_to_bgr", "BT.709 full-swing 4:2:0 planes to BGR with a fourth channel of `alpha` (255).",
       {CV("bgr", P420, C4, A, keliYCbCr420ToBGR_709HDTV_8u_P3C4R)}},
      {"ycbcr_709csc_to_bgr", "BT.709 studio-swing full-size planes (one row stride) to BGR, with alpha= (H, W, 4).",
       {CV("bgr", P3S, C3, N, keliYCbCrToBGR_709CSC_8u_P3C3R), CV("bgr", P3S, C4, A, keliYCbCrToBGR_709CSC_8u_P3C4R)}},
      {"bgr_to_cbycr422_709hdtv", "BGR (3 or 4 channels) to BT.709 full-swing packed CbYCr 4:2:2 (H, W, 2).",
       {CV("bgr", C3, C2, N, keliBGRToCbYCr422_709HDTV_8u_C3C2R),
        CV("bgr", C4, C2, N, keliBGRToCbYCr422_709HDTV_8u_AC4C2R)}},
      {"cbycr422_709hdtv_to_bgr", "BT.709 full-swing packed CbYCr 4:2:2 to BGR, with alpha= (H, W, 4).",
       {CV("bgr", C2, C3, N, keliCbYCr422ToBGR_709HDTV_8u_C2C3R),
        CV("bgr", C2, C4, A, keliCbYCr422ToBGR_709HDTV_8u_C2C4R)}},
      // ---- CbYCr 4:2:2 (UYVY)
      {"rgb_to_cbycr422", "RGB (H, W, 3) to packed CbYCr 4:2:2 (H, W, 2): Cb Y0 Cr Y1; order='bgr': BGRA (H, W, 4); "
                          "'rgb-gamma': the forward gamma curve first.",
       {CV("rgb", C3, C2, N, keliRGBToCbYCr422_8u_C3C2R), CV("bgr", C4, C2, N, keliBGRToCbYCr422_8u_AC4C2R),
        CVPOS("rgb-gamma", C3, C2, N, keliRGBToCbYCr422Gamma_8u_C3C2R)}},
      {"cbycr422_to_rgb", "Packed CbYCr 4:2:2 (H, W, 2) to RGB (H, W, 3); order='bgr' with alpha: BGRA.",
       {CV("rgb", C2, C3, N, keliCbYCr422ToRGB_8u_C2C3R), CV("bgr", C2, C4, A, keliCbYCr422ToBGR_8u_C2C4R)}},
      // ---- layouts: packed 4:2:2, planes, NV12
      {"packed422_to_ycbcr422", "Packed 4:2:2 (order 'yuy2', 'uyvy' or 'yvyu') to 4:2:2 planes (y, cb, cr).",
       {CV("yuy2", C2, P422, N, keliYCbCr422_8u_C2P3R), CV("uyvy", C2, P422, N, keliCbYCr422ToYCbCr422_8u_C2P3R),
        CV("yvyu", C2, P422, N, keliYCrCb422ToYCbCr422_8u_C2P3R)}},
      {"ycbcr422_to_packed422", "4:2:2 planes (y, cb, cr) to packed YUY2 (order='yvyu': YVYU) (H, W, 2).",
       {CV("yuy2", P422, C2, N, keliYCbCr422_8u_P3C2R), CV("yvyu", P422, C2, N, keliYCbCr422ToYCrCb422_8u_P3C2R)}},
      {"packed422_to_ycbcr420", "Packed 4:2:2 (order 'yuy2', 'uyvy', 'yvyu') to 4:2:0 planes (y, cb, cr).",
       {CV("yuy2", C2, P420, N, keliYCbCr422ToYCbCr420_8u_C2P3R),
        CV("uyvy", C2, P420, N, keliCbYCr422ToYCbCr420_8u_C2P3R),
        CV("yvyu", C2, P420, N, keliYCrCb422ToYCbCr420_8u_C2P3R)}},
      {"packed422_to_ycrcb420", "Packed YUY2 or UYVY to YV12 planes (y, cr, cb).",
       {CV("yuy2", C2, P420, N, keliYCbCr422ToYCrCb420_8u_C2P3R),
        CV("uyvy", C2, P420, N, keliCbYCr422ToYCrCb420_8u_C2P3R)}},
      {"packed422_to_ycbcr411", "Packed 4:2:2 (order 'yuy2', 'uyvy', 'yvyu') to 4:1:1 planes (y, cb, cr).",
       {CV("yuy2", C2, P411, N, keliYCbCr422ToYCbCr411_8u_C2P3R),
        CV("uyvy", C2, P411, N, keliCbYCr422ToYCbCr411_8u_C2P3R),
        CV("yvyu", C2, P411, N, keliYCrCb422ToYCbCr411_8u_C2P3R)}},
      {"packed422_to_nv12", "Packed YUY2 or UYVY to NV12 (y, uv).",
       {CV("yuy2", C2, NV12, N, keliYCbCr422ToYCbCr420_8u_C2P2R),
        CV("uyvy", C2, NV12, N, keliCbYCr422ToYCbCr420_8u_C2P2R)}},
      {"nv12_to_packed422", "NV12 (y, uv) to packed YUY2 (order='uyvy': UYVY) (H, W, 2).",
       {CV("yuy2", NV12, C2, N, keliYCbCr420ToYCbCr422_8u_P2C2R),
        CV("uyvy", NV12, C2, N, keliYCbCr420ToCbYCr422_8u_P2C2R)}},
      {"yuy2_to_uyvy", "Packed YUY2 to UYVY; order='yvyu': YUY2 to YVYU.",
       {CV("uyvy", C2, C2, N, keliYCbCr422ToCbYCr422_8u_C2R), CV("yvyu", C2, C2, N, keliYCbCr422ToYCrCb422_8u_C2R)}},
      {"uyvy_to_yuy2", "Packed UYVY to YUY2.", {CV("yuy2", C2, C2, N, keliCbYCr422ToYCbCr422_8u_C2R)}},
      {"ycbcr422_to_ycbcr420", "4:2:2 planes to 4:2:0 planes, or (two-array output) NV12 with order='nv12'.",
       {CV("planes", P422, P420, N, keliYCbCr422ToYCbCr420_8u_P3R),
        CV("nv12", P422, NV12, N, keliYCbCr422ToYCbCr420_8u_P3P2R)}},
      {"ycbcr422_to_ycbcr411", "4:2:2 planes to 4:1:1 planes (order='nv411': luma and chroma pairs).",
       {CV("planes", P422, P411, N, keliYCbCr422ToYCbCr411_8u_P3R),
        CV("nv411", P422, NV411, N, keliYCbCr422ToYCbCr411_8u_P3P2R)}},
      {"ycbcr420_to_ycbcr422", "4:2:0 planes (y, cb, cr), YV12 planes (order='ycrcb') or NV12 (y, uv) to 4:2:2 planes.",
       {CV("ycbcr", P420, P422, N, keliYCbCr420ToYCbCr422_8u_P3R),
        CV("ycrcb", P420, P422, N, keliYCrCb420ToYCbCr422_8u_P3R),
        CV("ycbcr", NV12, P422, N, keliYCbCr420ToYCbCr422_8u_P2P3R)}},
      {"ycbcr411_to_ycbcr422", "4:1:1 planes, or luma and 4:1:1 chroma pairs, to 4:2:2 planes (order='ycrcb': "
                               "planes y, cr, cb out; 'yuy2': packed).",
       {CV("ycbcr", P411, P422, N, keliYCbCr411ToYCbCr422_8u_P3R),
        CV("ycbcr", NV411, P422, N, keliYCbCr411ToYCbCr422_8u_P2P3R),
        CV("ycrcb", P411, P422, N, keliYCbCr411ToYCrCb422_8u_P3R), CV("yuy2", P411, C2, N, keliYCbCr411ToYCbCr422_8u_P3C2R),
        CV("yvyu", P411, C2, N, keliYCbCr411ToYCrCb422_8u_P3C2R), CV("yuy2", NV411, C2, N, keliYCbCr411ToYCbCr422_8u_P2C2R)}},
      {"ycbcr411_to_ycbcr420", "4:1:1 planes, or luma and 4:1:1 chroma pairs, to 4:2:0 planes (order='nv12': NV12 "
                               "out; 'ycrcb': planes y, cr, cb out).",
       {CV("ycbcr", P411, P420, N, keliYCbCr411ToYCbCr420_8u_P3R),
        CV("ycbcr", NV411, P420, N, keliYCbCr411ToYCbCr420_8u_P2P3R),
        CV("ycrcb", NV411, P420, N, keliYCbCr411ToYCrCb420_8u_P2P3R),
        CV("nv12", P411, NV12, N, keliYCbCr411ToYCbCr420_8u_P3P2R)}},
      // ---- chroma grids that compute: interlaced fields, filtered upsampling, 420/411/1620 planes
      {"ycbcr422_to_420_interlace", "4:2:2 planes, or packed CbYCr (order='cbycr'), to 4:2:0 planes, each field "
                                    "filtered on its own (height a multiple of 4).",
       {CV("planes", P422, P420, N, keliYCbCr422To420_Interlace_8u_P3R),
        CV("cbycr", C2, P420, N, keliCbYCr422ToYCbCr420_Interlace_8u_C2P3R)}},
      {"ycbcr420_to_422_interlace", "4:2:0 planes to 4:2:2 planes (order='cbycr': packed CbYCr), field-aware.",
       {CV("planes", P420, P422, N, keliYCbCr420To422_Interlace_8u_P3R),
        CV("cbycr", P420, C2, N, keliYCbCr420ToCbYCr422_Interlace_8u_P3C2R)}},
      {"ycbcr420_to_422_filter", "4:2:0 planes (order='ycrcb': y, cr, cb) or NV12 (y, uv) to 4:2:2 planes with the "
                                 "(-1 9 9 -1)/16 vertical filter (height a multiple of 8).",
       {CV("ycbcr", P420, P422, N, keliYCbCr420ToYCbCr422_Filter_8u_P3R),
        CV("ycrcb", P420, P422, N, keliYCrCb420ToYCbCr422_Filter_8u_P3R),
        CV("ycbcr", NV12, P422, N, keliYCbCr420ToYCbCr422_Filter_8u_P2P3R)}},
      {"ycrcb420_to_bgr_filter", "YCrCb 4:2:0 planes (y, cr, cb) to BGR with a fourth channel of `alpha`, chroma "
                                 "interpolated.",
       {CV("bgr", P420, C4, A, keliYCrCb420ToBGR_Filter_8u_P3C4R)}},
      {"ycbcr420_to_411", "4:2:0 planes to 4:1:1 planes (width a multiple of 4, height even).",
       {CVPOS("planes", P420, P411, N, keliYCbCr420To411_8u_P3R)}},
      {"ycbcr411_to_420", "4:1:1 planes to 4:2:0 planes (width and height multiples of 4).",
       {CVPOS("planes", P411, P420, N, keliYCbCr411To420_8u_P3R)}},
      {"ycbcr420_to_1620", "4:2:0 planes to 16:2:0 planes (chroma one sample per 4 x 4 pixels).",
       {CVPOS("planes", P420, P1620, N, keliYCbCr420To1620_8u_P3R)}},
      {"ycbcr1620_to_420", "16:2:0 planes to 4:2:0 planes.", {CVPOS("planes", P1620, P420, N, keliYCbCr1620To420_8u_P3R)}},
  };
  return fns;
}

int arity(Lay l) { return l == Lay::C ? 1 : l == Lay::P2 ? 2 : 3; }
int ceilDiv(int a, int b) { return (a + b - 1) / b; }

std::string sideText(const Side& s) {
  auto grid = [&] { return "(H/" + std::to_string(s.sy) + ", W/" + std::to_string(s.sx) + ")"; };
  switch (s.lay) {
    case Lay::C:
      return std::string("one ") + dtName(s.dt) + (s.c == 1 ? " (H, W)" : " (H, W, " + std::to_string(s.c) + ")") +
             " array";
    case Lay::P3: return "three uint8 planes, chroma " + grid();
    case Lay::P3S: return "three uint8 (H, W) planes";
    case Lay::P2:
      return "a uint8 (H, W) plane and chroma pairs (H/" + std::to_string(s.sy) + ", W/" + std::to_string(s.sx) + ", 2)";
  }
  return "?";
}

std::string formsText(const ConvFn& f) {
  std::string s;
  for (const auto& v : f.variants)
    s += std::string("\n  order='") + v.key + "'" + (v.alpha ? ", alpha=" : "") + ": " + sideText(v.in) + " -> " +
         sideText(v.out) + "  [" + v.cname + "]";
  return s;
}

// The member for the given arrays, `order` and `alpha`.
const Variant& pickVariant(const ConvFn& f, const py::args& args, const py::object& order, bool alphaGiven) {
  const std::string key = order.is_none() ? f.variants[0].key : order.cast<std::string>();
  std::string keys;
  bool known = false;
  for (const auto& v : f.variants) {
    known = known || key == v.key;
    if (keys.find(std::string("'") + v.key + "'") == std::string::npos) keys += (keys.empty() ? "'" : ", '") + std::string(v.key) + "'";
  }
  if (!known) throw py::value_error(std::string(f.name) + ": order must be one of " + keys + ", got '" + key + "'");
  if (args.size() == 0) throw py::type_error(std::string(f.name) + ": no input given; forms:" + formsText(f));
  py::array first = asArray(args[0], f.name);
  const auto d = dtOf(first.dtype());
  const int c = first.ndim() == 3 ? static_cast<int>(first.shape(2)) : 1;
  bool arityOk = false, dtOk = false;
  for (int pass = 0; pass < 2; ++pass)
    for (const auto& v : f.variants) {
      if (v.key != key || arity(v.in.lay) != static_cast<int>(args.size())) continue;
      arityOk = true;
      if (!d || *d != v.in.dt) continue;
      dtOk = true;
      if (v.in.lay == Lay::C && (c != v.in.c || first.ndim() != (v.in.c == 1 ? 2 : 3))) continue;
      if (v.in.lay != Lay::C && first.ndim() != 2) continue;
      // Without alpha= the forms that take none come first; a member that
      // only writes an alpha channel takes 255.
      if (v.alpha == (alphaGiven || pass == 1)) return v;
    }
  const std::string msg = std::string(f.name) + ": no form for " + std::to_string(args.size()) + " input(s) of " +
                          std::string(py::str(first.dtype())) + " " + shapeStr(first) + " with order='" + key + "'" +
                          (alphaGiven ? " and alpha" : "") + "; forms:" + formsText(f);
  if (!arityOk || !dtOk) throw py::type_error(msg);
  throw py::value_error(msg);
}

// The members that take steps as unsigned numbers: a bottom-up input is read
// from a copy, a bottom-up destination is refused.
Image forwardImage(Image im, bool positive, bool isOutput, const char* what) {
  if (!positive || im.step >= 0 || im.h <= 1) return im;
  if (isOutput) throw py::value_error(std::string(what) + ": this member needs a positive row stride");
  return makeImage(copyOf(im.arr), im.dt);
}

// An input chroma plane (or plane of pairs) of h x w samples; one rounded
// down from an odd luma size is extended by its last row and column (a copy),
// so that members that convert an odd last pixel read samples of their own.
py::array chromaArray(const py::object& o, const char* what, bool pairs) {
  py::array a = asArray(o, what);
  requireDt(a, what, {Dt::u8});
  if (pairs && a.ndim() == 2 && a.shape(1) % 2 == 0) a = a.attr("reshape")(a.shape(0), a.shape(1) / 2, 2);
  if (a.ndim() != (pairs ? 3 : 2) || (pairs && a.shape(2) != 2))
    throw py::value_error(std::string(what) + ": expected " + (pairs ? "(h, w, 2) chroma pairs" : "an (h, w) plane") +
                          ", got shape " + shapeStr(a));
  return a;
}

struct Prepared {
  Bufs b;
  std::vector<Image> ims;
  int h = 0, w = 0;
};

// Checks and lays out the inputs of a member; `outs` are the caller's
// destinations (inputs that share memory with them are read from copies).
Prepared prepareInputs(const Variant& v, const py::args& args, const char* fname, const std::vector<py::array>& outs) {
  Prepared p;
  auto detach = [&](Image im) {
    for (const auto& o : outs)
      if (mayShare(im.arr, o)) return forwardImage(makeImage(copyOf(im.arr), im.dt), v.positiveSteps, false, fname);
    return forwardImage(std::move(im), v.positiveSteps, false, fname);
  };
  const Side& s = v.in;
  if (s.lay == Lay::C) {
    Image im = detach(inputImage(args[0], fname, s.dt));
    p.h = im.h, p.w = im.w;
    p.b.p[0] = static_cast<Kel8u*>(im.data), p.b.step[0] = im.step;
    p.ims.push_back(std::move(im));
    return p;
  }
  Image y = detach(inputPlane(args[0], "y", Dt::u8));
  p.h = y.h, p.w = y.w;
  p.ims.push_back(std::move(y));
  if (s.lay == Lay::P3S) {
    for (int i = 1; i < 3; ++i) {
      Image im = detach(inputPlane(args[i], "plane", Dt::u8));
      requireShape(im, "plane", p.h, p.w);
      p.ims.push_back(std::move(im));
    }
    Planes pl = sharedStepPlanes(p.ims, false, fname);
    if (pl.buf.ndim() == 3) p.ims.push_back(makeImage(pl.buf, Dt::u8));  // keeps the gathered planes alive
    for (int i = 0; i < 3; ++i) p.b.p[i] = static_cast<Kel8u*>(pl.p[i]), p.b.step[i] = pl.step;
    return p;
  }
  // Chroma: ceil(H / sy) x ceil(W / sx) samples; a plane rounded down is extended.
  const int ch = ceilDiv(p.h, s.sy), cw = ceilDiv(p.w, s.sx), fh = p.h / s.sy, fw = p.w / s.sx;
  const bool pairs = s.lay == Lay::P2;
  for (int i = 1; i < arity(s.lay); ++i) {
    const char* what = pairs ? "uv" : (i == 1 ? "chroma plane 1" : "chroma plane 2");
    py::array a = chromaArray(args[i], what, pairs);
    const bool hOk = a.shape(0) == ch || a.shape(0) == fh, wOk = a.shape(1) == cw || a.shape(1) == fw;
    if (!hOk || !wOk)
      throw py::value_error(std::string(what) + ": expected " + std::to_string(ch) + " x " + std::to_string(cw) +
                            " samples for a " + std::to_string(p.h) + " x " + std::to_string(p.w) + " picture, got " +
                            std::to_string(a.shape(0)) + " x " + std::to_string(a.shape(1)));
    if ((a.shape(0) != ch || a.shape(1) != cw) && a.size() > 0) {
      py::list pad;
      pad.append(py::make_tuple(0, ch - a.shape(0)));
      pad.append(py::make_tuple(0, cw - a.shape(1)));
      if (pairs) pad.append(py::make_tuple(0, 0));
      a = py::module_::import("numpy").attr("pad")(a, pad, "mode"_a = "edge");
    }
    Image im = detach(inputImage(a, what, Dt::u8));
    p.b.p[i] = static_cast<Kel8u*>(im.data), p.b.step[i] = im.step;
    p.ims.push_back(std::move(im));
  }
  p.b.p[0] = static_cast<Kel8u*>(p.ims[0].data), p.b.step[0] = p.ims[0].step;
  return p;
}

py::object convOp(const ConvFn& f, const py::args& args, const py::object& order, const py::object& alpha,
                  const py::object& out) {
  const Variant& v = pickVariant(f, args, order, !alpha.is_none());
  Extra e;
  if (!alpha.is_none()) {
    e.alpha = alpha.cast<int>();
    if (e.alpha < 0 || e.alpha > 255) throw py::value_error("alpha must be in 0..255, got " + std::to_string(e.alpha));
  }
  // The picture's size comes from the first input: an interleaved image or the luma plane.
  py::array first = asArray(args[0], f.name);
  if (first.ndim() < 2) throw py::value_error(std::string(f.name) + ": expected an (H, W) or (H, W, C) array, got shape " + shapeStr(first));
  const int h = static_cast<int>(first.shape(0)), w = static_cast<int>(first.shape(1));
  const Side& s = v.out;
  const int ch = ceilDiv(h, s.sy), cw = ceilDiv(w, s.sx);
  std::vector<Image> o;
  Bufs ob;
  py::object result;
  if (s.lay == Lay::C) {
    o.push_back(outputImage(out, "out", h, w, s.c, s.dt));
    result = o[0].arr;
  } else if (s.lay == Lay::P3S) {
    Planes pl;
    if (out.is_none()) {
      pl = newPlanes(h, w, Dt::u8);
    } else {
      o = outputPlanes(out, "out", {{h, w, 1}, {h, w, 1}, {h, w, 1}}, Dt::u8);
      pl = sharedStepPlanes(o, true, "out");
    }
    if (v.positiveSteps && pl.step < 0 && h > 1) throw py::value_error("out: this member needs a positive row stride");
    for (int i = 0; i < 3; ++i) ob.p[i] = static_cast<Kel8u*>(pl.p[i]), ob.step[i] = pl.step;
    result = pl.views;
    if (pl.buf.ndim() == 3) o.push_back(makeImage(pl.buf, Dt::u8));
  } else {
    if (s.lay == Lay::P3)
      o = outputPlanes(out, "out", {{h, w, 1}, {ch, cw, 1}, {ch, cw, 1}}, Dt::u8);
    else
      o = outputPlanes(out, "out", {{h, w, 1}, {ch, cw, 2}}, Dt::u8);
    result = imagesTuple(o);
  }
  if (s.lay != Lay::P3S)
    for (size_t i = 0; i < o.size(); ++i) {
      o[i] = forwardImage(std::move(o[i]), v.positiveSteps, true, "out");
      ob.p[i] = static_cast<Kel8u*>(o[i].data), ob.step[i] = o[i].step;
    }
  std::vector<py::array> outs;
  if (!out.is_none())
    for (const auto& im : o) outs.push_back(im.arr);
  Prepared in = prepareInputs(v, args, f.name, outs);
  run(v.cname, [&] { return v.fn(in.b, ob, KeliSize{in.w, in.h}, e); });
  return result;
}

// Every member behind each function, for callers who want to know and for the tests.
py::dict variantTable() {
  auto side = [](const Side& s) {
    const char* lay = s.lay == Lay::C ? "C" : s.lay == Lay::P3 ? "P3" : s.lay == Lay::P3S ? "P3S" : "P2";
    return py::make_tuple(lay, dtName(s.dt), s.c, s.sx, s.sy);
  };
  py::dict d;
  for (const auto& f : convFns()) {
    py::list l;
    for (const auto& v : f.variants)
      l.append(py::dict("order"_a = v.key, "member"_a = v.cname, "src"_a = side(v.in), "dst"_a = side(v.out),
                        "alpha"_a = v.alpha, "positive_steps"_a = v.positiveSteps));
    d[f.name] = l;
  }
  return d;
}

// ------------------------------------------------------------------ Python-side classes

const char* kClasses = R"PY(
class KelError(RuntimeError):
    """A negative status from the library: nothing was written.

    Attributes: status (the int code), name (e.g. 'kelStatusBadSize'),
    function (the C member that returned it)."""

    def __init__(self, status, name, function):
        super().__init__(f"{function}: {name} ({status})")
        self.status = status
        self.name = name
        self.function = function

    def __reduce__(self):
        return (type(self), (self.status, self.name, self.function))


class KelWarning(UserWarning):
    """A positive status from the library: the work was done, with a remark
    (for instance kelStatusOddSizeTrimmed: an odd last row or column was
    left as it was)."""
)PY";

}  // namespace

PYBIND11_MODULE(kelcc, m) {
  m.doc() = "Bit-exact image colour conversions over numpy arrays (libkelcce9).";

  py::dict ns;
  ns["__name__"] = "kelcc";
  py::exec(kClasses, ns);
  gKelError = ns["KelError"].ptr();
  gKelWarning = ns["KelWarning"].ptr();
  Py_INCREF(gKelError);
  Py_INCREF(gKelWarning);
  m.attr("KelError") = ns["KelError"];
  m.attr("KelWarning") = ns["KelWarning"];

  py::dict names;
  for (const auto& s : kStatusNames) names[py::int_(s.code)] = s.name;
  m.attr("STATUS_NAMES") = names;
  m.def("status_name", &statusName, "code"_a, "The name of a status code, e.g. -6 -> 'kelStatusBadSize'.");

  m.def(
      "version",
      [] {
        const KelLibraryVersion* v = kelccGetLibVersion();
        return py::dict("major"_a = v->major, "minor"_a = v->minor, "build"_a = v->build, "name"_a = v->Name,
                        "version"_a = v->Version, "build_date"_a = v->BuildDate);
      },
      "The library's version record as a dict.");
  m.attr("__version__") = kelccGetLibVersion()->Version;
  m.def("set_num_threads", &kelSetNumThreads, "n"_a, "Team size of the threaded members.");
  m.def("get_num_threads", &kelGetNumThreads, "Team size of the threaded members.");

#define PIXEL(pyname, table, doc)                                                                            \
  m.def(                                                                                                     \
      pyname, [](const py::object& img, const py::object& out) { return pixelOp(table, pyname, img, out); }, \
      "img"_a, py::kw_only(), "out"_a = py::none(), doc)

  PIXEL("rgb_to_yuv", kYUV, "RGB (uint8, 3 or 4 channels; alpha left alone) to YUV.");
  PIXEL("yuv_to_rgb", kYUVInv, "YUV (uint8, 3 or 4 channels) to RGB.");
  PIXEL("rgb_to_xyz", kXYZ, "RGB to CIE XYZ (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("xyz_to_rgb", kXYZInv, "CIE XYZ to RGB (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("rgb_to_ycc", kYCC, "RGB to YCC (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("ycc_to_rgb", kYCCInv, "YCC to RGB (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("rgb_to_hls", kHLS, "RGB to HLS (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("hls_to_rgb", kHLSInv, "HLS to RGB (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("rgb_to_hsv", kHSV, "RGB to HSV (uint8, uint16; 3 or 4 channels).");
  PIXEL("hsv_to_rgb", kHSVInv, "HSV to RGB (uint8, uint16; 3 or 4 channels).");
  PIXEL("rgb_to_luv", kLUV, "RGB to CIE LUV (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("luv_to_rgb", kLUVInv, "CIE LUV to RGB (uint8, uint16, int16, float32; 3 or 4 channels).");
  PIXEL("tone_map_linear", kToneLinear, "A float32 (H, W) image to uint8, its maximum mapped to 255.");
  PIXEL("tone_map_mean", kToneMean, "A float32 (H, W) image to uint8, twice its mean mapped to 255.");
#undef PIXEL

  m.def(
      "bgr_to_lab",
      [](const py::object& img, const py::object& outDtype, const py::object& out) {
        return pixelOp(kLab, "bgr_to_lab", img, out, Extra{}, dtArg(outDtype));
      },
      "img"_a, py::kw_only(), "out_dtype"_a = py::none(), "out"_a = py::none(),
      "BGR uint8 (H, W, 3) to CIE Lab, as uint8 (default) or uint16 (out_dtype=numpy.uint16).");
  m.def(
      "lab_to_bgr",
      [](const py::object& img, const py::object& out) { return pixelOp(kLabInv, "lab_to_bgr", img, out); },
      "img"_a, py::kw_only(), "out"_a = py::none(), "CIE Lab (uint8 or uint16, (H, W, 3)) to BGR uint8.");
  m.def(
      "rgb_to_gray",
      [](const py::object& img, const py::object& coeffs, const py::object& out) {
        if (coeffs.is_none()) return pixelOp(kGray, "rgb_to_gray", img, out);
        auto w = floatMatrix(coeffs, 1, 3, "coeffs");
        Extra e;
        e.coeffs = w.data();
        return pixelOp(kColorGray, "rgb_to_gray", img, out, e);
      },
      "img"_a, py::kw_only(), "coeffs"_a = py::none(), "out"_a = py::none(),
      "RGB (3 or 4 channels) to one (H, W) plane of the same dtype; coeffs: weights of channels 0, 1, 2.");

#define GAMMA(pyname, table, doc)                                                             \
  m.def(                                                                                    \
      pyname,                                                                               \
      [](const py::object& img, float vmin, float vmax, const py::object& out) {            \
        Extra e;                                                                            \
        e.vmin = vmin;                                                                      \
        e.vmax = vmax;                                                                      \
        return pixelOp(table, pyname, img, out, e);                                         \
      },                                                                                    \
      "img"_a, py::kw_only(), "vmin"_a = 0.f, "vmax"_a = 1.f, "out"_a = py::none(), doc)
  GAMMA("gamma_fwd", kGammaFwd,
        "The forward gamma curve (uint8, uint16, float32; 3 or 4 channels). vmin/vmax: the float32 range.");
  GAMMA("gamma_inv", kGammaInv,
        "The inverse gamma curve (uint8, uint16, float32; 3 or 4 channels). vmin/vmax: the float32 range.");
#undef GAMMA

  m.def(
      "color_twist",
      [](const py::object& img, const py::object& matrix, const py::object& out) {
        py::array a = asArray(img, "color_twist");
        const bool square = py::len(matrix) == 4;
        auto t = floatMatrix(matrix, square ? 4 : 3, 4, "matrix");
        Extra e;
        e.twist = t.data();
        if (square) {
          if (channelsOf(a, "color_twist") != 4 || !dtOf(a.dtype()) || *dtOf(a.dtype()) != Dt::f32)
            throw py::value_error("color_twist: a 4 x 4 matrix needs a float32 (H, W, 4) image");
          return pixelOp(kTwist4, "color_twist", img, out, e);
        }
        return pixelOp(kTwist, "color_twist", img, out, e);
      },
      "img"_a, "matrix"_a, py::kw_only(), "out"_a = py::none(),
      "Each pixel times a 3 x 4 matrix (weights of channels 0, 1, 2 and a constant per output channel); "
      "uint8, int8, uint16, int16, float32 with 3 or 4 channels (alpha left alone). A 4 x 4 matrix "
      "(no constants) maps all four channels of a float32 image.");

  m.def(
      "reduce_bits",
      [](const py::object& img, int levels, const std::string& dither, int noise, bool keepAlpha,
         const py::object& outDtype, const py::object& out) {
        Extra e;
        e.levels = levels;
        e.dither = ditherOf(dither);
        e.noise = noise;
        return pixelOp(keepAlpha ? kReduceAlpha : kReduce, "reduce_bits", img, out, e, dtArg(outDtype));
      },
      "img"_a, py::kw_only(), "levels"_a = 4, "dither"_a = "fs", "noise"_a = 0, "keep_alpha"_a = false,
      "out_dtype"_a = py::none(), "out"_a = py::none(),
      "Quantise to `levels` levels with a dither ('none', 'fs', 'jjn', 'stucki', 'bayer') and `noise` percent "
      "of noise. 1, 3 or 4 channels (keep_alpha=True: the fourth is left alone). Sources uint8, uint16, int16 "
      "keep their dtype by default, float32 gives uint8; out_dtype picks uint8 from uint16/int16 and "
      "uint16/int16 from float32.");

  m.def(
      "rgb_to_ycbcr420", &rgbToYCbCr420, "img"_a, py::kw_only(), "order"_a = "rgb", "out"_a = py::none(),
      "RGB (or order='bgr') uint8 (H, W, 3) to studio-range 4:2:0 planes (y, cb, cr); chroma is (H//2, W//2).");
  m.def("ycbcr420_to_rgb", &ycbcr420ToRgb, "y"_a, "cb"_a, "cr"_a, py::kw_only(), "order"_a = "rgb",
        "out"_a = py::none(), "Studio-range 4:2:0 planes to RGB (or order='bgr') uint8 (H, W, 3).");
  m.def("nv12_to_i420", &nv12ToI420, "y"_a, "uv"_a, py::kw_only(), "out"_a = py::none(),
        "NV12 (y plane, interleaved uv as (H/2, W/2, 2) or (H/2, W)) to planes (y, u, v).");
  m.def("i420_to_nv12", &i420ToNv12, "y"_a, "u"_a, "v"_a, py::kw_only(), "out"_a = py::none(),
        "Planes (y, u, v) to NV12 (y, uv) with uv of shape (H/2, W/2, 2).");

  m.def(
      "cfa_to_rgb",
      [](const py::object& raw, const std::string& grid, const py::object& out) {
        return demosaicAny(raw, grid, out, false);
      },
      "raw"_a, py::kw_only(), "grid"_a = "rggb", "out"_a = py::none(),
      "Bilinear demosaicing of a Bayer (H, W) uint8/uint16 image to (H, W, 3) RGB; grid names the top left 2 x 2.");
  m.def(
      "demosaic_ahd",
      [](const py::object& raw, const std::string& grid, const py::object& out) {
        return demosaicAny(raw, grid, out, true);
      },
      "raw"_a, py::kw_only(), "grid"_a = "rggb", "out"_a = py::none(),
      "Adaptive homogeneity-directed demosaicing (uint8/uint16, at least 5 x 5) to (H, W, 3) RGB.");

  for (const auto& f : convFns()) {
    const ConvFn* fp = &f;
    m.def(
        f.name,
        [fp](const py::args& args, const py::object& order, const py::object& alpha, const py::object& out) {
          return convOp(*fp, args, order, alpha, out);
        },
        "order"_a = py::none(), "alpha"_a = py::none(), "out"_a = py::none(),
        (std::string(f.doc) + "\n\nForms (the first order is the default):" + formsText(f)).c_str());
  }
  m.attr("_members") = variantTable();

  m.def("bgr_to_ycocg", &bgrToYCoCg, "img"_a, py::kw_only(), "reversible"_a = true, "out_dtype"_a = py::none(),
        "out"_a = py::none(),
        "BGR (uint8 or int16; 3 or 4 channels, the fourth unread) to planes (y, co, cg): int16, or int32 "
        "from int16 with out_dtype=numpy.int32. reversible=True: lifting that ycocg_to_bgr undoes exactly. "
        "The planes returned are views of one (3, H, W) array.");
  m.def("ycocg_to_bgr", &yCoCgToBgr, "y"_a, "co"_a, "cg"_a, py::kw_only(), "reversible"_a = true,
        "alpha"_a = py::none(), "out_dtype"_a = py::none(), "out"_a = py::none(),
        "Planes (y, co, cg) back to BGR: int16 -> uint8 (default) or int16, int32 -> int16. alpha given: "
        "a fourth channel of that value. Planes with different row strides are gathered into one buffer first.");
}
