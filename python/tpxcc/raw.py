"""Every export of libtpxcc, callable with numpy arrays.

The signatures come from the library's header (tpxcc.h, installed next to this
package), parsed once at import time. A function takes the C arguments in
their C order, with these changes:

- An image pointer and its step are one argument: a numpy array whose first
  axis is the rows (the pointer is its first element, the step its row
  stride, negative for a view that walks upwards); the rest of each row must
  be contiguous. A plane array (``pDst[3]``) takes a sequence of such arrays;
  where the planes share one step they must have the same row stride.
- ``roiSize`` may be left out: it is then the first image's
  ``(shape[1], shape[0])``, which is the pixel size where the array is shaped
  (rows, pixels[, channels]).
- Other pointers (coefficients, work buffers, a ``pBufferSize`` to fill) take
  numpy arrays, or sequences that are copied into one of the C type.
- Structures (TpxSize, TpxRect, ...) take tuples.

A call returns the status: ``Status.tpxStatusOk`` (0) or a warning (a positive
``Status``, still a true value); a negative status raises ``TpxError``.
``lib`` holds the bare ctypes functions (pointers as integers), which the rest
of the package calls.
"""

import ctypes
import os
import re
from enum import IntEnum

import numpy as np

from . import _files

_SCALARS = {
    "Tpx8u": ctypes.c_uint8, "Tpx8s": ctypes.c_int8, "Tpx16u": ctypes.c_uint16, "Tpx16s": ctypes.c_int16,
    "Tpx32u": ctypes.c_uint32, "Tpx32s": ctypes.c_int32, "Tpx64s": ctypes.c_int64, "Tpx32f": ctypes.c_float,
    "Tpx64f": ctypes.c_double, "uint8_t": ctypes.c_uint8, "int8_t": ctypes.c_int8, "uint16_t": ctypes.c_uint16,
    "int16_t": ctypes.c_int16, "uint32_t": ctypes.c_uint32, "int32_t": ctypes.c_int32, "int64_t": ctypes.c_int64,
    "int": ctypes.c_int, "char": ctypes.c_char, "TpxStatus": ctypes.c_int32,
}
_DTYPES = {name: np.dtype(ct) for name, ct in _SCALARS.items() if name != "char"}


class Header:
    """Enumerations, structures and function declarations of a C header."""

    def __init__(self, text):
        text = re.sub(r"/\*.*?\*/|//[^\n]*", " ", text, flags=re.S)
        text = re.sub(r"^\s*#.*$", " ", text, flags=re.M)
        self.constants = {}
        self.enums = {}  # typedef name of an enum -> {constant: value}
        for m in re.finditer(r"(?:typedef\s+)?enum\s*(\w*)\s*\{([^}]*)\}\s*(\w*)\s*;", text):
            values, last = {}, -1
            for item in filter(None, (i.strip() for i in m.group(2).split(","))):
                name, _, value = (p.strip() for p in item.partition("="))
                last = int(value, 0) if value else last + 1
                values[name] = last
            self.constants.update(values)
            if m.group(3):
                self.enums[m.group(3)] = values
        self.types = dict(_SCALARS)
        for name in self.enums:
            self.types[name] = ctypes.c_int
        for m in re.finditer(r"typedef\s+struct\s+\w*\s*\{([^}]*)\}\s*(\w+)\s*;", text):
            fields = []
            for decl in filter(None, (d.strip() for d in m.group(1).split(";"))):
                ctype, name = self._decl(decl)
                fields.append((name, ctype))
            self.types[m.group(2)] = type(m.group(2), (ctypes.Structure,), {"_fields_": fields})
        self.functions = {}
        for m in re.finditer(r"TPXCC_API\s+([^;()]+?)\s*\b(\w+)\s*\(([^)]*)\)\s*;", text):
            params = [] if m.group(3).strip() in ("", "void") else [self._param(p) for p in m.group(3).split(",")]
            self.functions[m.group(2)] = (m.group(1).strip(), params)

    def _decl(self, decl):
        """The ctypes type and name of a structure field."""
        m = re.match(r"(?:const\s+)?(\w+)\s*(\*?)\s*(?:const\s+)?(\w+)\s*(?:\[(\d+)\])?$", decl)
        base, star, name, count = m.groups()
        ctype = self.types[base]
        if star:
            ctype = ctypes.c_char_p if base == "char" else ctypes.POINTER(ctype)
        return (ctype * int(count) if count else ctype), name

    @staticmethod
    def _param(text):
        """(name, base type, pointer, array dimensions, const) of a parameter."""
        m = re.match(r"\s*(const\s+)?(\w+)\s*(\*?)\s*(?:const\s+)?(\w+)\s*((?:\[\d*\])*)\s*$", text)
        if not m:
            raise ValueError("cannot read parameter '%s'" % text.strip())
        const, base, star, name, dims = m.groups()
        return name, base, bool(star), [int(d) for d in re.findall(r"\[(\d+)\]", dims)], bool(const)


