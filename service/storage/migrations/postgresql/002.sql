-- What all services together have stored, for the quota. Triggers count it, so that a service of the earlier version counts, too.
ALTER TABLE store ADD COLUMN used_bytes bigint NOT NULL DEFAULT 0;

CREATE FUNCTION vell_count_file() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
    UPDATE store SET used_bytes = used_bytes + coalesce(NEW.size, 0) - coalesce(OLD.size, 0);
    RETURN NULL;
END $$;

-- A chunk has 4 MiB, the last one less.
CREATE FUNCTION vell_count_upload() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
    UPDATE store SET used_bytes = used_bytes
        + coalesce(least(NEW.saved_chunk * 4194304::bigint, NEW.file_size), 0)
        - coalesce(least(OLD.saved_chunk * 4194304::bigint, OLD.file_size), 0);
    RETURN NULL;
END $$;

CREATE TRIGGER file_count AFTER INSERT OR DELETE OR UPDATE OF size ON file
    FOR EACH ROW EXECUTE FUNCTION vell_count_file();
CREATE TRIGGER large_file_count AFTER INSERT OR DELETE OR UPDATE OF saved_chunk ON large_file
    FOR EACH ROW EXECUTE FUNCTION vell_count_upload();

UPDATE store SET used_bytes = (SELECT coalesce(sum(size), 0) FROM file)
    + (SELECT coalesce(sum(least(saved_chunk * 4194304::bigint, file_size)), 0) FROM large_file);
