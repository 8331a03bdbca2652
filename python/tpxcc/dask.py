"""Batch conversion on Dask: one task per file, or per block of frames.

Without a client the work runs on Dask's local threaded scheduler (the
library releases the GIL, so the threads run at once); with a
``distributed.Client`` it runs on that cluster's workers, which need this
package and the library. The bytes are those of ``tpxcc.convert``.
"""

import contextlib
import os
import threading

import dask
import dask.array as da
import numpy as np

from .routes import ConversionError, convert, format_named


def _out_size(size, options):
    roi = options.get("roi")
    return (roi[2], roi[3]) if roi else size


_buffers = threading.local()


def _buffer(name, nbytes):
    """A byte buffer of this thread's, reused from file to file: a fresh one
    each time costs page faults that can take longer than the conversion
    (Dask's workers return freed memory to the system at once)."""
    b = getattr(_buffers, name, None)
    if b is None or b.size < nbytes:
        b = np.empty(nbytes, np.uint8)
        setattr(_buffers, name, b)
    return b[:nbytes]


def convert_file(path, out_path, src_fmt, dst_fmt, size, **options):
    """Converts every raw frame of `path` (frames of `size`) into `out_path`,
    written under a temporary name and renamed when complete."""
    src, dst = format_named(src_fmt), format_named(dst_fmt)
    frame = src.frame_bytes(*size)
    total = os.path.getsize(path)
    if total == 0 or total % frame:
        raise ConversionError("%s: %d bytes is not a whole number of %dx%d %s frames of %d bytes"
                              % (path, total, size[0], size[1], src_fmt, frame))
    data, out = _buffer("in", frame), _buffer("out", dst.frame_bytes(*_out_size(size, options)))
    temp = out_path + ".part"
    try:
        with open(path, "rb") as f, open(temp, "wb") as g:
            for _ in range(total // frame):
                if f.readinto(data) != frame:
                    raise ConversionError("%s: truncated frame" % path)
                g.write(convert(data, src_fmt, dst_fmt, size=size, out=out, **options))
        os.replace(temp, out_path)
    finally:
        if os.path.exists(temp):
            os.remove(temp)
    return out_path


def _compute(tasks, client, progress, workers=None):
    if client is not None:
        futures = client.compute(tasks)
        if progress:
            from distributed import progress as bar
            bar(futures)
        return client.gather(futures)
    from dask.diagnostics import ProgressBar
    with ProgressBar() if progress else contextlib.nullcontext():
        return list(dask.compute(*tasks, scheduler="threads", num_workers=workers))


def convert_files(paths, dst_dir, src_fmt, dst_fmt, size=None, client=None, progress=True, workers=None, **options):
    """Converts raw files of `src_fmt` frames (size=(width, height)) to
    `dst_fmt`, one task per file, into dst_dir/<name>.<dst_fmt>; returns the
    output paths. Runs on `client`, or on the local threaded scheduler with
    `workers` threads (default: one a core). Options as tpxcc.convert.
    A file is a task of milliseconds: a cluster's scheduler keeps its
    workers busy only with worker saturation `inf` (see the README)."""
    if size is None:
        raise ConversionError("raw files need size=(width, height)")
    os.makedirs(dst_dir, exist_ok=True)
    tasks = []
    for p in paths:
        out = os.path.join(dst_dir, os.path.splitext(os.path.basename(p))[0] + "." + dst_fmt)
        tasks.append(dask.delayed(convert_file, pure=False)(p, out, src_fmt, dst_fmt, tuple(size), **options))
    return _compute(tasks, client, progress, workers)


def convert_array(frames, src_fmt, dst_fmt, size=None, **options):
    """A lazy Dask array of the frames converted, one task per block of
    frames. `frames` is a Dask (or numpy) array whose first axis counts
    frames: (n, height, width[, elements]) of a one-plane format, or
    (n, bytes) of flat raw frames with size=(width, height). The result has
    the same first axis, then the shape tpxcc.convert gives a frame."""
    src, dst = format_named(src_fmt), format_named(dst_fmt)
    frames = da.asarray(frames)
    frames = frames.rechunk({i: -1 for i in range(1, frames.ndim)})
    w, h = size if size is not None else (frames.shape[2], frames.shape[1])
    ow, oh = _out_size((w, h), options)
    out_shape = dst.shape(ow, oh) if dst.shaped else (dst.frame_bytes(ow, oh),)
    dtype = dst.dtype() if dst.shaped else np.dtype(np.uint8)
    if not src.shaped and size is None:
        raise ConversionError("flat %s frames need size=(width, height)" % src.name)

    def block(b):
        out = np.empty((b.shape[0],) + out_shape, dtype)
        for i in range(b.shape[0]):
            convert(b[i], src_fmt, dst_fmt, size=size, out=out[i], **options)
        return out

    return frames.map_blocks(block, dtype=dtype, chunks=(frames.chunks[0],) + tuple((n,) for n in out_shape),
                             drop_axis=list(range(1, frames.ndim)), new_axis=list(range(1, 1 + len(out_shape))))
