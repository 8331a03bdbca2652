"""tpxcc.dask: files on a LocalCluster of two worker processes and arrays on
the threaded scheduler give the bytes of tpxcc.convert."""

import os

import numpy as np
import pytest

import tpxcc

pytest.importorskip("dask", reason="Dask is not installed (Debian: python3-dask)")
distributed = pytest.importorskip("distributed", reason="Dask's distributed is not installed (python3-distributed)")
tdask = pytest.importorskip("tpxcc.dask")

W, H = 32, 16


def frames(n, fmt="nv12", seed=5):
    size = tpxcc.format_named(fmt).frame_bytes(W, H)
    return np.random.default_rng(seed).integers(0, 256, (n, size), np.uint8)


def test_files_on_a_local_cluster(tmp_path):
    paths = []
    for i in range(4):  # one, two and three frames a file
        paths.append(str(tmp_path / ("clip%d.nv12" % i)))
        frames(1 + i % 3, seed=i).tofile(paths[-1])
    opts = {"size": (W, H), "matrix": 601, "alpha": 40}
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster, \
            distributed.Client(cluster) as client:
        outs = tdask.convert_files(paths, str(tmp_path / "out"), "nv12", "bgra", client=client, progress=False, **opts)
    assert [os.path.basename(p) for p in outs] == ["clip%d.bgra" % i for i in range(4)]
    for src, out in zip(paths, outs):
        data = np.fromfile(src, np.uint8).reshape(-1, frames(1).shape[1])
        expect = np.concatenate([tpxcc.convert(f, "nv12", "bgra", **opts).reshape(-1) for f in data])
        assert np.array_equal(np.fromfile(out, np.uint8), expect)
    assert not any(p.endswith(".part") for p in os.listdir(tmp_path / "out"))


def test_arrays_in_blocks_of_frames():
    import dask.array as da
    flat = frames(5)
    got = tdask.convert_array(da.from_array(flat, chunks=(2, -1)), "nv12", "rgb24", size=(W, H), roi=(0, 2, 16, 8))
    assert got.shape == (5, 8, 16, 3) and got.chunks[0] == (2, 2, 1)
    expect = np.stack([tpxcc.convert(f, "nv12", "rgb24", size=(W, H), roi=(0, 2, 16, 8)) for f in flat])
    assert np.array_equal(got.compute(scheduler="threads"), expect)
    shaped = da.from_array(expect, chunks=(3, 4, 16, 3))  # chunks across rows too
    assert np.array_equal(tdask.convert_array(shaped, "rgb24", "gray").compute(),
                          np.stack([tpxcc.convert(f, "rgb24", "gray") for f in expect]))
