"""A store with many documents, for measuring: large_store.sql fills it."""

import csv
import io
import os
import sqlite3
import subprocess

STATEMENTS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "large_store.sql")
PROJECTS, USERS, LARGE_FOLDERS = 20, 200, 10


def token(user):
    """The access token of the user with this number, who belongs to the project user % 20."""
    return f"token {user}"


def psql(postgres, *arguments, **options):
    return subprocess.run(["psql", "-qAtX", "-v", "ON_ERROR_STOP=1", *arguments, postgres.address()], check=True,
                          stdout=subprocess.PIPE, text=True, **options).stdout


def fill(postgres, documents):
    """Fills the database, whose schema the service has made."""
    psql(postgres, "-v", f"documents={documents}", "-f", STATEMENTS)


def ids(postgres, condition, count):
    """The identifiers, projects and folders of so many documents, in an order that looks random."""
    rows = psql(postgres, "-c", "SELECT id, substr(project_id, 8), coalesce(parent_id, '') FROM document WHERE "
                f"{condition} ORDER BY md5(id) LIMIT {count}")
    return [(name, int(project), folder) for name, project, folder in (row.split("|") for row in rows.splitlines())]


def copy_to_sqlite(postgres, records):
    """Copies the records into a database of the same schema, which no service uses."""
    tables = ["user", "project", "member", "file", "file_uploader", "document", "version", "mark", "download", "link",
              "share", "share_document"]
    with sqlite3.connect(records) as database:
        database.execute("DELETE FROM user")
        for table in tables:
            text = psql(postgres, "-c", f'COPY "{table}" TO STDOUT (FORMAT csv, HEADER, NULL \'<null>\')')
            rows = csv.reader(io.StringIO(text))
            columns = next(rows)
            database.executemany(
                f"INSERT INTO {table} ({', '.join(columns)}) VALUES ({', '.join('?' * len(columns))})",
                ([None if value == "<null>" else value for value in row] for row in rows))
