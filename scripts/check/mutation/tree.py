"""A copy of the tree in which sources are broken, and its build folder."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import time

from .process import must_run, run

OBJECTS = "common/CMakeFiles/idcard_reader_objects.dir"
# Memcheck looks for other mistakes than wrong results, and a sweep of every size takes minutes.
LEFT_OUT = "_valgrind$|^usb_every_block_size_"


def copy(root, target):
    """Makes `target` a copy of what belongs to the tree; files that are the same stay untouched."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=root,
        check=True, capture_output=True, text=True).stdout.split("\0")
    wanted = {path for path in listed if path and (root / path).is_file()}
    for path in wanted:
        source, copied = root / path, target / path
        if not copied.is_file() or copied.read_bytes() != source.read_bytes():
            copied.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copied)
    for folder, folders, files in os.walk(target):
        if pathlib.Path(folder) == target:
            folders[:] = [name for name in folders if name != "build"]
        for name in files:
            path = pathlib.Path(folder) / name
            if str(path.relative_to(target)) not in wanted:
                path.unlink()


class Tree:
    """The copy and its build. `break_at` builds the library's objects with one place broken and
    `restore` takes that back; the sources themselves are whole again as soon as they are
    compiled, so that nothing but the library is built from the broken text."""

    def __init__(self, folder, jobs):
        self.folder = folder
        self.build_folder = folder / "build/coverage"
        self.kept = folder.parent / "objects"
        self.jobs = jobs
        self._broken_since = None
        # There while objects of a broken library may lie about, even after a power cut.
        self._mark = folder.parent / "broken"

    def _builds(self, *targets):
        # A cache would only fill up with broken objects.
        return run(["ninja", f"-j{self.jobs}", *targets], self.build_folder,
                   {"CCACHE_DISABLE": "1"})[0] == 0

    def links(self, programs):
        """Builds programs and, for those that load it, the shared library."""
        return self._builds("idcard_reader_lib", *sorted(programs))

    def failing_test(self, names, limits):
        """Runs tests, each with its limit in seconds, until one fails or hangs; tells which."""
        status, output = run(
            ["ctest", f"-j{self.jobs}", "--stop-on-failure", "--timeout", str(max(limits.values())),
             "-R", f"^({'|'.join(re.escape(name) for name in names)})$"],
            self.build_folder, seconds=60 + sum(limits.values()))
        if status == 0:
            return None
        failed = re.search(r"^\s*\d+ - (\S+) \(", output, re.MULTILINE)
        return failed.group(1) if failed else " or ".join(names)

    def build_all(self, coverage, programs=()):
        """Builds everything or, when programs are named, them and the library, with the lines of
        the library counted or not."""
        if self._mark.exists():
            self._broken_since = self._mark.stat().st_mtime - 0.01
            self.restore()
        must_run(["cmake", "--preset", "coverage",
                  f"-DIDCARD_COVERAGE={'ON' if coverage else 'OFF'}",
                  # A program need not be linked again when only the inside of the library changes.
                  "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON"], self.folder)
        targets = ["idcard_reader_lib", *programs] if programs else []
        must_run(["ninja", f"-j{self.jobs}", *targets], self.build_folder)

    def tests(self):
        """Every test: its name and the programs of this build that it starts."""
        described = json.loads(must_run(["ctest", "--show-only=json-v1", "-E", LEFT_OUT],
                                        self.build_folder))
        tests = {}
        for test in described["tests"]:
            paths = [pathlib.Path(part) for part in test.get("command", [])]
            tests[test["name"]] = [f"bin/{path.name}" for path in paths
                                   if path.parent == self.build_folder / "bin"]
        return tests

    def objects(self):
        return sorted((self.build_folder / OBJECTS).rglob("*.o"))

    def keep_objects(self):
        """Remembers the objects of the whole library."""
        shutil.rmtree(self.kept, ignore_errors=True)
        for path in self.objects():
            kept = self.kept / path.relative_to(self.build_folder)
            kept.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(path, kept)

    def _code(self, path):
        """What an object holds beside debug information, which tells columns of the source."""
        stripped = self.kept.parent / "stripped.o"
        must_run(["objcopy", "--strip-debug", path, stripped], self.folder)
        return stripped.read_bytes()

    def break_at(self, place):
        """Whether the library compiles with `place` broken, and whether that changes its code."""
        path = self.folder / place.path
        text, times = path.read_text(encoding="utf-8"), path.stat()
        self._broken_since = time.time() - 0.01
        self._mark.touch()
        try:
            path.write_text(place.applied(text), encoding="utf-8")
            compiles = self._builds("idcard_reader_objects")
        finally:
            path.write_text(text, encoding="utf-8")
            os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))
        changed = compiles and any(
            self._code(path) != self._code(self.kept / path.relative_to(self.build_folder))
            for path in self._newer(self.objects()))
        return compiles, changed

    def _newer(self, paths):
        return [path for path in paths if path.stat().st_mtime >= self._broken_since]

    def restore(self):
        """Puts the whole objects back, with their times, and removes what was linked since."""
        if self._broken_since is None:
            return
        self._remove(self._newer(self._built()))
        for kept in self.kept.rglob("*.o"):
            path = self.build_folder / kept.relative_to(self.kept)
            if not path.exists() or path.stat().st_mtime_ns != kept.stat().st_mtime_ns:
                path.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(kept, path)
        self._broken_since = None
        self._mark.unlink()

    def _built(self):
        """The programs and libraries of the build."""
        return [path for folder in ("bin", "lib") for path in (self.build_folder / folder).iterdir()
                if path.is_file() and not path.is_symlink()]

    @staticmethod
    def _remove(paths):
        for path in paths:
            path.unlink()
