"""Waiting for what a browser or its programs do."""

import pathlib
import time

SOON_S = 20


def is_running(process):
    try:
        return pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except FileNotFoundError:
        return False


def wait_until(holds):
    end = time.monotonic() + SOON_S
    while not holds() and time.monotonic() < end:
        time.sleep(0.05)
    return holds()
