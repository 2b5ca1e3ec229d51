"""Requests as the clients of an office send them to a large store; see large_store.py."""

import http.client
import json
import random
import urllib.parse

import large_store

FORM = "multipart/form-data; boundary=B"


def path(name, **parameters):
    """Objects become JSON, and everything is encoded."""
    texts = {key: json.dumps(value) if isinstance(value, dict) else value for key, value in parameters.items()}
    return "/" + name + ("?" + urllib.parse.urlencode(texts) if texts else "")


def form(name, content):
    return (b'--B\r\nContent-Disposition: form-data; name="file"; filename="' + name.encode() + b'"\r\n\r\n' + content
            + b"\r\n--B--\r\n")


class Store:
    """What the requests are about: some of the documents that are there."""

    def __init__(self, postgres, seed):
        self.dice = random.Random(seed)
        self.files = large_store.ids(postgres, "type = 'file' AND recycle = 0", 2000)
        self.folders = large_store.ids(postgres, "type = 'dir' AND recycle = 0", 2000)
        self.large = large_store.ids(postgres, "id IN (SELECT parent_id FROM document GROUP BY 1 ORDER BY count(*) DESC "
                                     f"LIMIT {large_store.LARGE_FOLDERS})", large_store.LARGE_FOLDERS)
        self.number = 0
        self.contents = {}  # of a user, by its number: what was uploaded

    def file(self):
        return self.dice.choice(self.files)

    def folder(self):
        return self.dice.choice(self.large if self.dice.random() < 0.2 else self.folders)

    def editor(self, project):
        """A user who may change documents of others in the project."""
        return project + self.dice.choice([0, 20, 80, 100])

    def fresh(self, what):
        self.number += 1
        return f"{what} {self.number} of {self.dice.randrange(1 << 30)}"


class Client:
    """Sends requests one after the other, as the users that they belong to."""

    def __init__(self, port):
        self.connection = http.client.HTTPConnection("127.0.0.1", port, timeout=600)

    def send(self, user, method, target, body=None, content_type="application/json"):
        data = json.dumps(body).encode() if isinstance(body, (dict, list)) else body
        headers = {"Authorization": "Bearer " + large_store.token(user)}
        if data is not None:
            headers["Content-Type"] = content_type
        self.connection.request(method, target, data, headers)
        response = self.connection.getresponse()
        text = response.read()
        if not 200 <= response.status < 300:
            raise SystemExit(f"{method} {target}: {response.status} {text[:300]}")
        return json.loads(text) if response.getheader("Content-Type", "").startswith("application/json") else text


def list_of(project, **parameters):
    return path(f"document-service/projects/project{project}/documents", **parameters)


def document(name, rest="", **parameters):
    return path(f"document-service/documents/{name}{rest}", **parameters)


def open_folder(store, client, order="type name"):
    folder, project, _ = store.folder()
    user, where = store.editor(project), {"parentId": folder}
    count = client.send(user, "GET", list_of(project, where=where, only_count="true"))["count"]
    skip = store.dice.randrange(0, count + 1, 100) if store.dice.random() < 0.5 else 0
    client.send(user, "GET", list_of(project, where=where, order=order, limit=100, skip=skip))


def open_folder_as_ordered(store, client):
    open_folder(store, client, order="")


def sort_folder(store, client):
    keys = ["-name", "updatedAt", "-updatedAt", "createdAt", "fileSize", "-fileSize"]
    open_folder(store, client, "type " + store.dice.choice(keys))


def list_top(store, client):
    project = store.dice.randrange(large_store.PROJECTS)
    client.send(store.editor(project), "GET", list_of(project, where={"parentId": None}, order="type name", limit=100))


def read_document(store, client):
    name, project, _ = store.file()
    client.send(store.editor(project), "GET", document(name))


def read_with_path(store, client):
    name, project, _ = store.file()
    client.send(store.editor(project), "GET", path(f"documents/{name}", info="true"))


def read_history(store, client):
    name, project, _ = store.file()
    client.send(store.editor(project), "GET", document(name, "/histories", order="-createdAt"))


def ask_who(store, client):
    client.send(store.dice.randrange(large_store.USERS), "GET", path("base-service/me"))


def look_for_name(store, client):
    folder, project, _ = store.folder()
    where = {"parentId": folder, "name": store.fresh("letter")}
    client.send(store.editor(project), "GET", list_of(project, where=where, only_count="true"))


