// The parallel patterns. A call opens at most one OpenMP region, after its
// checks; every pattern asks the core library for the team size each call.
// Row routines keep no state between rows and bands fall on whole rows, so
// the bytes never depend on the team size (error diffusion of several
// channels excepted, where the pattern hands whole channels to workers).
#pragma once

#include <omp.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "frame/arith.h"
#include "kelcore.h"

namespace kel {

// The OpenMP runtime may set errno as it starts (it looks for message
// catalogues, reads the processor affinity): every pattern hands the caller
// back the errno it had.
namespace {
struct KeepErrno {
  int saved = errno;
  ~KeepErrno() { errno = saved; }
};
// A region opens in a function of its own: some compilers fetch the OpenMP
// thread number when a function that holds a region starts, which would be
// before the errno above is saved.
template <class F>
[[gnu::noinline]] void openRegion(F&& f) {
  f();
}
}  // namespace

// ---- 1. rows by static schedule, with threshold ------------------------
// Parallel when the 32-bit product w * h is above `threshold` (4096 for the
// colour models); the static schedule gives each thread one contiguous band.
// Where the runtime declines to fork, the one thread gets every row.
inline constexpr int32_t kRowsThreshold = 4096;

template <class RowFn>
inline void parallelRowsAbove(int w, int h, int32_t threshold, RowFn&& row) {
  const KeepErrno keepErrno;
  const int n = ownGetNumThreads();
  if (area32(w, h) <= threshold) {
    for (int r = 0; r < h; ++r) row(r);
    return;
  }
  openRegion([&] {
#pragma omp parallel for schedule(static) num_threads(n)
    for (int r = 0; r < h; ++r) row(r);
  });
}

// ---- 2. rows by static schedule, no threshold ----------------------------
template <class RowFn>
inline void parallelRows(int h, RowFn&& row) {
  const KeepErrno keepErrno;
  const int n = ownGetNumThreads();
  openRegion([&] {
#pragma omp parallel for schedule(static) num_threads(n)
    for (int r = 0; r < h; ++r) row(r);
  });
}

// ---- 3. fixed bands by thread number --------------------------------------
// With n the first answer of ownGetNumThreads, band t is rows t*q .. t*q+q-1
// (q = h / n) and the last band also takes the h % n rows behind. Parallel
// when n >= 2 and w, h are at least minW, minH (192 in the families that use
// it); otherwise band(0, h) runs once on the caller's thread.
//
// The bands are computed before the region, from that first answer. Should
// the runtime give fewer threads than asked (or none), the threads that do
// run take the missing band numbers too, t, t + team, t + 2*team, ..., so
// every row is processed and the bytes are the same.
inline constexpr int kBandMin = 192;

template <class BandFn>
inline void parallelFixedBands(int w, int h, int minW, int minH, BandFn&& band) {
  const KeepErrno keepErrno;
  const int n = ownGetNumThreads();
  if (n < 2 || w < minW || h < minH) {
    band(0, h);
    return;
  }
  const int q = h / n;
  const int rem = h % n;
  openRegion([&] {
#pragma omp parallel num_threads(ownGetNumThreads())
    {
      const int team = omp_get_num_threads();
      for (int t = omp_get_thread_num(); t < n; t += team) {
        const int r0 = t * q;
        const int rows = q + (t == n - 1 ? rem : 0);
        if (rows > 0) band(r0, r0 + rows);
      }
    }
  });
}

// ---- 4. fixed bands set by the master --------------------------------------
// Only the region knows the real team size: the master reads it, calls
// `split(team)` to fill the shared band plan, a barrier follows, and every
// thread runs band(t, team, plan). Parallel when `goParallel` holds (the
// family states its own size rule) and ownGetNumThreads gives 2 or more;
// otherwise serial() runs once on the caller's thread.
template <class Plan, class SplitFn, class BandFn, class SerialFn>
inline void parallelMasterBands(bool goParallel, SplitFn&& split, BandFn&& band, SerialFn&& serial) {
  const KeepErrno keepErrno;
  const int n = ownGetNumThreads();
  if (n < 2 || !goParallel) {
    serial();
    return;
  }
  Plan plan{};
  int team = 1;
  openRegion([&] {
#pragma omp parallel num_threads(n)
    {
#pragma omp master
      {
        team = omp_get_num_threads();
        plan = split(team);
      }
#pragma omp barrier
      band(omp_get_thread_num(), team, plan);
    }
  });
}

// ---- 5. channels by workers -------------------------------------------------
// The team size T is learnt from a region (1 where the runtime refuses it, and
// without any region for one channel); W = min(T, channels) workers each take
// a run of whole channels, the first `channels % W` workers one more:
// 3 channels on 2 workers give {0, 1} and {2}; 4 on 3 give {0, 1}, {2}, {3}.
// channelTeamSize gives W, so that the caller can allocate one scratch
// block per worker; runChannelWorkers then calls work(worker, firstChannel,
// channelCount) on the workers' threads, with no waiting between them.
inline int channelTeamSize(int channels) {
  const KeepErrno keepErrno;
  if (channels <= 1) return 1;
  int team = 1;
  openRegion([&] {
#pragma omp parallel num_threads(ownGetNumThreads())
    {
#pragma omp master
      team = omp_get_num_threads();
    }
  });
  return std::max(1, std::min(team, channels));
}

template <class WorkFn>
inline void runChannelWorkers(int workers, int channels, WorkFn&& work) {
  const KeepErrno keepErrno;
  auto one = [&](int wk) {
    const int base = channels / workers, extra = channels % workers;
    const int first = wk * base + std::min(wk, extra);
    const int count = base + (wk < extra ? 1 : 0);
    work(wk, first, count);
  };
  if (workers <= 1) {
    one(0);
    return;
  }
  openRegion([&] {
#pragma omp parallel num_threads(workers)
    {
      // A smaller team than asked: the threads that exist do the rest in turn.
      const int team = omp_get_num_threads();
      for (int wk = omp_get_thread_num(); wk < workers; wk += team) one(wk);
    }
  });
}

}  // namespace kel
