// What the page was given: the case as JSON, and its surfaces as two compressed blocks.

import { byId } from "./dom.js";

export const kinds = ["vertex", "edge", "face", "region"];
export const kindsOf = ["vertices", "edges", "faces", "regions"];

export function readCase() {
    const data = JSON.parse(byId("case").textContent);
    data.bodyDimension = data.info.is3d ? 3 : 2;
    data.bodies = data.entities.filter((entity) => entity.dimension === data.bodyDimension);
    data.boundaries = data.entities.filter((entity) => entity.dimension < data.bodyDimension);
    data.find = finder(data.entities);
    data.loose = looseOf(data);
    data.all = data.loose ? [...data.entities, data.loose] : data.entities;
    data.entityOf = (part) => data.find(part.dimension, part.id) ?? (isPatch(part) ? data.loose : undefined);
    return data;
}

export const isPatch = (part) => "triangles" in part;

/**
 * One entry for all patches that stand on no region or face, or on one that the page had no room to list, so that they
 * can be named and hidden; null without any.
 */
function looseOf(data) {
    const patches = data.surfaces.patches.filter((patch) => !data.find(patch.dimension, patch.id));
    const polygons = patches.reduce((sum, patch) => sum + patch.triangles + patch.quadrilaterals + patch.leftOut, 0);
    const suffix = patches.every(({ id }) => id === null) ? "" : " that is listed";
    const name = `On no ${kinds[data.bodyDimension]} or ${kinds[data.bodyDimension - 1]}${suffix}`;
    return polygons > 0 ? { dimension: null, id: null, name, polygons, bounds: [], attributes: [] } : null;
}

const keyOf = (dimension, id) => `${dimension}/${id}`;

function finder(entities) {
    const byKey = new Map(entities.map((entity) => [keyOf(entity.dimension, entity.id), entity]));
    return (dimension, id) => byKey.get(keyOf(dimension, id));
}

/** How an entity is called where its name alone would not do. */
export function titleOf(entity) {
    return entity.name || entity.tag || `${kinds[entity.dimension]} ${entity.id}`;
}

export function materialOf(entity) {
    const parts = [entity.materialType, entity.materialId].filter((part) => part !== null);
    return parts.join(" ") || "none";
}

/** The surfaces as arrays: positions of all vertices, and the polygons of each patch. */
export async function readSurfaces(head) {
    const [positions, steps] = await Promise.all([inflated("positions"), inflated("indices")]);
    const indices = summedUp(new Uint32Array(steps));
    let from = 0;
    const next = (count) => indices.subarray(from, (from += count));
    const patches = head.patches.map((patch) => ({
        ...patch,
        triangleIndices: next(3 * patch.triangles),
        quadrilateralIndices: next(4 * patch.quadrilaterals),
    }));
    const lines = head.lines.map((line) => ({ ...line, indices: next(2 * line.segments) }));
    const { polygonsLeftOut, segmentsLeftOut } = head;
    return { positions: new Float32Array(positions), patches, lines, polygonsLeftOut, segmentsLeftOut };
}

async function inflated(id) {
    const bytes = Uint8Array.from(atob(byId(id).textContent), (character) => character.charCodeAt(0));
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate"));
    return together(new Uint8Array(await new Response(stream).arrayBuffer()));
}

/** Numbers of four bytes, of which all lowest bytes stand first, then all that are next, and so on. */
function together(planes) {
    const count = planes.length / 4;
    const bytes = new Uint8Array(planes.length);
    for (let rank = 0; rank < 4; ++rank) {
        for (let i = 0; i < count; ++i) {
            bytes[4 * i + rank] = planes[rank * count + i];
        }
    }
    return bytes.buffer;
}

/** Each number is twice a step; odd ones go down. */
function summedUp(steps) {
    let last = 0;
    for (let i = 0; i < steps.length; ++i) {
        last += (steps[i] >>> 1) ^ -(steps[i] & 1);
        steps[i] = last;
    }
    return steps;
}
