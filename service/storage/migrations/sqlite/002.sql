-- The SHA-256 tells two contents with the same MD5 apart; empty for what an earlier version stored, until it is
-- compared. Whoever was told that a content is there may be about to use it.
ALTER TABLE file ADD COLUMN sha256 TEXT NOT NULL DEFAULT '';
ALTER TABLE file ADD COLUMN promised_at INTEGER NOT NULL DEFAULT 0;
UPDATE file SET promised_at = created_at;

-- An upload belongs to a content and a user. Its bytes are in the part file of that name: once the MD5, now the id.
-- saved_chunk = total_chunk says that all of them are there and have been compared.
CREATE TABLE large_file_new (
    id          TEXT PRIMARY KEY NOT NULL,
    md5         TEXT NOT NULL,
    part        TEXT NOT NULL UNIQUE,
    file_name   TEXT NOT NULL,
    file_size   INTEGER NOT NULL CHECK (file_size > 0),
    total_chunk INTEGER NOT NULL CHECK (total_chunk > 0),
    saved_chunk INTEGER NOT NULL DEFAULT 0 CHECK (saved_chunk BETWEEN 0 AND total_chunk),
    hash_state  BLOB, -- of the chunks held, so that a restart has nothing to read again
    created_at  INTEGER NOT NULL,
    created_by  TEXT NOT NULL REFERENCES user (id) ON DELETE CASCADE,
    updated_at  INTEGER NOT NULL,
    UNIQUE (md5, created_by)
) WITHOUT ROWID;
INSERT INTO large_file_new
    SELECT id, md5, md5, file_name, file_size, total_chunk, saved_chunk, md5_state, created_at, created_by, updated_at
    FROM large_file;
DROP TABLE large_file;
ALTER TABLE large_file_new RENAME TO large_file;
CREATE INDEX large_file_creator ON large_file (created_by);

-- A user who was removed: documents keep the name of who made them, so the row stays.
ALTER TABLE user ADD COLUMN removed_at INTEGER;

-- Tells this database from others, and how far it is; the contents have the same beside them.
CREATE TABLE store (
    id         TEXT NOT NULL,
    generation INTEGER NOT NULL
);
INSERT INTO store (id, generation) VALUES (lower(hex(randomblob(12))), 0);
