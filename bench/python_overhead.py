"""Figures for the Python package, at 1920x1080:

- the time of one NV12 to RGB conversion through tpxcc.raw, the bare ctypes
  function and tpxcc.convert, and of the same calls on a 2x2 image (the
  Python side's cost), against the C call's time from tpxcc_bench (Google
  Benchmark, the same export at the same size);
- Dask throughput for 32 NV12 files to RGB with one and with two workers:
  the local threaded scheduler, and a distributed LocalCluster (one thread a
  worker; a worker per process unless --threads-only); files of --frames
  frames in a scratch folder (--dir).

Run from the build folder's environment, for instance
    TPXCC_LIBRARY=build/libtpxcc.so PYTHONPATH=python python3 bench/python_overhead.py build/bench/tpxcc_bench
"""

import argparse
import contextlib
import json
import os
import shutil
import subprocess
import tempfile
import time

import numpy as np

import tpxcc
from tpxcc import raw

W, H = 1920, 1080
EXPORT = "tpxiYCbCr420ToRGB_8u_P2C3R"


def best(fn, seconds=2.0):
    """The median of the per-call times of batches run for about `seconds`."""
    fn()
    start = time.perf_counter()
    fn()
    per = max(time.perf_counter() - start, 1e-6)
    reps = max(1, int(0.05 / per))
    times, end = [], time.perf_counter() + seconds
    while time.perf_counter() < end or len(times) < 5:
        t = time.perf_counter()
        for _ in range(reps):
            fn()
        times.append((time.perf_counter() - t) / reps)
    return float(np.median(times))


def c_time(bench):
    out = subprocess.run([bench, "--benchmark_filter=^%s$" % EXPORT, "--benchmark_format=json",
                          "--benchmark_repetitions=5", "--benchmark_report_aggregates_only=true"],
                         capture_output=True, check=True, text=True).stdout
    for b in json.loads(out)["benchmarks"]:
        if b["name"].endswith("_median"):
            return b["real_time"] * {"ms": 1e-3, "us": 1e-6, "ns": 1e-9}[b["time_unit"]]
    raise RuntimeError("no median in tpxcc_bench's output")


def calls(w, h):
    """The three Python calls of one NV12 to RGB conversion of w x h."""
    rng = np.random.default_rng(1)
    y = rng.integers(0, 256, (h, w), np.uint8)
    uv = rng.integers(0, 256, (h // 2, w), np.uint8)
    rgb = np.empty((h, w, 3), np.uint8)
    flat = np.concatenate([y.reshape(-1), uv.reshape(-1)])
    fn = getattr(raw.lib, EXPORT)
    args = (y.ctypes.data, w, uv.ctypes.data, w, rgb.ctypes.data, w * 3, raw.header.types["TpxSize"](w, h))
    return {"bare ctypes function": lambda: fn(*args),
            "tpxcc.raw": lambda: getattr(raw, EXPORT)(y, uv, rgb),
            "tpxcc.convert": lambda: tpxcc.convert(flat, "nv12", "rgb24", size=(w, h), out=rgb)}


def overhead(bench):
    """Times at 1920x1080, and the cost of the Python side alone: the same
    calls on a 2x2 image, where the conversion itself takes well under a
    microsecond (a bound on the overhead that machine noise moves less)."""
    t_c = c_time(bench) if bench else None
    print("NV12 to RGB, one call (medians):")
    if t_c:
        print("  C (tpxcc_bench, %dx%d)        %9.1f us" % (W, H, t_c * 1e6))
    big, small = calls(W, H), calls(2, 2)
    for name in big:
        t_big, t_small = best(big[name]), best(small[name], 1.0)
        share = "  = %.1f%% of the C call" % (t_small / t_c * 100) if t_c else ""
        print("  %-22s %dx%d %9.1f us; 2x2 %6.1f us%s" % (name, W, H, t_big * 1e6, t_small * 1e6, share))


def python_threads():
    """64 conversions through tpxcc.raw on one and on two Python threads:
    ctypes releases the GIL during the call."""
    from concurrent.futures import ThreadPoolExecutor
    rates = {}
    for n in (1, 2):
        jobs = [calls(W, H)["tpxcc.raw"] for _ in range(n)]
        with ThreadPoolExecutor(n) as pool:
            list(pool.map(lambda j: j(), jobs))
            t = time.perf_counter()
            list(pool.map(lambda k: jobs[k % n](), range(64)))
            rates[n] = 64 / (time.perf_counter() - t)
    print("tpxcc.raw on Python threads: 1 thread %.0f/s, 2 threads %.0f/s (%.2fx)" % (rates[1], rates[2],
                                                                                     rates[2] / rates[1]))


def throughput(files, frames, threads_only, folder):
    import dask
    import distributed
    from tpxcc import dask as tdask
    work = tempfile.mkdtemp(prefix="tpxcc-dask-", dir=folder)
    try:
        rng = np.random.default_rng(2)
        frame = tpxcc.format_named("nv12").frame_bytes(W, H)
        paths = []
        for i in range(files):
            paths.append(os.path.join(work, "f%02d.nv12" % i))
            rng.integers(0, 256, frame * frames, np.uint8).tofile(paths[-1])
        print("Dask, %d files of %d frame%s of %dx%d NV12 to RGB, files a second:" % (files, frames, "s"[:frames - 1],
                                                                                   W, H))
        for where in ("threaded scheduler", "LocalCluster"):
            rates = {}
            for workers in (1, 2):
                with contextlib.ExitStack() as stack:
                    run = {"size": (W, H), "progress": False, "workers": workers}
                    if where == "LocalCluster":
                        # Tasks of a few milliseconds: without queuing on the
                        # scheduler, each completed task does not wait for a
                        # round trip to hand its worker the next one.
                        stack.enter_context(dask.config.set({"distributed.scheduler.worker-saturation": float("inf")}))
                        cluster = stack.enter_context(distributed.LocalCluster(
                            n_workers=workers, threads_per_worker=1, processes=not threads_only,
                            dashboard_address=None))
                        run = {"size": (W, H), "progress": False, "client": stack.enter_context(distributed.Client(cluster))}
                    tdask.convert_files(paths[:2 * workers], os.path.join(work, "warm"), "nv12", "rgb24", **run)
                    best_time = float("inf")
                    for k in range(3):  # the best of three runs: a run lasts a fraction of a second
                        # Into a new folder each time, as a batch conversion
                        # writes (replacing old files costs their pages too).
                        out = os.path.join(work, "out%d" % k)
                        t = time.perf_counter()
                        tdask.convert_files(paths, out, "nv12", "rgb24", **run)
                        best_time = min(best_time, time.perf_counter() - t)
                        shutil.rmtree(out)
                    rates[workers] = files / best_time
            kind = " (worker threads)" if threads_only and where == "LocalCluster" else ""
            print("  %-20s 1 worker %6.1f, 2 workers %6.1f: %.2fx%s" % (where, rates[1], rates[2], rates[2] / rates[1],
                                                                       kind))
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    p = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    p.add_argument("bench", nargs="?", help="build/bench/tpxcc_bench, for the C call's time")
    p.add_argument("--files", type=int, default=32)
    p.add_argument("--frames", type=int, default=1, help="frames a file")
    p.add_argument("--threads-only", action="store_true", help="workers as threads of this process")
    p.add_argument("--skip-dask", action="store_true")
    p.add_argument("--dir", help="folder for the files (default: the temporary folder; /dev/shm leaves the disk out)")
    a = p.parse_args()
    overhead(a.bench)
    python_threads()
    if not a.skip_dask:
        throughput(a.files, a.frames, a.threads_only, a.dir)
