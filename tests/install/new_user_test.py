"""A new user's first hour: every example of README.md and
clients/python/README.md as written (tests/install/readme.py), against a
fresh install (its prefix for /opt/tvapic, its tvhost's port for 8001) and
from the build tree, printing what it should; mypy on the Python ones.

    new_user_test.py --source REPO --build BUILD --work SCRATCH [--cc CC] [--dotnet]
"""
import argparse
import os
import shutil
import subprocess
import sys
from pathlib import Path

import readme
from readme import expect, problems

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "common"))
import tvhost_process  # noqa: E402

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


def shell(script, what, **options):
    """A README's shell block, run by bash as a user pastes it."""
    return run(["bash", "-e", "-c", script], what, **options)


def clean_environment(**extra):
    """The environment of a user who has set nothing for this project."""
    env = {k: v for k, v in os.environ.items() if k not in (
        "PYTHONPATH", "LD_LIBRARY_PATH", "TVAPIC_LIBRARY", "TVSIM_LIBRARY", "TVHOST", "PKG_CONFIG_PATH",
        "MONO_PATH")}
    env.update(PYTHONDONTWRITEBYTECODE="1", **extra)
    return env


def c_programs(args, prefix, examples):
    """tests/install/consumer, built with CMake's package, told what to call; the README's C examples."""
    source, build = args.source / "tests" / "install" / "consumer", args.work / "consumer"
    run(["cmake", "-S", source, "-B", build, f"-DCMAKE_PREFIX_PATH={prefix}", f"-DCMAKE_C_COMPILER={args.cc}"],
        "configuring the CMake consumer", env=clean_environment())
    run(["cmake", "--build", build], "building the CMake consumer", env=clean_environment())
    done = subprocess.run([build / "consumer"], capture_output=True, text=True, timeout=60, env=clean_environment())
    if done.returncode != 0 or "outside the application, call tvsim_start()" not in done.stderr:
        problems.append(f"the consumer: {done.returncode}, {done.stdout!r}, {done.stderr!r}")
    folder = args.work / "c"
    folder.mkdir()
    for name in ("first", "events"):
        (folder / f"{name}.c").write_text(examples[name], encoding="utf-8")
        build_and_run = examples["c-build"].replace("/opt/tvapic", str(prefix)).replace("first", name)
        expect(name, shell(build_and_run, f"the README's C example {name}", cwd=folder, env=clean_environment()))


def csharp(examples, name, folder, lib="build/lib", port=None):
    """A C# example saved as the README says, built and run by its lines (lib: where TvApic.dll lies)."""
    code = examples["csharp-remote" if name == "remote" else "csharp"]
    folder.mkdir(parents=True, exist_ok=True)
    (folder / f"{name}.cs").write_text(code.replace("8001", str(port)) if port else code, encoding="utf-8")
    lines = examples["csharp-build"].replace("build/lib", str(lib)).replace("first", name)
    return shell(lines, f"the README's C# example {name}", cwd=folder, env=clean_environment())


def remote_examples(args, prefix, examples, venv):
    files = args.work / "files"
    files.mkdir()
    tvhost, port = tvhost_process.start([prefix / "bin" / "tvhost"], "--files", files, stderr=subprocess.PIPE,
                                        env=clean_environment())
    if port is None:
        sys.exit(f"new_user_test: the installed tvhost did not serve:\n{tvhost.communicate()[1]}")
    python = venv / "bin" / "python"
    try:
        for name in ("remote", "client"):
            code = examples[name].replace("port=8001", f"port={port}")
            expect(name, run([python, "-c", code], f"the example {name}", env=clean_environment(), cwd=args.work))
        cli = examples["cli"].replace("tvapic call ", f"tvapic call --port {port} ")
        expect("cli", shell(cli, "the command line's example", cwd=args.work,
                            env=clean_environment(PATH=f"{venv / 'bin'}:{os.environ['PATH']}")))
        if args.dotnet:
            expect("csharp-remote", csharp(examples, "remote", args.work / "csharp", prefix / "lib", port))
            expect("csharp", csharp(examples, "first", args.work / "csharp", prefix / "lib"))
    finally:
        tvhost_process.stop(tvhost)


def build_tree_examples(args, examples):
    """From a folder where `build` is the build tree, as from the clone's root."""
    folder = args.work / "from-the-build-tree"
    folder.mkdir()
    (folder / "build").symlink_to(args.build.resolve(), target_is_directory=True)
    (folder / "in_process.py").write_text(examples["in-process"], encoding="utf-8")
    expect("in-process", shell(examples["python-build-tree"], "the in-process example from the build tree",
                               cwd=folder, env=clean_environment()))
    if args.dotnet:
        expect("csharp", csharp(examples, "first", folder))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--source", type=Path, required=True)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--work", type=Path, required=True)
    parser.add_argument("--cc", default="cc")
    parser.add_argument("--dotnet", action="store_true", help="the build has the C# binding: run its examples")
    args = parser.parse_args()
    examples = readme.examples(args.source)
    if problems:
        sys.exit("new_user_test: " + "\n".join(problems))
    shutil.rmtree(args.work, ignore_errors=True)
    scripts = args.work / "scripts"
    scripts.mkdir(parents=True)
    for name in ("remote", "in-process", "client", "native", "objects"):
        (scripts / f"{name.replace('-', '_')}.py").write_text(examples[name], encoding="utf-8")

    prefix = args.work / "prefix"
    run(["cmake", "--install", args.build, "--prefix", prefix], "cmake --install")
    missing = [name for name in INSTALLED + ["lib/TvApic.dll"] * args.dotnet if not (prefix / name).exists()]
    if missing:
        sys.exit(f"new_user_test: not installed: {' '.join(missing)}")
    c_programs(args, prefix, examples)

    venv = args.work / "venv"
    run([sys.executable, "-m", "venv", venv], "creating a virtual environment (Debian: python3-venv)")
    python = venv / "bin" / "python"
    run([python, "-m", "pip", "install", "--no-index", "--quiet", args.source / "clients" / "python"],
        "pip install ./clients/python", env=clean_environment())
    remote_examples(args, prefix, examples, venv)
    library = clean_environment(TVAPIC_LIBRARY=str(prefix / "lib" / "libtvAPIC.so.0"))
    for name in ("in-process", "native", "objects"):
        expect(name, run([python, "-c", examples[name]], f"the example {name}", env=library, cwd=args.work))
    build_tree_examples(args, examples)

    if subprocess.run(["/usr/bin/python3", "-m", "mypy", "--version"], capture_output=True).returncode != 0:
        sys.exit("new_user_test: mypy is missing (Debian: python3-mypy; scripts/setup installs it)")
    print(run(["/usr/bin/python3", "-m", "mypy", "--no-incremental", "--cache-dir", args.work / "mypy-cache",
               "--python-executable", python, scripts], "mypy on the README's examples",
              env=clean_environment(), cwd=args.work))
    if problems:
        sys.exit("new_user_test:\n" + "\n".join(problems))
    print("new_user_test: every README example ran as written, against the installed prefix and the build tree")
    return 0


if __name__ == "__main__":
    sys.exit(main())
