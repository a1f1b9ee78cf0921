"""A new user's first hour, scripted: the README's Python examples, as the
README writes them, run from a fresh virtual environment and an installed
prefix, and a type checker accepts them.

    new_user_test.py --source REPO --build BUILD --work SCRATCH [--preload LIB]

1. `python3 -m venv`, then `pip install ./clients/python` (offline).
2. `cmake --install BUILD --prefix SCRATCH/prefix`: the library, the
   simulated host and tvhost.
3. The installed tvhost serves; the README's remote example calls it (its
   port put in place of 8001), and so does the installed `tvapic` command.
4. The README's in-process example runs with TVAPIC_LIBRARY naming the
   installed library, the only thing it is told.
5. mypy checks both examples against the installed package and its stubs.

--preload puts a sanitizer's runtime before the in-process run, for a build
with the sanitizers.
"""
import argparse
import os
import re
import select
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

EXAMPLE = re.compile(r"<!-- example: ([\w-]+) -->\n```python\n(.*?)```", re.S)


def run(command, what, **options):
    done = subprocess.run([str(c) for c in command], capture_output=True, text=True, timeout=300, **options)
    if done.returncode != 0:
        sys.exit(f"new_user_test: {what} failed ({done.returncode}):\n{done.stdout}\n{done.stderr}")
    return done.stdout


def readme_examples(source):
    examples = dict(EXAMPLE.findall((source / "README.md").read_text(encoding="utf-8")))
    missing = {"remote", "in-process"} - set(examples)
    if missing:
        sys.exit(f"new_user_test: README.md has no example marked {', '.join(sorted(missing))}")
    return examples


def start_tvhost(tvhost, files):
    """(process, port) of the installed tvhost on a port it chose."""
    proc = subprocess.Popen([str(tvhost), "--port", "0", "--files", str(files)], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True, env=clean_environment())
    deadline = time.monotonic() + 30
    while time.monotonic() < deadline and proc.poll() is None:
        if select.select([proc.stdout], [], [], 0.2)[0]:
            found = re.search(r"API Server on port (\d+)", proc.stdout.readline())
            if found:
                return proc, int(found[1])
    proc.kill()
    sys.exit(f"new_user_test: the installed tvhost did not serve:\n{proc.communicate()[1]}")


def clean_environment(**extra):
    """The environment of a user who has set nothing for this project."""
    env = {k: v for k, v in os.environ.items()
           if k not in ("PYTHONPATH", "LD_LIBRARY_PATH", "TVAPIC_LIBRARY", "TVSIM_LIBRARY", "TVHOST")}
    env.update(PYTHONDONTWRITEBYTECODE="1", **extra)
    return env


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--source", type=Path, required=True)
    parser.add_argument("--build", type=Path, required=True)
    parser.add_argument("--work", type=Path, required=True)
    parser.add_argument("--preload", default="")
    args = parser.parse_args()
    examples = readme_examples(args.source)
    shutil.rmtree(args.work, ignore_errors=True)
    args.work.mkdir(parents=True)
    scripts = args.work / "scripts"
    scripts.mkdir()
    for name, code in examples.items():
        (scripts / f"{name.replace('-', '_')}.py").write_text(code, encoding="utf-8")

    venv = args.work / "venv"
    run([sys.executable, "-m", "venv", venv], "creating a virtual environment (Debian: python3-venv)")
    python = venv / "bin" / "python"
    run([python, "-m", "pip", "install", "--no-index", "--quiet", args.source / "clients" / "python"],
        "pip install ./clients/python", env=clean_environment())
    prefix = args.work / "prefix"
    run(["cmake", "--install", args.build, "--prefix", prefix], "cmake --install")

    files = args.work / "files"
    files.mkdir()
    tvhost, port = start_tvhost(prefix / "bin" / "tvhost", files)
    try:
        remote = examples["remote"].replace("port=8001", f"port={port}")
        print(run([python, "-c", remote], "the README's remote example", env=clean_environment(), cwd=args.work))
        build = run([venv / "bin" / "tvapic", "call", "--port", port, "IApplication_GetBuildNumber"],
                    "the installed tvapic command", env=clean_environment())
        if not build.strip().isdigit():
            sys.exit(f"new_user_test: tvapic call answered {build!r}")
    finally:
        tvhost.send_signal(signal.SIGTERM)
        tvhost.communicate(timeout=30)

    library = prefix / "lib" / "libtvAPIC.so.0"
    sanitizer = {"LD_PRELOAD": args.preload, "ASAN_OPTIONS": "detect_leaks=0"} if args.preload else {}
    print(run([python, "-c", examples["in-process"]], "the README's in-process example",
              env=clean_environment(TVAPIC_LIBRARY=str(library), **sanitizer), cwd=args.work))

    if subprocess.run(["/usr/bin/python3", "-m", "mypy", "--version"], capture_output=True).returncode != 0:
        sys.exit("new_user_test: mypy is missing (Debian: python3-mypy; scripts/setup installs it)")
    print(run(["/usr/bin/python3", "-m", "mypy", "--no-incremental", "--cache-dir", args.work / "mypy-cache",
               "--python-executable", python, scripts], "mypy on the README's examples",
              env=clean_environment(), cwd=args.work))
    print("new_user_test: the README's examples ran from a fresh environment and passed the type check")
    return 0


if __name__ == "__main__":
    sys.exit(main())
