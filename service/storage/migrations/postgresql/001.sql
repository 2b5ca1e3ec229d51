-- Times are milliseconds since 1970-01-01T00:00:00Z. Identifiers are 24 hexadecimal digits, but for
-- projects, whose identifiers the clients choose, and for the built-in user. Texts are ordered by their bytes.

CREATE TABLE schema_version (
    version    integer NOT NULL,
    reached_at timestamptz NOT NULL DEFAULT now()
);

CREATE TABLE "user" (
    id         text COLLATE "C" PRIMARY KEY,
    name       text COLLATE "C" NOT NULL UNIQUE,
    token_hash text COLLATE "C" UNIQUE, -- null only for the built-in user, who needs no token
    created_at bigint NOT NULL,
    removed_at bigint -- documents keep the name of who made them, so the row stays
);

INSERT INTO "user" (id, name, token_hash, created_at) VALUES ('local', 'local', NULL, 0);

CREATE TABLE project (
    id         text COLLATE "C" PRIMARY KEY,
    name       text COLLATE "C" NOT NULL,
    created_at bigint NOT NULL
);

CREATE TABLE member (
    project_id text COLLATE "C" NOT NULL REFERENCES project (id) ON DELETE CASCADE,
    user_id    text COLLATE "C" NOT NULL REFERENCES "user" (id) ON DELETE CASCADE,
    role       text COLLATE "C" NOT NULL CHECK (role IN ('owner', 'editor', 'contributor', 'viewer')),
    PRIMARY KEY (project_id, user_id)
);
CREATE INDEX member_user ON member (user_id);

-- One row for each stored content; the bytes are on disk under the MD5. The SHA-256 tells two contents with the same MD5 apart.
-- Whoever was told that a content is there may be about to use it.
CREATE TABLE file (
    id          text COLLATE "C" PRIMARY KEY,
    md5         text COLLATE "C" NOT NULL UNIQUE,
    size        bigint NOT NULL CHECK (size >= 0),
    name        text COLLATE "C" NOT NULL, -- that of its first upload
    created_at  bigint NOT NULL,
    sha256      text COLLATE "C" NOT NULL DEFAULT '',
    promised_at bigint NOT NULL DEFAULT 0
);
CREATE INDEX file_promised ON file (promised_at);

CREATE TABLE file_uploader (
    file_id text COLLATE "C" NOT NULL REFERENCES file (id) ON DELETE CASCADE,
    user_id text COLLATE "C" NOT NULL REFERENCES "user" (id) ON DELETE CASCADE,
    PRIMARY KEY (file_id, user_id)
);
CREATE INDEX file_uploader_user ON file_uploader (user_id);

-- Uploads by chunks that are under way; a finished one is a row of file. An upload belongs to a content and a user.
-- saved_chunk = total_chunk says that all of them are there and have been compared.
CREATE TABLE large_file (
    id          text COLLATE "C" PRIMARY KEY,
    md5         text COLLATE "C" NOT NULL,
    part        text COLLATE "C" NOT NULL UNIQUE, -- the name of the part file
    file_name   text COLLATE "C" NOT NULL,
    file_size   bigint NOT NULL CHECK (file_size > 0),
    total_chunk integer NOT NULL CHECK (total_chunk > 0),
    saved_chunk integer NOT NULL DEFAULT 0 CHECK (saved_chunk BETWEEN 0 AND total_chunk),
    hash_state  bytea, -- of the chunks held, so that a restart has nothing to read again
    created_at  bigint NOT NULL,
    created_by  text COLLATE "C" NOT NULL REFERENCES "user" (id) ON DELETE CASCADE,
    updated_at  bigint NOT NULL,
    UNIQUE (md5, created_by)
);
CREATE INDEX large_file_creator ON large_file (created_by);
CREATE INDEX large_file_updated ON large_file (updated_at);

CREATE TABLE document (
    id          text COLLATE "C" PRIMARY KEY,
    project_id  text COLLATE "C" NOT NULL REFERENCES project (id) ON DELETE CASCADE,
    parent_id   text COLLATE "C" REFERENCES document (id) DEFERRABLE INITIALLY DEFERRED,
    type        text COLLATE "C" NOT NULL CHECK (type IN ('dir', 'file')),
    name        text COLLATE "C" NOT NULL,
    category    text COLLATE "C" NOT NULL DEFAULT '',
    host_id     text COLLATE "C" NOT NULL DEFAULT '',
    host_type   integer NOT NULL DEFAULT 0,
    ord         integer NOT NULL DEFAULT 0,
    remark      text COLLATE "C" NOT NULL DEFAULT '',
    status      text COLLATE "C" NOT NULL DEFAULT '',
    pwd         text COLLATE "C" NOT NULL DEFAULT '',
    preview_id  text COLLATE "C" NOT NULL DEFAULT '',
    file_id     text COLLATE "C" REFERENCES file (id),
    suffix      text COLLATE "C" NOT NULL DEFAULT '',
    size        bigint NOT NULL DEFAULT 0,
    recycle     integer NOT NULL DEFAULT 0, -- 1: deleted itself; 2: below a deleted folder
    recycled_at bigint,
    created_at  bigint NOT NULL,
    created_by  text COLLATE "C" NOT NULL REFERENCES "user" (id),
    updated_at  bigint NOT NULL,
    updated_by  text COLLATE "C" NOT NULL REFERENCES "user" (id),
    CHECK ((type = 'file') = (file_id IS NOT NULL))
);
-- One index for each sort that clients page by. Each ends with the id, so that equal keys have one
-- order, and carries what the usual filters read, so that counting touches the index alone.
CREATE INDEX document_default ON document
    (project_id, parent_id, type, ord, updated_at DESC, id DESC) INCLUDE (category) WHERE recycle = 0;
