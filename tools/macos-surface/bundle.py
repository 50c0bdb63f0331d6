"""Finds what is wrong with an app bundle as the build lays it out, before it is signed."""
import gettext
import io
import os
import plistlib
import re
import struct
import subprocess
import zlib

from image import Image

APP = 'com.wakeloft.app'
PNG_SIDES = {b'ic07': 128, b'ic08': 256, b'ic09': 512, b'ic10': 1024, b'ic11': 32, b'ic12': 64, b'ic13': 256,
             b'ic14': 512}
ARGB_SIDES = {b'ic04': 16, b'ic05': 32}


def lproj(language):
    return {'zh_CN': 'zh-Hans', 'zh_TW': 'zh-Hant'}.get(language, language.replace('_', '-')) + '.lproj'


def files_below(folder):
    found = set()
    for place, folders, files in os.walk(folder):
        links = [name for name in folders if os.path.islink(f'{place}/{name}')]
        found |= {os.path.relpath(f'{place}/{name}', folder) for name in files + links}
    return found


def texts_of(catalogue):
    """By gettext itself, not by what makes the tables."""
    if not os.path.exists(catalogue):
        return {}
    compiled = subprocess.check_output(['msgfmt', '--output-file=-', catalogue])
    return {key: text for key, text in gettext.GNUTranslations(io.BytesIO(compiled))._catalog.items() if key}


def placeholders(text):
    return sorted(re.findall(r'\{[a-z]+\}', text))


def faults_of_tables(contents, locale, languages):
    """Each table has the catalogue's keys, its texts or those for macOS, and their placeholders."""
    for catalogue, table in (('Wakeloft', 'Localizable'), ('Deepwake', 'Deepwake')):
        wholes = {each: texts_of(f'{locale}/{each}/{catalogue}.po') for each in languages if each != 'en'}
        keys = set.union(*map(set, wholes.values()))
        for_macos = {each: texts_of(f'{locale}/macos/{each}/{catalogue}.po') for each in wholes}
        worded = set.union(*map(set, for_macos.values()))
        for language in languages:
            name = f'{lproj(language)}/{table}.strings'
            with open(f'{contents}/Resources/{name}', 'rb') as file:
                texts = plistlib.load(file)
            if set(texts) != keys:
                yield f'{name}: {len(texts)} texts, not {len(keys)}: {sorted(set(texts) ^ keys)}'
            for key, text in texts.items():
                if placeholders(text) != placeholders(key):
                    yield f'{name} has other placeholders in: {key}'
            if language == 'en':
                wrong = [key for key, text in texts.items() if text != key]
            else:
                if set(for_macos[language]) != worded:
                    yield f'macos/{language}/{catalogue}.po lacks {sorted(worded - set(for_macos[language]))}'
                wanted = {**wholes[language], **for_macos[language]}
                wrong = [key for key, text in texts.items() if text != wanted.get(key)]
            if wrong:
                yield f'{name} has other texts than the catalogue for {wrong}'


