"""scripts/test and what installs packages, on a machine that lacks something."""

import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

import box

SCRIPTS = box.SOURCES / "scripts"
ADVICE = "Install them as root: apt-get update && apt-get install "


class CommandTestCase(unittest.TestCase):
    """The scripts find the tools of this folder only."""

    def setUp(self):
        self.tools = pathlib.Path(tempfile.mkdtemp(prefix="tarne-e2e-"))
        self.addCleanup(shutil.rmtree, self.tools)
        for name in ("awk", "bash", "dirname", "env"):
            (self.tools / name).symlink_to(shutil.which(name))

    def tool(self, name, does):
        (self.tools / name).write_text(f"#!/bin/sh\n{does}\n")
        (self.tools / name).chmod(0o755)

    def run_script(self, name, *arguments):
        return subprocess.run([SCRIPTS / name, *arguments], env={"PATH": str(self.tools)},
                              timeout=60, capture_output=True, text=True)


class InstallingPackages(CommandTestCase):
    def setUp(self):
        super().setUp()
        self.tool("dpkg-query", "exit 1")
        self.tool("id", "echo 1000")

    def test_without_sudo_says_how_it_is_done_as_root(self):
        done = self.run_script("install-packages", "build")
        self.assertEqual(done.returncode, 1)
        self.assertIn(ADVICE, done.stderr)
        self.assertIn(" cmake ", done.stderr)

    def test_with_a_sudo_that_refuses_says_the_same(self):
        self.tool("sudo", "echo 'you are not in the sudoers file' >&2; exit 1")
        done = self.run_script("install-packages", "build")
        self.assertEqual(done.returncode, 1)
        self.assertIn(ADVICE, done.stderr)

    def test_with_sudo_updates_the_lists_and_installs(self):
        self.tool("sudo", 'exec "$@"')
        self.tool("apt-get", f'echo "$1" >>{self.tools}/calls')
        self.assertEqual(self.run_script("install-packages", "build").returncode, 0)
        self.assertEqual((self.tools / "calls").read_text().split(), ["update", "install"])


class TheTests(CommandTestCase):
    def test_where_namespaces_are_forbidden_say_so_before_anything_is_built(self):
        self.tool("dpkg-query", "echo installed")
        self.tool("bwrap", "exit 1")
        self.tool("cmake", f"touch {self.tools}/built")
        done = self.run_script("test")
        self.assertEqual(done.returncode, 1)
        self.assertIn("No process and network namespaces can be made here", done.stderr)
        self.assertFalse((self.tools / "built").exists())

    def test_a_word_that_is_no_preset_gets_the_usage_and_nothing_is_installed_or_built(self):
        self.tool("dpkg-query", f"touch {self.tools}/asked; echo installed")
        for words in (["--everything"], ["dev", "tasn"], ["release"], [""]):
            done = self.run_script("test", *words)
            self.assertEqual(done.returncode, 2, words)
            self.assertEqual(done.stderr, "usage: scripts/test [--all] [dev|asan|tsan|coverage]...\n")
        self.assertFalse((self.tools / "asked").exists())


class WhatTheTestsRun(CommandTestCase):
    """The script in a checkout that has nothing to build and nothing to check."""

    def setUp(self):
        super().setUp()
        (self.tools / "mkdir").symlink_to(shutil.which("mkdir"))
        self.tool("nproc", "echo 2")
        self.tool("bwrap", "exit 0")
        self.tool("cmake", "exit 0")
        self.tool("ctest", f'printf "%s\\n" "$@" >{self.tools}/told')
        self.checkout = self.tools / "checkout"
        (self.checkout / "scripts").mkdir(parents=True)
        shutil.copy(SCRIPTS / "test", self.checkout / "scripts")
        for name in ("install-packages", "lint"):
            (self.checkout / "scripts" / name).symlink_to(self.tools / "cmake")
        for name in ("coverage", "mutate"):
            self.tool(name, f"echo {name} >>{self.tools}/counted")
            (self.checkout / "scripts" / name).symlink_to(self.tools / name)
        for name in ("grep", "sort"):
            (self.tools / name).symlink_to(shutil.which(name))

    def told(self, *words):
        """What ctest is told to run, and the presets whose tests it finds."""
        done = subprocess.run([self.checkout / "scripts" / "test", *words], timeout=60,
                              env={"PATH": str(self.tools)}, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stderr)
        found = (self.checkout / "build" / "tests" / "CTestTestfile.cmake").read_text()
        return (self.tools / "told").read_text().splitlines(), re.findall(r"\.\./(\w+)", found)

    def counted(self):
        """What was counted behind the tests."""
        file = self.tools / "counted"
        return file.read_text().split() if file.exists() else []

    def test_ends_in_what_the_proofs_have_counted(self):
        log = self.checkout / "build" / "tests" / "Testing" / "Temporary" / "LastTest.log"
        log.parent.mkdir(parents=True)
        log.write_text("Output:\nproof: b: 2 of 2\n noise\nproof: a: 1 of 1\n")
        done = subprocess.run([self.checkout / "scripts" / "test"], timeout=60,
                              env={"PATH": str(self.tools)}, capture_output=True, text=True)
        self.assertEqual(done.stdout, "proof: a: 1 of 1\nproof: b: 2 of 2\n")

    def test_is_all_but_what_takes_long_unless_it_is_asked_for(self):
        told, presets = self.told()
        self.assertEqual(told[told.index("-LE") + 1], "^(browsers-all|screens|packages|proof)$")
        self.assertEqual(self.counted(), [])
        self.assertEqual(presets, ["dev", "asan", "tsan"])

    def test_is_everything_with_all(self):
        told, presets = self.told("--all")
        self.assertEqual(self.counted(), ["coverage", "mutate"])
        self.assertFalse({"-L", "-LE", "-R", "-E"} & set(told))
        self.assertEqual(presets, ["dev", "asan", "tsan"])

    def test_is_that_of_the_named_presets(self):
        self.assertEqual(self.told("dev")[1], ["dev"])
        self.assertEqual(self.told("--all", "tsan", "dev")[1], ["tsan", "dev"])
