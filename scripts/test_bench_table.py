#!/usr/bin/python3
"""Tests of scripts/bench_table.py on made-up runs: reading the JSON, the best peer, the goals."""
import json
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import bench_table  # noqa: E402

G = 1e9


def entry(name, rate, aggregate="median", suffix="real_time", real=1.0, cpu=1.0):
    b = {"name": f"{name}/{suffix}_{aggregate}", "run_name": f"{name}/{suffix}", "run_type": "aggregate",
         "aggregate_name": aggregate, "bytes_per_second": rate, "real_time": real, "cpu_time": cpu}
    return b


def write_run(directory, cache, w, h, threads, entries):
    ctx = {"kb_cache": cache, "kb_width": str(w), "kb_height": str(h), "kb_threads": str(threads)}
    with open(os.path.join(directory, f"{cache}-{w}x{h}-t{threads}.json"), "w") as f:
        json.dump({"context": ctx, "benchmarks": entries}, f)


class Load(unittest.TestCase):
    def test_medians_configurations_and_threaded_groups(self):
        with tempfile.TemporaryDirectory() as d:
            write_run(d, "hot", 1920, 1080, 1, [
                entry("RGBToLUV_8u_C3R/kel", 4 * G), entry("RGBToLUV_8u_C3R/kel", 9 * G, aggregate="mean"),
                entry("RGBToLUV_8u_C3R/opencv", 1 * G, real=3.0, cpu=1.0)])
            write_run(d, "cold", 1921, 1080, 2, [
                entry("RGBToLUV_8u_C3R@2t/kel", 6 * G, suffix="manual_time"),
                {"name": "X/kel/real_time", "run_name": "X/kel/real_time", "run_type": "iteration",
                 "error_occurred": True, "error_message": "refused"}])
            runs, threaded, busy = bench_table.load(d)
        self.assertEqual(runs[("hot", 1920, 1080, 1)]["RGBToLUV_8u_C3R"], {"kel": 4 * G, "opencv": 1 * G})
        self.assertEqual(runs[("cold", 1921, 1080, 2)]["RGBToLUV_8u_C3R"], {"kel": 6 * G})
        self.assertNotIn("X", runs[("cold", 1921, 1080, 2)])
        self.assertEqual(threaded, {"RGBToLUV_8u_C3R"})
        self.assertEqual(set(busy), {("hot", 1920, 1080, 1)})  # hot one-thread runs only


class Goals(unittest.TestCase):
    def rows(self, runs, threaded=()):
        return {(r["group"], r["config"]): r for r in bench_table.analyse(runs, set(threaded))}

    def test_each_goal_on_its_groups(self):
        hot = ("hot", 1920, 1080, 1)
        runs = {hot: {
            # group: rates in GB/s
            "YUY2ToI420": {"kel": 8.5, "libyuv": 8.0, "memcpy": 10.0},           # move under 90%
            "I420ToNV12": {"kel": 9.5, "libyuv": 9.0, "swscale": 9.9, "memcpy": 10.0},  # behind swscale
            "RGBToXYZ_8u_C3R": {"kel": 5.0, "opencv": 2.0, "memcpy": 10.0},      # 2.5x OpenCV
            "RGBToYUV_8u_C3R": {"kel": 4.0, "opencv": 1.0, "memcpy": 10.0},      # 40% of memcpy
            "RGBToYUV420_8u_C3P3R": {"kel": 4.0, "libyuv": 1.0, "memcpy": 10.0},  # subsampled: no 45% goal
            "GammaFwd_8u_C3R": {"kel": 5.0, "kel-avx2": 9.0, "opencv": 4.0, "memcpy": 10.0},
            "Set_8u_C1R": {"kel": 9.5, "memset": 10.0},
            "ToneMapMean_32f8u_C1R": {"kel-accurate": 1.0},                     # no "kel": no row
        }}
        runs = {c: {g: {k: v * G for k, v in m.items()} for g, m in gs.items()} for c, gs in runs.items()}
        r = self.rows(runs)
        self.assertEqual(r["YUY2ToI420", hot]["goals"], {"peer": True, "move": False})
        self.assertEqual(r["I420ToNV12", hot]["best"], "swscale")
        self.assertEqual(r["I420ToNV12", hot]["goals"], {"peer": False, "move": True})
        self.assertEqual(r["RGBToXYZ_8u_C3R", hot]["goals"], {"peer": True, "model": False})
        self.assertEqual(r["RGBToYUV_8u_C3R", hot]["goals"], {"peer": True, "fullres": False})
        self.assertEqual(r["RGBToYUV420_8u_C3P3R", hot]["goals"], {"peer": True})
        self.assertEqual(r["GammaFwd_8u_C3R", hot]["best"], "opencv")  # our other paths are no peers
        self.assertEqual((r["Set_8u_C1R", hot]["ref_name"], r["Set_8u_C1R", hot]["goals"]), ("memset", {"move": True}))
        self.assertNotIn(("ToneMapMean_32f8u_C1R", hot), r)

    def test_two_threads_where_the_family_is_threaded_and_the_frame_large(self):
        runs = {}
        cases = {  # group: (1-thread rate, 2-thread rate)
            "RGBToLUV_8u_C3R": (2.0, 3.0),            # 1.5x: misses
            "ReduceBits_8u_C3R_fs": (1.0, 1.4),       # three channels on two workers: goal 1.35x
            "DemosaicAHD_16u": (1.0, 1.0),            # one thread by design
            "Interlace422To420_P3R": (5.0, 9.5),      # threaded without "@2t" in its name
            "YUY2ToI420": (9.0, 9.0),                 # not threaded
        }
        for size in ((1920, 1080), (64, 64)):
            for t in (1, 2):
                runs[("hot", *size, t)] = {g: {"kel": v[t - 1] * G} for g, v in cases.items()}
        r = self.rows(runs, threaded={"RGBToLUV_8u_C3R", "ReduceBits_8u_C3R_fs", "DemosaicAHD_16u"})
        big, small = ("hot", 1920, 1080, 2), ("hot", 64, 64, 2)
        self.assertEqual(r["RGBToLUV_8u_C3R", big]["goals"], {"threads": False})
        self.assertAlmostEqual(r["RGBToLUV_8u_C3R", big]["scaling"], 1.5)
        self.assertEqual(r["ReduceBits_8u_C3R_fs", big]["goals"], {"threads": True})
        self.assertEqual(r["Interlace422To420_P3R", big]["goals"], {"threads": True})
        for g in ("DemosaicAHD_16u", "YUY2ToI420"):
            self.assertEqual(r[g, big]["goals"], {})
        self.assertEqual(r["RGBToLUV_8u_C3R", small]["goals"], {})  # under the families' thresholds


if __name__ == "__main__":
    unittest.main()
