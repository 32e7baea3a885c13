"""How a case shows itself in a notebook."""

from __future__ import annotations

import base64
from html import escape
from typing import Any

from . import errors
from .case import Case

_KINDS = ("vertices", "edges", "faces", "regions")


def page(case: Case) -> str:
    """A table of counts and materials, and a picture where the host can draw."""
    if case._state.is_closed:
        return "<p>A case that is closed</p>"
    facts = case.info()
    return (
        '<div style="display: flex; flex-wrap: wrap; gap: 1em; align-items: flex-start">'
        f"<div><strong>{escape(case.name or 'A case in memory')}</strong>"
        f"{_counts(case)}{_materials(facts)}</div>{_picture(case)}</div>"
    )


def _counts(case: Case) -> str:
    rows = "".join(
        f"<tr><th>{kind}</th><td>{len(getattr(case.model, kind))}</td>"
        f"<td>{len(getattr(case.mesh, kind))}</td></tr>"
        for kind in _KINDS
    )
    return f"<table><tr><th></th><th>model</th><th>mesh</th></tr>{rows}</table>"


def _materials(facts: dict[str, Any]) -> str:
    rows = "".join(
        f"<tr><td>{escape(str(material['type'] or 'none'))}</td><td>{material['elements']}</td></tr>"
        for material in facts["materials"]
    )
    return f"<table><tr><th>material</th><th>elements</th></tr>{rows}</table>" if rows else ""


def _picture(case: Case) -> str:
    try:
        png = case.picture(size="480x360")
    except errors.Error as error:  # a case without elements, a host without VTK
        return f"<p>{escape(str(error))}</p>"
    encoded = base64.b64encode(png or b"").decode()
    return f'<img alt="The case" width="480" height="360" src="data:image/png;base64,{encoded}">'
