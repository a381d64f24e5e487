"""Fills a folder with the first inputs of each fuzz target, from the examples and the golden folders."""
import glob
import os
import sys

MOST = 64 * 1024  # bytes of a seed

BINARY_FORM = b'\xff\x0a\x00'


def sources(*extensions):
    for folder in ('examples', 'tests/golden'):
        for path in sorted(glob.glob(folder + '/**/*', recursive=True)):
            if os.path.isfile(path) and path.lower().endswith(extensions):
                with open(path, 'rb') as file:
                    yield file.read()


def forms():
    return sources('.dfm', '.nfm')


def units():
    return sources('.pas', '.dpr')


def binary_streams():
    for contents in forms():
        if contents.startswith(BINARY_FORM):
            yield contents[contents.index(b'TPF0'):]


def text_forms():
    return (contents for contents in forms() if not contents.startswith(BINARY_FORM))


def lists():
    yield from sources('.reu')
    with open('target/catalogue.txt', 'rb') as file:
        yield file.read()
    yield b'sub/*.[a-c]??\nsub/Unit1.bas'


SEEDS = {
    'BinaryFormFuzz': binary_streams,
    'FileFuzz': lambda: [b'\1' + unit for unit in units()] + [b'\0' + form for form in forms()],
    'FormFileFuzz': lambda: list(forms()) + list(units()),
    'FormFuzz': text_forms,
    'FormMemoFuzz': text_forms,
    'ListFuzz': lists,
    'ProjectFuzz': lambda: sources('.dpr', '.dproj', '.bdsproj', '.bpg', '.groupproj', '.bdsgroup'),
    'SettingsFuzz': lambda: [b'[Section]\r\nOther=text\\n\r\nNumber=5\r\n'],
    'TextFormFuzz': text_forms,
    'UnitFuzz': units,
}


def main():
    for target, seeds in SEEDS.items():
        folder = os.path.join(sys.argv[1], target)
        os.makedirs(folder, exist_ok=True)
        kept = [seed for seed in dict.fromkeys(seeds()) if len(seed) <= MOST]
        if not kept:
            raise SystemExit(f'{target} has no seeds')
        for number, seed in enumerate(kept):
            with open(os.path.join(folder, f'seed{number}'), 'wb') as file:
                file.write(seed)


main()
