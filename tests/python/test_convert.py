"""tpxcc.convert against tpxconv on the same frames: the same bytes for
routes of every kind and the options; arrays with negative steps, out=,
errors; and the package installed by cmake --install."""

import os
import subprocess
import sys

import numpy as np
import pytest

import tpxcc

W, H = 24, 8


def tpxconv(tmp_path, data, src, dst, opts):
    flags = []
    for k, v in opts.items():
        flags += ["--" + k, "%d,%d,%d,%d" % v if k == "roi" else str(v)]
    data.tofile(tmp_path / "in")
    subprocess.run([os.environ["TPXCONV"], str(tmp_path / "in"), str(tmp_path / "out"), "--pix-fmt", src,
                    "--size", "%dx%d" % (W, H), "--to", dst] + flags, check=True, capture_output=True)
    return np.fromfile(tmp_path / "out", np.uint8)


def frame(fmt, seed=1):
    return np.random.default_rng(seed).integers(0, 256, tpxcc.format_named(fmt).frame_bytes(W, H), np.uint8)


@pytest.mark.parametrize("src, dst, opts", [
    ("nv12", "rgb24", {}),                                  # one export
    ("rgb24", "bgra", {"alpha": 90}),                       # repacking, alpha filled
    ("yuyv422", "nv21", {}),                                # chroma layouts, resampled
    ("bgr24", "nv12", {"matrix": 709}),                     # BT.709 encoder
    ("uyvy422", "gray", {"roi": (4, 2, 16, 4)}),            # through RGB to gray, a region
    ("bayer_grbg8", "rgba", {"demosaic": "vng", "alpha": 7}),
    ("bayer_rggb16le", "rgb24", {"demosaic": "ahd", "dither": "fs"}),
    ("rgb48le", "bgra", {"dither": "ordered", "gamma": "inv"}),
    ("yuv420p", "monob", {"threshold": 99}),
    ("yuv444p", "yuv444p", {"roi": (2, 1, 8, 5)}),          # a copy of a region
])
def test_same_bytes_as_tpxconv(tmp_path, src, dst, opts):
    data = frame(src)
    got = tpxcc.convert(data, src, dst, size=(W, H), **opts)
    assert np.array_equal(got.reshape(-1).view(np.uint8), tpxconv(tmp_path, data, src, dst, opts))


def test_shaped_arrays_negative_steps_and_out():
    rgb = frame("rgb24").reshape(H, W, 3)
    flipped = np.ascontiguousarray(rgb[::-1])[::-1]  # the same pixels, rows stored upside down
    expect = tpxcc.convert(rgb, "rgb24", "yuv420p")
    assert np.array_equal(tpxcc.convert(flipped, "rgb24", "yuv420p"), expect)
    assert np.array_equal(tpxcc.convert(rgb.reshape(-1), "rgb24", "yuv420p", size=(W, H)), expect)
    out = np.zeros((H, W, 4), np.uint8)[::-1]
    assert tpxcc.convert(rgb, "rgb24", "bgra", out=out) is out
    assert np.array_equal(out[..., 2::-1], rgb) and (out[..., 3] == 255).all()


@pytest.mark.parametrize("call, message", [
    (lambda: tpxcc.convert(frame("gray"), "grey", "rgb24", size=(W, H)), "unknown pixel format 'grey'"),
    (lambda: tpxcc.convert(frame("gray"), "gray", "gray16le", size=(W, H)), "16-bit formats convert only"),
    (lambda: tpxcc.convert(frame("gray")[1:], "gray", "rgb24", size=(W, H)), "frame is 192 bytes"),
    (lambda: tpxcc.convert(frame("nv12"), "nv12", "rgb24"), "needs size=(width, height)"),
    (lambda: tpxcc.convert(frame("nv12"), "nv12", "rgb24", size=(W, H), roi=(1, 0, 4, 4)), "multiples of 2x2"),
    (lambda: tpxcc.convert(frame("rgb24"), "rgb24", "bgr24", size=(W, H), matrix=2020), "matrix wants 601 or 709"),
])
def test_errors(call, message):
    with pytest.raises(tpxcc.ConversionError, match=message.replace("(", r"\(").replace(")", r"\)")):
        call()


def test_installed_package_finds_its_library_and_data(tmp_path):
    build = os.environ.get("TPXCC_BUILD_DIR")
    if not build:
        pytest.skip("TPXCC_BUILD_DIR not set: the install is not checked")
    subprocess.run(["cmake", "--install", build, "--prefix", str(tmp_path)], check=True, capture_output=True)
    site = next(tmp_path.glob("lib/python3*/dist-packages"))
    env = {k: v for k, v in os.environ.items() if k not in ("TPXCC_LIBRARY", "PYTHONPATH")}
    code = "import tpxcc, numpy; print(tpxcc.convert(numpy.full((2, 2), 9, numpy.uint8), 'gray', 'rgb24').sum())"
    out = subprocess.run([sys.executable, "-c", code], cwd=str(site), env=env, check=True, capture_output=True)
    assert out.stdout.strip() == b"108"
