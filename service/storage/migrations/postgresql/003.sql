-- The folders in a folder, which lists have before its files: few among many.
CREATE INDEX document_folders ON document
    (project_id, parent_id, name, id) INCLUDE (category) WHERE recycle = 0 AND type = 'dir';
