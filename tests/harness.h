// The guarded-buffer harness shared by every family's tests.
//
// A member is described once: the geometry of its source and destination
// planes as functions of the region size, how to call it (a lambda that asks
// the harness for each pointer and step in argument order), its order of
// checks, its minimum size and its final status. The generic tests then run
// it on random sizes, offsets and steps with guard zones around every
// destination, check that sources stay unchanged and nothing outside the
// region is written, walk every null pointer and bad size to see the order of
// the checks with nothing written, and hold every vector path to the scalar
// definitions at tolerance 0.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "frame/cpu.h"
#include "kelcc.h"
#include "kelcore.h"

namespace kt {

// How a plane's rows are laid out in its buffer.
// Short: a positive step shorter than a row (rows overlap), which the
// families that do not check steps take as the caller's business.
enum class StepMode { Tight, Padded, Negative, Zero, Short };

struct PlaneDim {
  int rowBytes;  // bytes of one row of the region
  int rows;
};
using Geom = std::function<PlaneDim(KeliSize)>;

// Common geometries: `bpp` bytes per pixel at full size, or per chroma
// sample of a subsampled plane (`(w >> xs)` or `(w + 1) >> 1` columns).
Geom full(int bpp);
Geom sub(int bpp, int xs, int ys);  // (w >> xs) * bpp by (h >> ys)
Geom ceilHalfW(int bpp);            // ((w + 1) >> 1) * bpp by h

// Where a plane meets an inaccessible page: nowhere (guard bytes around it),
// its first byte right after one, or its last byte right before one.
enum class PageEdge { None, Start, End };

// The bytes a plane lives in: a heap block, or pages of their own between
// two inaccessible pages, so that any access past them faults.
class Mem {
 public:
  Mem() = default;
  Mem(size_t n, bool paged);
  Mem(const Mem&) = delete;
  Mem& operator=(const Mem&) = delete;
  ~Mem();
  uint8_t* data() const { return p_; }
  size_t size() const { return n_; }
  uint8_t& operator[](size_t i) const { return p_[i]; }

 private:
  uint8_t* p_ = nullptr;
  size_t n_ = 0;
  uint8_t* map_ = nullptr;
  size_t mapLen_ = 0;
  std::vector<uint8_t> heap_;
};

// A plane with guard zones before, after and between its rows.
class Guarded {
 public:
  // `step` is the step to use (0 and negative allowed); `align` the offset
  // of the region's first byte from a 16-byte boundary. With a page edge the
  // plane's first or last byte touches an inaccessible page (and `align` is
  // not used).
  Guarded(PlaneDim dim, int step, int align, uint32_t seed, PageEdge edge = PageEdge::None);
  uint8_t* ptr() { return roi_; }
  int step() const { return step_; }
  const PlaneDim& dim() const { return dim_; }
  void fillRandom(uint32_t seed);
  void fill(uint8_t v);
  // Byte x of region row y.
  uint8_t& at(int x, int y) { return roi_[static_cast<ptrdiff_t>(step_) * y + x]; }
  void snapshot() { snap_.assign(buf_.data(), buf_.data() + buf_.size()); }
  // Everything outside the region is as it was at the snapshot.
  ::testing::AssertionResult outsideIntact() const;
  // Everything, the region included, is as it was.
  ::testing::AssertionResult allIntact() const;
  // The region's bytes, row by row.
  std::vector<uint8_t> region() const;

