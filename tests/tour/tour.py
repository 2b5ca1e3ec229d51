"""Uses velldoc at a terminal, with a service and documents of its own, and makes pictures of what it shows.

Called by scripts/tour. The pictures and the same as text are in FOLDER/LANGUAGE-COLUMNS.
"""

import argparse
import os
import pathlib
import shutil
import subprocess
import tempfile

from terminal import Terminal

LANGUAGES = {"en": "C.UTF-8", "zh": "zh_CN.UTF-8"}
MIB = 1 << 20
QUESTION = r"[]:：] *\n*$"  # at the end of the screen


class Service:
    """A vell-service with the project "bridge", its owner anna and its viewer ben."""

    def __init__(self, bin_folder, folder, *options):
        self.program, self.folder = bin_folder / "vell-service", folder
        self.anna, self.ben = self._token("anna"), self._token("ben")
        self._run("project", "add", "bridge", "--name", "Bridge")
        self._run("role", "set", "bridge", "anna", "owner")
        self._run("role", "set", "bridge", "ben", "viewer")
        self._process = subprocess.Popen([self.program, "--data", folder, "--listen", "127.0.0.1:0", *options],
                                         stdout=subprocess.PIPE, encoding="utf-8")
        for line in self._process.stdout:
            if line.startswith("vell-service listens on "):
                self.url = line.split()[-1]
                return
        raise RuntimeError("the service did not start")

    def close(self):
        self._process.terminate()
        self._process.wait()

    def _token(self, user):
        return self._run("user", "add", user).split()[-1]

    def _run(self, *words):
        return subprocess.run([self.program, *words, "--data", self.folder], check=True, capture_output=True,
                              encoding="utf-8").stdout


