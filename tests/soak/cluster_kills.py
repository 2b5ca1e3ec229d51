"""Kills services of a cluster, and its PostgreSQL, while clients work; then checks the whole store. Called by scripts/cluster-kills.

The clients and their models are those of scripts/soak. Beside them some threads create folders with equal names and move folders into
each other, which only the service can keep in order, and sweeps run.
"""

import argparse
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import urllib.error
import urllib.request

from clients import Client
from cluster import Cluster

KILLS_FOR_EACH_CRASH = 25
LOOP_FOLDERS = 5
SWEEP_HOURS = "0.05"  # older than any content that a client is about to use

# Each must be 0.
CHECKS = {
    "documents in a cycle or without a folder":
        "WITH RECURSIVE tree (id) AS (SELECT id FROM document WHERE parent_id IS NULL UNION ALL "
        "SELECT d.id FROM document d JOIN tree t ON d.parent_id = t.id) "
        "SELECT (SELECT count(*) FROM document) - (SELECT count(*) FROM tree)",
    "bytes that are counted wrongly":
        "SELECT abs(used_bytes - (SELECT coalesce(sum(size), 0) FROM file) - (SELECT coalesce(sum("
        "least(saved_chunk * 4194304::bigint, file_size)), 0) FROM large_file)) FROM store",
    "versions with a wrong number":
        "SELECT count(*) FROM (SELECT document_id FROM version GROUP BY document_id "
        "HAVING count(*) <> max(number) OR min(number) <> 1) wrong",
    "files whose newest version is another":
        "SELECT count(*) FROM document d WHERE type = 'file' AND file_id <> (SELECT file_id FROM "
        "version v WHERE v.document_id = d.id ORDER BY number DESC LIMIT 1)",
    "documents with another size than their content":
        "SELECT count(*) FROM document d JOIN file f ON f.id = d.file_id WHERE d.size <> f.size",
}


def parse():
    parser = argparse.ArgumentParser()
    parser.add_argument("kills", type=int, nargs="?", default=500)
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    parser.add_argument("--clients", type=int, default=16)
    parser.add_argument("--crashes", type=int, help="of PostgreSQL; one for 25 kills by default")
    parser.add_argument("--programs", default="build/release/bin")
    options = parser.parse_args()
    if options.crashes is None:
        options.crashes = options.kills // KILLS_FOR_EACH_CRASH
    return options


class Requests(threading.Thread):
    """Sends changes to one folder of its own project until it is over, and counts what was acknowledged."""

    def __init__(self, url, seed):
        super().__init__(daemon=True)
        self.url, self.random = url, random.Random(seed)
        self.is_over = threading.Event()
        self.acknowledged = self.unknown = 0

    def send(self, method, path, body=None):
        """The object of the response; None for a failure, whose effect is not known."""
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(self.url + "document-service/" + path, data, method=method,
                                         headers={"Content-Type": "application/json"})
        try:
            with urllib.request.urlopen(request, timeout=60) as response:
                return json.load(response)
        except urllib.error.HTTPError as error:
            if 400 <= error.code < 500:
                return {}  # refused: nothing was changed
        except (OSError, ValueError):
            pass
        return None

    def create(self, name):
        while True:
            made = self.send("POST", "projects/loops/documents",
                             {"parentId": None, "name": name, "type": "dir"})
            if made:
                return made["_id"]
            time.sleep(0.1)


class EqualNames(Requests):
    """Creates folders that all have the same name: every one that was acknowledged is there once."""

    def run(self):
        while not self.is_over.is_set():
            made = self.send("POST", "projects/equal/documents",
                             {"parentId": None, "name": "same", "type": "dir"})
            if made:
                self.acknowledged += 1
            elif made is None:
                self.unknown += 1
            time.sleep(0.02)


class Loops(Requests):
    """Moves folders into each other. Several of them share the folders."""

    folders = []

    def run(self):
        while not self.is_over.is_set():
            moved, target = self.random.sample(self.folders, 2)
            if self.send("PUT", f"documents/{moved}", {"parentId": target}):
                self.acknowledged += 1
            elif self.random.random() < 0.5:
                self.send("PUT", f"documents/{moved}", {"parentId": None})
            time.sleep(0.02)


class Sweeps(threading.Thread):
    def __init__(self, cluster):
        super().__init__(daemon=True)
        self.cluster = cluster
        self.is_over = threading.Event()
        self.count = 0

    def run(self):
        while not self.is_over.wait(1):
            swept = subprocess.run(
                [self.cluster.program, "sweep", "--older-than", SWEEP_HOURS, "--data",
                 self.cluster.data, "--database", self.cluster.postgres.address()],
                capture_output=True, check=False)
            self.count += swept.returncode == 0


