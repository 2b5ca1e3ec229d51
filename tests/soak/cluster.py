"""Several services on one PostgreSQL behind HAProxy, on this machine: see scripts/cluster.

    cluster.py start|stop [--services N] [--folder DIR] [--program PATH]
"""

import argparse
import glob
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

EXAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "packaging", "service", "haproxy.cfg")
LONGEST_START = 120  # seconds; machines may be busy


def free_ports(count):
    probes = [socket.create_server(("127.0.0.1", 0)) for _ in range(count)]
    ports = [probe.getsockname()[1] for probe in probes]
    for probe in probes:
        probe.close()
    return ports


def wait_for(is_true, what):
    deadline = time.monotonic() + LONGEST_START
    while not is_true():
        if time.monotonic() > deadline:
            raise SystemExit(f"{what} does not answer")
        time.sleep(0.05)


def answers(url, status=200):
    try:
        with urllib.request.urlopen(url, timeout=10) as response:
            return response.status == status
    except urllib.error.HTTPError as error:
        return error.code == status
    except OSError:
        return False


class Postgres:
    """A server of its own, which listens on a socket only. PostgreSQL refuses to be run by root."""

    def __init__(self, folder, connections, settings=()):
        self.programs = sorted(glob.glob("/usr/lib/postgresql/*/bin"))[-1]
        self.as_user = []
        if os.geteuid() == 0:
            self.as_user = ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups"]
        self.folder = os.path.join(folder, "postgresql")
        self.settings = [f"max_connections={connections}", *settings]
        self.socket = ""

    def initialise(self):
        # The path of a socket must be short.
        self.socket = tempfile.mkdtemp(prefix="vell-cluster-", dir="/tmp")
        os.makedirs(self.folder)
        if self.as_user:
            for folder in (self.folder, self.socket):
                shutil.chown(folder, "nobody", "nogroup")
        if self.as_user and subprocess.run([*self.as_user, "test", "-x", self.folder],
                                           check=False).returncode:
            raise SystemExit(f"the user nobody, who runs PostgreSQL, cannot enter {self.folder}; "
                             "choose another place with --folder")
        self.run("initdb", "-U", "vell", "-A", "trust", "-E", "UTF8", "--locale=C.UTF-8")
        self.start()
        subprocess.run(["createdb", "-h", self.socket, "-U", "vell", "vell"], check=True)

    def run(self, program, *arguments):
        with open(os.path.join(os.path.dirname(self.folder), "postgresql.log"), "ab") as log:
            subprocess.run([*self.as_user, os.path.join(self.programs, program), "-D",
                            os.path.join(self.folder, "data"), *arguments],
                           check=True, stdin=subprocess.DEVNULL, stdout=log, stderr=log)

    def start(self):
        self.run("pg_ctl", "start", "-w", "-t", str(LONGEST_START), "-l", self.folder + "/log",
                 "-o", " ".join([f"-c listen_addresses='' -k {self.socket}", *(f"-c {s}" for s in self.settings)]))

    def crash(self):
        """Ends it as a loss of power would end the processes."""
        self.run("pg_ctl", "stop", "-m", "immediate")

    def address(self):
        return f"postgresql://vell@/vell?host={self.socket}"


def balance(folder, name, port, services):
    """Starts HAProxy with the file of the package. Returns the process and the address."""
    with open(EXAMPLE, encoding="ascii") as example:
        text = example.read()
    text = text.replace("127.0.0.1:8000", f"127.0.0.1:{port}")
    text = re.sub(r"\n    server .*", "", text) + "".join(
        f"    server service{number} 127.0.0.1:{own}\n" for number, own in enumerate(services))
    path = os.path.join(folder, name + ".cfg")
    with open(path, "w", encoding="ascii") as file:
        file.write(text)
    program = shutil.which("haproxy", path=os.environ.get("PATH", "") + ":/usr/sbin")
    with open(os.path.join(folder, name + ".log"), "ab") as log:
        process = subprocess.Popen([program, "-db", "-f", path], stdin=subprocess.DEVNULL,
                                   stdout=log, stderr=log, start_new_session=True)
    url = f"http://127.0.0.1:{port}/"
    wait_for(lambda: answers(url + "base-service/me"), "HAProxy")
    return process, url


