"""Clients that do random things, and are killed while they do them."""

import os
import random
import shutil
import subprocess
import threading
import time

from model import FOLDER, Model, content, digest

FAILED = 8  # as the queue's program prints it
IN_FLIGHT_SECONDS = 1

SIZES = [0, 1, 2000, 60_000, 300_000, 3_000_000, 11_000_000, 14_000_000]
WEIGHTS = [1, 2, 8, 8, 6, 3, 1, 1]


class Client(threading.Thread):
    """One user with a folder of its own, on velldoc; or on the client library's queue for whole folders."""

    def __init__(self, number, programs, service, work, seed):
        super().__init__(daemon=True)
        self.name = f"client {number}"
        self.root = f"/w{number}"
        self.programs, self.service = programs, service
        self.work = os.path.join(work, f"w{number}")
        os.makedirs(self.work)
        self.random = random.Random(seed)
        self.model = Model()
        self.model.known[self.root] = FOLDER
        self.counter = 0
        self.kills = 0
        self.acknowledged = 0
        self.failures = 0
        self.is_over = threading.Event()
        self.problem = None

    # The programs

    def velldoc(self, *arguments, may_die=True):
        """The exit code; None for a client that was killed."""
        environment = dict(os.environ, HOME=self.work, LC_ALL="C.UTF-8")
        process = subprocess.Popen(
            [self.programs["velldoc"], "--url", self.service.url, "--project", "p1", *arguments],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env=environment, cwd=self.work)
        return self.finish(process, may_die)

    def queue(self, *arguments):
        """The client library's queue, which goes on where a killed program has left it."""
        process = subprocess.Popen(
            [self.programs["queue"], "--address", self.service.url, "--queue",
             os.path.join(self.work, "queue"), *arguments],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        return self.finish(process, True)

    def finish(self, process, may_die):
        if may_die and self.random.random() < 0.35:
            try:
                self.out, self.error = process.communicate(timeout=self.random.uniform(0.005, 0.6))
                return process.returncode
            except subprocess.TimeoutExpired:
                process.kill()
                process.communicate()
                self.kills += 1
                # The service may still process its last request; the next attempt could not see the result of it.
                time.sleep(IN_FLIGHT_SECONDS)
                return None
        try:
            self.out, self.error = process.communicate(timeout=600)
        except subprocess.TimeoutExpired:
            process.kill()
            process.communicate()
            raise RuntimeError(f"a program hangs: {process.args}") from None
        if process.returncode < 0:
            raise RuntimeError(f"a program crashed with signal {-process.returncode}: "
                               f"{process.args} {self.error.decode(errors='replace')}")
        return process.returncode

    def until_done(self, *arguments):
        """Types the same command until it succeeds. \"arguments\" can be repeated."""
        for _ in range(60):
            if self.velldoc(*arguments) == 0:
                self.acknowledged += 1
                return
            self.failures += 1
            time.sleep(self.random.uniform(0, 0.3))
        raise RuntimeError(f"{arguments} never succeeds: {self.error.decode(errors='replace')}")

    # What is done

    def run(self):
        try:
            self.until_done("mkdir", "-p", self.root)
            actions = [self.put, self.put, self.put, self.update, self.get, self.mkdir, self.rename,
                       self.move, self.remove, self.put_folder]
            while not self.is_over.is_set():
                self.random.choice(actions)()
        except Exception as error:  # the main thread reports it
            self.problem = f"{type(error).__name__}: {error}"

    def new_name(self):
        """Never used twice, so that entries can be moved anywhere."""
        self.counter += 1
        return f"e{self.counter}"

    def some_folder(self):
        return self.random.choice(self.model.folders())

    def write(self, name):
        size = self.random.choices(SIZES, WEIGHTS)[0]
        data = content(self.random.random(), size + self.random.randint(0, 999) * (size > 0))
        path = os.path.join(self.work, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(data)
        return path, digest(data)

    def put(self):
        name = self.new_name()
        local, md5 = self.write(name)
        folder = self.some_folder()
        self.until_done("put", "--on-conflict", "skip", local, folder + "/")
        self.model.apply({f"{folder}/{name}": md5})
        os.remove(local)

    def update(self):
        files = self.model.files()
        if not files:
            return
        path = self.random.choice(files)
        local, md5 = self.write(os.path.basename(path))
        self.until_done("put", "--update", local, os.path.dirname(path) + "/")
        self.model.apply({path: md5})
        os.remove(local)

    def put_folder(self):
        """By the client library's queue, which is killed as well and goes on where it was."""
        name = self.new_name()
        local = os.path.join(self.work, self.root[1:], name)
        # The queue stores at the top level, where the folder of this name is the client's own.
        change = {f"{self.root}/{name}": FOLDER}
        for _ in range(self.random.randint(1, 6)):
            path = f"{name}/{self.new_name()}"
            _, change[f"{self.root}/{path}"] = self.write(f"{self.root[1:]}/{path}")
        for _ in range(60):
            code = self.queue("--add", os.path.dirname(local))
            if code == 0 and f"ended {FAILED} ".encode() not in self.out:
                break
            self.failures += 1
        else:
            raise RuntimeError("the queue never ends")
        self.acknowledged += 1
        self.model.apply(change)
        shutil.rmtree(local)
        os.remove(os.path.join(self.work, "queue"))

    def get(self):
        files = self.model.files()
        if not files:
            return
        path = self.random.choice(files)
        local = os.path.join(self.work, "fetched")
        self.until_done("get", "--force", path, local)
        with open(local, "rb") as file:
            found = digest(file.read())
        if found != self.model.known[path]:
            raise RuntimeError(f"{path} was fetched with other bytes than were stored")
        os.remove(local)

    def attempt(self, change, *arguments):
        """A command that cannot be repeated."""
        if self.velldoc(*arguments) == 0:
            self.acknowledged += 1
            self.model.apply(change)
        else:
            self.failures += 1
            self.model.doubt(change)

    def mkdir(self):
        path = f"{self.some_folder()}/{self.new_name()}"
        self.until_done("mkdir", "-p", path)
        self.model.apply({path: FOLDER})

    def moved(self, path, target):
        below = self.model.below(path)
        return {**{entry: None for entry in below},
                **{target + entry[len(path):]: state for entry, state in below.items()}}

    def some_entry(self):
        uncertain = self.model.uncertain_paths()
        entries = [path for path in self.model.known if path != self.root
                   and not any(other.startswith(path + "/") for other in uncertain)]
        return self.random.choice(entries) if entries else None

    def rename(self):
        path = self.some_entry()
        if path:
            name = self.new_name()
            self.attempt(self.moved(path, f"{os.path.dirname(path)}/{name}"), "rename", path, name)

    def move(self):
        path = self.some_entry()
        folder = self.some_folder()
        if path and folder != os.path.dirname(path) and not (folder + "/").startswith(path + "/"):
            target = f"{folder}/{os.path.basename(path)}"
            self.attempt(self.moved(path, target), "mv", path, folder + "/")

    def remove(self):
        path = self.some_entry()
        if path and self.random.random() < 0.5:
            self.attempt({entry: None for entry in self.model.below(path)}, "rm", "-r", path)

    # What is there in the end

    def found(self):
        """The tree as velldoc brings it; two entries of one name are an error of its own."""
        target = os.path.join(self.work, "tree")
        if self.velldoc("get", "-r", self.root, target, may_die=False) != 0:
            raise RuntimeError("the tree cannot be fetched: " + self.error.decode(errors="replace"))
        tree = {}
        for folder, names, files in os.walk(target):
            remote = self.root + folder[len(target):]
            tree[remote] = FOLDER
            for name in files:
                with open(os.path.join(folder, name), "rb") as file:
                    tree[f"{remote}/{name}"] = digest(file.read())
        return tree
