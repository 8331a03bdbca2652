"""Where the package finds the library and the data it reads: next to the
package (an installed copy), or in the source tree it sits in."""

import os

_here = os.path.dirname(os.path.abspath(__file__))
_tree = os.path.dirname(os.path.dirname(_here))
_in_tree = {"tpxcc.h": os.path.join(_tree, "include"), "routes.def": os.path.join(_tree, "tools", "tpxconv")}


def path(name):
    for folder in (_here, _in_tree.get(name)):
        if folder and os.path.exists(os.path.join(folder, name)):
            return os.path.join(folder, name)
    raise ImportError("tpxcc: %s not found next to the package (%s)" % (name, _here))


def read(name):
    with open(path(name)) as f:
        return f.read()


def library_candidates():
    """libtpxcc.so next to the package, where `cmake --install` recorded it,
    in the build folder of the source tree, then on the loader path."""
    found = [os.path.join(_here, "libtpxcc.so")]
    recorded = os.path.join(_here, "library_path")
    if os.path.exists(recorded):
        with open(recorded) as f:
            found.append(os.path.normpath(os.path.join(_here, f.read().strip())))
    found.append(os.path.join(_tree, "build", "libtpxcc.so"))
    return [p for p in found if os.path.exists(p)] + ["libtpxcc.so", "libtpxcc.so.2022"]
