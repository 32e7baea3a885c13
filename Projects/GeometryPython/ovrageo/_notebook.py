"""How a case shows itself in a notebook."""

from __future__ import annotations

import base64
import os
from collections.abc import Iterable
from html import escape
from typing import Any

from . import errors
from .case import Case

_KINDS = ("vertices", "edges", "faces", "regions")
_WIDTH, _HEIGHT = 640, 400
# In the elements themselves, as notebooks take other styles away; colours are those of the notebook.
_PAGE = "display: flex; flex-wrap: wrap; gap: 1.5em; align-items: flex-start"
_TABLE = "border-collapse: collapse; margin: 0.75em 0 0 0; font-variant-numeric: tabular-nums"
_CELL = "border: 0; background: none; padding: 0.1em 1em 0.1em 0; text-align: "
_HEAD = "border: 0; background: none; padding: 0.1em 1em 0.1em 0; font-weight: normal; opacity: 0.65; text-align: "
_IMAGE = "max-width: 100%; height: auto; border-radius: 6px"


def page(case: Case) -> str:
    """A table of counts and materials, and a picture where the host can draw."""
    facts = case.info()
    return (
        f'<div style="{_PAGE}"><div><strong>{_title(case)}</strong><br><small>{_extents(facts)}</small>'
        f"{_counts(case)}{_materials(facts)}</div><div>{_picture(case)}</div></div>"
    )


def _title(case: Case) -> str:
    if case.name is None:
        return "A case in memory"
    return f'<span title="{escape(case.name)}">{escape(os.path.basename(case.name))}</span>'


def _extents(facts: dict[str, Any]) -> str:
    box = facts["meshBox"]
    if not box:
        return "no mesh"
    if None in box["minimum"] + box["maximum"]:
        return "not within finite numbers"
    sides = (f"{high - low:.4g}" for low, high in zip(box["minimum"], box["maximum"]))
    return "within " + " × ".join(sides)


def _counts(case: Case) -> str:
    return _table(("", "model", "mesh"), (
        (kind, f"{len(getattr(case.model, kind)):,}", f"{len(getattr(case.mesh, kind)):,}") for kind in _KINDS))


def _materials(facts: dict[str, Any]) -> str:
    rows = [(f"{material['type'] or 'none'} {material['id']}", f"{material['modelEntities']:,}",
             f"{material['elements']:,}") for material in facts["materials"]]
    of = "regions" if facts["is3d"] else "faces"
    return _table(("material", of, "elements"), rows) if rows else ""


def _table(head: Iterable[str], rows: Iterable[Iterable[str]]) -> str:
    lines = [_row("th", _HEAD, head), *(_row("td", _CELL, row) for row in rows)]
    return f'<table style="{_TABLE}">{"".join(lines)}</table>'


def _row(element: str, style: str, texts: Iterable[str]) -> str:
    cells = (f'<{element} style="{style}{"right" if column else "left"}">{escape(text)}</{element}>'
             for column, text in enumerate(texts))
    return f"<tr style=\"background: none\">{''.join(cells)}</tr>"


def _picture(case: Case) -> str:
    try:
        png = case.picture(size=f"{2 * _WIDTH}x{2 * _HEIGHT}")
    except (errors.BusyError, errors.GoneError):
        raise
    except errors.Error as error:  # a case without elements, a host without VTK
        return f"<small>no picture: {escape(str(error))}</small>"
    encoded = base64.b64encode(png or b"").decode()
    return (f'<img alt="The case" width="{_WIDTH}" height="{_HEIGHT}" style="{_IMAGE}" '
            f'src="data:image/png;base64,{encoded}">')
