#!/usr/bin/env python3
"""Checks the links of a folder of HTML pages: each must lead to a file of the folder, and to an anchor that is there.
  docs/site/check_links.py FOLDER
Also checks the pages of the menu and of the search, which scripts open. Links to other sites are not followed."""
import html.parser
import json
import pathlib
import re
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.anchors, self.links = set(), []
        self.feed(text)

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name == 'id' or (tag == 'a' and name == 'name'):
                self.anchors.add(value)
            elif name in ('href', 'src') and value:
                self.links.append(value)


def links_of_script(text):
    """The addresses in menudata.js ("url":"...") and in the indexes of the search ('../page.html#anchor')."""
    return re.findall(r'\burl:"([^"]*)"', text) + [json.loads(f'"{link}"') for link in re.findall(r"'(\.\./[^']*)'", text)]


def fault_of(folder, pages, source, link):
    parts = urllib.parse.urlsplit(link)
    if parts.scheme in ('http', 'https', 'javascript'):
        return None
    target = (source.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else source
    if folder not in target.parents or not target.is_file():
        return 'there is no such file'
    anchor = urllib.parse.unquote(parts.fragment)
    if anchor and target in pages and anchor not in pages[target].anchors:
        return 'there is no such anchor'
    return None


def main():
    folder = pathlib.Path(sys.argv[1]).resolve()
    pages = {path: Page(path.read_text()) for path in folder.glob('*.html')}
    links = {path: set(page.links) for path, page in pages.items()}
    for path in [folder / 'menudata.js', *folder.glob('search/*_*.js')]:
        links[path] = set(links_of_script(path.read_text()))
    faults = [f'{source.relative_to(folder)}: {link}: {fault}' for source in sorted(links) for link in sorted(links[source])
              if (fault := fault_of(folder, pages, source, link))]
    print('\n'.join(faults), file=sys.stderr)
    count = sum(map(len, links.values()))
    if faults or len(pages) < 50 or count < 1000:
        sys.exit(f'error: {len(faults)} dead links of {count} on {len(pages)} pages')
    print(f'{count} links on {len(pages)} pages')


main()
