"""Says whether what a fault left is harmless."""
import glob
import os
import re
import shlex

from sources import State

SIGKILL = -9
SUCCESS = 'performed sucessfully'
CLAIMS_UNTOUCHED = re.compile(
    r'No file was changed|no file was replaced|no file was changed|nothing was restored'
)


class Case:
    """What a command is to do to the sources.

    before    the files of the user by their paths: their bytes when the command starts
    after     the same when it has done everything
    allowed   all bytes that each of them may have in the end
    earlier   the files before an earlier run whose way back must stay, or None
    """

    def __init__(
        self, folder, command, start, before, after, allowed, backed_up=True, earlier=None, restores=False
    ):
        self.folder = folder
        self.command = command
        self.start = start
        self.before = before
        self.after = after
        self.allowed = allowed
        self.backed_up = backed_up
        self.earlier = earlier
        self.restores = restores  # the command itself is a restore: its "after" is what is to be had back


def differences(state, wanted):
    return [path for path, contents in wanted.items() if state.bytes(path) != contents]


def backup_folders(folder):
    """That of the last run first."""
    undo_files = glob.glob(os.path.join(folder, 'RBackup*', '*.reu'))
    return [os.path.dirname(name) for name in sorted(undo_files, key=os.path.getmtime, reverse=True)]


def ways_back(folder, messages):
    """The restore commands to be tried: those that the program names, then the newest run first."""
    named = [
        shlex.split(found)
        for found in re.findall(r'kvamigrate (restore [^\n]*)', messages.replace('"', "'"))
        if found.count("'") % 2 == 0
    ]
    tried = [['restore', folder]]
    for command in named:
        tried.insert(0, [argument.rstrip('.') for argument in command])
    for backup in backup_folders(folder):
        tried += [['restore', backup], ['restore', os.path.join(backup, 'RExpert.reu')]]
    return tried + [['restore', '--all', folder]]


class Judge:
    mended = True  # nothing fails any more when the user tries again

    def __init__(self, program, case):
        self.program = program
        self.case = case
        self.known = {}

    def run(self, arguments):
        return self.program.run(arguments)

    def run_again(self):
        return self.run(self.case.command)

    def bring_back(self, state, wanted, messages, force=False, exempt=()):
        """The first single command that makes all files what they are in `wanted`, and the files then."""
        missing = [path for path in differences(state, wanted) if path not in exempt]
        if not missing:
            return [], state
        for command in ways_back(self.case.folder, messages):
            for variant in [command, command + ['--force']] if force else [command]:
                state.put(self.case.folder)
                self.run(variant)
                found = State(self.case.folder)
                if not [path for path in differences(found, wanted) if path not in exempt]:
                    return variant, found
        return None, state

    def take_back_runs(self, state, wanted):
        """Restores run after run, the last one first, until the files are what they are in `wanted`."""
        state.put(self.case.folder)
        for backup in backup_folders(self.case.folder):
            self.run(['restore', os.path.join(backup, 'RExpert.reu')])
            found = State(self.case.folder)
            if not differences(found, wanted):
                return found
        return None

    def check_earlier(self, state, problems, when):
        """The backups of an earlier run take the files back to before that one."""
        if self.case.earlier is None:
            return
        state.put(self.case.folder)
        self.run(['restore', os.path.join(self.case.folder, 'RBackup', 'RExpert.reu')])
        lost = differences(State(self.case.folder), self.case.earlier)
        if lost:
            problems.append(f'{when}: the earlier run cannot be undone any more: {", ".join(lost)}')

    def check_way_back(self, state, messages, problems, when):
        case = self.case
        wanted = case.after if case.restores else case.before
        if not differences(state, wanted) or not case.backed_up:
            return state
        way, restored = self.bring_back(state, wanted, messages)
        if way is None and when == 'run again':
            restored = self.take_back_runs(state, wanted)
        if restored is None or differences(restored, wanted):
            restored = state
            problems.append(f'{when}: no restore brings back {", ".join(differences(state, wanted))}')
        return restored

    def check_process(self, outcome, problems, when, killed=False):
        if outcome.hung:
            problems.append(f'{when}: it hangs')
        elif outcome.status < 0 and not (killed and outcome.status == SIGKILL):
            problems.append(f'{when}: it dies of signal {-outcome.status}')
        if 'terminate called' in outcome.err:
            problems.append(f'{when}: terminate called')

    def check_files(self, state, problems, when):
        for path, allowed in self.case.allowed.items():
            contents = state.bytes(path)
            if contents not in allowed:
                what = 'gone' if contents is None else f'torn: {len(contents)} bytes'
                problems.append(f'{when}: {path} is {what}')

    def check_whole(self, state, problems, when):
        """A file that was converted from whatever a fault left still ends as one of its kind."""
        for path, allowed in self.case.allowed.items():
            contents = state.bytes(path)
            if contents is None or not any(
                contents[-6:] == whole[-6:] and 2 * len(contents) > len(whole) for whole in allowed
            ):
                problems.append(f'{when}: {path} is torn')

    def check_claims(self, state, outcome, problems, when):
        case = self.case
        changed = differences(state, case.before)
        if outcome.status == 0:
            missing = differences(state, case.after)
            if missing:
                problems.append(f'{when}: exit status 0, but not done: {", ".join(missing)}')
            for path in case.after:
                if state.mode(path) is not None and state.mode(path) != case.start.mode(path):
                    problems.append(f'{when}: exit status 0, but {path} has other permissions')
        elif SUCCESS in outcome.out:
            problems.append(f'{when}: exit status {outcome.status}, but "{SUCCESS}"')
        elif outcome.status > 0 and not outcome.err.strip():
            problems.append(f'{when}: exit status {outcome.status} without a reason')
        if changed and CLAIMS_UNTOUCHED.search(outcome.text()):
            problems.append(f'{when}: it says that nothing was changed, but {", ".join(changed)}')

    def verdict(self, fault, outcome):
        """The problems of what the folder holds. The same files and messages are judged once."""
        state = State(self.case.folder)
        ours = tuple(
            sorted(
                (
                    re.sub(r'~kva[0-9a-f]+-[0-9a-f]+', '~kva', path),
                    b'' if path == 'Wiz_Log.txt' else contents,
                    mode,
                )
                for path, (contents, mode, _) in state.files.items()
            )
        )
        key = hash((ours, outcome.key(), fault.action == 'cut'))
        if key not in self.known:
            self.known[key] = self.judge(state, fault, outcome)
        return self.known[key]

    def judge(self, state, fault, outcome):
        problems = []
        killed = fault.action in ('kill', 'part', 'cut')
        cut = fault.action == 'cut'
        self.check_process(outcome, problems, 'at once', killed)
        if not cut:
            self.check_files(state, problems, 'at once')
            self.check_claims(state, outcome, problems, 'at once')
        back = self.check_way_back(state, outcome.text(), problems, 'at once')
        self.check_earlier(back, problems, 'at once')

        # The user runs the same command again.
        state.put(self.case.folder)
        again = self.run_again()
        later = State(self.case.folder)
        self.check_process(again, problems, 'run again')
        if not cut:
            self.check_whole(later, problems, 'run again')
        if self.mended and outcome.status == 0 and again.status != 0 and not cut:
            problems.append(
                f'run again after exit status 0: exit status {again.status}: {again.err.strip()[:200]}'
            )
        back = self.check_way_back(later, again.text(), problems, 'run again')
        self.check_earlier(back, problems, 'run again')
        if again.status != 0 and not problems and self.case.backed_up and not self.case.restores:
            self.check_goes_on(state, outcome.text() + again.text(), problems)
        return problems

    def check_goes_on(self, state, messages, problems):
        """Where the command refuses to run again, it runs once the user has restored."""
        for command in ways_back(self.case.folder, messages):
            state.put(self.case.folder)
            self.run(command)
            found = State(self.case.folder)
            if differences(found, self.case.before):
                continue
            again = self.run(self.case.command)
            if again.status == 0 and not differences(State(self.case.folder), self.case.after):
                return
        problems.append('restored and run again: it is not done')


