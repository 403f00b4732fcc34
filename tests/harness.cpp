#include "harness.h"

#include <set>

#include <omp.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xmmintrin.h>

#include <cerrno>
#include <thread>

#include <algorithm>
#include <cstring>
#include <optional>

namespace kt {

Geom full(int bpp) {
  return [bpp](KeliSize r) { return PlaneDim{r.width * bpp, r.height}; };
}
Geom sub(int bpp, int xs, int ys) {
  return [=](KeliSize r) { return PlaneDim{(r.width >> xs) * bpp, r.height >> ys}; };
}
Geom ceilHalfW(int bpp) {
  return [bpp](KeliSize r) { return PlaneDim{((r.width + 1) >> 1) * bpp, r.height}; };
}

KelStatus status420(KeliSize r) { return ((r.width | r.height) & 1) ? kelStatusOddSizeTrimmed : kelStatusOk; }
KelStatus status422(KeliSize r) { return (r.width & 1) ? kelStatusOddSizeTrimmed : kelStatusOk; }
KelStatus status411(KeliSize r) { return (r.width & 3) ? kelStatusOddSizeTrimmed : kelStatusOk; }

// ---------------------------------------------------------------- Guarded
namespace {
constexpr int kGuard = 64;
}

// ---------------------------------------------------------------- Mem
Mem::Mem(size_t n, bool paged) {
  if (!paged) {
    heap_.resize(n);
    p_ = heap_.data();
    n_ = n;
    return;
  }
  // Whole pages, the first and last of the mapping inaccessible.
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  n_ = (std::max<size_t>(n, 1) + page - 1) / page * page;
  mapLen_ = n_ + 2 * page;
  void* m = mmap(nullptr, mapLen_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (m == MAP_FAILED) throw std::bad_alloc();
  map_ = static_cast<uint8_t*>(m);
  mprotect(map_, page, PROT_NONE);
  mprotect(map_ + page + n_, page, PROT_NONE);
  p_ = map_ + page;
}
Mem::~Mem() {
  if (map_) munmap(map_, mapLen_);
}

namespace {
size_t planeSpan(PlaneDim dim, int step) {
  return static_cast<size_t>(std::abs(step)) * (std::max(dim.rows, 1) - 1) + std::max(dim.rowBytes, 1);
}
}  // namespace

Guarded::Guarded(PlaneDim dim, int step, int align, uint32_t seed, PageEdge edge)
    : dim_(dim),
      step_(step),
      buf_(planeSpan(dim, step) + (edge == PageEdge::None ? 2 * kGuard + 32 : 0), edge != PageEdge::None) {
  const int rows = std::max(dim.rows, 1);
  size_t off = 0;
  // Against a page, the plane's lowest byte is the first accessible one
  // (start), or its highest byte the last (end).
  if (edge == PageEdge::None) {
    // Place the region start at `align` past a 16-byte boundary.
    const uintptr_t base = reinterpret_cast<uintptr_t>(buf_.data()) + kGuard;
    off = kGuard + ((static_cast<uintptr_t>(align) - base) & 15);
  } else if (edge == PageEdge::End) {
    off = buf_.size() - planeSpan(dim, step);
  }
  if (step < 0) off += static_cast<size_t>(-step) * (rows - 1);
  roiOff_ = off;
  roi_ = buf_.data() + off;
  fillRandom(seed);
}

void Guarded::fillRandom(uint32_t seed) {
  std::mt19937 g(seed);
  // Eight bytes a draw: page-sized planes are filled often.
  uint64_t x = (static_cast<uint64_t>(g()) << 32) | g();
  for (size_t i = 0; i < buf_.size(); i += 8) {
    x += 0x9E3779B97F4A7C15ull;
    uint64_t z = x;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    z ^= z >> 31;
    std::memcpy(buf_.data() + i, &z, std::min<size_t>(8, buf_.size() - i));
  }
  snapshot();
}
void Guarded::fill(uint8_t v) {
  for (int y = 0; y < dim_.rows; ++y)
    for (int x = 0; x < dim_.rowBytes; ++x) at(x, y) = v;
  snapshot();
}

bool Guarded::inRegion(size_t off) const {
  const ptrdiff_t rel = static_cast<ptrdiff_t>(off) - static_cast<ptrdiff_t>(roiOff_);
  const ptrdiff_t st = step_;
  if (st != 0 && std::abs(st) >= dim_.rowBytes) {
    // Rows apart: only the row whose start is nearest below may hold it.
    const ptrdiff_t q = rel / st;
    for (ptrdiff_t y = q - 1; y <= q + 1; ++y)
      if (y >= 0 && y < dim_.rows && rel >= st * y && rel < st * y + dim_.rowBytes) return true;
    return false;
  }
  for (int y = 0; y < dim_.rows; ++y) {
    const ptrdiff_t start = static_cast<ptrdiff_t>(step_) * y;
    if (rel >= start && rel < start + dim_.rowBytes) return true;
  }
  return false;
}

::testing::AssertionResult Guarded::outsideIntact() const {
  for (size_t i = 0; i < buf_.size(); ++i)
    if (buf_[i] != snap_[i] && !inRegion(i))
      return ::testing::AssertionFailure() << "write outside the region at byte " << (ptrdiff_t(i) - ptrdiff_t(roiOff_))
                                           << " from the region start (row bytes " << dim_.rowBytes << ", rows "
                                           << dim_.rows << ", step " << step_ << ")";
  return ::testing::AssertionSuccess();
}

::testing::AssertionResult Guarded::allIntact() const {
  for (size_t i = 0; i < buf_.size(); ++i)
    if (buf_[i] != snap_[i])
      return ::testing::AssertionFailure() << "byte changed at " << (ptrdiff_t(i) - ptrdiff_t(roiOff_))
                                           << " from the region start";
  return ::testing::AssertionSuccess();
}

std::vector<uint8_t> Guarded::region() const {
  std::vector<uint8_t> out;
  for (int y = 0; y < dim_.rows; ++y) {
    const uint8_t* p = roi_ + static_cast<ptrdiff_t>(step_) * y;
    out.insert(out.end(), p, p + dim_.rowBytes);
  }
  return out;
}

// ---------------------------------------------------------------- Call
const Kel8u* const* Call::sArr(int n, int first) {
  const int k = nsa_++ % 2;
  const bool arrNull = slot(sa_[k], false) == nullptr;
  for (int i = 0; i < n; ++i) sa_[k][i] = slot(src_[first + i]->ptr(), true);
  return arrNull ? nullptr : sa_[k];
}
Kel8u** Call::dArr(int n, int first) {
  const int k = nda_++ % 2;
  const bool arrNull = slot(da_[k], false) == nullptr;
  for (int i = 0; i < n; ++i) da_[k][i] = slot(dst_[first + i]->ptr(), true);
  return arrNull ? nullptr : da_[k];
}
const int* Call::ssArr(int n, int first) {
  for (int i = 0; i < n; ++i) sst_[i] = src_[first + i]->step();
  return sst_;
}
const int* Call::dsArr(int n, int first) {
  for (int i = 0; i < n; ++i) dst_st_[i] = dst_[first + i]->step();
  return dst_st_;
}

// ---------------------------------------------------------------- images
std::vector<Guarded*> Images::srcPtrs() const {
  std::vector<Guarded*> v;
  for (auto& p : src) v.push_back(p.get());
  return v;
}
std::vector<Guarded*> Images::dstPtrs() const {
  std::vector<Guarded*> v;
  for (auto& p : dst) v.push_back(p.get());
  return v;
}

namespace {
void makeSide(std::vector<std::unique_ptr<Guarded>>& out, const std::vector<Geom>& geoms, bool shared, KeliSize roi,
              StepMode mode, int pad, int align, uint32_t seed, bool even, int unit, PageEdge edge) {
  if (even) pad = (pad + 1) & ~1;
  // Samples of `unit` bytes: padding and offsets in whole samples.
  if (unit > 1) pad = (pad + unit - 1) / unit * unit;
  std::vector<PlaneDim> dims;
  int widest = 0;
  for (auto& g : geoms) {
    dims.push_back(g(roi));
    widest = std::max(widest, dims.back().rowBytes);
  }
  for (size_t i = 0; i < dims.size(); ++i) {
    const int base = shared ? widest : dims[i].rowBytes;
    int step = base;
    switch (mode) {
      case StepMode::Tight: step = base; break;
      case StepMode::Padded: step = base + pad; break;
      case StepMode::Negative: step = -(base + pad); break;
      case StepMode::Zero: step = 0; break;
      case StepMode::Short: {
        const int least = even ? std::max(unit, 2) : unit;
        step = std::max(least, base / 2 / least * least);
        break;
      }
    }
    const int a = (align + 5 * static_cast<int>(i)) & 15 & ~(unit - 1);
    out.push_back(std::make_unique<Guarded>(dims[i], step, a, seed + 977 * static_cast<uint32_t>(i), edge));
  }
}
}  // namespace

Images makeImages(const Member& m, KeliSize roi, StepMode mode, int align, uint32_t seed, PageEdge edge) {
  Images im;
  if (m.nonNegativeSteps && mode == StepMode::Negative) mode = StepMode::Padded;
  if (m.tightSteps) mode = StepMode::Tight;
  const int pad = 1 + static_cast<int>(seed % 37);
  makeSide(im.src, m.src, m.sharedSrcStep, roi, mode, pad, align, seed, m.evenSrcSteps, m.sampleBytes, edge);
  makeSide(im.dst, m.dst, m.sharedDstStep, roi, mode, pad + 3, (align + 7) & 15, seed ^ 0x5bd1e995u, m.evenDstSteps,
           m.sampleBytes, edge);
  // In-place members read their destination: its region is made finite too.
  std::vector<Guarded*> floats = im.srcPtrs();
  for (Guarded* g : im.dstPtrs()) floats.push_back(g);
  if (m.finiteFloats)
    for (Guarded* g : floats) {
      for (int y = 0; y < g->dim().rows; ++y)
        for (int x = 0; x + 4 <= g->dim().rowBytes; x += 4) {
          uint32_t u;
          std::memcpy(&u, &g->at(x, y), 4);
          if (((u >> 23) & 0xFF) == 0xFF) u &= ~(1u << 30);  // NaN or infinity: a finite value
          if (m.nonNegativeFloats) u &= 0x7FFFFFFFu;
          std::memcpy(&g->at(x, y), &u, 4);
        }
      g->snapshot();
    }
  return im;
}

Images makeImages(const Member& m, KeliSize roi, std::mt19937& rng, bool randomSteps) {
  StepMode mode = StepMode::Padded;
  if (randomSteps) {
    const int pick = static_cast<int>(rng() % (m.checksSteps ? 2 : 4));
    mode = static_cast<StepMode>(pick);
  }
  // Half the images start on a 16-byte boundary.
  const int align = (rng() & 1) ? 0 : static_cast<int>(rng() % 16);
  return makeImages(m, roi, mode, align, static_cast<uint32_t>(rng()));
}

KelStatus run(const Member& m, Images& im, KeliSize roi) {
  Call c(im.srcPtrs(), im.dstPtrs(), roi);
  // The caller's floating-point controls (rounding mode, exception masks,
  // flush-to-zero) and errno survive every call; the sticky exception flags
  // (the low six bits) are the arithmetic's to raise.
  const unsigned csr = _mm_getcsr();
  errno = 4321;
  const KelStatus st = m.call(c);
  EXPECT_EQ(_mm_getcsr() & ~0x3Fu, csr & ~0x3Fu) << m.name << " changed the caller's MXCSR";
  EXPECT_EQ(errno, 4321) << m.name << " changed errno";
  _mm_setcsr(csr);
  return st;
}

std::vector<kel::Isa> paths() {
  std::vector<kel::Isa> v{kel::Isa::Scalar};
  for (kel::Isa i : {kel::Isa::SSE41, kel::Isa::AVX2, kel::Isa::AVX512})
    if (kel::cpuIsa() >= i) v.push_back(i);
  return v;
}

// ---------------------------------------------------------------- checks
namespace {
void snapshotAll(Images& im) {
  for (auto& p : im.src) p->snapshot();
  for (auto& p : im.dst) p->snapshot();
}
void expectNothingWritten(const Images& im, const std::string& what) {
  for (auto& p : im.dst) EXPECT_TRUE(p->allIntact()) << what;
  for (auto& p : im.src) EXPECT_TRUE(p->allIntact()) << what;
}
KeliSize randomSize(const Member& m, std::mt19937& rng, int maxW, int maxH) {
  // Sizes near multiples of the block sizes are the telling ones.
  int w;
  if (rng() % 3 == 0) {
    const int base = 16 * static_cast<int>(1 + rng() % 6);
    w = base + static_cast<int>(rng() % 5) - 2;
  } else {
    w = 1 + static_cast<int>(rng() % maxW);
  }
  const int h = 1 + static_cast<int>(rng() % maxH);
  return {std::max(w, m.minW), std::max(h, m.minH)};
}
}  // namespace

void checkGuards(const Member& m, int trials, int maxW, int maxH) {
  std::mt19937 rng(1234);
  std::vector<KeliSize> sizes;
  for (int w = m.minW; w < m.minW + 4; ++w) sizes.push_back({w, m.minH});
  sizes.push_back({m.minW, m.minH + 1});
  for (int i = 0; i < trials; ++i) sizes.push_back(randomSize(m, rng, maxW, maxH));
  for (KeliSize roi : sizes) {
    Images im = makeImages(m, roi, rng);
    snapshotAll(im);
    const KelStatus st = run(m, im, roi);
    const std::string what = m.name + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) +
                             " steps " + (im.dst.empty() ? std::string() : std::to_string(im.dst[0]->step()));
    EXPECT_EQ(st, m.final(roi)) << what;
    for (auto& p : im.dst) EXPECT_TRUE(p->outsideIntact()) << what;
    for (auto& p : im.src) EXPECT_TRUE(p->allIntact()) << what << " (source changed)";
  }
}

void checkErrors(const Member& m) {
  const KeliSize good{std::max(m.minW, 4) + 1, std::max(m.minH, 4) + 1};
  // Count the pointer slots with a dry run.
  std::vector<bool> isElement;
  {
    Images im = makeImages(m, good, StepMode::Padded, 0, 7);
    Call c(im.srcPtrs(), im.dstPtrs(), good);
    EXPECT_EQ(m.call(c), m.final(good)) << m.name;
    isElement = c.slotIsElement;
  }
  const std::vector<KeliSize> badSizes = {{0, good.height}, {good.width, 0}, {-1, good.height},
                                          {good.width, -5}, {m.minW - 1, good.height}, {good.width, m.minH - 1},
                                          {0, 0}};
  auto expectStatus = [&](KeliSize roi, int nullSlot, StepMode mode, KelStatus want, const std::string& what) {
    Images im = makeImages(m, good, mode, 3, 11);
    snapshotAll(im);
    Call c(im.srcPtrs(), im.dstPtrs(), roi);
    c.nullSlot = nullSlot;
    EXPECT_EQ(m.call(c), want) << m.name << ": " << what;
    if (want < 0) expectNothingWritten(im, m.name + ": " + what);
  };
  // Null pointers alone, and with a bad size.
  for (int s = 0; s < static_cast<int>(isElement.size()); ++s) {
    expectStatus(good, s, StepMode::Padded, kelStatusNullPointer, "null slot " + std::to_string(s));
    const bool sizeFirst = m.order == Order::A && isElement[s];
    expectStatus({0, good.height}, s, StepMode::Padded, sizeFirst ? kelStatusBadSize : kelStatusNullPointer,
                 "null slot " + std::to_string(s) + " with width 0");
  }
  // Bad sizes alone.
  for (KeliSize roi : badSizes) {
    if (roi.width >= m.minW && roi.height >= m.minH) continue;
    const bool heightOnly = m.heightUnchecked && roi.width >= m.minW;
    const KelStatus want = (m.order == Order::F || heightOnly) ? kelStatusOk : kelStatusBadSize;
    expectStatus(roi, -1, StepMode::Padded, want, "size " + std::to_string(roi.width) + "x" + std::to_string(roi.height));
  }
  // Steps below 1, alone and with a bad size.
  if (m.checksSteps) {
    for (StepMode mode : {StepMode::Zero, StepMode::Negative}) {
      expectStatus(good, -1, mode, kelStatusBadStep, "step below 1");
      expectStatus({0, good.height}, -1, mode, m.order == Order::D ? kelStatusBadStep : kelStatusBadSize,
                   "step below 1 with width 0");
    }
  }
}

// paths(), and AVX-512 once more without VBMI where the processor has it.
std::vector<kel::Isa> pathsWithoutVbmi() {
  std::vector<kel::Isa> v = paths();
  if (kel::activeVbmi()) v.push_back(kel::Isa::AVX512);
  return v;
}

void checkPaths(const Member& m, int trials, int maxW, int maxH) {
  std::mt19937 rng(99);
  const auto ps = pathsWithoutVbmi();
  for (int i = 0; i < trials; ++i) {
    const KeliSize roi = randomSize(m, rng, maxW, maxH);
    // Members that reject steps below 1 would do nothing with negative ones.
    const StepMode mode = (rng() & 1) || m.checksSteps ? StepMode::Padded : StepMode::Negative;
    const int align = static_cast<int>(rng() % 16) & ~(static_cast<int>(rng() & 1) * 15);
    const uint32_t seed = static_cast<uint32_t>(rng());
    std::vector<std::vector<uint8_t>> ref;
    for (size_t pi = 0; pi < ps.size(); ++pi) {
      const kel::Isa isa = ps[pi];
      const bool noVbmi = pi > 0 && ps[pi - 1] == isa;  // the second AVX-512 run
      Images im = makeImages(m, roi, mode, align, seed);
      IsaScope scope(isa);
      std::optional<NoVbmiScope> vbmiOff;
      if (noVbmi) vbmiOff.emplace();
      run(m, im, roi);
      std::vector<std::vector<uint8_t>> out;
      for (auto& p : im.dst) out.push_back(p->region());
      if (isa == kel::Isa::Scalar) {
        ref = out;
        continue;
      }
      for (size_t k = 0; k < out.size(); ++k) {
        ASSERT_EQ(out[k].size(), ref[k].size());
        for (size_t j = 0; j < out[k].size(); ++j)
          if (out[k][j] != ref[k][j]) {
            const int rb = std::max(im.dst[k]->dim().rowBytes, 1);
            FAIL() << m.name << " path " << static_cast<int>(isa) << (noVbmi ? " without VBMI" : "") << " differs from scalar in plane " << k
                   << " at row " << j / rb << " byte " << j % rb << ": " << int(out[k][j]) << " vs "
                   << int(ref[k][j]) << " (size " << roi.width << "x" << roi.height << ")";
          }
      }
    }
  }
}

void checkPageEdges(const Member& m, int maxW) {
  const auto ps = pathsWithoutVbmi();
  std::vector<KeliSize> sizes;
  for (int w = m.minW; w <= std::max(maxW, m.minW); ++w)
    for (int h = m.minH; h < m.minH + 2; ++h) sizes.push_back({w, h});
  // Odd steps (padded rows; the pad is odd where the member allows it).
  const StepMode modes[] = {StepMode::Tight, StepMode::Padded};
  uint32_t seed = 1;
  for (size_t pi = 0; pi < ps.size(); ++pi) {
    const kel::Isa isa = ps[pi];
    IsaScope scope(isa);
    std::optional<NoVbmiScope> vbmiOff;
    if (pi > 0 && ps[pi - 1] == isa) vbmiOff.emplace();
    for (KeliSize roi : sizes)
      for (StepMode mode : modes) {
        if (mode == StepMode::Padded && (roi.width % 7) != 0) continue;
        // Without VBMI only the 8-bit AVX-512 blocks of 64 pixels change.
        if (vbmiOff && roi.width < 64) continue;
        for (PageEdge edge : {PageEdge::Start, PageEdge::End}) {
          // seed 0 mod 37 gives the pad 1: odd for byte planes.
          Images im = makeImages(m, roi, mode, 0, 37 * seed++, edge);
          snapshotAll(im);
          const KelStatus st = run(m, im, roi);
          const std::string what = m.name + " " + std::to_string(roi.width) + "x" + std::to_string(roi.height) +
                                   (edge == PageEdge::Start ? " at a page start" : " at a page end") + " path " +
                                   std::to_string(static_cast<int>(isa));
          EXPECT_EQ(st, m.final(roi)) << what;
          for (auto& p : im.dst) EXPECT_TRUE(p->outsideIntact()) << what;
          for (auto& p : im.src) EXPECT_TRUE(p->allIntact()) << what << " (source changed)";
          if (::testing::Test::HasFailure()) return;
        }
      }
  }
}

void checkTightEqualsPadded(const Member& m, std::vector<KeliSize> sizes) {
  auto copy = [](Guarded& to, Guarded& from) {
    for (int y = 0; y < from.dim().rows; ++y)
      for (int x = 0; x < from.dim().rowBytes; ++x) to.at(x, y) = from.at(x, y);
  };
  for (KeliSize roi : sizes) {
    Images tight = makeImages(m, roi, StepMode::Tight, 0, 11), padded = makeImages(m, roi, StepMode::Padded, 0, 11);
    for (size_t k = 0; k < tight.src.size(); ++k) copy(*padded.src[k], *tight.src[k]);
    for (size_t k = 0; k < tight.dst.size(); ++k) copy(*padded.dst[k], *tight.dst[k]);
    ASSERT_EQ(run(m, tight, roi), kelStatusOk) << m.name;
    {
      IsaScope scalar(kel::Isa::Scalar);
      ASSERT_EQ(run(m, padded, roi), kelStatusOk) << m.name;
    }
    for (size_t k = 0; k < tight.dst.size(); ++k)
      EXPECT_EQ(tight.dst[k]->region(), padded.dst[k]->region()) << m.name << " " << roi.width << "x" << roi.height;
  }
}

void checkThreads(const Member& m, std::vector<KeliSize> sizes) {
  for (KeliSize roi : sizes) {
    std::vector<std::vector<uint8_t>> ref;
    // 1 to 4, and teams far larger than the machine (oversubscribed on
    // purpose): rows and bands must not depend on the count.
    for (int n : {1, 2, 3, 4, 7, 16, 64}) {
      Images im = makeImages(m, roi, StepMode::Padded, 0, 4242);
      ThreadScope scope(n);
      EXPECT_EQ(run(m, im, roi), m.final(roi));
      std::vector<std::vector<uint8_t>> out;
      for (auto& p : im.dst) out.push_back(p->region());
      if (n == 1) ref = out;
      else EXPECT_TRUE(out == ref) << m.name << " differs with " << n << " threads at " << roi.width << "x" << roi.height;
    }
    // A runtime that gives fewer threads than asked: called from inside a
    // team with nesting off, the member's own region gets one thread
    // although four are set. Every row is still done, the same way.
    {
      Images im = makeImages(m, roi, StepMode::Padded, 0, 4242);
      ThreadScope scope(4);
      const int levels = omp_get_max_active_levels();
      omp_set_max_active_levels(1);
      KelStatus st = kelStatusOk;
#pragma omp parallel num_threads(2)
      if (omp_get_thread_num() == 0) st = run(m, im, roi);
      omp_set_max_active_levels(levels);
      EXPECT_EQ(st, m.final(roi));
      std::vector<std::vector<uint8_t>> out;
      for (auto& p : im.dst) out.push_back(p->region());
      EXPECT_TRUE(out == ref) << m.name << " differs when the runtime gives one thread of four, at " << roi.width
                              << "x" << roi.height;
    }
  }
}

std::vector<MemberList>& memberLists() {
  static std::vector<MemberList> v;
  return v;
}
std::vector<Member> registeredMembers() {
  std::vector<Member> all;
  for (const MemberList& f : memberLists())
    for (Member& m : f()) all.push_back(std::move(m));
  return all;
}

void checkCallers(const Member& m) {
  // Above the 4096-pixel threshold of the row-parallel families, so that
  // every caller opens its own team.
  const KeliSize roi{std::max(m.minW, 133), std::max(m.minH, 37)};
  constexpr int kCallers = 8;
  auto once = [&](std::vector<std::vector<uint8_t>>& out) {
    Images im = makeImages(m, roi, StepMode::Padded, 3, 777);
    const KelStatus st = run(m, im, roi);
    for (auto& p : im.dst) out.push_back(p->region());
    return st;
  };
  std::vector<std::vector<uint8_t>> ref;
  const KelStatus want = once(ref);
  std::vector<std::vector<std::vector<uint8_t>>> got(kCallers);
  std::vector<KelStatus> st(kCallers);
  std::vector<std::thread> ts;
  for (int t = 0; t < kCallers; ++t) ts.emplace_back([&, t] { st[t] = once(got[t]); });
  for (auto& t : ts) t.join();
  for (int t = 0; t < kCallers; ++t) {
    EXPECT_EQ(st[t], want) << m.name << " caller " << t;
    EXPECT_TRUE(got[t] == ref) << m.name << " caller " << t << " differs from a serial call";
  }
}

// Every registered member, every caller at once.
TEST(Members, CallersOnManyThreadsAtOnce) {
  for (const Member& m : registeredMembers()) checkCallers(m);
}

void checkAll(const std::vector<Member>& members) {
  for (const Member& m : members) {
    SCOPED_TRACE(m.name);
    checkErrors(m);
    checkGuards(m);
    checkPaths(m);
  }
}

// Every registered member with each image against an inaccessible page at
// either end: odd steps, every path, widths 1 to 64 for each function and 1
// to 24 for its further variants (other modes of the same function, whose
// rows are walked by the same code). Under the sanitizers the guard pages
// add nothing and cost much.
#ifndef KELCC_SANITIZED
TEST(Members, ImagesAgainstGuardPagesAtBothEnds) {
  std::set<std::string> seen;
  for (const Member& m : registeredMembers()) {
    SCOPED_TRACE(m.name);
    const bool first = seen.insert(m.name.substr(0, m.name.find(' '))).second;
    checkPageEdges(m, first ? 64 : 24);
  }
}
#endif

}  // namespace kt