 private:
  bool inRegion(size_t off) const;
  PlaneDim dim_;
  int step_ = 0;
  Mem buf_;
  std::vector<uint8_t> snap_;
  uint8_t* roi_ = nullptr;
  size_t roiOff_ = 0;
};

class Call;
using Invoke = std::function<KelStatus(Call&)>;

// The order of checks of a member (see the outer functions).
enum class Order { A, B, C, D, F };

struct Member {
  std::string name;
  std::vector<Geom> src, dst;
  Invoke call;
  Order order = Order::A;
  int minW = 1, minH = 1;
  // The status after the work for a size that passes the checks.
  std::function<KelStatus(KeliSize)> final = [](KeliSize) { return kelStatusOk; };
  bool checksSteps = false;     // orders C and D
  bool sharedSrcStep = false;   // one step serves all source planes
  bool sharedDstStep = false;   // one step serves all destination planes
  // 16-bit word images: their steps are kept even (a word image's rows
  // start on word boundaries of its first row).
  bool evenSrcSteps = false;
  bool evenDstSteps = false;
  // Bytes per sample (2 for 16-bit, 4 for 32f images): steps and offsets
  // stay whole multiples of it on both sides.
  int sampleBytes = 1;
  // Float images: random sources hold finite values only. Which NaN payload
  // survives an operation with two NaN operands depends on their order, which
  // compilers may swap in scalar code; no result depends on payloads.
  bool finiteFloats = false;
  // With finiteFloats: no negative values either (members whose result
  // depends on the sign of a statistic of the whole image).
  bool nonNegativeFloats = false;
  // The member does not examine the height: a height below 1 is no error,
  // it does nothing and returns kelStatusOk.
  bool heightUnchecked = false;
  // The member takes some steps as unsigned numbers: no negative steps.
  bool nonNegativeSteps = false;
  // A form without steps: its rows lie back to back, so its images are
  // always laid out tight (whatever step mode a check asks for).
  bool tightSteps = false;
};

KelStatus status420(KeliSize r);
KelStatus status422(KeliSize r);
KelStatus status411(KeliSize r);

// One invocation: hands out pointers and steps in argument order, and can
// make one pointer slot null.
// Where a call's extra arguments (modes, levels, alpha, weights, matrices,
// ranges, ...) come from: the tests pass each member's own value; the fuzzer
// puts others in their place.
struct ParamSource {
  virtual ~ParamSource() = default;
  virtual int32_t i32(int32_t def) = 0;
  virtual float f32(float def) = 0;
};

class Call {
 public:
  Call(std::vector<Guarded*> src, std::vector<Guarded*> dst, KeliSize roi) : src_(src), dst_(dst), roi_(roi) {}
  KeliSize roi() const { return roi_; }
  // Extra arguments: the member's value `def`, unless a source says otherwise.
  ParamSource* params = nullptr;
  int32_t param(int32_t def) { return params ? params->i32(def) : def; }
  float paramF(float def) { return params ? params->f32(def) : def; }
  // Pointer arguments.
  const Kel8u* s(int i) { return slot(src_[i]->ptr(), false); }
  Kel8u* d(int i) { return slot(dst_[i]->ptr(), false); }
  template <class T>
  const T* sT(int i) { return reinterpret_cast<const T*>(s(i)); }
  template <class T>
  T* dT(int i) { return reinterpret_cast<T*>(d(i)); }
  // Plane-pointer arrays of n planes starting at plane `first`.
  const Kel8u* const* sArr(int n, int first = 0);
  Kel8u** dArr(int n, int first = 0);
  // Steps.
  int ss(int i) const { return src_[i]->step(); }
  int ds(int i) const { return dst_[i]->step(); }
  const int* ssArr(int n, int first = 0);
  const int* dsArr(int n, int first = 0);
  // Any other pointer argument (a matrix, a table): a null slot of its own.
  template <class P>
  P arg(P p) { return slot(p, false); }

  // Null injection: slot number `nullSlot` becomes null. Slots are counted
  // in the order the member's lambda asks for them.
  int nullSlot = -1;
  int slots = 0;
  std::vector<bool> slotIsElement;

