#!/usr/bin/python3
"""Compares recorded exchanges with the service with the written contract.

    check_exchanges.py OPENAPI FOLDER

FOLDER has the files of service/http/ExchangeRecorder.h; of those in its folder "hostile" the requests are not judged. Prints each kind of violation once and exits 1 for any.
"""

import json
import pathlib
import re
import sys
import urllib.parse

import jsonschema
import yaml

# For the same texts of a body with other ids, dates and numbers in it one check is enough.
VARIABLE = re.compile(r'[0-9a-f]{24,64}|\d{4}-\d\d-\d\dT[0-9:.]+Z|(?<=[:,\[])-?\d+')
PLAIN_TYPES = {'integer': r'-?\d+', 'boolean': 'true|false', 'string': '(?s:.*)'}


def as_json_schema(node):
    """OpenAPI 3.0 says "nullable" where JSON Schema has the type "null"."""
    if isinstance(node, list):
        return [as_json_schema(entry) for entry in node]
    if not isinstance(node, dict):
        return node
    node = {key: as_json_schema(value) for key, value in node.items()}
    if node.pop('nullable', False) is True:
        node['type'] = [node['type'], 'null']
    return node


class Contract:
    def __init__(self, path):
        self.root = as_json_schema(yaml.safe_load(path.read_text(encoding='utf-8')))
        self.resolver = jsonschema.RefResolver('', self.root)
        self.validators = {}
        self.paths = []
        for template, operations in self.root['paths'].items():
            pattern = re.sub(r'\\\{\w+\\\}', '[^/]+', re.escape(template))
            self.paths.append((re.compile(pattern), template, operations))
        # A path by its own words comes before one with a parameter in their place.
        self.paths.sort(key=lambda entry: entry[1].count('{'))

    def resolved(self, node):
        while '$ref' in node:
            node = self.resolver.resolve(node['$ref'])[1]
        return node

    def find(self, path):
        for pattern, template, operations in self.paths:
            if pattern.fullmatch(path):
                yield template, operations

    def schema_error(self, schema, text, what):
        try:
            value = json.loads(text)
        except ValueError:
            return f'{what} is not JSON'
        key = json.dumps(schema, sort_keys=True)
        if key not in self.validators:
            self.validators[key] = jsonschema.Draft4Validator(
                schema, resolver=self.resolver, format_checker=jsonschema.FormatChecker())
        error = jsonschema.exceptions.best_match(self.validators[key].iter_errors(value))
        return error and f'{what}: {"/".join(map(str, error.absolute_path))}: {error.message[:200]}'


def is_refused(exchange, status):
    return exchange['status'] == status and '"error"' in (exchange.get('responseBody') or '"error"')


def check(contract, exchange, is_request_judged):
    """The violations of one exchange."""
    address = urllib.parse.urlsplit('http://host' + exchange['target'])
    found = list(contract.find(address.path))
    if not found:
        if not (400 <= exchange['status'] < 500 and is_refused(exchange, exchange['status'])):
            yield 'a path that is not in the contract was answered'
        return
    method = exchange['method'].lower()
    operation = next((ops[method] for _, ops in found if method in ops), None)
    if operation is None:
        if not (400 <= exchange['status'] < 500):
            yield 'a method that is not in the contract was answered'
        elif exchange['status'] == 405 and 'allow' not in exchange['headers']:
            yield '405 without Allow'
        return
    response = operation['responses'].get(str(exchange['status']))
    if response is None:
        yield 'the status is not in the contract'
        return
    response = contract.resolved(response)
    yield from check_headers(contract, exchange, response)
    yield from check_response_body(contract, exchange, response)
    if exchange['status'] < 300 and is_request_judged:
        yield from check_parameters(operation, address.query)
        yield from check_request_body(contract, exchange, operation)


def check_headers(contract, exchange, response):
    known = {name.lower(): contract.resolved(header)
             for name, header in response.get('headers', {}).items()}
    for name in exchange['headers']:
        if name not in known:
            yield f'the header {name} is not in the contract'
    for name, header in known.items():
        if header.get('required') and name not in exchange['headers']:
            yield f'the header {name} is missing'


def check_response_body(contract, exchange, response):
    content = response.get('content')
    if exchange['method'] == 'HEAD' or 'responseType' not in exchange:
        if content:
            yield 'a body is missing'
        return
    media = (content or {}).get(exchange['responseType'].partition(';')[0])
    if media is None:
        yield f'the type {exchange["responseType"]} is not in the contract'
    elif exchange['responseType'].startswith('application/json'):
        text = exchange.get('responseBody')
        if text is not None:
            error = contract.schema_error(media['schema'], text, 'the response')
            if error:
                yield error


def check_parameters(operation, query):
    known = {entry['name']: entry for entry in operation.get('parameters', [])
             if entry['in'] == 'query'}
    sent = dict(urllib.parse.parse_qsl(query, keep_blank_values=True))
    for name, value in sent.items():
        if name not in known:
            yield f'the parameter {name} is not in the contract'
        elif not re.fullmatch(PLAIN_TYPES[known[name]['schema']['type']], value):
            yield f'the parameter {name} has the value {value}'
    for name, entry in known.items():
        if entry.get('required') and name not in sent:
            yield f'the parameter {name} is missing'


def check_request_body(contract, exchange, operation):
    content = operation.get('requestBody', {}).get('content')
    if not content:
        return
    kind = exchange['requestType'].partition(';')[0]
    if kind == 'application/json' and exchange['requestBody']:
        error = contract.schema_error(content.get(kind, {}).get('schema', False),
                                      exchange['requestBody'], 'the request')
        if error:
            yield error
    elif kind and kind not in content:
        yield f'a body of the type {kind} was taken'


def main():
    contract = Contract(pathlib.Path(sys.argv[1]))
    seen = set()
    violations = {}
    count = 0
    for file in sorted(pathlib.Path(sys.argv[2]).rglob('*.jsonl')):
        for line in file.read_text(encoding='utf-8').splitlines():
            count += 1
            shape = hash(VARIABLE.sub('0', line))
            if shape in seen:
                continue
            seen.add(shape)
            try:
                exchange = json.loads(line)
            except ValueError:
                continue  # the last line of a service that was killed
            if exchange['isFault']:
                continue
            for violation in check(contract, exchange, file.parent.name != 'hostile'):
                key = (exchange['method'], exchange['status'], violation)
                violations.setdefault(key, exchange)
    print(f'{count} exchanges, {len(seen)} different ones, {len(violations)} violations')
    for (method, status, violation), exchange in violations.items():
        print(f'{method} {exchange["target"][:200]} -> {status}: {violation}')
    return 1 if violations else 0


if __name__ == '__main__':
    sys.exit(main())
