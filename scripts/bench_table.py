#!/usr/bin/python3
"""Renders the benchmark runs of scripts/bench.sh as one Markdown table and a chart.

Reads every Google Benchmark JSON file of a directory (one configuration each:
frame size, threads, hot or cold, from the context the program writes) and
writes, beside them, table.md (one row per group and configuration: ours, the
best peer and its name, memcpy, the ratios, and flags on the rows that miss a
goal) and ratios.png (ours over the best peer per group, hot and cold).

    /usr/bin/python3 scripts/bench_table.py DIR [--command CMD] [--seconds N]
"""
import argparse
import datetime
import glob
import json
import os
import re
import subprocess
from collections import defaultdict

# ---- Goals ---------------------------------------------------------------
# Moves: conversions between layouts that only move bytes (or drop / repeat
# chroma samples): they should run near the speed of copying the same bytes.
MOVES = re.compile(r"^((I420|I422|I411|NV11|NV12|YV12|YUY2|UYVY)To(I420|I422|I411|NV11|NV12|YV12|YUY2|UYVY|YVYU)"
                   r"|NV12DeinterlaceTo\w+|Copy_\w+|Set_\w+)$")
MOVE_GOAL = 0.90  # of memcpy
# Colour models: the goal is three times OpenCV's cvtColor.
MODELS = re.compile(r"(XYZ|HSV|HLS|LUV|Lab)")
MODEL_GOAL = 3.0
# Full-resolution RGB <-> YUV / YCbCr (no chroma subsampling).
FULLRES = re.compile(r"^((RGB|BGR)To(YUV|YCbCr)|(YUV|YCbCr)To(RGB|BGR))_8u_(C3R|AC4R|C3P3R|AC4P4R|P3R|P3C3R|C4R|P3C4R)$"
                     r"|^I444To\w+$")
FULLRES_GOAL = 0.45  # of memcpy
# Two threads over one, on the families that open a parallel region (the
# groups their bench files run with "@2t", and the interlaced conversions),
# where the frame is above the families' thresholds. Excluded: AHD (one thread
# by design), the nearest-level reduction and single-channel error diffusion
# (no region). Error diffusion on three channels has at most two workers for
# three channels: its ceiling is 1.5x, and its goal is scaled to it.
THREAD_GOAL = 1.8
NOT_THREADED = re.compile(r"^(DemosaicAHD\w*|ReduceBits_8u_C\dR_none|ReduceBits_8u_C1R_(fs|fs_noise|jjn|stucki))$")
ALWAYS_THREADED = re.compile(r"^Interlace\w+$")
CHANNEL_WORKERS = re.compile(r"^ReduceBits_8u_C3R_(fs|fs_noise|jjn|stucki)$")

# "<group>-vs-<method>" groups set ours beside a peer's different method
# (edge-aware or VNG interpolation beside bilinear or AHD): shown with the
# ratio, but the goal "ahead of the best peer" counts only peers that do the
# same work.
OTHER_METHOD = re.compile(r"-vs-\w+$")
OURS = "kel"
REFERENCES = ("memcpy", "memset")  # the copy (or fill) of the same bytes


