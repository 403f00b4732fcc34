// The frame: version record, arithmetic words, check orders, row walk and
// the parallel patterns.
#include <omp.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <set>

#include "frame/arith.h"
#include "frame/checks.h"
#include "frame/parallel.h"
#include "frame/rows.h"
#include "harness.h"

using namespace kel;

TEST(Version, RecordIsConstantAndReadsAsPublished) {
  const KelLibraryVersion* v = kelccGetLibVersion();
  ASSERT_EQ(v, kelccGetLibVersion());
  EXPECT_EQ(v->major, 6);
  EXPECT_EQ(v->minor, 1);
  EXPECT_EQ(v->majorBuild, 137);
  EXPECT_EQ(v->build, 754);
  EXPECT_EQ(0, std::memcmp(v->targetCpu, "e9\0\0", 4));
  EXPECT_STREQ(v->Name, "libkelcce9.so.6.1");
  EXPECT_STREQ(v->Version, "6.1 build 137.56");
  EXPECT_STREQ(v->BuildDate, "Mar 17 2010");
}

TEST(Arith, WordsAtTheirEdges) {
  struct Case {
    const char* what;
    int32_t got, want;
  } cases[] = {
      {"asr floors negatives", -7 >> 1, -4},
      {"clip8 low", clip8(-1), 0},
      {"clip8 high", clip8(256), 255},
      {"sat16s", sat16s(40000), 32767},
      {"sat16s low", sat16s(-40000), -32768},
      {"sat16u", sat16u(-3), 0},
      {"wrap16", wrap16(32768), -32768},
      {"byte8", byte8(-1), 255},
      {"adds saturates per step", adds(32767, 1, -1), 32766},
      {"addu saturates per step", addu(65535, 1, -1), 65534},
      {"mulhs negative floors", mulhs(-1, 1), -1},
      {"mulhu", mulhu(65535, 65535), 65534},
      {"mulhr rounds half up", mulhr(1, 16384), 1},
      {"mulhr of -1 x 16384", mulhr(-1, 16384), 0},
      {"avg8", avg8(1, 2), 2},
      {"area32 wraps", area32(65536, 65536), 0},
  };
  for (const Case& c : cases) EXPECT_EQ(c.got, c.want) << c.what;
  for (int v = -370; v <= 629; ++v) ASSERT_EQ(chop(v), clip8(v)) << v;
}

TEST(Checks, OrdersDecideBetweenTwoFaults) {
  uint8_t a = 0, b = 0;
  uint8_t* arr[3] = {&a, nullptr, &b};
  const KeliSize bad{0, 1}, ok{1, 1};
  struct Case {
    const char* what;
    KelStatus got, want;
  } cases[] = {
      {"A: null element after the size", checkA({&a}, {planes(arr, 3)}, bad), kelStatusBadSize},
      {"A: null element alone", checkA({&a}, {planes(arr, 3)}, ok), kelStatusNullPointer},
      {"A: elements beyond the layout are not read", checkA({&a}, {planes(arr, 1)}, ok), kelStatusOk},
      {"B: null element before the size", checkB({&a}, {planes(arr, 3)}, bad), kelStatusNullPointer},
      {"C: size before steps", checkC({&a, &b}, {}, bad, {0, 1}), kelStatusBadSize},
      {"C: steps", checkC({&a, &b}, {}, ok, {1, -1}), kelStatusBadStep},
      {"D: steps before size", checkD({&a, &b}, {}, bad, {0, 1}), kelStatusBadStep},
      {"E: range first", checkE(false, {nullptr}, {}, bad, {0}), kelStatusBadRange},
      {"F: size is no error", checkF({&a}, {}), kelStatusOk},
      {"G: mode last", checkG({&a}, {}, {2, 2}, 2, 2, false), kelStatusBadArgument},
      {"G: minimum size", checkG({&a}, {}, {1, 2}, 2, 2, false), kelStatusBadSize},
      {"null array", checkA({&a}, {planes(static_cast<uint8_t**>(nullptr), 3)}, bad), kelStatusNullPointer},
      {"420 status", status420({4, 3}), kelStatusOddSizeTrimmed},
      {"422 status ignores height", status422({4, 3}), kelStatusOk},
      {"411 status", status411({6, 2}), kelStatusOddSizeTrimmed},
  };
  for (const Case& c : cases) EXPECT_EQ(c.got, c.want) << c.what;
}

TEST(Rows, LongRowRuleOfTheFormsWithoutSteps) {
  EXPECT_FALSE(isLongRow422({254, 1}));
  EXPECT_TRUE(isLongRow422({256, 1}));
  EXPECT_TRUE(isLongRow422({2, 128}));
  EXPECT_FALSE(isLongRow422({17, 100}));
  std::vector<std::pair<int, int>> calls;
  forLongRow(16 * 17 + 5, [&](int off, int n) { calls.push_back({off, n}); });
  EXPECT_EQ(calls, (std::vector<std::pair<int, int>>{{0, 272}, {272, 5}}));
  calls.clear();
  forLongRow(256, [&](int off, int n) { calls.push_back({off, n}); });
  EXPECT_EQ(calls, (std::vector<std::pair<int, int>>{{0, 256}}));
  EXPECT_EQ(rowAt(static_cast<const uint8_t*>(nullptr) + 1000, -10, 3), static_cast<const uint8_t*>(nullptr) + 970);
}

