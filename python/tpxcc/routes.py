"""Conversion between pixel formats, as tpxconv does it.

The formats, the conversions and their costs are read from routes.def, the
table tpxconv is built from; the route is the one tpxconv takes (the fewest
computing steps, ties broken the same way), so the bytes are the same.
"""

import ctypes
import functools
import re

import numpy as np

from . import _files, raw

lib = raw.lib
_Size = raw.header.types["TpxSize"]
_Rect = raw.header.types["TpxRect"]
_Planes = ctypes.c_void_p * 3
_Steps = ctypes.c_int * 3
SLACK = 64  # bytes after a scratch frame: repacking reads up to two elements past the last sample


class ConversionError(ValueError):
    """A conversion the formats, sizes or options do not allow (tpxconv's one-line errors)."""


# ---- the table --------------------------------------------------------------

def _parse_table(text):
    entries = []
    for line in text.splitlines():
        m = re.match(r"([A-Z0-9_]+)\((.*)\)\s*$", line.strip())
        if m and not line.startswith("#"):
            args = [a.strip().strip('"') for a in m.group(2).split(",")]
            entries.append((m.group(1), [int(a) if re.fullmatch(r"-?\d+", a) else a for a in args]))
    return entries


class Format:
    """Planes (xdiv, ydiv, elements a sample), channels (component, plane,
    offset, stride), and the packing of grouped rows."""

    def __init__(self, name, nbytes, planes, channels, grid=-1, group="", packing=(0, 0, 1)):
        self.name, self.bytes, self.planes, self.channels = name, nbytes, planes, channels
        self.grid, self.group, self.packing = grid, group, packing
        self.is_bayer, self.is_packed = grid >= 0, packing[0] > 0
        # Pixels per block: width and height must be multiples of these.
        self.block_w = 1 if self.is_bayer else max([1] + [self.comp_xdiv(c) for c in channels])
        self.block_h = max([1] + [self.comp_ydiv(c) for c in channels])
        # A region starts at a multiple of this many pixels.
        self.start_w = packing[0] if self.is_packed else self.block_w
        # One plane of whole pixels: a numpy array (rows, pixels[, elements]) holds it.
        self.shaped = len(planes) == 1 and not self.is_packed and planes[0][0] == 1

    def channel(self, comp):
        return next((c for c in self.channels if c[0] == comp), None)

    def comp_xdiv(self, c):
        xdiv, _, elems = self.planes[c[1]]
        return xdiv * c[3] // elems

    def comp_ydiv(self, c):
        return self.planes[c[1]][1]

    def plane_row_bytes(self, p, w):
        if self.is_packed:
            pixels, nbytes, align = self.packing
            return ((w + pixels - 1) // pixels * nbytes + align - 1) // align * align
        xdiv, _, elems = self.planes[p]
        return w // xdiv * elems * self.bytes

    def plane_bytes(self, p, w, h):
        return self.plane_row_bytes(p, w) * (h // self.planes[p][1])

    def frame_bytes(self, w, h):
        return sum(self.plane_bytes(p, w, h) for p in range(len(self.planes)))

    def dtype(self):
        return np.dtype("<u2") if self.bytes == 2 else np.dtype(np.uint8)

    def shape(self, w, h):
        elems = self.planes[0][2]
        return (h, w, elems) if elems > 1 else (h, w)

    def __repr__(self):
        return "Format(%s)" % self.name


def _formats(entries):
    out = []
    for kind, a in entries:
        if kind == "PACKED":
            name, nbytes, comps = a[0], a[1], a[2:]
            out.append(Format(name, nbytes, [(1, 1, len(comps))], [(c, 0, i, len(comps)) for i, c in enumerate(comps)]))
        elif kind == "PLANAR":
            out.append(Format(a[0], 1, [(1, 1, 1), (a[1], a[2], 1), (a[1], a[2], 1)],
                              [("Y", 0, 0, 1), ("U", 1, 0, 1), ("V", 2, 0, 1)]))
        elif kind == "SEMIPLANAR":
            out.append(Format(a[0], 1, [(1, 1, 1), (2, 2, 2)], [("Y", 0, 0, 1), (a[1], 1, 0, 2), (a[2], 1, 1, 2)]))
        elif kind == "PACKED422":
            out.append(Format(a[0], 1, [(1, 1, 2)], [("Y", 0, a[1], 2), ("U", 0, a[2], 4), ("V", 0, a[3], 4)]))
        elif kind == "GROUPED":
            out.append(Format(a[0], a[1], [(1, 1, 1)], [(a[2], 0, 0, 1)], packing=tuple(a[3:6])))
        elif kind == "BAYER":
            out.append(Format(a[0], a[1], [(1, 1, 1)], [("Mosaic", 0, 0, 1)], raw.constants[a[2]],
                              "bayer8" if a[1] == 1 else "bayer16"))
    return out


_TABLE = _parse_table(_files.read("routes.def"))
FORMATS = _formats(_TABLE)
_INDEX = {f.name: i for i, f in enumerate(FORMATS)}
_COST = {a[0]: a[1] for kind, a in _TABLE if kind == "COST"}
_EDGES = [a for kind, a in _TABLE if kind == "EDGE"]
_GAMMA = [a for kind, a in _TABLE if kind == "GAMMA"]
_DITHERS = ["none", "fs", "jjn", "stucki", "ordered"]


def format_named(name):
    if name not in _INDEX:
        raise ConversionError("unknown pixel format '%s' (known: %s)" % (name, " ".join(_INDEX)))
    return FORMATS[_INDEX[name]]


# ---- views: plane addresses and byte steps of a region ------------------------

class View:
    def __init__(self, fmt, p, step, w, h, mosaic_roi=(0, 0, 0, 0), mosaic_size=(0, 0)):
        self.fmt, self.p, self.step, self.w, self.h = fmt, list(p), list(step), w, h
        self.mosaic_roi, self.mosaic_size = mosaic_roi, mosaic_size

    def roi(self):
        return _Size(self.w, self.h)


def view_of(f, base, fw, fh, x, y, w, h, step0=None):
    """Region (x, y, w, h) of a frame of fw x fh at address `base`, planes
    tightly packed (or one plane with row step `step0`)."""
    p, step, at = [0, 0, 0], [0, 0, 0], 0
    for i, (xdiv, ydiv, elems) in enumerate(f.planes):
        step[i] = f.plane_row_bytes(i, fw) if step0 is None else step0
        p[i] = base + at
        if f.is_packed:
            p[i] += y * step[i] + x // f.packing[0] * f.packing[1]
        elif not f.is_bayer:
            p[i] += y // ydiv * step[i] + x // xdiv * elems * f.bytes
        at += f.plane_bytes(i, fw, fh)
    if f.is_bayer:
        return View(f, p, step, w, h, (x, y, w, h), (fw, fh))
    return View(f, p, step, w, h)


def _frame(f, w, h):
    """A tightly packed frame with slack, and a view of all of it."""
    buf = np.zeros(f.frame_bytes(w, h) + SLACK, np.uint8)
    return buf, view_of(f, buf.ctypes.data, w, h, 0, 0, w, h)


# ---- the argument patterns of routes.def ------------------------------------

def _swap(v):
    return View(v.fmt, [v.p[0], v.p[2], v.p[1]], [v.step[0], v.step[2], v.step[1]], v.w, v.h)


def _pk(v):  # packed: pointer, step
    return [v.p[0], v.step[0]]


def _pl(v):  # planes, a step each
    return [_Planes(*v.p), _Steps(*v.step)]


def _pl1(v):  # planes, one step
    return [_Planes(*v.p), v.step[0]]


def _p2(v):  # luma and chroma-pair planes
    return [v.p[0], v.step[0], v.p[1], v.step[1]]


def _mos(s):
    return [s.p[0], _Rect(*s.mosaic_roi), _Size(*s.mosaic_size), s.step[0]]


def _cdiv(a, b):
    return int(a / b)  # C's division, toward zero


_BGR_WEIGHTS = (ctypes.c_float * 3)(0.114, 0.587, 0.299)  # the fixed gray weights, channels reversed


def _gains(o):
    return (ctypes.c_float * 4)(1, 1, 1, np.float32(o["alpha"]) / np.float32(255))


def _work_buffer(layout, s, o):
    size = ctypes.c_int(0)
    st = lib.tpxiReduceBitsGetBufferSize(layout, s.w, 0, o["dither"], ctypes.byref(size))
    return st, ctypes.create_string_buffer(max(size.value, 0) + 1)


def _reduce16(fn, s, d, o):
    st, buf = _work_buffer(len(s.fmt.channels), s, o)
    return st if st < 0 else fn(*_pk(s), *_pk(d), s.roi(), 0, o["dither"], 256, buf)


def _one_bit(fn, s, d, o):
    st, buf = _work_buffer(1, s, o)
    return st if st < 0 else fn(*_pk(s), *_pk(d), 0, s.roi(), 0, 0, o["dither"], o["threshold"], buf)


_PATTERNS = {
    "C_C": lambda fn, s, d, o: fn(*_pk(s), *_pk(d), s.roi()),
    "C_CA": lambda fn, s, d, o: fn(*_pk(s), *_pk(d), s.roi(), o["alpha"]),
    "C_C_BGR": lambda fn, s, d, o: fn(*_pk(s), *_pk(d), s.roi(), _BGR_WEIGHTS),
    "C_P": lambda fn, s, d, o: fn(*_pk(s), *_pl(d), s.roi()),
    "C_P1": lambda fn, s, d, o: fn(*_pk(s), *_pl1(d), s.roi()),
    "C_Pr": lambda fn, s, d, o: fn(*_pk(s), *_pl(_swap(d)), s.roi()),
    "C_P2": lambda fn, s, d, o: fn(*_pk(s), *_p2(d), s.roi()),
    "P_C": lambda fn, s, d, o: fn(*_pl(s), *_pk(d), s.roi()),
    "P_CA": lambda fn, s, d, o: fn(*_pl(s), *_pk(d), s.roi(), o["alpha"]),
    "Pr_CA": lambda fn, s, d, o: fn(*_pl(_swap(s)), *_pk(d), s.roi(), o["alpha"]),
    "P1_C": lambda fn, s, d, o: fn(*_pl1(s), *_pk(d), s.roi()),
    "P1_CA": lambda fn, s, d, o: fn(*_pl1(s), *_pk(d), s.roi(), o["alpha"]),
    "P2_C": lambda fn, s, d, o: fn(*_p2(s), *_pk(d), s.roi()),
    "P2_CA": lambda fn, s, d, o: fn(*_p2(s), *_pk(d), s.roi(), o["alpha"]),
    "P_P": lambda fn, s, d, o: fn(*_pl(s), *_pl(d), s.roi()),
    "P_P2": lambda fn, s, d, o: fn(*_pl(s), *_p2(d), s.roi()),
    "Pr_P2": lambda fn, s, d, o: fn(*_pl(_swap(s)), *_p2(d), s.roi()),
    "P2_P": lambda fn, s, d, o: fn(*_p2(s), *_pl(d), s.roi()),
    "P2_Pr": lambda fn, s, d, o: fn(*_p2(s), *_pl(_swap(d)), s.roi()),
    "C16_C16A": lambda fn, s, d, o: fn(*_pk(s), *_pk(d), s.roi(), o["alpha"] * 257),
    # v210 steps count 32-bit words, its gray destination's steps 16-bit words.
    "V210_GRAY": lambda fn, s, d, o: fn(s.p[0], _cdiv(s.step[0], 4), d.p[0], _cdiv(d.step[0], 2), s.roi()),
    "MOS_C_GRID": lambda fn, s, d, o: fn(*_mos(s), *_pk(d), s.fmt.grid),
    "MOS_C_GRID0": lambda fn, s, d, o: fn(*_mos(s), *_pk(d), s.fmt.grid, 0),
    "MOS_GAINS_C_GRID": lambda fn, s, d, o: fn(*_mos(s), _gains(o), *_pk(d), s.fmt.grid),
    "REDUCE16": _reduce16,
    "ONEBIT": _one_bit,
}
# 16-bit images are addresses too.
_PATTERNS.update({"C16_C16": _PATTERNS["C_C"], "C16_C16_BGR": _PATTERNS["C_C_BGR"],
                  "MOS16_C16_GRID": _PATTERNS["MOS_C_GRID"], "MOS16_C16_GRID0": _PATTERNS["MOS_C_GRID0"],
                  "MOS16_GAINS_C16_GRID": _PATTERNS["MOS_GAINS_C_GRID"]})


# ---- repacking: samples of one component copied between layouts -------------
#
# The library's gray conversion with a one-hot weight returns the selected
# channel exactly, so a one-pixel-wide ROI with the steps set to the sample
# distances copies one component from one layout into another (as tpxconv).

_SELECT = [(ctypes.c_float * 3)(*row) for row in ((1, 0, 0), (0, 1, 0), (0, 0, 1))]


def _gather(src, src_stride, offset, dst, dst_stride, n, nbytes):
    back = min(offset, 2)
    column = _Size(1, n)
    fn = lib.tpxiColorToGray_8u_C3C1R if nbytes == 1 else lib.tpxiColorToGray_16u_C3C1R
    return fn(src - back * nbytes, src_stride, dst, dst_stride, column, _SELECT[back])


def _fill_alpha(d, alpha):
    zero = np.zeros(d.w * d.fmt.bytes, np.uint8)
    if d.fmt.bytes == 1:
        return lib.tpxiGrayToRGB_8u_C1C4R(zero.ctypes.data, 0, d.p[0], d.step[0], _Size(d.w, d.h), alpha)
    return lib.tpxiGrayToRGB_16u_C1C4R(zero.ctypes.data, 0, d.p[0], d.step[0], _Size(d.w, d.h), alpha * 257)


def _repack(fn, s, d, o):
    fs, fd = s.fmt, d.fmt
    nbytes = fd.bytes
    if fd.channel("A") and not fs.channel("A"):
        st = _fill_alpha(d, o["alpha"])
        if st < 0:
            return st
    for cd in fd.channels:
        cs = fs.channel(cd[0])
        if cs is None:
            continue
        rows, n = d.h // fd.comp_ydiv(cd), d.w // fd.comp_xdiv(cd)
        for r in range(rows):
            sp = s.p[cs[1]] + r * s.step[cs[1]] + cs[2] * nbytes
            dp = d.p[cd[1]] + r * d.step[cd[1]] + cd[2] * nbytes
            st = _gather(sp, cs[3] * nbytes, cs[2], dp, cd[3] * nbytes, n, nbytes)
            if st < 0:
                return st
    return 0


def _repackable(a, b):
    if a is b or a.bytes != b.bytes or a.is_bayer or b.is_bayer or a.is_packed or b.is_packed:
        return False
    for cb in b.channels:
        ca = a.channel(cb[0])
        if ca is None and cb[0] == "A":
            continue
        if ca is None or a.comp_xdiv(ca) != b.comp_xdiv(cb) or a.comp_ydiv(ca) != b.comp_ydiv(cb):
            return False
    return all(ca[0] == "A" or b.channel(ca[0]) for ca in a.channels)


# ---- routes -----------------------------------------------------------------

class Step:
    def __init__(self, src, dst, function, exact, run, in_place=False):
        self.src, self.dst, self.function, self.exact, self.run, self.in_place = src, dst, function, exact, run, in_place
        self.fn = getattr(lib, function, None)

    def __call__(self, s, d, o):
        return self.run(self.fn, s, d, o)


def _repack_step(a, b):
    name = "tpxiColorToGray_8u_C3C1R copy" if a.bytes == 1 else "tpxiColorToGray_16u_C3C1R copy"
    return Step(a, b, name, True, _repack)


def describe(route):
    """"rgb24 -[export]-> yuv444p ...", as tpxconv's route."""
    return (route[0].src.name if route else "") + "".join(" -[%s]-> %s" % (s.function, s.dst.name) for s in route)


def find_route(src, dst, opt):
    """The steps from format `src` to `dst` with the fewest computing steps,
    then the fewest steps (tpxconv's route for the same options)."""
    if dst.name == "monob" and opt["dither"] not in (0, 3):
        raise ConversionError("monob output dithers with none or stucki only")
    return list(_route(src.name, dst.name, opt["matrix"], opt["method"], opt["gamma"]))


@functools.lru_cache(maxsize=None)
def _route(src_name, dst_name, matrix, method, gamma):
    src, dst = format_named(src_name), format_named(dst_name)
    opt = {"matrix": matrix, "method": method}
    route = _cheapest(src, dst, opt) if not (src is dst and not src.is_bayer and not src.is_packed) \
        else [_repack_step(src, dst)]
    if gamma:
        route.append(_gamma_step(dst, gamma))
    return tuple(route)


def _cheapest(src, dst, opt):
    edges = []
    for e_from, e_to, matrix, method, cost, function, pattern in _EDGES:
        if matrix != "Any" and matrix != opt["matrix"]:
            continue
        if method != "Any" and method != opt["method"]:
            continue
        cost = _COST[cost]
        for f in FORMATS:
            if f.name == e_from or f.group == e_from:
                edges.append((cost, Step(f, format_named(e_to), function, cost == _COST["kExact"], _PATTERNS[pattern])))
    for a in FORMATS:
        for b in FORMATS:
            if _repackable(a, b):
                edges.append((_COST["kRepack"], _repack_step(a, b)))
    # Dijkstra over a handful of formats, ties to the lower format index and the earlier edge.
    n, inf = len(FORMATS), float("inf")
    dist, via, done = [inf] * n, [-1] * n, [False] * n
    dist[_INDEX[src.name]] = 0
    while True:
        u = min((i for i in range(n) if not done[i] and dist[i] != inf), key=lambda i: dist[i], default=None)
        if u is None:
            break
        done[u] = True
        for k, (cost, step) in enumerate(edges):
            if _INDEX[step.src.name] != u:
                continue
            v = _INDEX[step.dst.name]
            if dist[u] + cost < dist[v]:
                dist[v], via[v] = dist[u] + cost, k
    target = _INDEX[dst.name]
    if dist[target] == inf or src is dst:
        why = "no conversion from %s to %s in this library" % (src.name, dst.name)
        if opt["matrix"] == "Bt709":
            why += " with BT.709"
        if src.is_bayer and opt["method"] != "Bilinear":
            why += " and this demosaic method" if opt["matrix"] == "Bt709" else " with this demosaic method"
        if src.name == "monob":
            why += " (monob is an output format only)"
        elif dst.name == "v210":
            why += " (v210 is an input format only)"
        elif src.bytes != dst.bytes:
            why += " (16-bit formats convert only among themselves)"
        raise ConversionError(why)
    route, v = [], target
    while v != _INDEX[src.name]:
        step = edges[via[v]][1]
        route.append(step)
        v = _INDEX[step.src.name]
    return route[::-1]


def _gamma_step(f, direction):
    if f.channel("R"):
        for d, nbytes, channels, function in _GAMMA:
            if d == direction and nbytes == f.bytes and channels == len(f.channels):
                return Step(f, f, function, False, lambda fn, s, d, o: fn(s.p[0], s.step[0], s.roi()), True)
    raise ConversionError("gamma corrects RGB outputs (rgb24, bgr24, rgba, bgra, rgb48le, bgra64le), not " + f.name)


def check_route_size(route, src, w, h):
    for f in [src] + [s.dst for s in route]:
        if f.is_bayer and (w < 5 or h < 5):
            raise ConversionError("demosaicing needs at least 5x5 pixels; the region is %dx%d" % (w, h))
        if w % f.block_w or h % f.block_h:
            raise ConversionError("%s needs a width and height in multiples of %dx%d; the region is %dx%d"
                                  % (f.name, f.block_w, f.block_h, w, h))


def run_route(route, src, dst, opt):
    """Converts view src into view dst (same size) along the route."""
    last = len(route)
    while last > 1 and route[last - 1].in_place:
        last -= 1
    cur, scratch = src, []
    for i, step in enumerate(route):
        out = dst
        if i + 1 < last:
            buf, out = _frame(step.dst, src.w, src.h)
            scratch.append(buf)
        st = step(out if step.in_place else cur, out, opt)
        if st < 0:
            raise raw.TpxError(st, step.function)
        cur = out
    del scratch


# ---- the public call --------------------------------------------------------

def options(matrix=601, demosaic="bilinear", alpha=255, dither=None, threshold=128, gamma=None, dst=None):
    """tpxconv's options, checked, as the route and the patterns take them."""
    if str(matrix) not in ("601", "709"):
        raise ConversionError("matrix wants 601 or 709, got '%s'" % matrix)
    if demosaic not in ("bilinear", "vng", "ahd"):
        raise ConversionError("demosaic wants bilinear, vng or ahd, got '%s'" % demosaic)
    if not 0 <= int(alpha) <= 255:
        raise ConversionError("alpha wants 0..255, got '%s'" % alpha)
    if dither is not None and dither not in _DITHERS:
        raise ConversionError("dither wants none, fs, jjn, stucki or ordered, got '%s'" % dither)
    if not 0 <= int(threshold) <= 255:
        raise ConversionError("threshold wants 0..255, got '%s'" % threshold)
    if gamma not in (None, "fwd", "inv"):
        raise ConversionError("gamma wants fwd or inv, got '%s'" % gamma)
    default = 3 if dst is not None and dst.name == "monob" else 4
    return {"matrix": "Bt709" if str(matrix) == "709" else "Bt601", "method": demosaic.capitalize(),
            "alpha": int(alpha), "dither": default if dither is None else _DITHERS.index(dither),
            "threshold": int(threshold), "gamma": {"fwd": "Fwd", "inv": "Inv"}.get(gamma)}


def _address(a):
    return a.__array_interface__["data"][0]


def _flat(image):
    """A flat uint8 view of a buffer (bytes-like or a contiguous array)."""
    if isinstance(image, np.ndarray):
        if not image.flags.c_contiguous:
            raise ConversionError("a flat frame buffer must be contiguous")
        return image.reshape(-1).view(np.uint8)
    return np.frombuffer(image, np.uint8)


def _image_view(f, image, size, what):
    """(array kept alive, view of all of it, width, height) of an input or output image."""
    if size is not None:
        w, h = size
        flat = _flat(image)
        if flat.size != f.frame_bytes(w, h):
            raise ConversionError("a %dx%d %s frame is %d bytes; the %s holds %d"
                                  % (w, h, f.name, f.frame_bytes(w, h), what, flat.size))
        return flat, _address(flat), w, h, None
    if not f.shaped:
        raise ConversionError("%s %s needs size=(width, height) with a flat buffer" % (what, f.name))
    a = np.asarray(image)
    if a.dtype.itemsize != f.bytes or a.dtype.kind not in "ui" or a.ndim not in (2, 3) \
            or a.shape[2:] not in ((), (f.planes[0][2],)) or (a.ndim == 2 and f.planes[0][2] != 1):
        raise ConversionError("%s %s wants an array of shape %s with %d-byte elements, got %s %s"
                              % (what, f.name, f.shape("W", "H"), f.bytes, a.shape, a.dtype))
    if a.strides[1] != f.planes[0][2] * f.bytes or (a.ndim == 3 and a.strides[2] != f.bytes):
        raise ConversionError("the pixels of each row of the %s must be contiguous" % what)
    return a, _address(a), a.shape[1], a.shape[0], a.strides[0]


def convert(image, src_fmt, dst_fmt, size=None, roi=None, out=None, **opts):
    """Converts one frame from `src_fmt` to `dst_fmt` (ffmpeg pix_fmt names,
    as tpxconv). `image` is a numpy array (rows, pixels[, elements]) of a
    one-plane format, or a flat buffer of the raw frame with size=(width,
    height). Options: matrix (601, 709), demosaic (bilinear, vng, ahd), alpha,
    dither (none, fs, jjn, stucki, ordered), threshold, gamma (fwd, inv), roi
    (x, y, w, h of the input). Returns a new array (one-plane formats shaped,
    others the flat bytes of the raw frame), or writes into `out`."""
    src, dst = format_named(src_fmt), format_named(dst_fmt)
    opt = options(dst=dst, **opts)
    keep, base, fw, fh, step0 = _image_view(src, image, size, "input")
    x, y, w, h = (0, 0, fw, fh) if roi is None else roi
    if roi is not None:
        if w < 1 or h < 1 or x < 0 or y < 0 or x + w > fw or y + h > fh:
            raise ConversionError("roi reaches outside the %dx%d input" % (fw, fh))
        if x % src.start_w or y % src.block_h:
            raise ConversionError("roi of %s must start at multiples of %dx%d" % (src.name, src.start_w, src.block_h))
    route = find_route(src, dst, opt)
    check_route_size(route, src, w, h)
    sv = view_of(src, base, fw, fh, x, y, w, h, step0)
    if route[0].run is _repack:  # repacking reads past the last sample: give it a frame with slack
        buf, copy = _frame(src, w, h)
        run_route([_repack_step(src, src)], sv, copy, opt)
        keep, sv = buf, copy
    if out is None:
        out = np.zeros(dst.shape(w, h) if dst.shaped else dst.frame_bytes(w, h),
                       dst.dtype() if dst.shaped else np.uint8)
    _, dbase, _, _, dstep = _image_view(dst, out, None if dst.shaped and out.ndim > 1 else (w, h), "output")
    if dst.shaped and out.ndim > 1 and out.shape[:2] != (h, w):
        raise ConversionError("the output is %dx%d, the region %dx%d" % (out.shape[1], out.shape[0], w, h))
    run_route(route, sv, view_of(dst, dbase, w, h, 0, 0, w, h, dstep), opt)
    del keep
    return out
