// libFuzzer target over every member the test programs describe.
//
// The fuzz input picks a member, a region size (0, negative, 1, odd, up to a
// few hundred pixels; very large ones only together with a null pointer, so
// that no image of that size is needed), the steps (tight, odd padding,
// negative, zero, shorter than a row), which end of every plane touches an inaccessible page, a
// thread count, the image contents and the member's extra arguments (its own
// value, or 0, -1, random bits, NaN, infinities, huge values).
//
// Each input runs twice, on the scalar definitions and on the widest vector
// path, with the same arguments. A finding is an access past a plane (a
// fault on the guard page, or a sanitizer report), a write outside the
// region or on an error path, a changed source, a changed MXCSR or errno,
// or different bytes or statuses on the two paths.
#include <xmmintrin.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <cstdlib>
#include <limits>

#include "harness.h"

using namespace kt;

namespace {

class Reader {
 public:
  Reader(const uint8_t* p, size_t n) : p_(p), n_(n) {}
  uint8_t u8() { return n_ ? (--n_, *p_++) : 0; }
  uint16_t u16() { return uint16_t(u8() | u8() << 8); }
  uint32_t u32() { return uint32_t(u16()) | uint32_t(u16()) << 16; }

 private:
  const uint8_t* p_;
  size_t n_;
};

// Extra arguments: drawn from the input on the first run and replayed on the
// second, so that both paths see the same call.
class Params : public ParamSource {
 public:
  explicit Params(Reader& r) : r_(r) {}
  void replay() { next_ = nextF_ = 0, replaying_ = true; }
  int32_t i32(int32_t def) override {
    if (replaying_) return next_ < ints_.size() ? ints_[next_++] : def;
    int32_t v = def;
    switch (r_.u8() % 8) {
      case 4: v = 0; break;
      case 5: v = -1; break;
      case 6: v = int32_t(r_.u32()); break;
      case 7: v = def + int8_t(r_.u8()); break;
      default: break;
    }
    ints_.push_back(v);
    return v;
  }
  float f32(float def) override {
    if (replaying_) return nextF_ < floats_.size() ? floats_[nextF_++] : def;
    float v = def;
    switch (r_.u8() % 10) {
      case 5: v = std::numeric_limits<float>::quiet_NaN(); break;
      case 6: v = std::numeric_limits<float>::infinity(); break;
      case 7: v = -std::numeric_limits<float>::infinity(); break;
      case 8: v = (r_.u8() & 1 ? -1e30f : 1e30f); break;
      case 9: {
        const uint32_t b = r_.u32();
        std::memcpy(&v, &b, 4);
        break;
      }
      default: break;
    }
    floats_.push_back(v);
    return v;
  }

 private:
  Reader& r_;
  std::vector<int32_t> ints_;
  std::vector<float> floats_;
  size_t next_ = 0, nextF_ = 0;
  bool replaying_ = false;
};

int pickExtent(Reader& r, int maxSmall) {
  switch (r.u8() % 8) {
    case 0: return 0;
    case 1: return -int(r.u8() % 3) - 1;
    case 2: return std::numeric_limits<int>::min();
    case 3: return 1 + r.u8() % 4;
    default: return 1 + int(r.u16() % maxSmall);
  }
}

[[noreturn]] void finding(const Member& m, KeliSize roi, const char* what) {
  std::fprintf(stderr, "finding: %s at %dx%d: %s\n", m.name.c_str(), roi.width, roi.height, what);
  std::abort();
}

bool adHocFailure() { return ::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed(); }

// Float results agree bit for bit, except that which NaN comes out where two
// NaNs meet in one operation depends on the operands' order, which compilers
// may swap in scalar code: any NaN matches any NaN.
bool isNaN32(const uint8_t* p) {
  uint32_t u;
  std::memcpy(&u, p, 4);
  return (u & 0x7F800000u) == 0x7F800000u && (u & 0x007FFFFFu);
}
bool samePlanes(const Member& m, const std::vector<std::vector<uint8_t>>& a,
                const std::vector<std::vector<uint8_t>>& b) {
  if (a == b) return true;
  if (m.sampleBytes != 4 || a.size() != b.size()) return false;
  for (size_t k = 0; k < a.size(); ++k) {
    if (a[k].size() != b[k].size()) return false;
    for (size_t i = 0; i + 4 <= a[k].size(); i += 4)
      if (std::memcmp(&a[k][i], &b[k][i], 4) != 0 && !(isNaN32(&a[k][i]) && isNaN32(&b[k][i]))) return false;
  }
  return true;
}

struct Outcome {
  KelStatus st;
  std::vector<std::vector<uint8_t>> planes;
};

Outcome runOnce(const Member& m, KeliSize roi, KeliSize alloc, StepMode mode, PageEdge edge, uint32_t seed,
                int nullSlot, Params& params) {
  Images im = makeImages(m, alloc, mode, 0, seed, edge);
  for (auto& p : im.src) p->snapshot();
  for (auto& p : im.dst) p->snapshot();
  Call c(im.srcPtrs(), im.dstPtrs(), roi);
  c.params = &params;
  c.nullSlot = nullSlot;
  const unsigned csr = _mm_getcsr();
  errno = 4321;
  Outcome o{m.call(c), {}};
  if ((_mm_getcsr() & ~0x3Fu) != (csr & ~0x3Fu)) finding(m, roi, "MXCSR controls changed");
  if (errno != 4321) finding(m, roi, "errno changed");
  for (auto& p : im.src)
    if (!p->allIntact()) finding(m, roi, "source changed");
  for (auto& p : im.dst) {
    if (o.st < 0 && !p->allIntact()) finding(m, roi, "written on an error");
    if (!p->outsideIntact()) finding(m, roi, "written outside the region");
    o.planes.push_back(p->region());
  }
  return o;
}

bool namesAny(const std::string& name, const char* list) {
  const std::string l = list ? list : "";
  for (size_t a = 0; !l.empty() && a <= l.size();) {
    const size_t b = std::min(l.find(',', a), l.size());
    if (b > a && name.find(l.substr(a, b - a)) != std::string::npos) return true;
    a = b + 1;
  }
  return false;
}

// KELCC_FUZZ_SKIP: comma-separated parts of member names to leave out, so
// that a long run can go past a finding that is being worked on.
// KELCC_FUZZ_ONLY: the same, for the members to keep (all when unset), so
// that a run can dwell on the families a change touched.
std::vector<Member> fuzzedMembers() {
  std::vector<Member> all = registeredMembers(), kept;
  const char* only = std::getenv("KELCC_FUZZ_ONLY");
  for (Member& m : all)
    if (!namesAny(m.name, std::getenv("KELCC_FUZZ_SKIP")) && (!only || namesAny(m.name, only)))
      kept.push_back(std::move(m));
  return kept;
}

}  // namespace

