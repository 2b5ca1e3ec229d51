-- Fills an empty database of the service with as many documents as :documents says: 20 projects with 200 users, a folder for 50
-- documents, ten of them with a twentieth of all documents each, and versions, marks, downloads, links and shares as people leave
-- them. Everything follows from the numbers of the rows, so that two databases are equal.
\set ON_ERROR_STOP on
SET session_replication_role = replica; -- no triggers: each would be run for each row
BEGIN;
-- Making an index at the end takes less time than keeping it up to date.
CREATE TEMP TABLE made_later AS SELECT indexname AS name, indexdef AS definition FROM pg_indexes
    WHERE schemaname = 'public' AND indexname NOT IN (SELECT conname FROM pg_constraint);
SELECT format('DROP INDEX %I', name) FROM made_later \gexec

-- Like the identifiers that the service makes: the seconds of a time, and something random.
CREATE FUNCTION pg_temp.id(kind text, number bigint) RETURNS text LANGUAGE sql IMMUTABLE AS
$$ SELECT lpad(to_hex(1700000000 + number), 8, '0') || left(md5(kind || number), 16) $$;
-- A number below "most" that only looks random.
CREATE FUNCTION pg_temp.dice(kind text, number bigint, most bigint) RETURNS bigint LANGUAGE sql IMMUTABLE AS
$$ SELECT ('x' || left(md5(kind || number), 8))::bit(32)::bigint % most $$;
CREATE FUNCTION pg_temp.time(number bigint) RETURNS bigint LANGUAGE sql IMMUTABLE AS
$$ SELECT 1700000000000 + number * 60000 + pg_temp.dice('t', number, 60000) $$;
CREATE FUNCTION pg_temp.word(number bigint) RETURNS text LANGUAGE sql IMMUTABLE AS
$$ SELECT (ARRAY['drawing', 'model', 'report', 'contract', 'photo', 'letter'])[1 + number % 6] $$;

INSERT INTO "user" (id, name, token_hash, created_at)
    SELECT pg_temp.id('user', n), 'user ' || n, encode(sha256(convert_to('token ' || n, 'UTF8')), 'hex'), 1
    FROM generate_series(0, 199) n;
INSERT INTO project (id, name, created_at) SELECT 'project' || n, 'Project ' || n, 1 FROM generate_series(0, 19) n;
INSERT INTO member (project_id, user_id, role)
    SELECT 'project' || n % 20, pg_temp.id('user', n), (ARRAY['owner', 'editor', 'contributor', 'viewer'])[1 + n / 20 % 4]
    FROM generate_series(0, 199) n
    UNION ALL SELECT 'project' || (n + 7) % 20, pg_temp.id('user', n), 'viewer' FROM generate_series(0, 199) n;

-- Folder n belongs to project n % 20; below each folder are about ten others.
INSERT INTO document (id, project_id, parent_id, type, name, category, host_id, created_at, created_by, updated_at, updated_by)
    SELECT pg_temp.id('folder', n), 'project' || n % 20,
        CASE WHEN n >= 400 THEN pg_temp.id('folder', n / 200 * 20 + n % 20) END,
        'dir', 'folder ' || pg_temp.dice('name', n, 1000000), pg_temp.word(n), 'project' || n % 20, pg_temp.time(n),
        pg_temp.id('user', n % 200), pg_temp.time(n + 1), pg_temp.id('user', n % 200)
    FROM generate_series(0, :documents / 50 - 1) n;

INSERT INTO file (id, md5, size, name, created_at, sha256, promised_at)
    SELECT pg_temp.id('file', n), md5('content' || n), pg_temp.dice('size', n, 50000000), 'upload ' || n || '.dwg',
        pg_temp.time(n), encode(sha256(convert_to('content' || n, 'UTF8')), 'hex'), pg_temp.time(n)
    FROM generate_series(0, :documents * 8 / 10 - 1) n;

