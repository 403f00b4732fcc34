// Runs the benchmarks and prints, per group, each entry's throughput and the
// ratio of ours to it: "1.40x OpenCV" means we convert 1.4 times as many
// bytes per second as OpenCV; "85% of memcpy" compares with copying the same
// bytes. The run's configuration (common.h: frame size, threads, hot or cold)
// applies to ours and to the peers alike and is written into the context of
// the JSON output, for scripts/bench_table.py.
#include <opencv2/core.hpp>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "common.h"

namespace {

class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& r : runs) {
      if (r.error_occurred || r.run_type != Run::RT_Iteration) continue;
      const std::string name = r.benchmark_name();
      const size_t slash = name.rfind('/');
      if (slash == std::string::npos) continue;
      const auto it = r.counters.find("bytes_per_second");
      if (it == r.counters.end()) continue;
      // Strip the "/real_time" or "/manual_time" suffix the library adds.
      std::string group = name.substr(0, slash), impl = name.substr(slash + 1);
      if (impl == "real_time" || impl == "manual_time") {
        const size_t s2 = group.rfind('/');
        impl = group.substr(s2 + 1);
        group = group.substr(0, s2);
      }
      rate_[group][impl] = it->second.value;
    }
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\n%-44s %10s %10s   %s\n", "group (GB/s, source+destination bytes)", "kel", "memcpy",
                "ours vs memcpy and the peers");
    for (auto& [group, m] : rate_) {
      auto get = [&](const char* k) { auto i = m.find(k); return i == m.end() ? 0.0 : i->second / 1e9; };
      const double kel = get("kel"), mc = get("memcpy");
      std::printf("%-44s %10.2f %10.2f  ", group.c_str(), kel, mc);
      if (kel > 0 && mc > 0) std::printf(" %.0f%% of memcpy", 100 * kel / mc);
      for (auto& [impl, rate] : m)
        if (kel > 0 && rate > 0 && impl.rfind("kel", 0) != 0 && impl != "memcpy")
          std::printf(" %.2fx %s", kel / (rate / 1e9), impl.c_str());
      std::printf("\n");
    }
  }

 private:
  std::map<std::string, std::map<std::string, double>> rate_;
};

}  // namespace

int main(int argc, char** argv) {
  // The --kb_ flags were read at load time (common.h); Google Benchmark
  // should not see them.
  int kept = 1;
  for (int i = 1; i < argc; ++i)
    if (std::strncmp(argv[i], "--kb_", 5) != 0) argv[kept++] = argv[i];
  argc = kept;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const kb::Config& c = kb::config();
  kelSetNumThreads(c.threads);
  cv::setNumThreads(c.threads);
  benchmark::AddCustomContext("kb_width", std::to_string(c.w));
  benchmark::AddCustomContext("kb_height", std::to_string(c.h));
  benchmark::AddCustomContext("kb_threads", std::to_string(c.threads));
  benchmark::AddCustomContext("kb_cache", c.cold ? "cold" : "hot");
  std::printf("frame %dx%d, %d thread%s (ours and the peers'), %s\n", c.w, c.h, c.threads, c.threads == 1 ? "" : "s",
              c.cold ? "cold: buffers flushed from the caches before every call" : "hot: back-to-back calls");
  RatioReporter rep;
  benchmark::RunSpecifiedBenchmarks(&rep);
  benchmark::Shutdown();
  return 0;
}
