-- The folders in a folder, which lists have before its files: few among many.
CREATE INDEX document_folders ON document
    (project_id, parent_id, name, id, category) WHERE recycle = 0 AND type = 'dir';
INSERT INTO sqlite_stat1 (tbl, idx, stat) VALUES ('document', 'document_folders', '20000 2000 10 1 1 1');