-- The first half in the ten large folders, the others in all folders.
CREATE TEMP TABLE made AS
    SELECT n, CASE WHEN n < :documents / 2 THEN 1000 + n % 10 ELSE n % (:documents / 50) END AS folder,
        n % (:documents * 8 / 10) AS content
    FROM generate_series(0, :documents * 98 / 100 - 1) n;
INSERT INTO document (id, project_id, parent_id, type, name, category, host_id, remark, file_id, suffix, size, recycle,
        recycled_at, created_at, created_by, updated_at, updated_by)
    SELECT pg_temp.id('document', n), 'project' || folder % 20, pg_temp.id('folder', folder), 'file',
        pg_temp.word(n) || ' ' || pg_temp.dice('name', n, 10000000) || '.dwg', pg_temp.word(n), 'project' || folder % 20,
        CASE WHEN n % 5 = 0 THEN 'checked by the engineer' ELSE '' END, pg_temp.id('file', content), 'dwg',
        pg_temp.dice('size', content, 50000000), CASE WHEN n % 100 = 0 THEN 1 ELSE 0 END,
        CASE WHEN n % 100 = 0 THEN pg_temp.time(n + 3000) END, pg_temp.time(n),
        pg_temp.id('user', folder % 20 + n % 10 * 20), pg_temp.time(n + pg_temp.dice('later', n, 100000)),
        pg_temp.id('user', folder % 20 + n % 7 * 20)
    FROM made;
INSERT INTO file_uploader (file_id, user_id)
    SELECT DISTINCT file_id, created_by FROM document WHERE type = 'file';
-- Every fourth file has three versions.
INSERT INTO version (id, document_id, number, file_id, name, created_at, created_by, updated_at)
    SELECT pg_temp.id('version' || number, n), pg_temp.id('document', n), number,
        pg_temp.id('file', CASE WHEN n % 4 = 0 AND number < 3 THEN pg_temp.dice('old' || number, n, :documents * 8 / 10)
            ELSE content END),
        pg_temp.word(n) || '.dwg', pg_temp.time(n + number), pg_temp.id('user', folder % 20 + n % 10 * 20),
        pg_temp.time(n + number)
    FROM made JOIN generate_series(1, 3) number ON number = 1 OR n % 4 = 0;
-- A user has used some hundred documents lately, and keeps some as favourites and as frequent.
INSERT INTO mark (user_id, document_id, type, created_at)
    SELECT pg_temp.id('user', folder % 20 + n % 10 * 20), pg_temp.id('document', n),
        CASE n % 300 WHEN 1 THEN 1 WHEN 2 THEN 3 ELSE 2 END, pg_temp.time(n)
    FROM made WHERE n % 3 < 2 AND n % 300 < 45;
INSERT INTO download (user_id, document_id, at)
    SELECT pg_temp.id('user', folder % 20 + n % 9 * 20), pg_temp.id('document', n), pg_temp.time(n) FROM made WHERE n % 3 = 0;
INSERT INTO link (document_id, kind, entity_id, position)
    SELECT pg_temp.id('document', n), 'part', md5('entity' || pg_temp.dice('entity', n, :documents / 10)), 0
    FROM made WHERE n % 5 = 0;
INSERT INTO share (id, code_hash, project_id, allow_download, created_at, created_by)
    SELECT pg_temp.id('share', n), encode(sha256(convert_to('share ' || n, 'UTF8')), 'hex'), 'project' || folder % 20, 1,
        pg_temp.time(n), pg_temp.id('user', folder % 20)
    FROM made WHERE n % 500 = 1;
INSERT INTO share_document (share_id, document_id, position)
    SELECT pg_temp.id('share', n), pg_temp.id('document', n), 0 FROM made WHERE n % 500 = 1;
UPDATE store SET used_bytes = (SELECT sum(size) FROM file);
SELECT definition FROM made_later \gexec
COMMIT;
VACUUM ANALYZE;
