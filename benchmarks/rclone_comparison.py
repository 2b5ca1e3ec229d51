#!/usr/bin/env python3
"""velldoc with its service beside rclone with its own SFTP server, both as processes on loopback and one disk, in turns.

Usage: rclone_comparison.py BIN [OUT.json] [--rounds N] [--only NAME,...]
BIN is the folder with velldoc and vell-service. The service has each content on the disk before it acknowledges it; rclone's does not.
"""
import argparse
import json
import os
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SMALL_FILES, SMALL_BYTES = 2000, 10 * 1024
LARGE_BYTES = 300 * 1024 * 1024
TINY_FILES = 10000


def seconds(command, env):
    start = time.perf_counter()
    subprocess.run(command, env=env, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    return time.perf_counter() - start


def free_port():
    with socket.socket() as found:
        found.bind(("127.0.0.1", 0))
        return found.getsockname()[1]


def write_files(folder, count, size, mark):
    """count files of size bytes with contents that occur nowhere else."""
    folder.mkdir(parents=True)
    for number in range(count):
        begin = f"{mark} {number} ".encode()
        (folder / f"file {number}.txt").write_bytes((begin + b"v" * size)[:size])


def write_large(path, mark):
    path.parent.mkdir(parents=True)
    block = os.urandom(1 << 20)
    with open(path, "wb") as file:
        for number in range(LARGE_BYTES >> 20):
            file.write((f"{mark} {number}".encode() + block)[: 1 << 20])


class Site:
    def __init__(self, programs, work):
        self.velldoc = str(programs / "velldoc")
        self.work = work
        self.env = {"PATH": os.environ["PATH"], "HOME": str(work / "home"), "LC_ALL": "C"}
        (work / "home").mkdir()
        self.service = subprocess.Popen([programs / "vell-service", "--data", work / "service"], stdout=subprocess.PIPE,
                                        text=True)
        self.url = self.service.stdout.readline().split()[-1]
        (work / "sftp").mkdir()
        port = free_port()
        self.sftp = subprocess.Popen(["rclone", "serve", "sftp", work / "sftp", "--addr", f"127.0.0.1:{port}", "--user", "u",
                                      "--pass", "p"], env=self.env, stderr=subprocess.DEVNULL)
        secret = subprocess.run(["rclone", "obscure", "p"], env=self.env, check=True, stdout=subprocess.PIPE, text=True)
        self.options = ["--sftp-host", "127.0.0.1", "--sftp-port", str(port), "--sftp-user", "u", "--sftp-pass",
                        secret.stdout.strip(), "--config", str(work / "home" / "none.conf")]
        for _ in range(100):
            with socket.socket() as probe:
                if probe.connect_ex(("127.0.0.1", port)) == 0:
                    break
            time.sleep(0.1)

    def close(self):
        for process in (self.service, self.sftp):
            process.terminate()
            process.wait()

    def vell(self, *words):
        return seconds([self.velldoc, "--url", self.url, *map(str, words)], self.env)

    def rclone(self, *words):
        return seconds(["rclone", *map(str, words), *self.options], self.env)


def measure(site, name, number):
    """One round of one task. Returns the seconds of velldoc and of rclone, in turns who begins."""
    work, mark = site.work / f"{name}-{number}", f"{name} {number}"
    there = f"{name}-{number}"
    if name in ("put 2,000", "get 2,000", "sync again", "put 10,000 tiny"):
        count, size = (TINY_FILES, 20) if "tiny" in name else (SMALL_FILES, SMALL_BYTES)
        write_files(work / "from", count, size, mark)
    else:
        write_large(work / "from" / "large", mark)
    up = {"velldoc": lambda: site.vell("put", work / "from", f"/{there}"),
          "rclone": lambda: site.rclone("copy", work / "from", f":sftp:{there}")}
    down = {"velldoc": lambda: site.vell("get", "-r", f"/{there}", work / "velldoc"),
            "rclone": lambda: site.rclone("copy", f":sftp:{there}", work / "rclone")}
    again = {"velldoc": lambda: site.vell("sync", "up", work / "from", f"/{there}"),
             "rclone": lambda: site.rclone("sync", work / "from", f":sftp:{there}")}
    order = ["velldoc", "rclone"] if number % 2 == 0 else ["rclone", "velldoc"]
    found = {}
    for program in order:
        first = up[program]()
        if name.startswith("put"):
            found[program] = first
        elif name.startswith("get"):
            found[program] = down[program]()
        else:
            again[program]()
            found[program] = again[program]()
    shutil.rmtree(work)
    return found["velldoc"], found["rclone"]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("programs", type=Path)
    parser.add_argument("out", nargs="?")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--only", default="")
    arguments = parser.parse_args()
    if not shutil.which("rclone"):
        print("rclone is not installed (scripts/setup benchmark does it): nothing was compared.")
        return 0
    names = ["put 2,000", "get 2,000", "sync again", "put 300 MiB", "get 300 MiB", "put 10,000 tiny"]
    if arguments.only:
        names = [name for name in names if name in arguments.only.split(";")]
    rows = []
    with tempfile.TemporaryDirectory(prefix="vell-rclone-") as folder:
        site = Site(arguments.programs.resolve(), Path(folder))
        try:
            for name in names:
                rounds = 1 if "tiny" in name else arguments.rounds
                pairs = [measure(site, name, number) for number in range(rounds)]
                ours, theirs = (statistics.median(column) for column in zip(*pairs))
                rows.append({"task": name, "velldoc_s": ours, "rclone_s": theirs, "ratio": ours / theirs, "pairs": pairs})
                print(f"{name:16} velldoc {ours:7.2f} s   rclone {theirs:7.2f} s   ratio {ours / theirs:5.2f}", flush=True)
        finally:
            site.close()
    print("Medians of rounds in turns; load of the machine at the end: %.1f, %.1f, %.1f." % os.getloadavg())
    if arguments.out:
        Path(arguments.out).write_text(json.dumps(rows, indent=1))
    return 0


if __name__ == "__main__":
    sys.exit(main())
