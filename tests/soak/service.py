"""A service that is killed and started again, with faults."""

import os
import random
import signal
import socket
import subprocess
import threading
import time
import urllib.request

FAULTS = [
    "lose-reply,verb=POST,nth=2,times=2",
    "lose-reply,verb=PUT,times=2",
    "lose-reply,verb=DELETE,times=1",
    "drop-after=20000,verb=POST,path=/base-service,times=2",
    "status=503,verb=GET,nth=3,times=3",
    "status=503,verb=POST,times=2",
    "cut-reply=5,verb=POST,path=/document-service,times=1",
    "cut-reply=1000,verb=GET,path=/base-service/files,times=2",
    "forget-chunk,verb=POST,path=/base-service/largefiles,nth=2,times=2",
    "slow=400,verb=POST,times=2",
]


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Service:
    def __init__(self, program, data, log, seed):
        self.program, self.data, self.log = program, data, log
        self.random = random.Random(seed)
        self.port = free_port()
        self.url = f"http://127.0.0.1:{self.port}/"
        self.kills = 0
        self.faults = 0
        self.process = None
        self.lock = threading.Lock()

    def start(self, with_faults):
        arguments = [self.program, "--data", self.data, "--listen", f"127.0.0.1:{self.port}"]
        if with_faults:
            for fault in self.random.sample(FAULTS, self.random.randint(0, 2)):
                arguments += ["--fault", fault]
                self.faults += 1
        self.process = subprocess.Popen(arguments, stdout=self.log, stderr=self.log)
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            if self.process.poll() is not None:
                raise SystemExit(f"the service does not start: exit code {self.process.returncode}")
            try:
                urllib.request.urlopen(self.url + "base-service/me", timeout=10).read()
                return
            except OSError:
                time.sleep(0.02)
        raise SystemExit("the service does not answer")

    def kill_and_restart(self):
        with self.lock:
            self.process.kill()
            self.process.wait()
            self.kills += 1
            self.start(with_faults=True)

    def restart_quietly(self):
        with self.lock:
            self.stop()
            self.start(with_faults=False)

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def memory_kib(self):
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmRSS"))
