// Runs the benchmarks and prints, per group, each entry's throughput and the
// ratio of ours to it: "1.40x OpenCV" means we convert 1.4 times as many
// bytes per second as OpenCV; "85% of memcpy" compares with copying the same
// bytes. Peers run single-threaded (OpenCV's own pool is set to one thread).
#include <opencv2/core.hpp>

#include <cstdio>
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
      // Strip a "/real_time" suffix the library adds.
      std::string group = name.substr(0, slash), impl = name.substr(slash + 1);
      if (impl == "real_time") {
        const size_t s2 = group.rfind('/');
        impl = group.substr(s2 + 1);
        group = group.substr(0, s2);
      }
      rate_[group][impl] = it->second.value;
    }
  }
  void Finalize() override {
    ConsoleReporter::Finalize();
    std::printf("\n%-44s %12s %12s %12s %12s   %s\n", "group (GB/s, source+destination bytes)", "kel", "opencv",
                "libyuv", "memcpy", "ours vs peers and memcpy");
    for (auto& [group, m] : rate_) {
      auto get = [&](const char* k) { auto i = m.find(k); return i == m.end() ? 0.0 : i->second / 1e9; };
      const double kel = get("kel"), cv = get("opencv"), yuv = get("libyuv"), mc = get("memcpy");
      std::printf("%-44s %12.2f %12.2f %12.2f %12.2f  ", group.c_str(), kel, cv, yuv, mc);
      if (kel > 0 && cv > 0) std::printf(" %.2fx OpenCV", kel / cv);
      if (kel > 0 && yuv > 0) std::printf(" %.2fx libyuv", kel / yuv);
      if (kel > 0 && mc > 0) std::printf(" %.0f%% of memcpy", 100 * kel / mc);
      std::printf("\n");
    }
  }

 private:
  std::map<std::string, std::map<std::string, double>> rate_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  cv::setNumThreads(1);
  std::printf("threads for our parallel families: %d (OMP_NUM_THREADS or kelSetNumThreads)\n", ownGetNumThreads());
  RatioReporter rep;
  benchmark::RunSpecifiedBenchmarks(&rep);
  benchmark::Shutdown();
  return 0;
}
