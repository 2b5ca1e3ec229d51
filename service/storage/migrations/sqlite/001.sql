-- Times are milliseconds since 1970-01-01T00:00:00Z. Identifiers are 24 hexadecimal digits, but for
-- projects, whose identifiers the clients choose, and for the built-in user.

CREATE TABLE user (
    id         TEXT PRIMARY KEY NOT NULL,
    name       TEXT NOT NULL UNIQUE,
    token_hash TEXT UNIQUE, -- null only for the built-in user, who needs no token
    created_at INTEGER NOT NULL
) WITHOUT ROWID;

INSERT INTO user (id, name, token_hash, created_at) VALUES ('local', 'local', NULL, 0);

CREATE TABLE project (
    id         TEXT PRIMARY KEY NOT NULL,
    name       TEXT NOT NULL,
    created_at INTEGER NOT NULL
) WITHOUT ROWID;

CREATE TABLE member (
    project_id TEXT NOT NULL REFERENCES project (id) ON DELETE CASCADE,
    user_id    TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE,
    role       TEXT NOT NULL CHECK (role IN ('owner', 'editor', 'contributor', 'viewer')),
    PRIMARY KEY (project_id, user_id)
) WITHOUT ROWID;
CREATE INDEX member_user ON member (user_id);

-- One row for each stored content; the bytes are on disk under the MD5.
CREATE TABLE file (
    id         TEXT PRIMARY KEY NOT NULL,
    md5        TEXT NOT NULL UNIQUE,
    size       INTEGER NOT NULL CHECK (size >= 0),
    name       TEXT NOT NULL, -- that of its first upload
    created_at INTEGER NOT NULL
) WITHOUT ROWID;

CREATE TABLE file_uploader (
    file_id TEXT NOT NULL REFERENCES file (id) ON DELETE CASCADE,
    user_id TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE,
    PRIMARY KEY (file_id, user_id)
) WITHOUT ROWID;
CREATE INDEX file_uploader_user ON file_uploader (user_id);

-- Uploads by chunks that are under way; a finished one is a row of file.
CREATE TABLE large_file (
    id          TEXT PRIMARY KEY NOT NULL,
    md5         TEXT NOT NULL UNIQUE,
    file_name   TEXT NOT NULL,
    file_size   INTEGER NOT NULL CHECK (file_size > 0),
    total_chunk INTEGER NOT NULL CHECK (total_chunk > 0),
    saved_chunk INTEGER NOT NULL DEFAULT 0 CHECK (saved_chunk BETWEEN 0 AND total_chunk),
    md5_state   BLOB, -- of the chunks held, so that a restart has nothing to read again
    created_at  INTEGER NOT NULL,
    created_by  TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE,
    updated_at  INTEGER NOT NULL
) WITHOUT ROWID;
CREATE INDEX large_file_creator ON large_file (created_by);

CREATE TABLE document (
    id          TEXT PRIMARY KEY NOT NULL,
    project_id  TEXT NOT NULL REFERENCES project (id) ON DELETE CASCADE,
    parent_id   TEXT REFERENCES document (id) DEFERRABLE INITIALLY DEFERRED,
    type        TEXT NOT NULL CHECK (type IN ('dir', 'file')),
    name        TEXT NOT NULL,
    category    TEXT NOT NULL DEFAULT '',
    host_id     TEXT NOT NULL DEFAULT '',
    host_type   INTEGER NOT NULL DEFAULT 0,
    ord         INTEGER NOT NULL DEFAULT 0,
    remark      TEXT NOT NULL DEFAULT '',
    status      TEXT NOT NULL DEFAULT '',
    pwd         TEXT NOT NULL DEFAULT '',
    preview_id  TEXT NOT NULL DEFAULT '',
    file_id     TEXT REFERENCES file (id),
    suffix      TEXT NOT NULL DEFAULT '',
    size        INTEGER NOT NULL DEFAULT 0,
    recycle     INTEGER NOT NULL DEFAULT 0, -- 1: deleted itself; 2: below a deleted folder
    recycled_at INTEGER,
    created_at  INTEGER NOT NULL,
    created_by  TEXT NOT NULL REFERENCES user (id),
    updated_at  INTEGER NOT NULL,
    updated_by  TEXT NOT NULL REFERENCES user (id),
    CHECK ((type = 'file') = (file_id IS NOT NULL))
);
-- One index for each sort that clients page by. Each ends with the id, so that equal keys have one
-- order, and carries what the usual filters read, so that counting touches the index alone.
CREATE INDEX document_default ON document
    (project_id, parent_id, type, ord, updated_at DESC, id DESC, category) WHERE recycle = 0;