CREATE INDEX document_name ON document
    (project_id, parent_id, name, id) INCLUDE (type, category) WHERE recycle = 0;
CREATE INDEX document_updated ON document
    (project_id, parent_id, updated_at, id) INCLUDE (type, category) WHERE recycle = 0;
CREATE INDEX document_created ON document
    (project_id, parent_id, created_at, id) INCLUDE (type, category) WHERE recycle = 0;
CREATE INDEX document_size ON document
    (project_id, parent_id, size, id) INCLUDE (type, category) WHERE recycle = 0;
CREATE INDEX document_recent ON document
    (project_id, created_by, created_at, id) INCLUDE (type, category) WHERE recycle = 0;
CREATE INDEX document_bin ON document (project_id, recycle, parent_id) WHERE recycle > 0;
CREATE INDEX document_parent ON document (parent_id);
CREATE INDEX document_file ON document (file_id);
CREATE INDEX document_creator ON document (created_by);
CREATE INDEX document_updater ON document (updated_by);

-- Every content that a document has had, the current one included.
CREATE TABLE version (
    id          text COLLATE "C" PRIMARY KEY,
    document_id text COLLATE "C" NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    number      integer NOT NULL,
    file_id     text COLLATE "C" NOT NULL REFERENCES file (id),
    name        text COLLATE "C" NOT NULL,
    remark      text COLLATE "C" NOT NULL DEFAULT '',
    created_at  bigint NOT NULL,
    created_by  text COLLATE "C" NOT NULL REFERENCES "user" (id),
    updated_at  bigint NOT NULL,
    UNIQUE (document_id, number)
);
CREATE INDEX version_file ON version (file_id);
CREATE INDEX version_creator ON version (created_by);

CREATE TABLE mark (
    user_id     text COLLATE "C" NOT NULL REFERENCES "user" (id) ON DELETE CASCADE,
    document_id text COLLATE "C" NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    type        integer NOT NULL,
    created_at  bigint NOT NULL,
    PRIMARY KEY (user_id, type, document_id)
);
CREATE INDEX mark_document ON mark (document_id, user_id);

CREATE TABLE download (
    user_id     text COLLATE "C" NOT NULL REFERENCES "user" (id) ON DELETE CASCADE,
    document_id text COLLATE "C" NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    at          bigint NOT NULL,
    PRIMARY KEY (document_id, user_id)
);
CREATE INDEX download_user ON download (user_id);

CREATE TABLE link (
    document_id text COLLATE "C" NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    kind        text COLLATE "C" NOT NULL,
    entity_id   text COLLATE "C" NOT NULL,
    position    integer NOT NULL,
    PRIMARY KEY (document_id, kind, entity_id)
);
CREATE INDEX link_entity ON link (entity_id);

-- The code opens the share to everybody who has it, so it is kept like a token: only its hash.
CREATE TABLE share (
    id             text COLLATE "C" PRIMARY KEY,
    code_hash      text COLLATE "C" NOT NULL UNIQUE,
    project_id     text COLLATE "C" NOT NULL REFERENCES project (id) ON DELETE CASCADE,
    allow_download integer NOT NULL,
    expired_at     bigint,
    created_at     bigint NOT NULL,
    created_by     text COLLATE "C" NOT NULL REFERENCES "user" (id) ON DELETE CASCADE
);
CREATE INDEX share_project ON share (project_id);
CREATE INDEX share_creator ON share (created_by);

CREATE TABLE share_document (
    share_id    text COLLATE "C" NOT NULL REFERENCES share (id) ON DELETE CASCADE,
    document_id text COLLATE "C" NOT NULL REFERENCES document (id) ON DELETE CASCADE,
    position    integer NOT NULL,
    PRIMARY KEY (share_id, document_id)
);
CREATE INDEX share_document_document ON share_document (document_id);

-- Tells this database from others, and how far it is; the contents have the same beside them.
CREATE TABLE store (
    id         text COLLATE "C" NOT NULL,
    generation bigint NOT NULL
);
INSERT INTO store (id, generation) VALUES (left(replace(gen_random_uuid()::text, '-', ''), 24), 0);
