#!/usr/bin/env python3
"""Writes a language's string tables for an app bundle, made of its gettext catalogues. Needs no gettext.

    make-string-tables.py LOCALE-FOLDER LANGUAGE LPROJ-FOLDER

A text is the one in macos/LANGUAGE below the locale folder, where the wording for macOS differs, and otherwise the
one in LANGUAGE. English is its own keys, for those speak of a Mac.
"""
import os
import plistlib
import re
import sys

TABLES = {'Wakeloft': 'Localizable', 'Deepwake': 'Deepwake'}  # the catalogue's name, and the table's
ESCAPES = {'n': '\n', 't': '\t', '"': '"', '\\': '\\'}
LINE = re.compile(r'(?:(msgid|msgstr) )?"((?:[^"\\]|\\[nt"\\])*)"$')


def catalogue(path):
    """The texts by their keys. Stops at what a table could not hold: plurals, contexts, doubtful texts."""
    if not os.path.exists(path):
        sys.exit(f'there is no {path}')
    entries = []
    with open(path, encoding='utf-8') as file:
        for number, line in enumerate(file, 1):
            line = line.strip()
            if line.startswith('#, ') and 'fuzzy' in line:
                sys.exit(f'{path}:{number}: a fuzzy text')
            if not line or line.startswith('#'):
                continue
            found = LINE.match(line)
            if not found or (found[1] != 'msgid' and not entries):
                sys.exit(f'{path}:{number}: cannot be read: {line}')
            text = re.sub(r'\\(.)', lambda escape: ESCAPES[escape[1]], found[2])
            if found[1] == 'msgid':
                entries.append({'msgid': ''})
            elif found[1] == 'msgstr':
                entries[-1]['msgstr'] = ''
            entries[-1]['msgstr' if 'msgstr' in entries[-1] else 'msgid'] += text
    return {entry['msgid']: entry.get('msgstr', '') for entry in entries if entry['msgid']}


def table(locale, language, name):
    if language != 'en':
        return {key: text for folder in (language, f'macos/{language}')
                for key, text in catalogue(f'{locale}/{folder}/{name}.po').items()}
    with open(f'{locale}/LINGUAS') as file:
        others = [each for each in file.read().split() if each != 'en']
    return {key: key for each in others for key in catalogue(f'{locale}/{each}/{name}.po')}


def main():
    locale, language, folder = sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    for name, table_name in TABLES.items():
        texts = table(locale, language, name)
        lacking = [key for key, text in texts.items() if not text]
        if lacking or not texts:
            sys.exit(f'{language}/{name}.po lacks {lacking or "everything"}')
        with open(f'{folder}/{table_name}.strings', 'wb') as file:
            plistlib.dump(texts, file)


main()