def list_marked(store, client):
    project = store.dice.randrange(large_store.PROJECTS)
    client.send(store.editor(project), "GET",
                list_of(project, deep="true", recordType=store.dice.choice([1, 2, 3]), order="-updatedAt", limit=100))


def list_marks(store, client):
    user = store.dice.randrange(large_store.USERS)
    client.send(user, "GET", document("records", where={"type": 2}))
    name, project, _ = store.file()
    client.send(store.editor(project), "GET", document("records", where={"documentId": name}))


def list_own(store, client):
    project = store.dice.randrange(large_store.PROJECTS)
    user = store.editor(project)
    name = client.send(user, "GET", path("base-service/me"))["_id"]
    client.send(user, "GET", list_of(project, deep="true", where={"createdBy": name}, order="-createdAt", limit=50))


def list_bin(store, client):
    project = store.dice.randrange(large_store.PROJECTS)
    client.send(store.editor(project), "GET", list_of(project, category="recycle", order="-updatedAt", limit=100))


def list_linked(store, client):
    name, project, _ = store.file()
    links = client.send(store.editor(project), "GET", document(name))["entity"]
    entity = links[0]["ids"][0] if links else "nothing"
    client.send(store.editor(project), "GET",
                path(f"document-service/projects/project{project}/entities/{entity}/documents"))


def search(store, client):
    folder, project, _ = store.dice.choice(store.folders)
    where = {"parentId": folder, "name": {"$regex": str(store.dice.randrange(1000)), "$options": "i"}}
    client.send(store.editor(project), "GET", list_of(project, deep="true", where=where, order="name", limit=100))


def mark_as_used(store, client):
    name, project, _ = store.file()
    client.send(store.editor(project), "PUT", document(name, "/records"), {"type": 2, "value": True})


def content_of(store, client, user):
    """The identifier of a content that the user has uploaded."""
    if user not in store.contents or store.dice.random() < 0.5:
        body = form("drawing.dwg", store.fresh("content").encode())
        store.contents[user] = client.send(user, "POST", path("base-service/files"), body, FORM)["files"][0]
    return store.contents[user]


def upload(store, client):
    folder, project, _ = store.folder()
    user = store.editor(project)
    made = client.send(user, "POST", list_of(project), {
        "parentId": folder, "type": "file", "name": store.fresh("drawing") + ".dwg", "category": "drawing",
        "file": content_of(store, client, user)})
    store.files[store.dice.randrange(len(store.files))] = (made["_id"], project, folder)


def download(store, client):
    user = store.editor(store.dice.randrange(large_store.PROJECTS))
    client.send(user, "GET", path(f"base-service/files/{content_of(store, client, user)}"))


def upload_version(store, client):
    name, project, _ = store.file()
    user = store.editor(project)
    client.send(user, "PUT", document(name), {"file": content_of(store, client, user)})


def make_folder(store, client):
    folder, project, _ = store.folder()
    client.send(store.editor(project), "POST", list_of(project),
                {"parentId": folder, "type": "dir", "name": store.fresh("folder")})


def rename(store, client):
    name, project, _ = store.file()
    client.send(store.editor(project), "PUT", document(name), {"name": store.fresh("renamed") + ".dwg"})


def move(store, client):
    index = store.dice.randrange(len(store.files))
    name, project, _ = store.files[index]
    folder = store.dice.choice([known for known in store.folders if known[1] == project])[0]
    client.send(store.editor(project), "PUT", path("document-service/documents"),
                {"documentIds": [name], "parentId": folder})
    store.files[index] = (name, project, folder)


def remove_and_restore(store, client):
    name, project, _ = store.file()
    client.send(project, "DELETE", document(name))
    client.send(project, "GET", document(name, "/restore"))


def share(store, client):
    name, project, _ = store.file()
    user = store.editor(project)
    made = client.send(user, "POST", document("shares"),
                       {"hostId": f"project{project}", "documentIds": [name], "allowDownload": True})
    client.send(user, "GET", path(made["path"].lstrip("/")))
    client.send(user, "GET", document("shares", hostId=f"project{project}"))


# How often people do it, for 100 times together: estimated, not observed.
USUAL = {
    open_folder: 20, open_folder_as_ordered: 5, sort_folder: 4, list_top: 4, read_document: 15, read_with_path: 6,
    read_history: 5, ask_who: 4, look_for_name: 5, list_marked: 3, list_marks: 3, list_own: 1, list_bin: 1, list_linked: 1,
    search: 1, mark_as_used: 5, upload: 4, download: 4, upload_version: 2, make_folder: 2, rename: 2, move: 1,
    remove_and_restore: 1, share: 1,
}