class Cluster:
    def __init__(self, program, folder, services, log_requests=False, settings=()):
        self.program, self.folder = os.path.abspath(program), os.path.abspath(folder)
        self.count = services
        self.log_requests = log_requests
        self.postgres = Postgres(self.folder, 22 * services + 30, settings)
        self.data = os.path.join(self.folder, "data")
        self.ports, self.processes = [], []
        self.balancer = None
        self.url = ""

    def start(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        os.makedirs(self.folder)
        os.chmod(self.folder, 0o755)
        self.postgres.initialise()
        *self.ports, port = free_ports(self.count + 1)
        self.processes = [None] * self.count
        for number in range(self.count):
            self.start_service(number)
        for number in range(self.count):
            self.wait_for_service(number)
        self.start_balancer(port)

    def start_service(self, number):
        command = [self.program, "--data", self.data, "--database", self.postgres.address(),
                   "--listen", f"127.0.0.1:{self.ports[number]}", "--trusted-proxy", "127.0.0.1",
                   "--drain", "3"]
        if self.log_requests:
            command += ["--access-log", os.path.join(self.folder, f"access-{number}.log")]
        with open(os.path.join(self.folder, f"service-{number}.log"), "ab") as log:
            self.processes[number] = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log,
                                                      stderr=log, start_new_session=True)

    def wait_for_service(self, number):
        wait_for(lambda: answers(f"http://127.0.0.1:{self.ports[number]}/health"),
                 f"service {number}")

    def start_balancer(self, port):
        self.balancer, self.url = balance(self.folder, "haproxy", port, self.ports)

    def kill_service(self, number):
        self.processes[number].kill()
        self.processes[number].wait()

    def stop(self):
        for process in [self.balancer, *self.processes]:
            if process and process.poll() is None:
                process.send_signal(signal.SIGKILL)
                process.wait()
        if self.postgres.socket:
            self.postgres.run("pg_ctl", "stop", "-m", "fast")
            shutil.rmtree(self.postgres.socket, ignore_errors=True)

    def state(self):
        return {"url": self.url, "socket": self.postgres.socket,
                "pids": [process.pid for process in [self.balancer, *self.processes]]}


def is_ours(pid, folder):
    try:
        with open(f"/proc/{pid}/cmdline", "rb") as line:
            return os.fsencode(folder) in line.read()
    except OSError:
        return False


def stop_from(folder):
    folder = os.path.abspath(folder)
    path = os.path.join(folder, "state.json")
    if not os.path.exists(path):
        raise SystemExit("there is no cluster to be stopped")
    with open(path, encoding="ascii") as file:
        state = json.load(file)
    for pid in state["pids"]:
        if is_ours(pid, folder):
            os.kill(pid, signal.SIGTERM)
    wait_for(lambda: not any(is_ours(pid, folder) for pid in state["pids"]), "the end of a process")
    Postgres(folder, 0).run("pg_ctl", "stop", "-m", "fast")
    shutil.rmtree(state["socket"], ignore_errors=True)
    os.remove(path)


def start_in(options):
    if os.path.exists(os.path.join(options.folder, "state.json")):
        stop_from(options.folder)
    cluster = Cluster(options.program, options.folder, options.services, log_requests=True)
    try:
        cluster.start()
    except BaseException:
        cluster.stop()
        raise
    with open(os.path.join(options.folder, "state.json"), "w", encoding="ascii") as file:
        json.dump(cluster.state(), file)
    commands = [(f"velldoc --url {cluster.url} --project p1 put FILE /", "stores a file"),
                (f"curl {cluster.url}base-service/me", "asks one of the services")]
    commands += [(f"curl http://127.0.0.1:{port}/metrics", "prints the figures of one") for port in cluster.ports]
    commands += [(f"psql '{cluster.postgres.address()}'", "opens the database"),
                 ("scripts/cluster stop", "ends everything")]
    width = max(len(command) for command, _ in commands)
    print(f"{options.services} services are behind {cluster.url}\n")
    for command, purpose in commands:
        print(f"    {command.ljust(width)}  {purpose}")
    print(f"""
Logs, the data folder and the file of HAProxy are in {options.folder}.""")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("command", choices=["start", "stop"])
    parser.add_argument("--services", type=int, default=3)
    parser.add_argument("--folder", default="build/cluster")
    parser.add_argument("--program", default="build/release/bin/vell-service")
    options = parser.parse_args()
    if options.services < 1:
        parser.error("there must be a service")
    if options.command == "stop":
        stop_from(options.folder)
    else:
        start_in(options)


if __name__ == "__main__":
    sys.exit(main())