def _load_library():
    path = os.environ.get("TPXCC_LIBRARY")
    candidates = [path] if path else _files.library_candidates()
    errors = []
    for candidate in candidates:
        try:
            # The companion libtpxcore next to it first: an installed library has no run path.
            core = os.path.join(os.path.dirname(candidate), "libtpxcore.so")
            if os.path.dirname(candidate) and os.path.exists(core):
                ctypes.CDLL(core, mode=ctypes.RTLD_GLOBAL)
            return ctypes.CDLL(candidate)
        except OSError as e:
            errors.append(str(e))
    raise ImportError("libtpxcc.so not found (set TPXCC_LIBRARY to its path): " + "; ".join(errors))


header = Header(_files.read("tpxcc.h"))
Status = IntEnum("Status", {k: v for k, v in header.constants.items() if k.startswith("tpxStatus")})
constants = header.constants
_library = _load_library()


class TpxError(Exception):
    """A negative status of a library call: ``name``, ``status`` and the ``function``."""

    def __init__(self, status, function=""):
        try:
            self.name = Status(status).name
        except ValueError:
            self.name = "unknown status"
        self.status = int(status)
        self.function = function
        super().__init__("%s%s (%d)" % (function + ": " if function else "", self.name, self.status))


_STATUS = {int(v): v for v in Status}


def check(status, function=""):
    """Raises TpxError for a negative status; returns the status otherwise."""
    if status < 0:
        raise TpxError(status, function)
    return _STATUS.get(status, status)


def _row_address(a, dtype, fname):
    """Address of the first element of a numpy array whose rows are
    contiguous, and its row step."""
    if type(a) is not np.ndarray and not isinstance(a, np.ndarray):
        raise TypeError("%s: an image must be a numpy array, not %s" % (fname, type(a).__name__))
    if dtype is not None and a.dtype != dtype:
        raise TypeError("%s: expected %s arrays, got %s" % (fname, dtype, a.dtype))
    strides, expect = a.strides, a.itemsize
    if not (a.ndim == 2 and strides[1] == expect):  # else the common case: rows of single samples
        for extent, stride in zip(a.shape[:0:-1], strides[:0:-1]):
            if extent > 1 and stride != expect:
                raise ValueError("%s: the pixels of a row must be contiguous (strides %s)" % (fname, strides))
            expect *= extent
    return a.__array_interface__["data"][0], (strides[0] if strides else 0)


def _dense(v, dtype, const, keep, fname):
    """The address of a contiguous array of the C type (any type for bytes);
    what the function only reads may be any sequence, which is copied."""
    if isinstance(v, np.ndarray) and v.flags.c_contiguous and (dtype is None or v.dtype == dtype):
        return v.__array_interface__["data"][0]
    if not const:
        raise TypeError("%s: a written argument must be a contiguous %s array" % (fname, dtype or "byte"))
    a = np.ascontiguousarray(v, dtype=dtype or np.uint8)
    keep.append(a)
    return a.ctypes.data


