"""Shows how PostgreSQL runs the queries of the service on a large store, and fails if one of them reads or sorts a whole large table.

Called by scripts/query-plans. The queries are those that the service really sends: usual requests go to it, and PostgreSQL writes the
plan of each statement with its times and pages (auto_explain).
"""

import argparse
import collections
import json
import os
import random
import re
import shutil
import statistics
import sys
import tempfile
import time

import large_store
import usual_requests
from cluster import Cluster

SETTINGS = ["logging_collector=on", "log_destination=jsonlog", "log_directory=plans", "log_filename=plans",
            "log_rotation_size=0", "log_rotation_age=0", "shared_buffers=512MB", "max_wal_size=4GB"]
EXPLAIN = {"session_preload_libraries": "auto_explain", "auto_explain.log_min_duration": "0",
           "auto_explain.log_analyze": "on", "auto_explain.log_buffers": "on", "auto_explain.log_format": "json",
           "auto_explain.log_nested_statements": "on"}
LARGE_ROWS = 10000  # of a table
TOO_MANY = 0.02  # of the rows of the table "document": a larger sort is one of everything


def parse():
    parser = argparse.ArgumentParser()
    parser.add_argument("documents", type=int, nargs="?", default=1000000)
    parser.add_argument("--requests", type=int, default=3000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--program", default="build/release/bin/vell-service")
    parser.add_argument("--out", help="a file for the plans as JSON")
    options = parser.parse_args()
    if options.documents < 60000:
        parser.error("fewer than 60000 documents would say nothing")
    return options


class Query:
    """All runs of one statement."""

    def __init__(self, text):
        self.text = text
        self.times, self.pages = [], []
        self.faults = collections.Counter()
        self.slowest = None

    def add(self, plan, faults):
        took = plan["Plan"]["Actual Total Time"]
        if not self.times or took > max(self.times):
            self.slowest = plan
        self.times.append(took)
        self.pages.append(plan["Plan"]["Shared Hit Blocks"] + plan["Plan"]["Shared Read Blocks"])
        self.faults.update(faults)

    def is_internal(self):
        """Whether PostgreSQL sent it itself, to check a reference."""
        return " FROM ONLY " in self.text or "used_bytes" in self.text


def statement(text):
    """What was prepared, without the name that it got, and with one line for each."""
    text = re.sub(r"^PREPARE \S+ AS ", "", text)
    return re.sub(r"\s+", " ", text).strip()


def faults_of(node, tables, documents):
    """What reads or sorts a whole large table in a plan."""
    found = []
    if node["Node Type"] == "Seq Scan" and tables.get(node["Relation Name"], 0) >= LARGE_ROWS:
        found.append("reads the whole table " + node["Relation Name"])
    if "Sort" in node["Node Type"]:
        child = node["Plans"][0]
        if child["Actual Rows"] * child["Actual Loops"] > TOO_MANY * documents:
            found.append(f"sorts {child['Actual Rows']} rows by {', '.join(node['Sort Key'])}")
    for child in node.get("Plans", []):
        found += faults_of(child, tables, documents)
    return found


def shape(node):
    """The nodes of a plan in one line, from the top."""
    name = node["Node Type"].replace("Index Only Scan", "index only").replace("Index Scan", "index").lower()
    of = node.get("Index Name") or node.get("Relation Name") or node.get("CTE Name")
    below = ", ".join(shape(child) for child in node.get("Plans", []))
    return name + (f" {of}" if of else "") + (f" ({below})" if below else "")


def read_queries(log, tables, documents):
    queries = {}
    with open(log, encoding="utf-8") as lines:
        for line in lines:
            entry = json.loads(line)
            start = entry["message"].find("plan:\n")
            if start < 0 or entry.get("application_name") != "vell-service":
                continue
            plan = json.loads(entry["message"][start + 6:])
            text = statement(plan["Query Text"])
            query = queries.setdefault(text, Query(text))
            query.add(plan, faults_of(plan["Plan"], tables, documents))
    return queries.values()


def send_requests(cluster, options):
    store = usual_requests.Store(cluster.postgres, options.seed)
    client = usual_requests.Client(cluster.ports[0])
    names, weights = zip(*usual_requests.USUAL.items())
    # Each often enough that PostgreSQL chooses between a plan for these values and one for all.
    for operation in names:
        for _ in range(12):
            operation(store, client)
    dice = random.Random(options.seed)
    for operation in dice.choices(names, weights, k=options.requests):
        operation(store, client)


def print_query(number, query, total):
    times = sorted(query.times)
    print(f"{number:3}. {len(times):6} times ({100 * len(times) / total:.0f} %), median "
          f"{statistics.median(times):.2f} ms, longest {times[-1]:.1f} ms, pages: median "
          f"{statistics.median(query.pages):.0f}, most {max(query.pages)}")
    print(f"     {query.text[:400]}{'…' if len(query.text) > 400 else ''}")
    print(f"     slowest: {shape(query.slowest['Plan'])}")
    for fault, count in query.faults.most_common(5):
        print(f"     FAULT, {count} times: {fault}")
    print()


def sizes(postgres):
    rows = large_store.psql(postgres, "-c", (
        "SELECT relname, reltuples::bigint, pg_table_size(oid), pg_indexes_size(oid) FROM pg_class WHERE relkind = 'r' "
        "AND relnamespace = 'public'::regnamespace ORDER BY 3 DESC"))
    return {name: tuple(map(int, rest)) for name, *rest in (row.split("|") for row in rows.splitlines())}


def measure(cluster, options):
    started = time.monotonic()
    large_store.fill(cluster.postgres, options.documents)
    found = sizes(cluster.postgres)
    print(f"{options.documents} documents, made in {time.monotonic() - started:.0f} s\n")
    print("table                 rows   table MiB   indexes MiB")
    for name, (rows, table, indexes) in found.items():
        if rows >= LARGE_ROWS:
            print(f"{name:15} {rows:10}  {table / 2**20:10.0f}  {indexes / 2**20:12.0f}")
    print(flush=True)
    large_store.psql(cluster.postgres, *(word for name, value in EXPLAIN.items() for word in
                                         ("-c", f"ALTER DATABASE vell SET {name} = '{value}'")))
    cluster.kill_service(0)  # its connections do not know the new settings
    cluster.start_service(0)
    cluster.wait_for_service(0)
    send_requests(cluster, options)
    log = os.path.join(cluster.postgres.folder, "data", "plans", "plans.json")
    queries = read_queries(log, {name: row[0] for name, row in found.items()}, options.documents)
    return sorted(queries, key=lambda query: -len(query.times))


def report(queries, options):
    total = sum(len(query.times) for query in queries)
    asked = [query for query in queries if not query.is_internal()]
    bad = [query for query in queries if query.faults]
    print(f"The ten most frequent of {len(asked)} queries, which the service sent {total} times:\n")
    for number, query in enumerate(asked[:10], 1):
        print_query(number, query, total)
    others = [query for query in bad if query not in asked[:10]]
    if others:
        print("Others with faults:\n")
    for query in others:
        print_query(queries.index(query) + 1, query, total)
    slow = sorted((query for query in asked if query not in bad), key=lambda query: -max(query.times))[:5]
    print("The slowest others:\n")
    for query in slow:
        print_query(queries.index(query) + 1, query, total)
    if options.out:
        with open(options.out, "w", encoding="utf-8") as file:
            json.dump([{"query": query.text, "times": len(query.times), "median_ms": statistics.median(query.times),
                        "pages": statistics.median(query.pages), "faults": query.faults, "slowest": query.slowest}
                       for query in queries], file, indent=1)
    print(f"{len(bad)} of {len(queries)} queries read or sort a whole large table.")
    return 1 if bad else 0


def main():
    options = parse()
    work = tempfile.mkdtemp(prefix="vell-query-plans-")
    os.chmod(work, 0o755)
    cluster = Cluster(options.program, os.path.join(work, "cluster"), 1, settings=SETTINGS)
    try:
        cluster.start()
        return report(measure(cluster, options), options)
    finally:
        cluster.stop()
        shutil.rmtree(work)


sys.exit(main())
