"""A tvhost (the simulated host serving the API) started for a test, on a
port it chooses and announces on its standard output once it listens."""
import os
import re
import select
import signal
import subprocess
import time


def start(command, *arguments, timeout=30, env=None, **popen):
    """(process, port) of `command` (tvhost, after an emulator if any) serving
    with `arguments`; (process, None) once it has ended, or been killed for
    staying silent `timeout` seconds. stdout is the process's pipe."""
    # tvhost unloads the library before it exits, so a sanitizer build could
    # not name, nor suppress, what remote calls leave with the clients by the
    # protocol's rules: the library's leaks are checked in process elsewhere.
    env = dict(os.environ if env is None else env)
    env["ASAN_OPTIONS"] = env.get("ASAN_OPTIONS", "") + ":detect_leaks=0"
    proc = subprocess.Popen([*command, "--port", "0", *arguments], stdout=subprocess.PIPE, text=True, env=env,
                            **popen)
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline and proc.poll() is None:
        if select.select([proc.stdout], [], [], 0.2)[0]:
            found = re.search(r"API Server on port (\d+)", proc.stdout.readline())
            if found:
                return proc, int(found[1])
    proc.kill()
    proc.wait()
    return proc, None


def stop(proc, emulated=False, timeout=30):
    """Stops a tvhost on its signal: (exit status, stdout, stderr), or None if
    it had to be killed. Under an emulator SIGINT, which Wine hands on as
    Ctrl-C (SIGTERM would end a Windows program without its shutdown)."""
    proc.send_signal(signal.SIGINT if emulated else signal.SIGTERM)
    try:
        out, err = proc.communicate(timeout=timeout)
    except subprocess.TimeoutExpired:
        proc.kill()
        proc.communicate()
        return None
    return proc.returncode, out, err
