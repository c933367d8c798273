"""Throwaway copies of the project, and what is built in them."""

import os
import re
import shutil
import subprocess

import schemata

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
WORK = os.path.join(ROOT, "build", "mutation")
_PLUGIN_PATH = ("tests/support/CMakeLists.txt", "$<TARGET_FILE:zrb_plugin>", "./ZRBContainers.so")
_MENTION = re.compile(r"mutant-(\d+):")


class BuildFailure(Exception):
    pass


# What only the diagnostic build asks, which is not the one that is tested here.
_DIAGNOSTIC = ("plugin/diagnosis/", "plugin/containers/iterator_checks.h")


def plugin_files():
    listed = subprocess.run(["git", "ls-files", "plugin/*.cpp", "plugin/*.h"], cwd=ROOT, text=True,
                            capture_output=True, check=True)
    return [path for path in listed.stdout.split() if not path.startswith(_DIAGNOSTIC)]


def read(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


class Workspace:
    """A copy of the project under build/mutation, with a build folder."""

    def __init__(self, name, flags, jobs):
        self.tree = os.path.join(WORK, name, "tree")
        self.build = os.path.join(WORK, name, "build")
        self._flags = flags
        self._jobs = jobs

    def prepare(self):
        """Brings the copy up to date and configures it."""
        listed = subprocess.run(["git", "ls-files"], cwd=ROOT, text=True, capture_output=True,
                                check=True)
        mutated = plugin_files()
        for path in listed.stdout.splitlines():
            if path not in mutated and os.path.exists(os.path.join(ROOT, path)):
                self._bring(path)
        for path in mutated:
            self.write(path, read(path))
        shutil.copy(os.path.join(HERE, schemata.SWITCH_HEADER),
                    os.path.join(self.tree, "plugin", schemata.SWITCH_HEADER))
        if not os.path.exists(os.path.join(self.build, "build.ninja")):
            self._run(["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja",
                       "-DCMAKE_BUILD_TYPE=Release", f"-DCMAKE_CXX_FLAGS_RELEASE={self._flags}"])

    def _bring(self, path):
        with open(os.path.join(ROOT, path), "rb") as file:
            content = file.read()
        if path == _PLUGIN_PATH[0]:
            # Each test then loads the plugin of the folder that it runs in.
            text = content.decode()
            if _PLUGIN_PATH[1] not in text:
                raise BuildFailure(f"{path} names the plugin in another way than expected")
            content = text.replace(*_PLUGIN_PATH[1:]).encode()
        target = os.path.join(self.tree, path)
        if self._write_bytes(target, content):
            shutil.copymode(os.path.join(ROOT, path), target)

    def write(self, path, text):
        """Writes a file of the copy, unless it is the same already."""
        self._write_bytes(os.path.join(self.tree, path), text.encode())

    @staticmethod
    def _write_bytes(target, content):
        if os.path.exists(target):
            with open(target, "rb") as file:
                if file.read() == content:
                    return False
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "wb") as file:
            file.write(content)
        return True

    def make(self, targets):
        """Builds; a failure gives the numbers of the mutants that do not compile."""
        done = subprocess.run(["ninja", "-C", self.build, f"-j{self._jobs}", "-k0", *targets],
                              text=True, capture_output=True)
        if done.returncode == 0:
            return set()
        culprits = {int(number) for line in done.stdout.splitlines() if "error:" in line
                    for number in _MENTION.findall(line)}
        culprits = culprits or {int(number) for number in _MENTION.findall(done.stdout)}
        if not culprits:
            raise BuildFailure(done.stdout[-4000:])
        return culprits

    def compiles(self, targets):
        done = subprocess.run(["ninja", "-C", self.build, f"-j{self._jobs}", *targets],
                              capture_output=True)
        return done.returncode == 0

    def executables(self):
        """Where each program is, by its name."""
        found = {}
        for folder, _, names in os.walk(os.path.join(self.build, "tests")):
            found.update({name: os.path.join(folder, name) for name in names
                          if name.endswith("_test")})
        return found

    @property
    def plugin(self):
        return os.path.join(self.build, "ZRBContainers.so")

    @staticmethod
    def _run(command):
        done = subprocess.run(command, text=True, capture_output=True)
        if done.returncode != 0:
            raise BuildFailure(done.stdout[-2000:] + done.stderr[-2000:])