class SecondRunJudge(Judge):
    """For a second run of the same command in the middle of the first."""

    SECOND = '[second run] '

    def judge(self, state, fault, outcome):
        problems = []
        case = self.case
        self.check_process(outcome, problems, 'the first run')
        self.check_files(state, problems, 'at once')
        first, _, second = outcome.text().partition(self.SECOND)
        statuses = [outcome.status, int(second.split()[0])]
        if min(statuses) < 0 or max(statuses) > 3:
            problems.append(f'exit statuses {statuses}')
        if 0 in statuses:
            left = [
                path
                for path in case.before
                if case.before[path] != case.after[path] and state.bytes(path) == case.before[path]
            ]
            if left:
                problems.append(f'exit statuses {statuses}, but not done: {", ".join(left)}')
        elif differences(state, case.before):
            problems.append(
                f'exit statuses {statuses}, but {", ".join(differences(state, case.before))} replaced'
            )
        self.check_way_back(state, outcome.text(), problems, 'at once')
        return problems


class FullDiskJudge(Judge):
    """For a disk that is still full when the user tries again; room is made before files are restored."""

    mended = False

    def __init__(self, program, case, run_again):
        super().__init__(program, case)
        self.run_again = run_again


class EditJudge(Judge):
    """For a source that its editor saves during a run: it writes `saved`, which has `mark` in it."""

    def __init__(self, program, case, path, saved, converted, mark):
        super().__init__(program, case)
        self.path = path
        self.saved = saved
        self.converted = converted
        self.mark = mark

    def judge(self, state, fault, outcome):
        case = self.case
        problems = []
        self.check_process(outcome, problems, 'at once')
        kept = self.mark in (state.bytes(self.path) or b'')
        way, found = self.bring_back(state, case.before, outcome.text(), force=True, exempt=(self.path,))
        if way is None:
            problems.append('no restore brings back the other files')
        if not kept and outcome.status == 0:
            problems.append('exit status 0, but the edit is not in the file')
        if not kept and found.bytes(self.path) != self.saved:
            way, found = self.bring_back(state, {self.path: self.saved}, outcome.text(), force=True)
            if way is None:
                problems.append('the edit is in neither file nor backup')
        for path, allowed in case.allowed.items():
            if path == self.path:
                allowed = allowed | {self.saved, self.converted}
            if state.bytes(path) not in allowed:
                problems.append(f'{path} is torn')
        if outcome.status == 0:
            missing = [path for path in differences(state, case.after) if path != self.path]
            if missing:
                problems.append(f'exit status 0, but not done: {", ".join(missing)}')
        return problems
