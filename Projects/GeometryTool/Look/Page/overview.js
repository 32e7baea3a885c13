// What `ovrageo info` tells of a case as a whole.

import { kinds, kindsOf } from "./case.js";
import { twinTable } from "./changes.js";
import { counted, element, measure, place } from "./dom.js";
import { facts, isAny, table, title } from "./tables.js";

const number = (value) => value.toLocaleString("en");

const fileText = (file) => `${file.path}, ${counted(file.bytes, "byte")}, format ${file.formatName}, version ${file.version}`;

function boxText(box) {
    if (!box) {
        return "none";
    }
    const sizes = box.maximum.map((high, axis) => measure(high - box.minimum[axis])).join(" × ");
    return `${place(box.minimum)} to ${place(box.maximum)}, ${sizes}`;
}

function spaceText(info) {
    if (info.is3d) {
        return "three-dimensional";
    }
    return `${info.isPlanar ? "planar" : "surfaces in space"}, the model has no regions`;
}

function countsTable(info) {
    return table("Entities", [
        { head: "", cell: (row) => kindsOf[row.dimension] },
        { head: "model", isNumber: true, cell: (row) => number(row.model.count) },
        { head: "id gaps", isNumber: true, cell: (row) => number(row.model.idGaps) },
        { head: "mesh", isNumber: true, cell: (row) => number(row.mesh.count) },
        { head: "id gaps", isNumber: true, cell: (row) => number(row.mesh.idGaps) },
        { head: "no parent", isNumber: true, cell: (row) => number(row.mesh.unclassified) },
        { head: "other dim.", isNumber: true, cell: (row) => number(row.mesh.onOtherDimension) },
        { head: "kinds", isLong: true, cell: (row) => kindsText(row.mesh.kinds) },
    ], info.dimensions);
}

const kindsText = (kinds) =>
    Object.entries(kinds).map(([kind, count]) => `${number(count)} ${kind}`).join(", ");

function materialsTable(info) {
    return table("Materials", [
        { head: "type", cell: (row) => row.type ?? "none" },
        { head: "id", isNumber: true, cell: (row) => row.id ?? "none" },
        { head: info.is3d ? "regions" : "faces", isNumber: true, cell: (row) => number(row.modelEntities) },
        { head: "elements", isNumber: true, cell: (row) => number(row.elements) },
    ], info.materials, null, info.materialsMore);
}

/** Which entities share a name. */
function namesTable({ names, namesMore }) {
    return table("Names", [
        { head: "name", isLong: true, cell: ({ name }) => name },
        { head: "of", isLong: true, cell: ({ dimension, ids }) => `${(ids.length > 1 ? kindsOf : kinds)[dimension]} ${ids.join(", ")}` },
    ], names, ({ name }) => name, namesMore);
}

export function showOverview(section, data, select) {
    const { info, before } = data;
    title(section, "Overview");
    section.append(
        facts([
            ["Case", info.case],
            ["Space", spaceText(info)],
            ["Coordinate system", String(info.coordinateSystem)],
            ["Mesh box", boxText(info.meshBox)],
            ["Model box", boxText(info.modelBox)],
            ["Model file", fileText(info.modelFile)],
            ["Mesh file", fileText(info.meshFile)],
            ["Refinement", counted(info.refinementRegions, "region")],
        ]),
        element("div", { class: "side-by-side" }, countsTable(info), materialsTable(info)),
        isAny(info.names, info.namesMore) ? namesTable(info) : "",
        !before && isAny(info.twins, info.twinsMore) ? twinTable(data, info.twins, info.twinsMore, select) : "");
}
