"""The package's build backend (PEP 517 and 660), standard library only.

Builds a pure-Python wheel of the tvapic package with its modules generated
from the catalogue (see tvapic_table), an sdist that ships them, and an
editable wheel. Metadata comes from setup.cfg.
"""

import base64
import configparser
import hashlib
import io
import tarfile
import tempfile
import zipfile
from pathlib import Path

from tvapic_table import MODULES, PROJECT, write_modules

_TAG = "py3-none-any"
_EPOCH = (1980, 1, 1, 0, 0, 0)  # fixed times: the same sources give the same wheel


def _metadata():
    cfg = configparser.ConfigParser()
    cfg.read(PROJECT / "setup.cfg", encoding="utf-8")
    meta = cfg["metadata"]
    scripts = [line.strip() for line in cfg.get("options.entry_points", "console_scripts", fallback="").splitlines()
               if line.strip()]
    return {"name": meta["name"], "version": meta["version"], "summary": meta.get("description", ""),
            "requires_python": cfg.get("options", "python_requires", fallback=""), "scripts": scripts}


def _dist_info(m):
    return f"{m['name']}-{m['version']}.dist-info"


def _metadata_files(m):
    readme = PROJECT / "README.md"
    lines = ["Metadata-Version: 2.1", f"Name: {m['name']}", f"Version: {m['version']}", f"Summary: {m['summary']}"]
    if m["requires_python"]:
        lines.append(f"Requires-Python: {m['requires_python']}")
    lines.append("Description-Content-Type: text/markdown")
    body = readme.read_text(encoding="utf-8") if readme.is_file() else ""
    files = {
        "METADATA": "\n".join(lines) + "\n\n" + body,
        "WHEEL": f"Wheel-Version: 1.0\nGenerator: tvapic_backend\nRoot-Is-Purelib: true\nTag: {_TAG}\n",
    }
    if m["scripts"]:
        files["entry_points.txt"] = "[console_scripts]\n" + "".join(f"{s}\n" for s in m["scripts"])
    return {k: v.encode("utf-8") for k, v in files.items()}


def _package_files():
    """{path in the wheel: bytes}: the package's modules and its examples, its
    marker of type information and its generated modules."""
    files = {}
    package = PROJECT / "tvapic"
    sources = sorted(package.glob("*.py")) + sorted(package.glob("examples/*.py")) + [package / "py.typed"]
    for path in sources:
        if path.name not in MODULES:
            files[path.relative_to(PROJECT).as_posix()] = path.read_bytes()
    with tempfile.TemporaryDirectory() as out:
        write_modules(out)
        for name in MODULES:
            files[f"tvapic/{name}"] = (Path(out) / name).read_bytes()
    return files


def _write_wheel(directory, files):
    m = _metadata()
    info = _dist_info(m)
    files = dict(files)
    files.update({f"{info}/{k}": v for k, v in _metadata_files(m).items()})
    record = []
    name = f"{m['name']}-{m['version']}-{_TAG}.whl"
    with zipfile.ZipFile(Path(directory) / name, "w", zipfile.ZIP_DEFLATED) as wheel:
        for path, data in files.items():
            digest = base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(b"=").decode()
            record.append(f"{path},sha256={digest},{len(data)}")
            _add(wheel, path, data)
        record.append(f"{info}/RECORD,,")
        _add(wheel, f"{info}/RECORD", ("\n".join(record) + "\n").encode())
    return name


def _add(archive, path, data):
    entry = zipfile.ZipInfo(path, _EPOCH)
    entry.external_attr = 0o644 << 16
    entry.compress_type = zipfile.ZIP_DEFLATED
    archive.writestr(entry, data)


# --- hooks ----------------------------------------------------------------------

def get_requires_for_build_wheel(config_settings=None):
    return []


def get_requires_for_build_sdist(config_settings=None):
    return []


def get_requires_for_build_editable(config_settings=None):
    return []


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    return _write_wheel(wheel_directory, _package_files())


def build_editable(wheel_directory, config_settings=None, metadata_directory=None):
    """A wheel that puts the sources on the path; the generated modules are written beside them."""
    write_modules(PROJECT / "tvapic")
    m = _metadata()
    return _write_wheel(wheel_directory, {f"{m['name']}.pth": f"{PROJECT}\n".encode("utf-8")})


def build_sdist(sdist_directory, config_settings=None):
    """The sources with the generated modules, so that they build without the repository."""
    m = _metadata()
    base = f"{m['name']}-{m['version']}"
    files = {name: (PROJECT / name).read_bytes()
             for name in ("setup.cfg", "setup.py", "pyproject.toml", "README.md",
                          "_build/tvapic_backend.py", "_build/tvapic_table.py")}
    files.update(_package_files())
    lines = ["Metadata-Version: 2.1", f"Name: {m['name']}", f"Version: {m['version']}"]
    files["PKG-INFO"] = ("\n".join(lines) + "\n").encode()
    name = f"{base}.tar.gz"
    with tarfile.open(Path(sdist_directory) / name, "w:gz", format=tarfile.PAX_FORMAT) as sdist:
        for path, data in sorted(files.items()):
            entry = tarfile.TarInfo(f"{base}/{path}")
            entry.size, entry.mode, entry.mtime = len(data), 0o644, 315532800
            sdist.addfile(entry, io.BytesIO(data))
    return name
