#!/usr/bin/env python3
"""Makes an index of the text of all pages, for docs/site/search_text.js.
  docs/site/index_text.py FOLDER
Writes FOLDER/search/text_index.js, and adds both scripts to the pages with the results of Doxygen's own search."""
import html.parser
import json
import pathlib
import re
import shutil
import sys

# Lists of names, which Doxygen's own index contains.
LISTS = re.compile(r'annotated|classes|functions.*|namespacemembers.*|namespaces|files|hierarchy|pages|dir_.*|.*-members|.*_8h')
HEADINGS = ('h1', 'h2', 'h3', 'h4')
BLOCKS = ('p', 'div', 'li', 'td', 'th', 'tr', 'br', 'dt', 'dd', 'pre')


class Sections(html.parser.HTMLParser):
    """The title of a page, and its sections: anchor, heading and text."""

    def __init__(self, text):
        super().__init__()
        self.title, self.sections = '', [['', '', '']]
        self.anchor, self.depth, self.skipped = '', 0, 0
        self.is_title = self.is_heading = False
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        names = dict(attrs)
        classes = names.get('class') or ''
        self.is_title |= tag == 'title'
        if tag == 'div':
            self.depth += self.depth > 0 or classes == 'contents'
            self.skipped += self.skipped > 0 or classes.startswith('toc')
        elif tag == 'table':
            self.skipped += self.skipped > 0 or classes == 'memberdecls'
        if not self.depth or self.skipped:
            return
        if tag == 'a' and names.get('id'):
            self.anchor = names['id']
            if self.is_heading:
                self.sections[-1][0] = self.anchor
        elif tag in HEADINGS:
            self.is_heading = True
            self.sections.append([self.anchor, '', ''])
        elif tag in BLOCKS:
            self.handle_data(' ')

    def handle_endtag(self, tag):
        self.is_title &= tag != 'title'
        self.is_heading &= tag not in HEADINGS
        if tag == 'div':
            self.depth -= self.depth > 0
        if tag in ('div', 'table'):
            self.skipped -= self.skipped > 0

    def handle_data(self, data):
        if self.is_title:
            self.title += data
        elif self.depth and not self.skipped:
            self.sections[-1][1 if self.is_heading else 2] += data


def entries_of(page):
    """[address, title, heading, text] for each section with text. The address is relative to the folder of the search."""
    parsed = Sections(page.read_text())
    title = re.sub(r'^[^:]*: | (Class|Struct|Namespace)( Template)? Reference$', '', parsed.title)
    is_class = page.stem.startswith(('class', 'struct', 'namespace'))
    for anchor, heading, text in parsed.sections:
        text = ' '.join(text.split())
        heading = ' '.join(heading.replace('◆', '').split())
        if text and (anchor or not is_class):  # a class begins with the list of its members
            yield [f'../{page.name}' + (f'#{anchor}' if anchor else ''), title, heading, text]


def main():
    folder = pathlib.Path(sys.argv[1])
    entries = [entry for page in sorted(folder.glob('*.html')) if not LISTS.fullmatch(page.stem) for entry in entries_of(page)]
    if len(entries) < 500:
        sys.exit(f'error: only {len(entries)} sections with text')
    # One line for each, with the address in quotes that check_links.py finds.
    lines = [f"['{address}'," + json.dumps(rest, ensure_ascii=False)[1:] for address, *rest in entries]
    (folder / 'search/text_index.js').write_text('var textIndex = [\n' + ',\n'.join(lines) + '\n];\n')
    sources = pathlib.Path(__file__).parent
    shutil.copy(sources / 'search_text.js', folder / 'search')
    with open(folder / 'search/search.css', 'a') as style:
        style.write((sources / 'search_text.css').read_text())
    scripts = ''.join(f'<script type="text/javascript" src="{name}"></script>\n' for name in ('text_index.js', 'search_text.js'))
    for page in folder.glob('search/*.html'):
        page.write_text(page.read_text().replace('</body>', scripts + '</body>'))
    # The page for no matches must know what was searched for.
    search = folder / 'search/search.js'
    text = search.read_text()
    patched = text.replace('resultsPageWithSearch = resultsPage;', "resultsPageWithSearch = resultsPage+'?'+escape(searchValue);")
    if patched == text:
        sys.exit('error: search.js of this version of Doxygen has another form')
    search.write_text(patched)
    print(f'{len(entries)} sections')


main()
