#!/usr/bin/python3
"""Benchmark report: runs tpxcc_peers at 1920x1080 and 3840x2160 and writes
benchmarks.md (tables of our time, the peer's time and the ratio per family,
and each conversion against the memory-copy floor at the large size) and
benchmarks.png (the ratios per pair with their targets).

Usage: report.py TPXCC_PEERS OUTDIR [--rounds N]
Needs matplotlib (Debian's python3-matplotlib: run it with /usr/bin/python3).
"""
import argparse
import datetime
import json
import os
import platform
import subprocess
import tempfile
import time

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402

SIZES = [(1920, 1080), (3840, 2160)]


def processor():
    with open("/proc/cpuinfo") as f:
        for line in f:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return platform.processor() or platform.machine()


def package_version(name):
    try:
        return subprocess.run(["dpkg-query", "-W", "-f", "${Version}", name],
                               capture_output=True, text=True).stdout.strip() or "unknown"
    except OSError:
        return "unknown"


def load_average():
    with open("/proc/loadavg") as f:
        return f.read().split()[0]


def measure(peers, rounds, tier=None):
    """One run of tpxcc_peers at every size, the library limited to `tier` if given."""
    env = dict(os.environ)
    env.pop("TPXCC_TIER", None)
    if tier:
        env["TPXCC_TIER"] = tier
    with tempfile.TemporaryDirectory() as tmp:
        out = os.path.join(tmp, "peers.json")
        sizes = ["%dx%d" % s for s in SIZES]
        subprocess.run([peers, *sizes, "--rounds", str(rounds), "--json", out], check=True, env=env)
        with open(out) as f:
            return json.load(f)


def key(r):
    return (r["family"], r["ours"], r["peer"], r["width"], r["height"])


def function(name):
    """Our function's full name (some pairs register it without the prefix)."""
    return name if name.startswith("tpxi") else "tpxi" + name


def ratio_cell(r):
    if not r:
        return "-"
    ratio = "%.2f" % (r["our_ms"] / r["peer_ms"])
    return "**%s**" % ratio if float(ratio) > r["target"] else ratio


def family_tables(results, avx2):
    """One table per family: each pair's times and ratio at both sizes, and
    the ratio with the library limited to AVX2 (`avx2`: results by key)."""
    by_pair = {}
    for r in results:
        by_pair.setdefault((r["family"], r["ours"], r["peer"]), {})[(r["width"], r["height"])] = r
    lines = []
    for family in dict.fromkeys(k[0] for k in by_pair):
        lines += ["", "### %s" % family, ""]
        head = "| ours | peer | target |"
        rule = "|---|---|---:|"
        for w, h in SIZES:
            head += " %dx%d ours ms | peer ms | ratio | AVX2 ratio |" % (w, h)
            rule += "---:|---:|---:|---:|"
        lines += [head, rule]
        for (fam, ours, peer), at in by_pair.items():
            if fam != family:
                continue
            row = "| %s | %s | %.2f |" % (function(ours), peer, next(iter(at.values()))["target"])
            for size in SIZES:
                r = at.get(size)
                row += (" %.3f | %.3f | %s | %s |" % (r["our_ms"], r["peer_ms"], ratio_cell(r),
                                                       ratio_cell(avx2.get(key(r)))) if r else " | | | |")
            lines.append(row)
    return lines


def floor_table(results, avx2):
    """Each conversion at the large size against a copy of as many bytes."""
    w, h = SIZES[-1]
    seen = {}
    for r in results:
        if (r["width"], r["height"]) == (w, h) and r["bytes"] and r["ours"] not in seen:
            seen[r["ours"]] = r
    lines = ["| conversion | MB read + written | ours ms | copy ms | ours / copy | AVX2: ours / copy | ours GB/s | copy GB/s |",
             "|---|---:|---:|---:|---:|---:|---:|---:|"]
    for name, r in seen.items():
        gb = r["bytes"] / 1e9
        a = avx2.get(key(r))
        lines.append("| %s | %.1f | %.3f | %.3f | %.2f | %s | %.1f | %.1f |" % (
            function(name), r["bytes"] / 1e6, r["our_ms"], r["floor_ms"], r["our_ms"] / r["floor_ms"],
            "%.2f" % (a["our_ms"] / a["floor_ms"]) if a else "-",
            gb / (r["our_ms"] / 1e3), gb / (r["floor_ms"] / 1e3)))
    return lines


