#!/usr/bin/env python3
"""Checks a compressed help file as Qt Creator and Qt Assistant read it: an SQLite database.
  docs/site/check_help.py FILE.qch HEADER...
It must have the pages of the guides, an entry in its index for the class or the namespace of each public header, and no entry without a page."""
import re
import sqlite3
import sys

PAGES = ['index', 'md_docs_guide', 'md_docs_client', 'md_docs_rest', 'md_docs_velldoc', 'md_docs_desktop']


def names_of(header):
    """The classes, structures and namespaces that a header declares with a description."""
    text = open(header).read()
    return re.findall(r'^//!.*\n(?:template.*\n)?(?:class|struct|namespace)(?: [A-Z]+_EXPORT)? (\w+)[^;]*\{', text, re.M)


database = sqlite3.connect(f'file:{sys.argv[1]}?mode=ro', uri=True)
pages = {name for (name,) in database.execute('SELECT Name FROM FileNameTable')}
index = {name: page for name, page in database.execute(
    'SELECT i.Identifier, f.Name FROM IndexTable i JOIN FileNameTable f ON f.FileId = i.FileId')}
faults = [f'no page {page}' for page in PAGES if f'{page}.html' not in pages]
if 'VellDocumentData::getDoc' not in index:
    faults.append('no functions in the index')
for header in sys.argv[2:]:
    faults += [f'{header}: {name} is not in the index' for name in names_of(header) if name not in index]
faults += [f'{name} leads to {page}, which is missing' for name, page in index.items() if page not in pages]
if not database.execute('SELECT count(*) FROM ContentsTable').fetchone()[0]:
    faults.append('no table of contents')
if faults:
    sys.exit('error: ' + '\n'.join(faults))
print(f'{len(pages)} files, {len(index)} entries')
