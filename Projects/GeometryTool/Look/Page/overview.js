// What `ovrageo info` tells of a case as a whole.

import { kindsOf } from "./case.js";
import { counted, element, measure, place } from "./dom.js";
import { facts, table, title } from "./tables.js";

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
        { head: "model", isNumber: true, cell: (row) => row.model.count.toLocaleString("en") },
        { head: "mesh", isNumber: true, cell: (row) => row.mesh.count.toLocaleString("en") },
        { head: "kinds", cell: (row) => kindsText(row.mesh.kinds) },
    ], info.dimensions);
}

const kindsText = (kinds) =>
    Object.entries(kinds).map(([kind, count]) => `${count.toLocaleString("en")} ${kind}`).join(", ");

function materialsTable(info) {
    return table("Materials", [
        { head: "type", cell: (row) => row.type ?? "none" },
        { head: "id", isNumber: true, cell: (row) => row.id ?? "none" },
        { head: info.is3d ? "regions" : "faces", isNumber: true, cell: (row) => row.modelEntities.toLocaleString("en") },
        { head: "elements", isNumber: true, cell: (row) => row.elements.toLocaleString("en") },
    ], info.materials);
}

export function showOverview(section, { info }) {
    title(section, "Overview");
    section.append(
        facts([
            ["Case", info.case],
            ["Space", spaceText(info)],
            ["Mesh box", boxText(info.meshBox)],
            ["Model box", boxText(info.modelBox)],
            ["Model file", fileText(info.modelFile)],
            ["Mesh file", fileText(info.meshFile)],
            info.refinementRegions > 0 ? ["Refinement", counted(info.refinementRegions, "region")] : null,
        ]),
        element("div", { class: "side-by-side" }, countsTable(info), materialsTable(info)));
}
