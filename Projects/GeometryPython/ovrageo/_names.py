"""Entities by name."""

from __future__ import annotations

import re
from typing import Any

from ._core import ModelEntities


def named(self: ModelEntities[Any], pattern: str) -> ModelEntities[Any]:
    """Those whose name is `pattern`, letter by letter; * stands for any characters, ? for any one.

    >>> import ovrageo
    >>> model = ovrageo.Case().model
    >>> for name in ("chip_1", "chip_2", "board"):
    ...     _ = model.add_region(name)
    >>> list(model.regions.named("chip_*"))
    [<ModelRegion 1 'chip_1'>, <ModelRegion 2 'chip_2'>]
    """
    parts = {"*": ".*", "?": "."}
    expression = re.compile("".join(parts.get(letter) or re.escape(letter) for letter in pattern), re.DOTALL)
    return self.select([entity.id for entity in self if expression.fullmatch(entity.name)])