 private:
  template <class P>
  P slot(P p, bool element) {
    slotIsElement.push_back(element);
    return slots++ == nullSlot ? nullptr : p;
  }
  std::vector<Guarded*> src_, dst_;
  KeliSize roi_;
  const Kel8u* sa_[2][4] = {};
  Kel8u* da_[2][4] = {};
  int sst_[4] = {}, dst_st_[4] = {};
  int nsa_ = 0, nda_ = 0;
};

// A set of planes for one call of a member.
struct Images {
  std::vector<std::unique_ptr<Guarded>> src, dst;
  std::vector<Guarded*> srcPtrs() const;
  std::vector<Guarded*> dstPtrs() const;
};
Images makeImages(const Member& m, KeliSize roi, std::mt19937& rng, bool randomSteps = true);
Images makeImages(const Member& m, KeliSize roi, StepMode mode, int align, uint32_t seed,
                  PageEdge edge = PageEdge::None);

// Runs a member once on the images; returns the status.
KelStatus run(const Member& m, Images& im, KeliSize roi);

// ---- the generic checks ----------------------------------------------------
// Random sizes (odd, even, around the block sizes), offsets and steps: the
// status is the final status, sources unchanged, nothing outside written.
void checkGuards(const Member& m, int trials = 60, int maxW = 300, int maxH = 9);
// Each null pointer and each bad size, alone and together: the status is the
// first failing check of the member's order, and nothing is written.
void checkErrors(const Member& m);
// Every vector path gives the bytes of the scalar definitions.
void checkPaths(const Member& m, int trials = 40, int maxW = 300, int maxH = 5);
// Every plane against an inaccessible page at its start, then at its end,
// on every path, for every width up to maxW, tight and with odd steps: a
// read or write past the plane faults.
void checkPageEdges(const Member& m, int maxW = 64);
// The bytes do not depend on the thread count (1 to 4, 7, 16 and 64).
void checkThreads(const Member& m, std::vector<KeliSize> sizes);
// Rows that lie end to end (tight steps) give the bytes of padded rows of
// the same pictures, the padded ones through the scalar definitions.
void checkTightEqualsPadded(const Member& m, std::vector<KeliSize> sizes);

// Sets the calling thread's vector path for the life of the object.
struct IsaScope {
  explicit IsaScope(kel::Isa isa) { kel::setIsaLimit(isa); }
  ~IsaScope() { kel::setIsaLimit(kel::Isa::AVX512); }
};
// The AVX-512 path without VBMI (the forms an AVX-512 processor without
// byte permutes runs) for the life of the object.
struct NoVbmiScope {
  NoVbmiScope() { kel::setVbmiLimit(false); }
  ~NoVbmiScope() { kel::setVbmiLimit(true); }
};
// The thread count for the life of the object.
struct ThreadScope {
  explicit ThreadScope(int n) { kelSetNumThreads(n); }
  ~ThreadScope() { kelSetNumThreads(0); }
};

// The paths this processor can run, scalar first.
std::vector<kel::Isa> paths();

// Runs the generic checks (errors, guard zones, paths) on every member of a
// table; the guard pages and the callers on many threads have tests of their
// own over every registered member.
void checkAll(const std::vector<Member>& members);

// ---- the members of a test program ---------------------------------------------
// Each family's test file registers its member table once (KT_MEMBERS); the
// checks that span families (callers on many threads at once, the fuzzer)
// take the members from here.
using MemberList = std::function<std::vector<Member>()>;
std::vector<MemberList>& memberLists();
std::vector<Member> registeredMembers();
struct MemberListRegistrar {
  explicit MemberListRegistrar(MemberList f) { memberLists().push_back(std::move(f)); }
};
#define KT_CAT2(a, b) a##b
#define KT_CAT(a, b) KT_CAT2(a, b)
#define KT_MEMBERS(fn) static ::kt::MemberListRegistrar KT_CAT(ktMembers_, __LINE__)(fn)

// Eight threads call the member at once on images of their own: each gets
// the bytes of a serial call.
void checkCallers(const Member& m);

}  // namespace kt
