"""The commands that faults are tried on, each with what it has to do."""
import os

import sources
from judge import Case
from sources import State


def wanted(state, paths):
    return {path: state.bytes(path) for path in paths}


class Cases:
    """Makes each case once, in one worker's folder."""

    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.made = {}

    def __getitem__(self, name):
        if name not in self.made:
            self.made[name] = getattr(self, name.replace('-', '_'))()
        return self.made[name]

    def clean(self, arguments):
        outcome = self.program.run(arguments)
        if outcome.status != 0:
            raise RuntimeError(f'{arguments} fails without a fault: {outcome}')

    def application(self, large=False):
        State.put(EMPTY, self.folder)
        sources.make(self.folder, self.clean, large)
        return State(self.folder)

    def replacement(self, command, start, **more):
        """A run of `command` on `start`."""
        paths = [path for path in start.files if not path.startswith('RBackup') and path != 'Wiz_Log.txt']
        before = wanted(start, paths)
        allowed = {path: {contents} for path, contents in before.items()}
        start.put(self.folder)
        self.clean(command)
        done = State(self.folder)
        after = wanted(done, paths)
        if sum(before[path] != after[path] for path in paths) < 4:
            raise RuntimeError('too little is converted')
        for path in paths:
            allowed[path].add(after[path])
        self.clean(command)  # a second run in the middle of the first finds what that has converted
        twice = State(self.folder)
        for path in paths:
            allowed[path].add(twice.bytes(path))
        # What a run makes of the others when it cannot read one of the files: connections can be unknown then.
        for left_out in paths if command[0] == 'replace' else []:
            start.put(self.folder)
            self.clean([*command, '--exclude', left_out])
            others = State(self.folder)
            for path in paths:
                allowed[path].add(others.bytes(path))
        return Case(self.folder, command, start, before, after, allowed, **more)

    def bde(self, *more):
        return ['replace', '--mode', 'bde', *more]

    def folder_run(self):
        return self.replacement(self.bde('--folder', self.folder, '--subfolders'), self.application())

    def project_run(self):
        return self.replacement(
            self.bde('--project', os.path.join(self.folder, 'App.dpr')), self.application(True)
        )

    def unsaved_run(self):
        command = self.bde('--folder', self.folder, '--subfolders', '--no-backup')
        return self.replacement(command, self.application(), backed_up=False)

    def second_generation(self):
        first = self.application()
        self.clean(['replace', '--mode', 'ibx', '--folder', self.folder, '--subfolders'])
        start = State(self.folder)
        earlier = wanted(first, first.files)
        return self.replacement(self.bde('--folder', self.folder, '--subfolders'), start, earlier=earlier)

    def restore(self):
        run = self['folder-run']
        run.start.put(self.folder)
        self.clean(run.command)
        start = State(self.folder)
        paths = list(run.before)
        before = wanted(start, paths)
        command = ['restore', os.path.join(self.folder, 'RBackup', 'RExpert.reu')]
        allowed = {path: {before[path], run.before[path]} for path in paths}
        return Case(self.folder, command, start, before, run.before, allowed, restores=True)

    def form(self, command, files):
        """`command` on binary forms of these names."""
        State.put(EMPTY, self.folder)
        name = os.path.join(self.folder, 'Data.dfm')
        with open(name, 'w') as file:
            file.write(sources.form('Data', [sources.TABLE, sources.ICON], 'Data'))
        self.clean(['form', 'to-binary', '--in-place', name])
        with open(name, 'rb') as file:
            binary = file.read()
        State.put(EMPTY, self.folder)
        os.makedirs(os.path.join(self.folder, 'Sub'))
        for name in files:
            with open(os.path.join(self.folder, name), 'wb') as file:
                file.write(binary)
        start = State(self.folder)
        self.clean(command)
        done = State(self.folder)
        allowed = {path: {start.bytes(path), done.bytes(path)} for path in start.files}
        return Case(
            self.folder,
            command,
            start,
            wanted(start, start.files),
            wanted(done, start.files),
            allowed,
            backed_up=False,
        )

    def form_onto_itself(self):
        name = os.path.join(self.folder, 'Data.dfm')
        return self.form(['form', 'to-text', name, '-o', name], ['Data.dfm'])

    def form_in_place(self):
        return self.form(
            ['form', 'to-text', '--in-place', os.path.join(self.folder, 'Data.dfm')], ['Data.dfm']
        )

    def forms_in_place(self):
        return self.form(
            ['form', 'to-text', '--in-place', self.folder], ['Data.dfm', 'Sub/More.dfm', 'Sub/Other.dfm']
        )

    def form_over_another(self):
        names = [os.path.join(self.folder, name) for name in ('Data.dfm', 'Other.txt')]
        return self.form(['form', 'to-text', names[0], '-o', names[1]], ['Data.dfm', 'Other.txt'])


class _Empty(State):
    def __init__(self):
        self.files = {}
        self.folders = []


EMPTY = _Empty()
REPLACEMENTS = ['folder-run', 'project-run', 'second-generation', 'unsaved-run']
FORMS = ['form-onto-itself', 'form-in-place', 'forms-in-place', 'form-over-another']
