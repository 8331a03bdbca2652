"""Where the package finds the library and the data it reads."""

import os

_here = os.path.dirname(os.path.abspath(__file__))


def read(name):
    """A file next to the package: installed copies of the header and of
    tpxconv's route table, or in the source tree links to them."""
    path = os.path.join(_here, name)
    if not os.path.exists(path):
        raise ImportError("tpxcc: %s not found next to the package (%s)" % (name, _here))
    with open(path) as f:
        return f.read()


def library_candidates():
    """libtpxcc.so next to the package, where `cmake --install` recorded it,
    in the build folder of the source tree, then on the loader path."""
    found = [os.path.join(_here, "libtpxcc.so")]
    recorded = os.path.join(_here, "library_path")
    if os.path.exists(recorded):
        with open(recorded) as f:
            found.append(os.path.normpath(os.path.join(_here, f.read().strip())))
    found.append(os.path.join(os.path.dirname(os.path.dirname(_here)), "build", "libtpxcc.so"))
    return [p for p in found if os.path.exists(p)] + ["libtpxcc.so", "libtpxcc.so.2022"]
