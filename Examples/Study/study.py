#!/usr/bin/python3
"""Peak temperature of a chip by its distance from a cold lid, at several mesh sizes, as tasks of Dask.

Without --scheduler the tasks run in processes of this machine. A variant that fails is told of, and the
others go on. Writes a case and its solver input for each variant, table.csv and plot.png.
"""

import argparse
import csv
import dataclasses
import itertools
import os
import sys
import tempfile
import zipfile
from pathlib import Path

HERE = Path(__file__).resolve().parent
SOLVER = HERE.parent / "HeatConduction"
MODULES = [HERE / "variant.py"] + [
    SOLVER / name for name in ("conduction.py", "elements.py", "problem.py", "solver_input.py", "ties.py")]
sys.path[:0] = [str(SOLVER), str(HERE)]

try:
    import dask.distributed
    import matplotlib
    import scipy  # noqa: F401 (the solver needs it)
except ImportError as error:
    sys.exit(f"study: error: {error}; install python3-distributed, python3-matplotlib and python3-scipy")

from variant import Failure, Result, Variant, run  # noqa: E402


def main():
    """The exit code: 1 if a variant failed."""
    arguments = parse()
    os.makedirs(arguments.output, exist_ok=True)
    variants = variants_of(arguments)
    try:
        client = connected(arguments)
    except OSError as error:
        sys.exit(f"study: error: {error}")
    with client:
        results = list(finished(client, variants, os.path.abspath(arguments.output)))
    results.sort(key=lambda result: (result.gap, -result.size))
    print_table(results)
    write_table(results, os.path.join(arguments.output, "table.csv"))
    picture = Path(arguments.output, "plot.png")
    if results:
        plot(results, picture)
    else:
        picture.unlink(missing_ok=True)  # which would be that of another study
    return 0 if len(results) == len(variants) else 1


def parse():
    """The command line."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--gaps", type=float, nargs="+", default=[0.5, 1, 2, 4], metavar="MM",
                        help="distances between chip and lid; default: 0.5 1 2 4")
    parser.add_argument("--sizes", type=float, nargs="+", default=[2, 1], metavar="MM",
                        help="largest edges of elements; default: 2 1")
    parser.add_argument("--scheduler", metavar="ADDRESS", help="a cluster's, such as tcp://head:8786")
    parser.add_argument("--workers", type=int, metavar="N",
                        help="number of processes on this machine; default: one for each processor")
    parser.add_argument("--output", default="study", metavar="FOLDER",
                        help="where results go, a folder that all workers see; default: study")
    return parser.parse_args()


def variants_of(arguments):
    """Each once, as two tasks of one name would write the same files."""
    combined = itertools.starmap(Variant, itertools.product(arguments.gaps, arguments.sizes))
    return list({variant.name: variant for variant in combined}.values())


def connected(arguments):
    """A client of the cluster, or of processes of this machine that end with it."""
    if arguments.scheduler:
        return dask.distributed.Client(arguments.scheduler)
    return dask.distributed.Client(n_workers=arguments.workers, threads_per_worker=1, dashboard_address=None)


def finished(client, variants, folder):
    """The results in the order in which they come; what fails is printed."""
    give_modules(client)
    script = (HERE / "lid.geo").read_text(encoding="utf-8")
    tasks = {client.submit(run, variant, script, folder, pure=False): variant for variant in variants}
    for count, task in enumerate(dask.distributed.as_completed(tasks), start=1):
        outcome = outcome_of(task)
        is_result = isinstance(outcome, Result)
        print(f"[{count}/{len(tasks)}] {tasks[task].name}: {'done' if is_result else outcome.text}", flush=True)
        if is_result:
            yield outcome


def outcome_of(task):
    """What a task gave; a worker that was lost, with its machine for instance, is a failure too."""
    error = task.exception()
    return task.result() if error is None else Failure(f"{type(error).__name__}: {error}")


def give_modules(client):
    """Brings what a variant runs to all workers, those to come included."""
    with tempfile.TemporaryDirectory() as folder:
        packed = os.path.join(folder, "study.zip")
        with zipfile.ZipFile(packed, "w") as file:
            for path in MODULES:
                file.write(path, path.name)
        client.upload_file(packed)


COLUMNS = [field.name for field in dataclasses.fields(Result)]
UNITS = {"gap": "mm", "size": "mm", "air": "mm3", "chip": "mm3", "peak": "K", "seconds": "s"}


def rows(results):
    """Texts, the heading first."""
    yield [f"{column}/{UNITS[column]}" if column in UNITS else column for column in COLUMNS]
    for result in results:
        yield [f"{value:.6g}" for value in dataclasses.astuple(result)]


def print_table(results):
    for row in rows(results):
        print(" ".join(f"{text:>9}" for text in row))


def write_table(results, path):
    with open(path, "w", newline="", encoding="utf-8") as file:
        csv.writer(file).writerows(rows(results))


def plot(results, path):
    """Peak temperatures and numbers of elements by gap, a line for each mesh size."""
    matplotlib.use("Agg")
    from matplotlib import pyplot
    figure, axes = pyplot.subplots(1, 2, figsize=(10, 4), layout="constrained")
    for size in sorted({result.size for result in results}, reverse=True):
        of_size = [result for result in results if result.size == size]
        gaps = [result.gap for result in of_size]
        axes[0].plot(gaps, [result.peak for result in of_size], "o-", label=f"elements of {size:g} mm")
        axes[1].plot(gaps, [result.elements for result in of_size], "o-", label=f"elements of {size:g} mm")
    for axis, text in zip(axes, ("peak temperature, K", "elements")):
        axis.set_xlabel("gap between chip and lid, mm")
        axis.set_ylabel(text)
        axis.grid(alpha=0.3)
        axis.legend()
    figure.savefig(path, dpi=100)
    pyplot.close(figure)


if __name__ == "__main__":
    sys.exit(main())