def write(path, size, seed=1):
    path.parent.mkdir(parents=True, exist_ok=True)
    block = bytes((seed * i * i + i // 7) % 251 for i in range(4096))
    with path.open("wb") as file:
        for number in range(max(1, size // 4096)):
            file.write(number.to_bytes(8, "big") + block[8:])


def make_files(folder):
    for number, name in enumerate(["plan.dwg", "notes.txt", "site/index.html", "site/style.css", "site/img/east.png",
                                   "site/img/west.png", "site/old.txt", "photos/entrance.png", "photos/桥梁东侧.png",
                                   "photos/a photo with a very long name that no narrow terminal can show in one line.png",
                                   "图纸/一层平面图.dwg", "图纸/说明（第二版）.docx"]):
        write(folder / name, 20000 + 7000 * number, number + 1)
    for number in range(12):
        write(folder / f"scans/page {number + 1}.tif", MIB // 2, number + 20)
    write(folder / "model.rvt", 12 * MIB, 3)


class Tour:
    def __init__(self, terminal, folder):
        self._terminal, self._folder = terminal, folder

    def all(self):
        self.lists()
        self.conflict()
        self.progress()
        self.sync()
        self.errors()
        self.bin()
        self.help()

    def lists(self):
        self._run("list", "velldoc ls", "velldoc ls -l /", "velldoc ls -l /photos /图纸")
        self._run("tree", "velldoc tree", "velldoc tree -l /图纸")
        self._run("put-versions", "velldoc put --update plan.dwg /", "cp notes.txt plan.dwg",
                  "velldoc put --update plan.dwg /", "velldoc history /plan.dwg", "velldoc info /plan.dwg",
                  "velldoc remark /plan.dwg 'with the new stairs'")
        self._run("find", "velldoc find png", "velldoc find -l '*.png'", "velldoc find --kind image",
                  "velldoc du /", "velldoc recent -l", "velldoc frequent", "velldoc fav add /plan.dwg", "velldoc fav list -l")
        self._run("account", "velldoc whoami", "velldoc projects", "velldoc config", "velldoc can /plan.dwg upload",
                  "velldoc can /plan.dwg", "velldoc share list", "velldoc links /plan.dwg", "velldoc types")

    def conflict(self):
        t = self._terminal
        t.run("echo more >>notes.txt; echo more >>plan.dwg")
        t.start("velldoc put plan.dwg notes.txt /")
        t.wait_for(QUESTION)
        self._picture("conflict-question")
        t.press("x", "Enter")
        t.wait_for("(Enter:|回车：) *\n*$")
        self._picture("conflict-wrong-key")
        t.press("N", "Enter")
        t.wait_for_end()
        self._picture("conflict-answered")

    def progress(self):
        t = self._terminal
        t.start("velldoc put --bwlimit 1M scans /")
        t.wait_for(r"[3-9]\d %")
        self._picture("progress-folder")
        t.wait_for_end()
        self._picture("progress-folder-end")
        t.start("velldoc put --bwlimit 3M model.rvt /")
        t.wait_for(r"[3-9]\d %")
        self._picture("progress-file")
        t.interrupt()
        t.wait_for_end()
        t.press("velldoc put model.rvt /", "Enter")
        t.wait_for_end()
        self._picture("progress-interrupted")
        t.run("mkdir copies")
        t.start("velldoc get --bwlimit 3M -r /scans /model.rvt copies/")
        t.wait_for(r"[2-9]\d %")
        self._picture("progress-get")
        t.wait_for_end()
        self._picture("progress-get-end")

    def sync(self):
        self._run("sync", "velldoc sync up --dry-run site /Site", "velldoc sync up -v site /Site",
                  "mv site/old.txt site/img", "echo new >site/style.css", "velldoc check site /Site",
                  "velldoc sync up --delete --dry-run site /Site", "velldoc sync up --delete site /Site", "velldoc check site /Site")

    def errors(self):
        self._run("errors", "velldoc --url http://127.0.0.1:1/ ls", "velldoc --url http://no.such.host.example/ ls",
                  "velldoc --url nonsense ls", "velldoc --token wrong ls", "velldoc --project tower ls",
                  "velldoc --token $BEN put notes.txt /photos", "velldoc --token $BEN rm /plan.dwg")
        self._run("errors-full", "export VELLDOC_URL=$FULL_URL VELLDOC_TOKEN=$FULL_TOKEN", "velldoc put scans /",
                  "velldoc put model.rvt /", "export VELLDOC_URL=$URL VELLDOC_TOKEN=$TOKEN")
        self._run("errors-names", "velldoc ls /photo", "velldoc cat /plan.dgw", "velldoc lst", "velldoc ls --lng",
                  "velldoc put", "velldoc put nothing.txt /", "velldoc put notes.txt /Nowhere/", "velldoc sync upp a b",
                  "velldoc ls --sort nme", "velldoc mkdir /photos", "velldoc mv /plan.dwg /notes.txt",
                  "velldoc history /photos", "velldoc get /plan.dwg", "velldoc ls /plan.dwg/x", "velldoc rm /x*")

    def bin(self):
        t = self._terminal
        self._run("bin", "velldoc rm --dry-run /notes.txt /scans", "velldoc rm -r --dry-run /notes.txt /scans", "velldoc rm -r /notes.txt /scans", "velldoc trash",
                  "velldoc trash -l", "velldoc trash restore notes.txt", "velldoc trash restore nothing")
        t.start("velldoc trash empty")
        t.wait_for(QUESTION)
        self._picture("bin-question")
        t.press("n", "Enter")
        t.wait_for_end()
        self._picture("bin-kept")

    def help(self):
        self._run("help", "velldoc help")
        self._run("help-put", "velldoc help put")

    def _run(self, name, *lines):
        self._terminal.run(*lines)
        self._picture(name)

    def _picture(self, name):
        self._terminal.picture(self._folder / f"{name}.png")
        (self._folder / f"{name}.txt").write_text(self._terminal.text().rstrip() + "\n", encoding="utf-8")


def tour(bin_folder, target, language, columns):
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        work = folder / "work"
        work.mkdir()
        make_files(work)
        services = [Service(bin_folder, folder / "data"), Service(bin_folder, folder / "full", "--quota", str(3 * MIB))]
        environment = {"LC_ALL": "", "LC_CTYPE": "C.UTF-8", "LANG": LANGUAGES[language], "HOME": name, "TMUX": "",
                       "PATH": f"{bin_folder}:{os.environ['PATH']}", "URL": services[0].url,
                       "TOKEN": services[0].anna, "BEN": services[0].ben, "FULL_URL": services[1].url,
                       "FULL_TOKEN": services[1].anna, "VELLDOC_PROJECT": "bridge"}
        environment.update(VELLDOC_URL=environment["URL"], VELLDOC_TOKEN=environment["TOKEN"])
        subprocess.run(["velldoc", "put", "photos", "图纸", "notes.txt", "plan.dwg", "/"], cwd=work, check=True,
                       env={**os.environ, **environment}, capture_output=True)
        terminal = Terminal(work, columns, environment)
        try:
            Tour(terminal, target).all()
        finally:
            terminal.close()
            for service in services:
                service.close()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("bin", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    arguments = parser.parse_args()
    for language in LANGUAGES:
        for columns in (40, 80, 200):
            target = arguments.folder / f"{language}-{columns}"
            shutil.rmtree(target, ignore_errors=True)
            target.mkdir(parents=True)
            tour(arguments.bin.resolve(), target, language, columns)
            print(target, flush=True)


main()