// KELCC_FUZZ_LIST=1: print the name of every member the target drives and
// stop (the test that ties them to the public header reads this).
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  if (std::getenv("KELCC_FUZZ_LIST")) {
    for (const Member& m : registeredMembers()) std::printf("%s\n", m.name.c_str());
    std::exit(0);
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::vector<Member> members = fuzzedMembers();
  if (members.empty() || size < 4) return 0;
  Reader r(data, size);
  const Member& m = members[r.u16() % members.size()];
  KeliSize roi{pickExtent(r, 200), pickExtent(r, 40)};
  const StepMode mode = static_cast<StepMode>(r.u8() % 5);
  const PageEdge edge = r.u8() & 1 ? PageEdge::End : PageEdge::Start;
  const int threads = 1 + r.u8() % 4;
  const uint32_t seed = r.u32();
  const uint8_t nullPick = r.u8();
  // The images: the region's own size where it is valid; a small one where
  // it is not (the call must fail before it reads or writes).
  KeliSize alloc{std::max(roi.width, m.minW), std::max(roi.height, m.minH)};
  if (alloc.width > 4096 || alloc.height > 4096) alloc = {m.minW + 3, m.minH + 3};
  int nullSlot = -1;
  if (nullPick < 32) {
    // Slot 0 (the first pointer argument) exists in every member: a very
    // large region goes with it, width * height past 32 bits.
    nullSlot = nullPick & 1 ? 0 : nullPick % 8;
    if (nullPick & 1) roi = {65537 + int(nullPick), 65537};
  }
  for (const Geom& g : m.src)
    if (int64_t(g(alloc).rowBytes) * g(alloc).rows > (64 << 20)) return 0;
  for (const Geom& g : m.dst)
    if (int64_t(g(alloc).rowBytes) * g(alloc).rows > (64 << 20)) return 0;
  // A region larger than its images is only ever passed with a null pointer.
  if (roi.width > alloc.width || roi.height > alloc.height) {
    if (nullSlot < 0) return 0;
  }
  ThreadScope ts(threads);
  Params params(r);
  Outcome scalar, wide;
  {
    IsaScope scope(kel::Isa::Scalar);
    scalar = runOnce(m, roi, alloc, mode, edge, seed, nullSlot, params);
  }
  params.replay();
  wide = runOnce(m, roi, alloc, mode, edge, seed, nullSlot, params);
  if (adHocFailure()) finding(m, roi, "a harness expectation failed");
  if (scalar.st != wide.st) finding(m, roi, "statuses differ between the paths");
  if (nullSlot >= 0 && roi.width > alloc.width && scalar.st >= 0) finding(m, roi, "a null pointer was accepted");
  // With zero or short steps, rows land on one another in an order that is
  // the paths' and the threads' own; elsewhere the bytes must agree.
  const bool overlapping = mode == StepMode::Zero || mode == StepMode::Short;
  if (scalar.st >= 0 && !overlapping && !samePlanes(m, scalar.planes, wide.planes))
    finding(m, roi, "vector path differs from the scalar definitions");
  return 0;
}
