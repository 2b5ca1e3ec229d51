"""Clients and a service that are killed at random, with random faults, and a model of what was acknowledged.

At the end everything acknowledged is there, byte for byte, and nothing is there twice; the service has not kept memory, file
descriptors or temporary files. Called by scripts/soak.
"""

import argparse
import os
import random
import shutil
import subprocess
import sys
import tempfile
import time

from clients import Client
from service import Service

SETTLING_ROUNDS = 3
MOST_GROWTH_KIB = 24 * 1024


def parse():
    parser = argparse.ArgumentParser()
    parser.add_argument("--programs", required=True)
    parser.add_argument("--minutes", type=float, default=10)
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(10**9))
    parser.add_argument("--clients", type=int, default=3)
    return parser.parse_args()


def kill_until(service, clients, minutes, dice):
    """Returns the first problem; None if there was none."""
    end = time.monotonic() + 60 * minutes
    told = time.monotonic()
    while time.monotonic() < end:
        time.sleep(dice.uniform(0.2, 2.0))
        service.kill_and_restart()
        problem = next((client.problem for client in clients if client.problem), None)
        if problem:
            return problem
        if time.monotonic() - told > 60:
            told = time.monotonic()
            print(f"  {service.kills} kills of the service, {sum(c.kills for c in clients)} of clients, "
                  f"{sum(c.acknowledged for c in clients)} acknowledged", flush=True)
    return None


def exercise(clients):
    """The same calm work each time."""
    for client in clients:
        client.random.seed(1)
        for action in (client.put, client.update, client.get, client.mkdir):
            action()


def growth(service, clients):
    """Problems with what the service keeps after calm work."""
    for client in clients:
        client.finish = calm(client)
    exercise(clients)
    before = (service.memory_kib(), service.descriptors())
    for _ in range(SETTLING_ROUNDS):
        exercise(clients)
    after = (service.memory_kib(), service.descriptors())
    print(f"  memory of the service {before[0] // 1024} and {after[0] // 1024} MiB, file descriptors "
          f"{before[1]} and {after[1]}")
    problems = []
    if after[0] - before[0] > MOST_GROWTH_KIB:
        problems.append(f"the service has grown from {before[0]} to {after[0]} KiB")
    if after[1] > before[1] + 8:
        problems.append(f"the service has {after[1]} file descriptors open, {before[1]} before")
    return problems


def calm(client):
    """Ends programs without killing them."""
    finish = client.finish
    return lambda process, may_die: finish(process, False)


def temporary_files(folder):
    return [name for _, _, files in os.walk(os.path.join(folder, "tmp")) for name in files]


def main():
    options = parse()
    dice = random.Random(options.seed)
    options.programs = os.path.abspath(options.programs)
    programs = {"service": os.path.join(options.programs, "vell-service"),
                "velldoc": os.path.join(options.programs, "velldoc"),
                "queue": os.path.join(options.programs, "vell_transfer_client")}
    print(f"Seed {options.seed}, {options.minutes:g} minutes, {options.clients} clients", flush=True)
    work = tempfile.mkdtemp(prefix="vell-soak-")
    data = os.path.join(work, "data")
    with open(os.path.join(work, "service.log"), "wb") as log:
        service = Service(programs["service"], data, log, dice.random())
        service.start(with_faults=True)
        clients = [Client(number, programs, service, work, dice.random())
                   for number in range(options.clients)]
        for client in clients:
            client.start()
        problem = kill_until(service, clients, options.minutes, dice)
        for client in clients:
            client.is_over.set()
        service.restart_quietly()
        for client in clients:
            client.join(600)
        problems = [f"{client.name}: {client.problem}" for client in clients if client.problem]
        if problem and not problems:
            problems = [problem]
        if not problems:
            for client in clients:
                problems += [f"{client.name}: {text}"
                             for text in client.model.differences(client.found())]
        if not problems:
            problems += growth(service, clients)
            service.restart_quietly()
            left = temporary_files(data)
            if left:
                problems.append(f"temporary files are left: {left[:5]}")
            check = subprocess.run([programs["service"], "check", "--data", data],
                                   capture_output=True, check=False)
            if check.returncode != 0:
                problems.append("damaged contents: " + check.stdout.decode(errors="replace"))
        service.stop()
    kills = sum(client.kills for client in clients)
    print(f"{service.kills} kills of the service, {kills} of clients, {service.faults} faults; "
          f"{sum(client.acknowledged for client in clients)} operations acknowledged, "
          f"{sum(client.failures for client in clients)} failed, "
          f"{sum(len(client.model.known) for client in clients)} entries in the end")
    for text in problems:
        print("PROBLEM: " + text)
    if problems:
        print(f"Everything is kept in {work}; repeat with --seed {options.seed}")
        return 1
    shutil.rmtree(work)
    return 0


sys.exit(main())