def chart(results, avx2, path):
    """Bars per pair: each size at the best tier, and 1920x1080 at the AVX2 tier."""
    pairs = list(dict.fromkeys((r["ours"], r["peer"]) for r in results))
    series = [("%dx%d" % (w, h), {(r["ours"], r["peer"]): r["our_ms"] / r["peer_ms"]
                                  for r in results if (r["width"], r["height"]) == (w, h)}) for w, h in SIZES]
    if avx2:
        w, h = SIZES[0]
        series.insert(1, ("%dx%d, AVX2 tier" % (w, h), {(r["ours"], r["peer"]): r["our_ms"] / r["peer_ms"]
                                                        for r in avx2.values() if (r["width"], r["height"]) == (w, h)}))
    target = {(r["ours"], r["peer"]): r["target"] for r in results}
    fig, ax = plt.subplots(figsize=(10, 0.14 * len(series) * len(pairs) + 1.5))
    bar = 0.8 / len(series)
    for i, (label, ratio) in enumerate(series):
        ys = [k + (i - (len(series) - 1) / 2) * bar for k in range(len(pairs))]
        ax.barh(ys, [ratio.get(p, 0) for p in pairs], height=bar, label=label,
                color=["#4c72b0", "#55a868", "#dd8452"][i % 3])
    for k, pair in enumerate(pairs):
        ax.plot([target[pair]] * 2, [k - 0.45, k + 0.45], color="black", linewidth=2,
                label="target" if k == 0 else None)
    ax.axvline(1.0, color="grey", linestyle=":", linewidth=1)
    ax.set_xlim(0, max([1.1] + [x * 1.05 for _, ratio in series for x in ratio.values()]))
    ax.set_yticks(range(len(pairs)))
    ax.set_yticklabels(["%s vs %s" % (o.removeprefix("tpxi"), p) for o, p in pairs], fontsize=8)
    ax.invert_yaxis()
    ax.set_xlabel("our time / peer time (lower is better; below 1 is faster than the peer)")
    ax.set_title("tpxcc against libyuv and OpenCV, single-threaded", pad=28)
    ax.legend(loc="lower center", bbox_to_anchor=(0.5, 1.0), ncol=4, frameon=False)
    fig.tight_layout()
    fig.savefig(path, dpi=110)
    plt.close(fig)


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("peers", help="path of the built tpxcc_peers")
    ap.add_argument("outdir", help="directory for benchmarks.md and benchmarks.png")
    ap.add_argument("--rounds", type=int, default=5, help="rounds of 7 runs per side (default 5)")
    args = ap.parse_args()

    load_before, start = load_average(), time.monotonic()
    data = measure(args.peers, args.rounds)
    # On a processor with AVX-512, every pair again with the library limited
    # to AVX2, as it runs on processors without AVX-512.
    avx2 = {}
    if data["tier"].startswith("avx512"):
        avx2 = {key(r): r for r in measure(args.peers, args.rounds, "avx2")["results"]}
    seconds, load_after = time.monotonic() - start, load_average()
    results = data["results"]

    os.makedirs(args.outdir, exist_ok=True)
    chart(results, avx2, os.path.join(args.outdir, "benchmarks.png"))
    big = "%dx%d" % SIZES[-1]
    lines = [
        "# Benchmarks",
        "",
        "Generated by `cmake --build build --target benchmark-report` (bench/report.py); do not edit by hand.",
        "",
        "- Processor: %s (%d logical processors)" % (processor(), os.cpu_count()),
        "- Compiler: %s, Release build; kernel tier used by the library: %s" % (data["compiler"], data["tier"]),
        "- Peers: libyuv %s and OpenCV %s from Debian packages, OpenCV set to 1 thread"
        % (package_version("libyuv-dev"), package_version("libopencv-dev")),
        "- Date: %s UTC; load average %s before and %s after the %.0f s run"
        % (datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d %H:%M"), load_before, load_after, seconds),
        "",
        "Every figure is single-threaded. Each pair is measured in %d rounds; a round runs our conversion 7 times "
        "in a row, then the peer's 7 times, then the memory copy 7 times, so that each side runs as it would on "
        "every frame of a video and all see the same machine state. A time is the median of its %d runs. "
        "Random source images; every buffer is allocated, and each side runs 3 times before timing. A load average well above 0 "
        "means other work shared the machine and the figures are noisy." % (data["rounds"], 7 * data["rounds"]),
        "",
        "## Against the peers",
        "",
        "Ratio = our time / the peer's time: below 1 we are faster. Each pair has a target ratio we aim at or "
        "below; ratios above their target are in **bold**. %s" % (
            "The AVX2 columns are the same pairs with the library limited to AVX2 (`TPXCC_TIER=avx2`, a second run), "
            "as on processors without AVX-512." if avx2 else
            "This processor has no AVX-512: the library's best tier here is the AVX2 tier."),
        "",
        "![ratios per pair](benchmarks.png)",
    ]
    lines += family_tables(results, avx2)
    lines += [
        "",
        "## Against the memory-copy floor (%s)" % big,
        "",
        "A conversion reads its source and writes its destination once; no code can move those bytes faster "
        "than a plain copy. The copy here is a `memcpy` of half the conversion's bytes, so that it reads and "
        "writes as many bytes in total as the conversion does. GB/s counts bytes read plus bytes written.",
        "",
    ]
    lines += floor_table(results, avx2)
    with open(os.path.join(args.outdir, "benchmarks.md"), "w") as f:
        f.write("\n".join(lines) + "\n")
    print("wrote %s and benchmarks.png in %.0f s" % (os.path.join(args.outdir, "benchmarks.md"), seconds))


if __name__ == "__main__":
    main()
