"""A new user's first hour, scripted, against an installed prefix alone:
`cmake --install` into a fresh prefix gives what a user is promised; a C
program builds against it with CMake's package and with pkg-config, and runs;
`pip install ./clients/python` into a fresh virtual environment, then the
README's Python examples as written run (remotely against the installed
tvhost, in process told only TVAPIC_LIBRARY) and mypy accepts them.

    new_user_test.py --source REPO --build BUILD --work SCRATCH [--cc CC]
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "common"))
import tvhost_process  # noqa: E402

EXAMPLE = re.compile(r"<!-- example: ([\w-]+) -->\n```python\n(.*?)```", re.S)
# The header, the versioned library, both packages' files, the reference with
# the protocol beside it, the API as data; the simulated host with its header,
# the host platform's stand-ins and tvhost.
INSTALLED = """include/tvAPIC.h lib/libtvAPIC.so lib/libtvAPIC.so.0 lib/cmake/tvAPIC/tvAPICConfig.cmake
    lib/cmake/tvAPIC/tvAPICConfigVersion.cmake lib/cmake/tvAPIC/tvAPICTargets.cmake lib/pkgconfig/tvAPIC.pc
    share/doc/tvAPIC/api/index.html share/doc/tvAPIC/api/protocol.md share/tvAPIC/tvAPIC.catalogue.json
    include/tvAPIC-simulated-host/sim/sim.h lib/cmake/tvAPIC/tvAPICSimulatedHostTargets.cmake
    lib/pkgconfig/tvAPIC-simulated-host.pc lib/libtvsim.so lib/libtvapi.so lib/libtvSys2.so
    lib/libtvEventsBus.so lib/libUI_App.so bin/tvhost""".split()


def run(command, what, **options):
    done = subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=300, **options)
    if done.returncode != 0:
        sys.exit(f"new_user_test: {what} failed ({done.returncode}):\n{done.stdout}\n{done.stderr}")
    return done.stdout


def clean_environment(**extra):
    """The environment of a user who has set nothing for this project."""
    env = {k: v for k, v in os.environ.items() if k not in (
        "PYTHONPATH", "LD_LIBRARY_PATH", "TVAPIC_LIBRARY", "TVSIM_LIBRARY", "TVHOST", "PKG_CONFIG_PATH")}
    env.update(PYTHONDONTWRITEBYTECODE="1", **extra)
    return env


def c_consumers(args, prefix):
    """tests/install/consumer built with find_package, then with pkg-config's flags and a run path; both run."""
    source, build = args.source / "tests" / "install" / "consumer", args.work / "consumer"
    run(["cmake", "-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_C_COMPILER={args.cc}"],
        "configuring the CMake consumer", env=clean_environment())
    run(["cmake", "--build", build], "building the CMake consumer", env=clean_environment())
    flags = run(["pkg-config", "--cflags", "--libs", "tvAPIC", "tvAPIC-simulated-host"], "pkg-config",
                env=clean_environment(PKG_CONFIG_PATH=str(prefix / "lib" / "pkgconfig"))).split()
    run([args.cc, "-std=c99", source / "consumer.c", *flags, f"-Wl,-rpath,{prefix}/lib", "-o", build / "from_pc"],
        "building the pkg-config consumer", env=clean_environment())
    for program in (build / "consumer", build / "from_pc"):
        print(run([program], f"the consumer {program.name}", env=clean_environment()), end="")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--source", type=Path, required=True)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--work", type=Path, required=True)
    parser.add_argument("--cc", default="cc")
    args = parser.parse_args()
    examples = dict(EXAMPLE.findall((args.source / "README.md").read_text(encoding="utf-8")))
    if {"remote", "in-process"} - set(examples):
        sys.exit("new_user_test: README.md lacks an example marked remote or in-process")
    shutil.rmtree(args.work, ignore_errors=True)
    scripts = args.work / "scripts"
    scripts.mkdir(parents=True)
    for name, code in examples.items():
        (scripts / f"{name.replace('-', '_')}.py").write_text(code, encoding="utf-8")

    prefix = args.work / "prefix"
    run(["cmake", "--install", args.build, "--prefix", prefix], "cmake --install")
    missing = [name for name in INSTALLED if not (prefix / name).exists()]
    if missing:
        sys.exit(f"new_user_test: not installed: {' '.join(missing)}")
    c_consumers(args, prefix)

    venv = args.work / "venv"
    run([sys.executable, "-m", "venv", venv], "creating a virtual environment (Debian: python3-venv)")
    python = venv / "bin" / "python"
    run([python, "-m", "pip", "install", "--no-index", "--quiet", args.source / "clients" / "python"],
        "pip install ./clients/python", env=clean_environment())
    files = args.work / "files"
    files.mkdir()
    tvhost, port = tvhost_process.start([prefix / "bin" / "tvhost"], "--files", files, stderr=subprocess.PIPE,
                                        env=clean_environment())
    if port is None:
        sys.exit(f"new_user_test: the installed tvhost did not serve:\n{tvhost.communicate()[1]}")
    try:
        remote = examples["remote"].replace("port=8001", f"port={port}")
        print(run([python, "-c", remote], "the README's remote example", env=clean_environment(), cwd=args.work))
        build = run([venv / "bin" / "tvapic", "call", "--port", port, "IApplication_GetBuildNumber"],
                    "the installed tvapic command", env=clean_environment())
        if not build.strip().isdigit():
            sys.exit(f"new_user_test: tvapic call answered {build!r}")
    finally:
        tvhost_process.stop(tvhost)

    library = prefix / "lib" / "libtvAPIC.so.0"
    print(run([python, "-c", examples["in-process"]], "the README's in-process example",
              env=clean_environment(TVAPIC_LIBRARY=str(library)), cwd=args.work))
    if subprocess.run(["/usr/bin/python3", "-m", "mypy", "--version"], capture_output=True).returncode != 0:
        sys.exit("new_user_test: mypy is missing (Debian: python3-mypy; scripts/setup installs it)")
    print(run(["/usr/bin/python3", "-m", "mypy", "--no-incremental", "--cache-dir", args.work / "mypy-cache",
               "--python-executable", python, scripts], "mypy on the README's examples",
              env=clean_environment(), cwd=args.work))
    print("new_user_test: a C program and the README's examples ran against the installed prefix alone")
    return 0


if __name__ == "__main__":
    sys.exit(main())