// ---- parallel patterns -------------------------------------------------------
namespace {
// Which thread did each row, and how many times each row was done.
struct RowLog {
  explicit RowLog(int h) : count(h), tid(h, -1) {}
  void mark(int r) {
    count[r].fetch_add(1);
    tid[r] = omp_get_thread_num();
  }
  bool eachOnce() const {
    for (auto& c : count)
      if (c.load() != 1) return false;
    return true;
  }
  std::vector<std::atomic<int>> count;
  std::vector<int> tid;
};
}  // namespace

TEST(Parallel, RowsAboveThresholdStaySerialAtTheThreshold) {
  kt::ThreadScope threads(2);
  for (auto [w, h, parallel] : {std::tuple{64, 64, false}, std::tuple{4096, 1, false}, std::tuple{4097, 1, true}}) {
    RowLog log(h);
    std::set<int> teams;
    std::mutex mu;
    parallelRowsAbove(w, h, kRowsThreshold, [&](int r) {
      log.mark(r);
      std::lock_guard<std::mutex> lock(mu);
      teams.insert(omp_get_num_threads());
    });
    EXPECT_TRUE(log.eachOnce());
    EXPECT_EQ(*teams.rbegin() > 1, parallel) << w << "x" << h;
  }
}

TEST(Parallel, FixedBandsByThreadNumber) {
  struct Case {
    int threads, w, h;
    std::vector<std::pair<int, int>> bands;
  } cases[] = {
      {3, 200, 200, {{0, 66}, {66, 132}, {132, 200}}},
      {2, 300, 193, {{0, 96}, {96, 193}}},
      {1, 192, 192, {{0, 192}}},
      {2, 191, 1000, {{0, 1000}}},
      {4, 1000, 191, {{0, 191}}},
  };
  for (const Case& c : cases) {
    kt::ThreadScope threads(c.threads);
    std::vector<std::pair<int, int>> bands;
    std::mutex mu;
    parallelFixedBands(c.w, c.h, kBandMin, kBandMin, [&](int r0, int r1) {
      std::lock_guard<std::mutex> lock(mu);
      bands.push_back({r0, r1});
    });
    std::sort(bands.begin(), bands.end());
    EXPECT_EQ(bands, c.bands) << c.threads << " threads, " << c.w << "x" << c.h;
  }
}

TEST(Parallel, EveryRowIsDoneWhenTheRuntimeGivesFewerThreads) {
  // Inside an active region with nesting off, an inner region gets one thread.
  kt::ThreadScope threads(4);
  omp_set_max_active_levels(1);
  RowLog log(400);
#pragma omp parallel num_threads(1)
  {
    parallelFixedBands(400, 400, kBandMin, kBandMin, [&](int r0, int r1) {
      for (int r = r0; r < r1; ++r) log.mark(r);
    });
  }
  EXPECT_TRUE(log.eachOnce());
  RowLog log2(300);
#pragma omp parallel num_threads(1)
  parallelRowsAbove(300, 300, kRowsThreshold, [&](int r) { log2.mark(r); });
  EXPECT_TRUE(log2.eachOnce());
}

TEST(Parallel, MasterBandsCoverTheImage) {
  struct Plan {
    int band, h;
  };
  for (int n : {1, 2, 3, 4}) {
    kt::ThreadScope threads(n);
    RowLog log(301);
    parallelMasterBands<Plan>(
        true, [](int team) { return Plan{4 * ((301 >> 2) / team), 301}; },
        [&](int t, int team, const Plan& p) {
          const int r1 = t == team - 1 ? p.h : (t + 1) * p.band;
          for (int r = t * p.band; r < r1; ++r) log.mark(r);
        },
        [&] {
          for (int r = 0; r < 301; ++r) log.mark(r);
        });
    EXPECT_TRUE(log.eachOnce()) << n;
  }
}

TEST(Parallel, ChannelsAmongWorkers) {
  struct Case {
    int channels, workers;
    std::vector<std::vector<int>> byWorker;
  } cases[] = {
      {3, 2, {{0, 1}, {2}}},
      {4, 3, {{0, 1}, {2}, {3}}},
      {4, 2, {{0, 1}, {2, 3}}},
      {3, 1, {{0, 1, 2}}},
      {4, 4, {{0}, {1}, {2}, {3}}},
  };
  for (const Case& c : cases) {
    kt::ThreadScope threads(c.workers);
    std::vector<std::vector<int>> got(c.workers);
    runChannelWorkers(c.workers, c.channels, [&](int wk, int first, int count) {
      for (int i = 0; i < count; ++i) got[wk].push_back(first + i);
    });
    EXPECT_EQ(got, c.byWorker) << c.channels << " on " << c.workers;
  }
  kt::ThreadScope threads(3);
  EXPECT_EQ(channelTeamSize(1), 1);
  EXPECT_LE(channelTeamSize(2), 2);
}

TEST(Core, AllocationAndThreads) {
  void* p = kelMalloc(100);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(p) & 15, 0u);
  kelFree(p);
  EXPECT_EQ(kelMalloc(0), nullptr);
  int cache = 0;
  if (kelGetMaxCacheSizeB(&cache) == 0) EXPECT_GT(cache, 0);
  EXPECT_GE(ownGetNumThreads(), 1);
  kelSetNumThreads(3);
  EXPECT_EQ(kelGetNumThreads(), 3);
  kelSetNumThreads(0);
  EXPECT_EQ(ownGetNumThreads(), omp_get_max_threads());
}