class _Binder:
    """Turns the Python arguments of one export into its C arguments: one
    converter for each argument the caller gives."""

    def __init__(self, fname, restype, params):
        self.fname = fname
        names = [p[0] for p in params]
        step_of = {}  # index of an image pointer -> index of its step
        for i, (name, base, star, dims, _) in enumerate(params):
            if (star or dims) and name.startswith("p") and len(name) > 1:
                step = name[1].lower() + name[2:] + "Step"
                if step in names:
                    step_of[i] = names.index(step)
        self.public = [i for i in range(len(params)) if i not in step_of.values()]
        self.names = [names[i] for i in self.public]
        self.index = {names[i]: k for k, i in enumerate(self.public)}
        self.roi = self.index.get("roiSize")
        self.size = len(params)
        self.converters = [self._converter(i, params, step_of) for i in self.public]
        self.argtypes = [ctypes.c_void_p if (star or dims) else header.types[base]
                         for name, base, star, dims, _ in params]  # C passes arrays as pointers
        self.restype = header.types.get(restype.replace("const ", "").rstrip("*").strip(), ctypes.c_int32)
        if restype.endswith("*"):
            self.restype = ctypes.POINTER(self.restype)

    def _converter(self, i, params, step_of):
        """A function (value, C arguments, arrays to keep) -> the image it
        was, if any; it stores the C argument (and step) of parameter i."""
        name, base, star, dims, const = params[i]
        fname, dtype = self.fname, (None if base == "Tpx8u" and not (i in step_of) else _DTYPES.get(base))
        ctype = header.types.get(base)
        if i in step_of and star and dims:  # a plane array with a step each or one shared step
            s, step_array = step_of[i], ctypes.c_int * params[step_of[i]][3][0] if params[step_of[i]][3] else None

            def planes(v, out, keep):
                pairs = [_row_address(a, dtype, fname) for a in v]
                out[i] = (ctypes.c_void_p * dims[0])(*(p for p, _ in pairs))
                if step_array:
                    out[s] = step_array(*(st for _, st in pairs))
                elif len({st for _, st in pairs}) > 1:
                    raise ValueError("%s: the planes of %s share one step" % (fname, name))
                else:
                    out[s] = pairs[0][1]
                return v[0]
            return planes
        if i in step_of:
            s = step_of[i]

            def image(v, out, keep):
                out[i], out[s] = _row_address(v, dtype, fname)
                return v
            return image
        if star and dims:  # planes of tightly packed rows
            def dense_planes(v, out, keep):
                out[i] = (ctypes.c_void_p * dims[0])(*(_dense(a, dtype, const, keep, fname) for a in v))
                return v[0]
            return dense_planes
        if star or dims:
            def dense(v, out, keep):
                out[i] = None if v is None else _dense(v, dtype, const, keep, fname)
                return v if isinstance(v, np.ndarray) and v.ndim >= 2 else None
            return dense
        if isinstance(ctype, type) and issubclass(ctype, ctypes.Structure):
            def struct(v, out, keep):
                out[i] = v if isinstance(v, ctypes.Structure) else ctype(*v)
            return struct

        def scalar(v, out, keep):
            out[i] = v
        return scalar

    def bind(self, args, kwargs):
        values = list(args) + [_MISSING] * (len(self.public) - len(args))
        if len(args) > len(self.public):
            raise TypeError("%s takes %d arguments: %s" % (self.fname, len(self.public), ", ".join(self.names)))
        for key, v in kwargs.items():
            if key not in self.index:
                raise TypeError("%s has no argument %s" % (self.fname, key))
            values[self.index[key]] = v
        out, keep, first = [None] * self.size, [], None
        for k, (v, convert) in enumerate(zip(values, self.converters)):
            if v is _MISSING:
                if k == self.roi:
                    continue
                raise TypeError("%s: missing argument %s" % (self.fname, self.names[k]))
            image = convert(v, out, keep)
            if first is None:
                first = image
        if self.roi is not None and values[self.roi] is _MISSING:
            if first is None:
                raise TypeError("%s: give roiSize" % self.fname)
            out[self.public[self.roi]] = _Size(first.shape[1], first.shape[0])
        return out, keep


_MISSING = object()
_Size = header.types["TpxSize"]


class _Namespace:
    pass


lib = _Namespace()  # the bare ctypes functions


def _make(fname, restype, params):
    binder = _Binder(fname, restype, params)
    cfunc = getattr(_library, fname)
    cfunc.argtypes = binder.argtypes
    cfunc.restype = binder.restype
    setattr(lib, fname, cfunc)
    if restype != "TpxStatus":
        return cfunc

    def call(*args, **kwargs):
        cargs, keep = binder.bind(args, kwargs)
        st = cfunc(*cargs)
        del keep
        return check(st, fname)

    call.__name__ = call.__qualname__ = fname
    call.__doc__ = "%s(%s)" % (fname, ", ".join(binder.names))
    return call


for _name, (_restype, _params) in header.functions.items():
    globals()[_name] = _make(_name, _restype, _params)

__all__ = ["TpxError", "Status", "check", "lib", "header", "constants"] + list(header.functions)
