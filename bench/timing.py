"""Runs two programs in turn, and compares what they took."""
import os
import statistics
import subprocess
import tempfile
import time
from dataclasses import dataclass

KB = 1 << 10


@dataclass
class Cost:
    """What one run of a program took."""
    seconds: float
    cpu: float  # user and system seconds
    peak: int   # bytes of memory


def take_priority():
    """Before ordinary programs, so that these disturb a measurement less."""
    try:
        os.sched_setscheduler(0, os.SCHED_RR, os.sched_param(1))
    except OSError:
        pass


def run(command, temp, cwd=None):
    """Runs a program to its end, its temporary files in `temp`; a failure is an error that shows its output."""
    with tempfile.TemporaryFile() as output:
        start = time.perf_counter()
        process = subprocess.Popen(command, cwd=cwd, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                   env=os.environ | {"TMPDIR": temp}, preexec_fn=take_priority)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            output.seek(0)
            raise RuntimeError(f"{' '.join(map(str, command[:6]))}: status {process.returncode}\n"
                               + output.read().decode(errors="replace")[-2000:])
    return Cost(seconds, usage.ru_utime + usage.ru_stime, usage.ru_maxrss * KB)


def pairs(rounds, first, second):
    """Runs two sides in turn; each is a function that prepares its input and gives the Cost. The first round warms up.
    Returns the ratio of the fastest times, that of the least processor times, and both sides in words."""
    costs = [(first(), second()) for _ in range(rounds + 1)][1:]
    one, two = (min(cost.seconds for cost in side) for side in zip(*costs))
    cpu = [min(cost.cpu for cost in side) for side in zip(*costs)]
    ratios = sorted(a.seconds / b.seconds for a, b in costs)
    words = (f"{one:.3f} s to {two:.3f} s, {rounds} pairs {ratios[0]:.2f} to {ratios[-1]:.2f}, median "
             f"{statistics.median(ratios):.2f}; processor time {cpu[0] / max(cpu[1], 1e-3):.2f}")
    return one / two, words


def fewer(rounds):
    """Of the rows that take longer: the large forms, and the runs on the disk."""
    return max(3, rounds // 5)
