"""What a program costs, as the kernel counts it."""

import os
from pathlib import Path

TICK = os.sysconf("SC_CLK_TCK")


def _read(path):
    try:
        return path.read_text()
    except (FileNotFoundError, ProcessLookupError, PermissionError):
        return ""


def _parents():
    parents = {}
    for folder in Path("/proc").glob("[0-9]*"):
        fields = _read(folder / "stat").rpartition(")")[2].split()
        if fields and fields[0] != "Z":
            parents[int(folder.name)] = int(fields[1])
    return parents


def tree(root, marks=()):
    """The process, all that it started, and all whose command line or environment holds one of the marks."""
    parents = _parents()

    def belongs(process):
        while process in parents:
            if process == root:
                return True
            process = parents[process]
        return False

    return [process for process in parents if belongs(process) or _marked(process, marks)]


def _marked(process, marks):
    line = _read(Path(f"/proc/{process}/cmdline"))
    return any(mark in line for mark in marks)


def memory(processes, kinds=("Pss:",)):
    """Proportional set size in MiB: what is shared counts in parts."""
    total = 0
    for process in processes:
        for line in _read(Path(f"/proc/{process}/smaps_rollup")).splitlines():
            if line.startswith(kinds):
                total += int(line.split()[1])
    return total / 1024


def written_memory(processes):
    """Of that, what they have written to: not the code, of which any other program in the same engine shares a part."""
    return memory(processes, ("Pss_Anon:", "Pss_Shmem:"))


def processor_time(processes):
    """Seconds so far."""
    total = 0
    for process in processes:
        fields = _read(Path(f"/proc/{process}/stat")).rpartition(")")[2].split()
        if fields:
            total += int(fields[11]) + int(fields[12])
    return total / TICK


def running_time(process):
    """Seconds so far of all its threads that are still there, finer than processor_time."""
    tasks = Path(f"/proc/{process}/task").glob("*/schedstat")
    return sum(int((_read(task).split() or ["0"])[0]) for task in tasks) / 1e9


def sleeps(process):
    """How often each of its threads has gone to sleep so far."""
    counts = {}
    for task in Path(f"/proc/{process}/task").glob("*"):
        for line in _read(task / "status").splitlines():
            if line.startswith("voluntary_ctxt_switches:"):
                counts[task.name] = int(line.split()[1])
    return counts


def wake_ups(before, after):
    """Between two counts of sleeps, of all threads that were still there."""
    return sum(count - before.get(thread, 0) for thread, count in after.items())
