#!/usr/bin/env python3
"""Requests in a second of one, two and three services on PostgreSQL, and of one on SQLite, in turns on the same machine.

Usage: cluster_requests.py BIN [OUT.json] [--documents N] [--rounds N] [--seconds N] [--connections N] [--compare PROGRAM]
BIN is the folder with vell-service and http_load. All are behind HAProxy, with equal stores. Everything shares the processors of this
machine, also the client, so that more services cannot bring more where the processors are the limit.
"""
import argparse
import collections
import json
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "tests" / "soak"))
# pylint: disable=wrong-import-position
import cluster as clusters
import large_store
import usual_requests

TICKS = os.sysconf("SC_CLK_TCK")
SETTINGS = ["max_connections=200", "shared_preload_libraries=pg_stat_statements", "shared_buffers=512MB", "max_wal_size=4GB"]
MIXES = {"read": 0, "write": 1, "mixed 90/10": 0.1}  # the part of changes
REQUESTS = 5000


def processor_seconds(pid):
    """Those of a process and of its children that have ended."""
    try:
        fields = Path(f"/proc/{pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
        return sum(map(int, fields[11:15])) / TICKS
    except OSError:
        return 0  # it has ended


def children(parent):
    found = []
    for entry in Path("/proc").iterdir():
        try:
            if entry.name.isdigit() and (entry / "stat").read_text().rpartition(")")[2].split()[1] == str(parent):
                found.append(entry.name)
        except OSError:
            pass
    return found


class Waits(threading.Thread):
    """Looks again and again what the connections of the services wait for."""

    def __init__(self, postgres):
        super().__init__(daemon=True)
        self.postgres, self.counts = postgres, collections.Counter()
        self.is_over = threading.Event()

    def run(self):
        statement = ("SELECT coalesce(wait_event_type || ' ' || wait_event, 'at work') FROM pg_stat_activity "
                     "WHERE application_name = 'vell-service' AND state <> 'idle'")
        with subprocess.Popen(["psql", "-qAtX", self.postgres.address()], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              text=True, bufsize=1) as shell:
            while not self.is_over.wait(0.05):
                print(statement + "; SELECT '.';", file=shell.stdin)
                while (line := shell.stdout.readline().strip()) != ".":
                    self.counts[line] += 1
            shell.stdin.close()


class Target:
    """What is measured: some services behind a balancer."""

    def __init__(self, name, url, services, balancer, postgres):
        self.name, self.services, self.balancer, self.postgres = name, services, balancer, postgres
        self.port = int(url.rstrip("/").rpartition(":")[2])
        self.runs = {mix: [] for mix in MIXES}
        self.contents = {}

    def groups(self):
        groups = {"services": [process.pid for process in self.services], "haproxy": [self.balancer.pid]}
        if self.postgres:
            master = (Path(self.postgres.folder) / "data" / "postmaster.pid").read_text().split()[0]
            groups["postgresql"] = [master, *children(master)]
        return groups

    def measure(self, program, options, requests):
        """One run."""
        before = {pid: processor_seconds(pid) for pids in self.groups().values() for pid in pids}
        waits = None
        if self.postgres:
            large_store.psql(self.postgres, "-c", "SELECT pg_stat_statements_reset()")
            waits = Waits(self.postgres)
            waits.start()
        output = subprocess.run([program, str(self.port), str(options.connections), str(options.seconds), requests],
                                check=True, stdout=subprocess.PIPE, text=True).stdout
        run = json.loads(output)
        if waits:
            waits.is_over.set()
            waits.join()
            run["waits"] = waits.counts
            run["statements"] = statements(self.postgres)
        run["processor"] = {name: sum(max(0, processor_seconds(pid) - before.get(pid, 0)) for pid in pids)
                            for name, pids in self.groups().items()}
        run["processor"]["client"] = run.pop("processor_s")
        return run


def statements(postgres):
    rows = large_store.psql(postgres, "-F", "\t", "-c", (
        "SELECT calls, round(total_exec_time::numeric, 1), wal_bytes, left(regexp_replace(query, '\\s+', ' ', 'g'), 1000) "
        "FROM pg_stat_statements WHERE query NOT LIKE '%pg_stat%' ORDER BY total_exec_time DESC LIMIT 8"))
    return [{"calls": int(calls), "ms": float(took), "wal_bytes": int(wal), "query": query}
            for calls, took, wal, query in (row.split("\t") for row in rows.splitlines())]


def http(user, method, target, body=None):
    data = b"" if body is None else json.dumps(body).encode()
    head = f"{method} {target} HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer {large_store.token(user)}\r\n"
    if data:
        head += f"Content-Type: application/json\r\nContent-Length: {len(data)}\r\n"
    return head.encode() + b"\r\n" + data


def read(store):
    what = store.dice.randrange(3)
    if what == 0:
        folder, project, _ = store.dice.choice(store.folders)
        return http(store.editor(project), "GET", usual_requests.list_of(
            project, where={"parentId": folder}, order="type name", limit=100))
    name, project, _ = store.file()
    rest = "" if what == 1 else "/histories"
    return http(store.editor(project), "GET", usual_requests.document(name, rest))


def change(store, contents):
    if store.dice.random() < 0.5:
        name, project, _ = store.file()
        return http(store.editor(project), "PUT", usual_requests.document(name), {"name": store.fresh("renamed") + ".dwg"})
    folder, project, _ = store.dice.choice(store.folders)
    return http(project, "POST", usual_requests.list_of(project), {
        "parentId": folder, "type": "file", "name": store.fresh("note") + ".txt", "file": contents[project]})


def write_requests(path, store, contents, part):
    with open(path, "wb") as file:
        for _ in range(REQUESTS):
            request = change(store, contents) if store.dice.random() < part else read(store)
            file.write(b"%d\n%s" % (len(request), request))


def upload_contents(port):
    """A small content of the owner of each project."""
    client = usual_requests.Client(port)
    body = usual_requests.form("note.txt", b"a small content\n")
    return {owner: client.send(owner, "POST", "/base-service/files", body, usual_requests.FORM)["files"][0]
            for owner in range(large_store.PROJECTS)}


class Site:
    """The services, before and after they get their records."""

    def __init__(self, programs, work):
        self.cluster = clusters.Cluster(programs / "vell-service", work / "cluster", 3, settings=SETTINGS)
        self.work, self.others = work, []

    def start(self, documents, earlier):
        self.cluster.start()
        cluster, folder = self.cluster, str(self.work)
        *ports, sqlite_port, behind = clusters.free_ports(4)
        targets = []
        for count, port in zip((1, 2), ports):
            balancer, url = clusters.balance(folder, f"haproxy{count}", port, cluster.ports[:count])
            self.others.append(balancer)
            targets.append(Target(f"{count} on PostgreSQL", url, cluster.processes[:count], balancer, cluster.postgres))
        targets.append(Target("3 on PostgreSQL", cluster.url, cluster.processes, cluster.balancer, cluster.postgres))
        if earlier:
            targets += self.start_earlier(earlier)
        large_store.psql(cluster.postgres, "-c", "CREATE EXTENSION pg_stat_statements")
        large_store.fill(cluster.postgres, documents)
        service = self.start_service(sqlite_port, "--data", self.work / "sqlite")  # makes the schema
        balancer, url = clusters.balance(folder, "haproxy-sqlite", behind, [sqlite_port])
        service.terminate()
        service.wait()
        large_store.copy_to_sqlite(cluster.postgres, self.work / "sqlite" / "records.sqlite")
        service = self.start_service(sqlite_port, "--data", self.work / "sqlite")
        self.others.append(balancer)
        clusters.wait_for(lambda: clusters.answers(url + "base-service/me", 401), "HAProxy")
        return [*targets, Target("1 on SQLite", url, [service], balancer, None)]

    def start_earlier(self, program):
        """One and three services of another build on the same database."""
        *ports, one, three = clusters.free_ports(5)
        services = [self.start_service(port, "--data", self.cluster.data, "--database", self.cluster.postgres.address(),
                                       program=program) for port in ports]
        targets = []
        for count, port in ((1, one), (3, three)):
            balancer, url = clusters.balance(str(self.work), f"haproxy-earlier{count}", port, ports[:count])
            self.others.append(balancer)
            targets.append(Target(f"{count} earlier", url, services[:count], balancer, self.cluster.postgres))
        return targets

    def start_service(self, port, *options, program=None):
        with open(self.work / "services.log", "ab") as log:
            service = subprocess.Popen([program or self.cluster.program, *options, "--listen", f"127.0.0.1:{port}",
                                        "--trusted-proxy", "127.0.0.1"],
                                       stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        self.others.append(service)
        clusters.wait_for(lambda: clusters.answers(f"http://127.0.0.1:{port}/health"), "the service")
        return service

    def stop(self):
        for process in self.others:
            process.kill()
            process.wait()
        self.cluster.stop()


def measure(targets, site, programs, options):
    store = usual_requests.Store(site.cluster.postgres, 1)
    for target in targets:
        target.contents = upload_contents(target.port)
    for number in range(options.rounds):
        for mix, part in MIXES.items():
            # Who comes first meets another machine than who comes last.
            for target in targets[number % len(targets):] + targets[:number % len(targets)]:
                path = site.work / "requests"
                store.dice = random.Random(number)  # equal ones for all
                write_requests(path, store, target.contents, part)
                target.runs[mix].append(target.measure(programs / "http_load", options, path))


def row_of(target, mix):
    runs = target.runs[mix]

    def median(value):
        return statistics.median(value(run) for run in runs)

    row = {"target": target.name, "mix": mix, "per_second": median(lambda run: run["requests"] / run["seconds"]),
           "failures": sum(run["failures"] for run in runs)}
    for kind in ("reads", "changes"):
        row[kind] = {key: median(lambda run, key=key, kind=kind: run[kind][key]) for key in ("p50_ms", "p99_ms")}
    row["processor_us"] = {name: median(lambda run, name=name: 1e6 * run["processor"][name] / run["requests"])
                           for name in runs[0]["processor"]}
    row["runs"] = runs
    return row


def print_row(row):
    kinds = "  ".join(f"{kind} {row[kind]['p50_ms']:6.1f} and {row[kind]['p99_ms']:6.1f} ms"
                      for kind in ("reads", "changes") if row[kind]["p99_ms"])
    costs = ", ".join(f"{name} {cost:.0f}" for name, cost in row["processor_us"].items())
    print(f"{row['mix']:12} {row['target']:16} {row['per_second']:7.0f}/s  {kinds}")
    print(f"{'':29} processor, us for each: {costs}; {row['failures']} failed")


def print_limit(row):
    """What took most of the time in the last run."""
    run = row["runs"][-1]
    if "waits" not in run:
        return
    total = max(1, sum(run["waits"].values()))
    print(f"{row['mix']}, {row['target']}: connections were at: "
          + ", ".join(f"{name} {100 * count / total:.0f} %" for name, count in
                      collections.Counter(run["waits"]).most_common(5)))
    for entry in run["statements"][:4]:
        print(f"    {entry['ms']:8.0f} ms in {entry['calls']} calls: {entry['query'][:110]}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("programs", type=Path)
    parser.add_argument("out", nargs="?")
    parser.add_argument("--documents", type=int, default=100000)
    parser.add_argument("--rounds", type=int, default=4)
    parser.add_argument("--seconds", type=float, default=4)
    parser.add_argument("--connections", type=int, default=32)
    parser.add_argument("--compare", type=Path, help="a vell-service of another build, of which one and three are measured, too")
    options = parser.parse_args()
    work = Path(tempfile.mkdtemp(prefix="vell-cluster-requests-"))
    os.chmod(work, 0o755)
    programs = options.programs.resolve()
    site = Site(programs, work)
    print(f"Load before: {os.getloadavg()[0]:.1f} on {os.cpu_count()} processors", flush=True)
    try:
        targets = site.start(options.documents, options.compare)
        measure(targets, site, programs, options)
    finally:
        site.stop()
        shutil.rmtree(work)
    rows = [row_of(target, mix) for mix in MIXES for target in targets]
    for row in rows:
        print_row(row)
    print()
    for row in rows:
        print_limit(row)
    print(f"\nMedians of {options.rounds} rounds in turns, {options.connections} connections, {options.documents} documents; "
          f"load at the end {os.getloadavg()[0]:.1f}. Client, HAProxy, services and database share the processors.")
    if options.out:
        Path(options.out).write_text(json.dumps(rows, indent=1), encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
