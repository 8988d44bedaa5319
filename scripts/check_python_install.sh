#!/usr/bin/env bash
# Installs python/ with pip into a throw-away virtual environment, offline
# (no index, no build isolation: setuptools, wheel, pybind11 and numpy come
# from the system's packages), and imports the result from outside the tree.
#   scripts/check_python_install.sh [PYTHON] [WORKDIR]
# Exit 77 (a skip for ctest) when the interpreter cannot make such an
# environment (Debian: python3-venv, python3-pip).
set -euo pipefail
cd "$(dirname "$0")/.."
python=${1:-/usr/bin/python3}
work=${2:-$(mktemp -d)}

rm -rf "$work" && mkdir -p "$work"
if ! "$python" -m venv --system-site-packages "$work/venv" >"$work/venv.log" 2>&1 ||
   ! "$work/venv/bin/python" -m pip --version >/dev/null 2>&1; then
    echo "skipped: $python cannot create a virtual environment with pip (Debian: python3-venv python3-pip)"
    exit 77
fi
"$work/venv/bin/python" -m pip install --no-index --no-build-isolation --no-cache-dir \
    --disable-pip-version-check ./python
cd "$work"
"$work/venv/bin/python" - <<'PY'
import pathlib, mivora
f = mivora.IirProcess()
f.setCoefPDFPQ(1000.0, 48000.0, 6.0, 0.7)
pkg = pathlib.Path(mivora.__file__).parent
assert "venv" in str(pkg), pkg
assert (pkg / "_mivora.pyi").is_file() and (pkg / "py.typed").is_file(), "type stubs not installed"
assert abs(f.power(1000.0, 48000.0) - 6.0) < 1e-9, f.power(1000.0, 48000.0)
print("installed", mivora.__version__, "in", pkg)
PY
