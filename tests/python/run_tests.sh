#!/bin/sh
# Runs the Python package's tests with the given python3; exits 77 (skipped)
# with the reason where python3, numpy or pytest is missing.
py=$1
shift
if [ -z "$py" ] || ! command -v "$py" >/dev/null 2>&1; then
  echo "SKIPPED: python3 not found, the Python package is not tested"
  exit 77
fi
for module in numpy pytest; do
  if ! "$py" -c "import $module" 2>/dev/null; then
    echo "SKIPPED: $py has no $module (Debian: python3-$module), the Python package is not tested"
    exit 77
  fi
done
exec "$py" -m pytest -q -p no:cacheprovider "$@"
