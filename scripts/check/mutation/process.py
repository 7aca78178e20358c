"""Commands with a time limit, whose children end with them."""

import os
import resource
import signal
import subprocess

MOST_MEMORY = 16 << 30  # bytes of address space: a broken loop must not take the machine along


def _limit():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command, folder, environment=None, seconds=None):
    """Exit status and output of a command; None as status when it took longer than `seconds`."""
    with subprocess.Popen(command, cwd=folder, env={**os.environ, **(environment or {})},
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace",
                          start_new_session=True, preexec_fn=_limit) as process:
        try:
            output, _ = process.communicate(timeout=seconds)
            return process.returncode, output
        except subprocess.TimeoutExpired:
            return None, ""
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass


def must_run(command, folder, environment=None):
    status, output = run(command, folder, environment)
    if status != 0:
        raise RuntimeError(f"{' '.join(map(str, command))} failed with {status}:\n{output[-4000:]}")
    return output
