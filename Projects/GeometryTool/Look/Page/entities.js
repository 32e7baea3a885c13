// Tables of the regions of a case, and of the faces that bound them.

import { kindsOf, materialOf, titleOf } from "./case.js";
import { element, measure } from "./dom.js";
import { table, title } from "./tables.js";

const measureNames = ["", "length", "area", "volume"];

const capital = (text) => text[0].toUpperCase() + text.slice(1);

const attributesText = ({ attributes }) => attributes
    .filter(([tag]) => !tag.startsWith("material_"))
    .map(([tag, text]) => `${tag} ${text}`).join("; ");

const filterText = (entity) => [entity.id, entity.name, entity.tag, materialOf(entity), attributesText(entity)].join(" ");

/** A name that selects its entity in the view. */
export function nameButton(entity, select) {
    return element("button", { type: "button", class: "name", onclick: () => select(entity) }, titleOf(entity));
}

const commonColumns = (dimension, select) => [
    { head: "id", isNumber: true, cell: (entity) => String(entity.id) },
    { head: "name", cell: (entity) => nameButton(entity, select) },
    { head: "elements", isNumber: true, cell: (entity) => entity.elements.toLocaleString("en") },
    { head: measureNames[dimension], isNumber: true, cell: (entity) => measure(entity.measure) },
];

const moreOf = (dimension, listed, { info }) => info.dimensions[dimension].model.count - listed.length;

const attributeColumn = { head: "attributes", isLong: true, cell: attributesText };

export function showBodies(section, data, select) {
    if (data.bodies.length === 0) {
        return;
    }
    const heading = capital(kindsOf[data.bodyDimension]);
    title(section, heading);
    section.append(table(heading, [
        ...commonColumns(data.bodyDimension, select), { head: "material", cell: materialOf }, attributeColumn,
    ], data.bodies, filterText, moreOf(data.bodyDimension, data.bodies, data)));
}

export function showBoundaries(section, data, select) {
    if (data.boundaries.length === 0) {
        return;
    }
    const dimension = data.bodyDimension - 1;
    const bodiesOf = (entity) => entity.bounds
        .map((id) => data.find(data.bodyDimension, id)).filter(Boolean).map(titleOf).join(", ");
    title(section, capital(kindsOf[dimension]));
    section.append(table(capital(kindsOf[dimension]), [
        ...commonColumns(dimension, select), { head: "bounds", isLong: true, cell: bodiesOf }, attributeColumn,
    ], data.boundaries, filterText, moreOf(dimension, data.boundaries, data)));
}