def png_fault(content, side):
    if content[:8] != b'\x89PNG\r\n\x1a\n' or content[12:16] != b'IHDR':
        return 'is no PNG'
    chunks, at = {}, 8
    while at < len(content):
        size, kind = struct.unpack_from('>I4s', content, at)
        body = content[at + 8:at + 8 + size]
        if struct.unpack_from('>I', content, at + 8 + size)[0] != zlib.crc32(kind + body):
            return f'is damaged in {kind}'
        chunks[kind] = body
        at += 12 + size
    if struct.unpack('>IIBBBBB', chunks[b'IHDR']) != (side, side, 8, 6, 0, 0, 0):
        return f'is not of {side} pixels in colours with opacity'
    rows = zlib.decompress(chunks[b'IDAT'])
    if len(rows) != side * (1 + 4 * side) or any(rows[::1 + 4 * side]):
        return 'has rows of another length or kind'
    middle = (side // 2) * (1 + 4 * side) + 1 + 4 * (side // 2)
    return None if rows[4] == 0 and rows[middle + 3] == 255 else 'has no icon in its middle, or no room around it'


def argb_fault(content, side):
    channels, at = b'', 4
    while at < len(content):
        head = content[at]
        if head < 128:
            channels += content[at + 1:at + 2 + head]
            at += 2 + head
        else:
            channels += content[at + 1:at + 2] * (head - 125)
            at += 2
    opacity = channels[:side * side]
    whole = content[:4] == b'ARGB' and len(channels) == 4 * side * side
    return None if whole and opacity[0] == 0 and opacity[side * side // 2 + side // 2] == 255 else 'is no icon'


def faults_of_icon(path):
    with open(path, 'rb') as file:
        content = file.read()
    kind, size = struct.unpack_from('>4sI', content)
    if kind != b'icns' or size != len(content):
        yield 'the icon is no icon file of its length'
        return
    at, found = 8, set()
    while at < size:
        kind, length = struct.unpack_from('>4sI', content, at)
        picture = content[at + 8:at + length]
        fault = (png_fault(picture, PNG_SIDES[kind]) if kind in PNG_SIDES
                 else argb_fault(picture, ARGB_SIDES[kind]) if kind in ARGB_SIDES else 'is of no known kind')
        if fault:
            yield f'the icon’s picture {kind.decode()} {fault}'
        found.add(kind)
        at += length
    if found != {*PNG_SIDES, *ARGB_SIDES}:
        yield f'the icon lacks {sorted({*PNG_SIDES, *ARGB_SIDES} - found)}'


def faults_of_lists(bundle, version):
    """What the property lists say fits together, and fits the files."""
    with open(f'{bundle}/Contents/Info.plist', 'rb') as file:
        info = plistlib.load(file)
    daemons = f'{bundle}/Contents/Library/LaunchDaemons'
    [daemon_list] = os.listdir(daemons)
    with open(f'{daemons}/{daemon_list}', 'rb') as file:
        daemon = plistlib.load(file)
    app, helper = f'{bundle}/Contents/MacOS/{info["CFBundleExecutable"]}', f'{bundle}/{daemon["BundleProgram"]}'
    minimum = {info['LSMinimumSystemVersion'], Image(app).minimum, Image(helper).minimum}
    for fits, fault in (
            (info['CFBundleIdentifier'] == APP and info['CFBundlePackageType'] == 'APPL', 'the app is another'),
            (info['CFBundleShortVersionString'] == version, f'the version is {info["CFBundleShortVersionString"]}'),
            (re.fullmatch(r'[0-9]+(\.[0-9]+){0,2}', info['CFBundleVersion']), 'the build’s number is none'),
            (len(minimum) == 1, f'the app is for macOS {sorted(minimum)}'),
            (os.path.isfile(f'{bundle}/Contents/Resources/{info["CFBundleIconFile"]}.icns'), 'there is no icon'),
            (info['LSUIElement'] is True and info['NSPrincipalClass'] == 'NSApplication', 'it is no menu bar app'),
            (info['SUFeedURL'].startswith('https://') and 'SUPublicEDKey' in info, 'there are no updates'),
            (not any('@' in str(value) or '${' in str(value) for value in info.values()), 'a value was not filled in'),
            (daemon_list == f'{daemon["Label"]}.plist', 'the daemon’s list is not named after it'),
            (list(daemon['MachServices']) == [daemon['Label']], 'the helper answers under another name'),
            (daemon.get('RunAtLoad') is True and daemon.get('KeepAlive') is True, 'the helper is not kept running'),
            (daemon['AssociatedBundleIdentifiers'] == [APP], 'the helper is another app’s')):
        if not fits:
            yield fault


def faults_of_bundle(bundle, root):
    contents = f'{bundle}/Contents'
    with open(f'{root}/locale/LINGUAS') as file:
        languages = file.read().split()
    with open(f'{root}/CMakeLists.txt') as file:
        version = re.search(r'project\(Wakeloft VERSION ([0-9.]+)', file.read())[1]
    framework = 'Frameworks/Sparkle.framework'
    wanted = {'Info.plist', 'MacOS/Wakeloft', 'Helpers/WakeloftLidHelper', 'Resources/AppIcon.icns',
              f'Library/LaunchDaemons/{APP}.lidhelper.plist', f'{framework}/Sparkle.tbd',
              f'{framework}/Versions/Current', f'{framework}/Versions/B/Sparkle.tbd',
              *(f'Resources/{lproj(each)}/{table}.strings' for each in languages for table in ('Localizable', 'Deepwake'))}
    there = files_below(contents)
    if there != wanted:
        yield f'the bundle lacks {sorted(wanted - there)} and has {sorted(there - wanted)} too many'
        return
    if not all(os.path.islink(f'{contents}/{framework}/{link}') for link in ('Sparkle.tbd', 'Versions/Current')):
        yield 'the links in Sparkle’s framework have become copies'
    yield from faults_of_lists(bundle, version)
    yield from faults_of_icon(f'{contents}/Resources/AppIcon.icns')
    yield from faults_of_tables(contents, f'{root}/locale', languages)
