#!/usr/bin/python3
"""Solves steady heat conduction on a solver input file of ovrageo.

Prints the account of the heat and the range of temperatures; writes temperatures for ParaView and a
picture where asked to.
"""

import argparse
import sys

try:
    import numpy as np

    import problem
    import solver_input
    from conduction import Conduction
    from solver_input import InputError
except ImportError as error:
    sys.exit(f"heat: error: {error}; install python3-numpy and python3-scipy")


def parse():
    """The command line."""
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("input", help="what `ovrageo solver-input` wrote")
    parser.add_argument("problem", help="materials, heat and boundary values, see README.md")
    parser.add_argument("--vtu", metavar="FILE", help="write temperatures and heat flux as .vtu")
    parser.add_argument("--picture", metavar="FILE", help="write cuts through the hottest place as .png")
    return parser.parse_args()


def report(solution):
    """Prints what flows in and out, and the range of temperatures."""
    for where, heat in solution.heat_in.items():
        print(f"{where:<20} {heat:12.6g} W")
    print(f"{'difference':<20} {solution.imbalance():12.1e} of the heat")
    print(f"temperatures from {np.nanmin(solution.temperatures):.3f} K "
          f"to {np.nanmax(solution.temperatures):.3f} K")


def write(arguments, solver, solution):
    """Writes the files that were asked for; VTK is needed for these alone."""
    if not arguments.vtu and not arguments.picture:
        return
    try:
        import results
    except ImportError as error:
        sys.exit(f"heat: error: {error}; install python3-vtk9")
    grid = results.grid(solver, solution)
    if arguments.vtu:
        results.write_vtu(grid, arguments.vtu)
    if arguments.picture:
        results.write_picture(grid, arguments.picture)


def main():
    """Returns the exit code."""
    arguments = parse()
    try:
        solver = Conduction(solver_input.read(arguments.input), problem.read(arguments.problem))
        solution = solver.solve()
        report(solution)
        write(arguments, solver, solution)
    except OSError as error:
        text = f"{error.filename}: {error.strerror}" if error.filename else str(error)
        print(f"heat: error: {text}", file=sys.stderr)
        return 1
    except InputError as error:
        print(f"heat: error: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
