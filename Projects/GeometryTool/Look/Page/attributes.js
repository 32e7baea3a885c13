// Which attributes stand on how many entities.

import { counted } from "./dom.js";
import { kinds, kindsOf } from "./case.js";
import { table, title } from "./tables.js";

function countsText(owner, own, counts) {
    const ofEntities = counts
        .map((count, dimension) => count > 0 && counted(count, `${owner} ${kinds[dimension]}`, `${owner} ${kindsOf[dimension]}`))
        .filter(Boolean);
    return own > 0 ? [`the ${owner}`, ...ofEntities] : ofEntities;
}

export function showAttributes(section, { info }) {
    const rows = Object.entries(info.attributes);
    if (rows.length === 0) {
        return;
    }
    title(section, "Attributes");
    section.append(table("Attributes", [
        { head: "attribute", cell: ([tag]) => tag },
        {
            head: "on",
            isLong: true,
            cell: ([, on]) => [
                ...countsText("model", on.model, on.modelEntities), ...countsText("mesh", on.mesh, on.meshEntities),
            ].join(", "),
        },
    ], rows, ([tag]) => tag));
}