def load(directory):
    """{config: {group: {impl: bytes_per_second}}}, the set of threaded groups, and per
    configuration the median ratio of wall time to CPU time of the one-thread entries."""
    runs, threaded, busy = {}, set(), {}
    for path in sorted(glob.glob(os.path.join(directory, "*.json"))):
        with open(path) as f:
            data = json.load(f)
        ctx = data["context"]
        config = (ctx.get("kb_cache", "hot"), int(ctx.get("kb_width", 1920)), int(ctx.get("kb_height", 1080)),
                  int(ctx.get("kb_threads", 1)))
        groups = defaultdict(dict)
        waits = []
        for b in data["benchmarks"]:
            if b.get("error_occurred"):
                continue
            if b.get("run_type") == "aggregate" and b.get("aggregate_name") != "median":
                continue
            parts = b["run_name"].split("/") if "run_name" in b else b["name"].split("/")
            parts = [p for p in parts if p not in ("real_time", "manual_time")]
            if len(parts) < 2 or "bytes_per_second" not in b:
                continue
            group, impl = "/".join(parts[:-1]), parts[-1]
            if group.endswith("@2t"):
                group = group[:-3]
                threaded.add(group)
            groups[group][impl] = b["bytes_per_second"]
            if config[0] == "hot" and config[3] == 1 and b.get("cpu_time"):  # cold CPU time counts the flush
                waits.append(b["real_time"] / b["cpu_time"])
        runs[config] = groups
        if waits:
            busy[config] = sorted(waits)[len(waits) // 2]
    return runs, threaded, busy


def config_name(c):
    cache, w, h, t = c
    return f"{cache} {w}x{h} {t}t"


def config_order(c):
    cache, w, h, t = c
    return (cache != "hot", -h, w, t)


def analyse(runs, threaded):
    rows = []
    for config in sorted(runs, key=config_order):
        cache, w, h, threads = config
        for group, m in sorted(runs[config].items()):
            if OURS not in m:
                continue
            ours = m[OURS]
            peers = {k: v for k, v in m.items() if not k.startswith(OURS) and k not in REFERENCES}
            ref_name = next((r for r in REFERENCES if r in m), None)
            ref = m.get(ref_name) if ref_name else None
            best = max(peers, key=peers.get) if peers else None
            row = dict(group=group, config=config, ours=ours, best=best, peer=peers.get(best), ref=ref,
                       ref_name=ref_name, flags=[], goals={})
            row["vs_peer"] = ours / row["peer"] if row["peer"] else None
            row["vs_ref"] = ours / ref if ref else None

            def goal(name, ok, flag):
                row["goals"][name] = ok
                if not ok:
                    row["flags"].append(flag)

            if row["vs_peer"] is not None and not OTHER_METHOD.search(group):
                goal("peer", row["vs_peer"] >= 1.0, f"behind {best}")
            if MOVES.match(group) and row["vs_ref"] is not None:
                goal("move", row["vs_ref"] >= MOVE_GOAL, f"move <{MOVE_GOAL:.0%} {ref_name}")
            if MODELS.search(group) and "opencv" in m:
                r = ours / m["opencv"]
                goal("model", r >= MODEL_GOAL, f"model {r:.2f}x<{MODEL_GOAL:g}x opencv")
            if FULLRES.match(group) and row["vs_ref"] is not None:
                goal("fullres", row["vs_ref"] >= FULLRES_GOAL, f"<{FULLRES_GOAL:.0%} memcpy")
            # Goal: two threads at 1.8x one thread.
            one = runs.get((cache, w, h, 1), {}).get(group, {}).get(OURS)
            is_threaded = (group in threaded or ALWAYS_THREADED.match(group)) and not NOT_THREADED.match(group)
            big_enough = w * h > 4096 and w >= 192 and h >= 192
            if threads == 2 and one and is_threaded and big_enough and not MOVES.match(group):
                row["scaling"] = ours / one
                target = THREAD_GOAL * (0.75 if CHANNEL_WORKERS.match(group) else 1.0)
                goal("threads", row["scaling"] >= target, f"2t {row['scaling']:.2f}x<{target:.2g}x")
            rows.append(row)
    return rows


def fmt(v, pattern="{:.2f}"):
    return "" if v is None else pattern.format(v)


def machine():
    model = ""
    try:
        with open("/proc/cpuinfo") as f:
            for line in f:
                if line.startswith("model name"):
                    model = line.split(":", 1)[1].strip()
                    break
    except OSError:
        pass
    commit = ""
    try:
        commit = subprocess.run(["git", "rev-parse", "--short", "HEAD"], capture_output=True, text=True,
                                check=False).stdout.strip()
    except OSError:
        pass
    return model, os.cpu_count(), commit


GOAL_NAMES = {
    "peer": "ahead of the best peer",
    "move": f"moves at {MOVE_GOAL:.0%} of memcpy or more",
    "model": f"colour models at {MODEL_GOAL:g}x OpenCV or more",
    "fullres": f"full-resolution RGB <-> YUV/YCbCr at {FULLRES_GOAL:.0%} of memcpy or more",
    "threads": f"2 threads at {THREAD_GOAL:g}x 1 thread or more (threaded families)",
}


def write_markdown(path, rows, runs, busy, args):
    model, cpus, commit = machine()
    configs = sorted(runs, key=config_order)
    out = []
    out.append("# Benchmarks: ours beside the peers and memcpy\n")
    out.append(f"Command: `{args.command}`" + (f" (measuring took {args.seconds} s)" if args.seconds else "") + "  ")
    out.append(f"Rendered by `/usr/bin/python3 scripts/bench_table.py {os.path.relpath(args.directory)}` on "
               f"{datetime.datetime.utcnow():%Y-%m-%d %H:%M} UTC, commit {commit or '?'}, "
               f"{model or 'unknown processor'}, {cpus} cores.\n")
    out.append("Rates are GB/s of source plus destination bytes (the median of the repetitions). "
               "*hot*: calls back to back, the frame stays in the caches; *cold*: every buffer of the call "
               "flushed to memory (clflushopt) before each timed call (LibRaw processes its own copy of the mosaic, "
               "which stays cached). Peers run with the same thread count "
               "(OpenCV's pool, swscale's slice threads, LibRaw's OpenMP team; libyuv has none). "
               "Ratios: ours over the best peer, ours over memcpy of the same bytes (memset for fills). "
               "Flags name the goals a row misses.\n")
    # On a machine shared with other work a single-threaded call waits for
    # the processor: its wall time exceeds its CPU time.
    if busy:
        worst = max(busy.values())
        note = ("the machine was idle enough" if worst < 1.15 else
                "**the machine was busy: take the figures as indicative and re-run on an idle machine**")
        out.append(f"Wall time over CPU time of the hot one-thread entries (median per configuration): "
                   + ", ".join(f"{config_name(c)} {v:.2f}" for c, v in sorted(busy.items(), key=lambda x: config_order(x[0])))
                   + f"; {note}.\n")
    # Summary per goal and configuration.
    out.append("## Summary\n")
    out.append("Rows meeting / missing each goal, per configuration.\n")
    out.append("| goal | " + " | ".join(config_name(c) for c in configs) + " | all |")
    out.append("|---|" + "---:|" * (len(configs) + 1))
    for g, name in GOAL_NAMES.items():
        cells, tot_ok, tot_bad = [], 0, 0
        for c in configs:
            vals = [r["goals"][g] for r in rows if r["config"] == c and g in r["goals"]]
            ok, bad = sum(vals), len(vals) - sum(vals)
            tot_ok, tot_bad = tot_ok + ok, tot_bad + bad
            cells.append(f"{ok} / {bad}" if vals else "")
        out.append(f"| {name} | " + " | ".join(cells) + f" | {tot_ok} / {tot_bad} |")
    out.append("")
    out.append("## All rows\n")
    out.append("| group | config | ours | best peer | peer | memcpy | ours/peer | ours/memcpy | 2t/1t | flags |")
    out.append("|---|---|---:|---|---:|---:|---:|---:|---:|---|")
    for r in sorted(rows, key=lambda r: (r["group"], config_order(r["config"]))):
        out.append("| {} | {} | {} | {} | {} | {} | {} | {} | {} | {} |".format(
            r["group"], config_name(r["config"]), fmt(r["ours"] / 1e9), r["best"] or "",
            fmt(r["peer"] / 1e9 if r["peer"] else None), fmt(r["ref"] / 1e9 if r["ref"] else None),
            fmt(r["vs_peer"]), fmt(r["vs_ref"], "{:.0%}"), fmt(r.get("scaling")),
            "**" + "; ".join(r["flags"]) + "**" if r["flags"] else ""))
    with open(path, "w") as f:
        f.write("\n".join(out) + "\n")


def write_chart(path, rows):
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt

    # The largest even frame on one thread, hot and cold.
    sizes = sorted({(r["config"][1], r["config"][2]) for r in rows}, key=lambda s: (s[0] % 2, -s[0] * s[1]))
    if not sizes:
        return
    w, h = sizes[0]
    data = defaultdict(dict)
    for r in rows:
        cache, rw, rh, t = r["config"]
        if (rw, rh) == (w, h) and t == 1 and r["vs_peer"]:
            data[r["group"]][cache] = r["vs_peer"]
    groups = sorted(data, key=lambda g: data[g].get("hot", data[g].get("cold", 0)))
    if not groups:
        return
    fig, ax = plt.subplots(figsize=(9, 0.16 * len(groups) + 1.5))
    ys = range(len(groups))
    for i, (cache, colour) in enumerate((("hot", "#d95f02"), ("cold", "#1b9e77"))):
        ax.barh([y + (i - 0.5) * 0.4 for y in ys], [data[g].get(cache, 0) for g in groups], height=0.4,
                color=colour, label=cache)
    ax.axvline(1.0, color="black", linewidth=0.8)
    ax.set_xscale("log")
    ax.set_yticks(list(ys))
    ax.set_yticklabels(groups, fontsize=6)
    ax.set_ylim(-0.7, len(groups) - 0.3)
    ax.set_xlabel("ours / best peer (bytes per second; right of 1 = ours faster)")
    ax.set_title(f"{w}x{h}, one thread")
    ax.legend(loc="lower right")
    ax.grid(axis="x", which="both", alpha=0.3)
    fig.tight_layout()
    fig.savefig(path, dpi=110)


def main():
    ap = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    ap.add_argument("directory")
    ap.add_argument("--command", default="scripts/bench.sh")
    ap.add_argument("--seconds", type=int, default=0)
    args = ap.parse_args()
    runs, threaded, busy = load(args.directory)
    if not runs:
        raise SystemExit(f"no JSON runs in {args.directory}")
    rows = analyse(runs, threaded)
    md = os.path.join(args.directory, "table.md")
    write_markdown(md, rows, runs, busy, args)
    write_chart(os.path.join(args.directory, "ratios.png"), rows)
    behind = sum(1 for r in rows if r["flags"])
    print(f"{md}: {len(rows)} rows, {behind} flagged")


if __name__ == "__main__":
    main()
