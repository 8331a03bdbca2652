"""tpxcc: the library's colour conversions for numpy arrays.

- ``tpxcc.raw``: every export, its arguments taken from numpy arrays.
- ``tpxcc.convert(image, src_fmt, dst_fmt, **options)``: tpxconv's formats,
  routes and options for one frame.
- ``tpxcc.dask``: files and arrays of frames converted on Dask.

The library is found through ``TPXCC_LIBRARY``, next to the package, where
``cmake --install`` put it, or on the loader path.
"""

from .raw import Status, TpxError
from .routes import ConversionError, FORMATS, convert, describe, find_route, format_named, options

__all__ = ["Status", "TpxError", "ConversionError", "FORMATS", "convert", "describe", "find_route",
           "format_named", "options"]