CREATE INDEX document_name ON document
    (project_id, parent_id, name, id, type, category) WHERE recycle = 0;
CREATE INDEX document_updated ON document
    (project_id, parent_id, updated_at, id, type, category) WHERE recycle = 0;
CREATE INDEX document_created ON document
    (project_id, parent_id, created_at, id, type, category) WHERE recycle = 0;
CREATE INDEX document_size ON document
    (project_id, parent_id, size, id, type, category) WHERE recycle = 0;
CREATE INDEX document_recent ON document
    (project_id, created_by, created_at, id, type, category) WHERE recycle = 0;
CREATE INDEX document_bin ON document (project_id, recycle, parent_id) WHERE recycle > 0;
CREATE INDEX document_parent ON document (parent_id);
CREATE INDEX document_file ON document (file_id);
CREATE INDEX document_creator ON document (created_by);
CREATE INDEX document_updater ON document (updated_by);

-- Every content that a document has had, the current one included.
CREATE TABLE version (
    id          TEXT PRIMARY KEY NOT NULL,
    document_id TEXT NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    number      INTEGER NOT NULL,
    file_id     TEXT NOT NULL REFERENCES file (id),
    name        TEXT NOT NULL,
    remark      TEXT NOT NULL DEFAULT '',
    created_at  INTEGER NOT NULL,
    created_by  TEXT NOT NULL REFERENCES user (id),
    updated_at  INTEGER NOT NULL,
    UNIQUE (document_id, number)
);
CREATE INDEX version_file ON version (file_id);
CREATE INDEX version_creator ON version (created_by);

CREATE TABLE mark (
    user_id     TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE,
    document_id TEXT NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    type        INTEGER NOT NULL,
    created_at  INTEGER NOT NULL,
    PRIMARY KEY (user_id, type, document_id)
) WITHOUT ROWID;
CREATE INDEX mark_document ON mark (document_id, user_id);

CREATE TABLE download (
    user_id     TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE,
    document_id TEXT NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    at          INTEGER NOT NULL,
    PRIMARY KEY (document_id, user_id)
) WITHOUT ROWID;
CREATE INDEX download_user ON download (user_id);

CREATE TABLE link (
    document_id TEXT NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    kind        TEXT NOT NULL,
    entity_id   TEXT NOT NULL,
    position    INTEGER NOT NULL,
    PRIMARY KEY (document_id, kind, entity_id)
) WITHOUT ROWID;
CREATE INDEX link_entity ON link (entity_id);

-- The code opens the share to everybody who has it, so it is kept like a token: only its hash.
CREATE TABLE share (
    id             TEXT PRIMARY KEY NOT NULL,
    code_hash      TEXT NOT NULL UNIQUE,
    project_id     TEXT NOT NULL REFERENCES project (id) ON DELETE CASCADE,
    allow_download INTEGER NOT NULL,
    expired_at     INTEGER,
    created_at     INTEGER NOT NULL,
    created_by     TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE
) WITHOUT ROWID;
CREATE INDEX share_project ON share (project_id);
CREATE INDEX share_creator ON share (created_by);

CREATE TABLE share_document (
    share_id    TEXT NOT NULL REFERENCES share (id) ON DELETE CASCADE,
    document_id TEXT NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    position    INTEGER NOT NULL,
    PRIMARY KEY (share_id, document_id)
) WITHOUT ROWID;
CREATE INDEX share_document_document ON share_document (document_id);

-- What the planner is to think of a busy data folder. Measured on an empty one it would, for a name in a
-- large folder, walk the folder in its order rather than look the name up.
ANALYZE;
INSERT INTO sqlite_stat1 (tbl, idx, stat) VALUES
    ('document', 'sqlite_autoindex_document_1', '1000000 1'),
    ('document', 'document_default', '1000000 100000 2000 1000 500 1 1 1'),
    ('document', 'document_name', '1000000 100000 2000 1 1 1 1'),
    ('document', 'document_updated', '1000000 100000 2000 1 1 1 1'),
    ('document', 'document_created', '1000000 100000 2000 1 1 1 1'),
    ('document', 'document_size', '1000000 100000 2000 10 1 1 1'),
    ('document', 'document_recent', '1000000 100000 20000 1 1 1 1'),
    ('document', 'document_bin', '100000 10000 5000 100'),
    ('document', 'document_parent', '1000000 2000'),
    ('document', 'document_file', '1000000 2'),
    ('document', 'document_creator', '1000000 50000'),
    ('document', 'document_updater', '1000000 50000');