def kill_until(cluster, workers, options, dice):
    """Kills until the number is reached or a client has a problem."""
    crash_after = options.kills // max(1, options.crashes)
    for kill in range(1, options.kills + 1):
        time.sleep(dice.uniform(0.1, 0.8))
        number = dice.randrange(cluster.count)
        cluster.kill_service(number)
        if options.crashes and kill % crash_after == 0:
            cluster.postgres.crash()
            cluster.postgres.start()
        cluster.start_service(number)
        if dice.random() < 0.7:  # sometimes another one is killed while this one starts
            cluster.wait_for_service(number)
        if any(getattr(worker, "problem", None) for worker in workers):
            return
        if kill % 50 == 0:
            print(f"  {kill} kills", flush=True)


def revive(cluster):
    for number, process in enumerate(cluster.processes):
        if process.poll() is not None:
            cluster.start_service(number)
        cluster.wait_for_service(number)


def query(cluster, statement):
    answer = subprocess.run(["psql", "-qAt", "-X", "-v", "ON_ERROR_STOP=1", "-c", statement,
                             cluster.postgres.address()], capture_output=True, check=True)
    return int(answer.stdout)


def check_store(cluster, equal):
    problems = []
    for what, statement in CHECKS.items():
        if found := query(cluster, statement):
            problems.append(f"{found} {what}")
    same = query(cluster, "SELECT count(*) FROM document WHERE project_id = 'equal'")
    least = sum(thread.acknowledged for thread in equal)
    most = least + sum(thread.unknown for thread in equal)
    if not least <= same <= most:
        problems.append(f"{same} folders of one name, of which {least} to {most} were created")
    check = subprocess.run([cluster.program, "check", "--data", cluster.data, "--database",
                            cluster.postgres.address()], capture_output=True, check=False)
    if check.returncode != 0:
        problems.append("damaged contents: " + (check.stdout + check.stderr).decode(errors="replace"))
    return problems


def run(cluster, options, work):
    dice = random.Random(options.seed)
    programs = {"velldoc": os.path.join(os.path.abspath(options.programs), "velldoc"),
                "queue": os.path.join(os.path.abspath(options.programs), "vell_transfer_client")}
    clients = [Client(number, programs, cluster, work, dice.random())
               for number in range(options.clients)]
    equal = [EqualNames(cluster.url, dice.random()) for _ in range(2)]
    loops = [Loops(cluster.url, dice.random()) for _ in range(3)]
    Loops.folders = [loops[0].create(f"loop {number}") for number in range(LOOP_FOLDERS)]
    others = [*equal, *loops, Sweeps(cluster)]
    for thread in [*clients, *others]:
        thread.start()
    kill_until(cluster, clients, options, dice)
    for thread in [*clients, *others]:
        thread.is_over.set()
    revive(cluster)
    for thread in [*clients, *others]:
        thread.join(900)
    problems = [f"{client.name}: {client.problem}" for client in clients if client.problem]
    for client in clients if not problems else []:
        problems += [f"{client.name}: {text}" for text in client.model.differences(client.found())]
    problems += check_store(cluster, equal)
    print(f"{sum(client.acknowledged for client in clients)} operations of velldoc acknowledged, "
          f"{sum(client.failures for client in clients)} failed; "
          f"{sum(thread.acknowledged for thread in equal)} folders of one name, "
          f"{sum(thread.acknowledged for thread in loops)} moves; {others[-1].count} sweeps; "
          f"{sum(len(client.model.known) for client in clients)} entries in the end")
    return problems


def main():
    options = parse()
    print(f"Seed {options.seed}: {options.kills} kills of services, {options.crashes} of PostgreSQL, "
          f"{options.clients} clients", flush=True)
    work = tempfile.mkdtemp(prefix="vell-cluster-kills-")
    os.chmod(work, 0o755)
    cluster = Cluster(os.path.join(options.programs, "vell-service"),
                      os.path.join(work, "cluster"), 3)
    try:
        cluster.start()
        problems = run(cluster, options, work)
    finally:
        cluster.stop()
    for text in problems:
        print("PROBLEM: " + text)
    if problems:
        print(f"Everything is kept in {work}; repeat with --seed {options.seed}")
        return 1
    shutil.rmtree(work)
    return 0


sys.exit(main())
