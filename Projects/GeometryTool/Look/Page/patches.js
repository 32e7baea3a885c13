// The surfaces of a case as things to draw: a mesh for each patch, with the lines of its polygons.

import {
    BufferAttribute, BufferGeometry, CanvasTexture, DoubleSide, LineBasicMaterial, LineSegments, Mesh,
    MeshLambertMaterial, Points, PointsMaterial,
} from "three";

/** Two triangles for each quadrilateral. */
function triangulated({ triangleIndices, quadrilateralIndices }) {
    const index = new Uint32Array(triangleIndices.length + (quadrilateralIndices.length / 4) * 6);
    index.set(triangleIndices);
    let at = triangleIndices.length;
    for (let i = 0; i < quadrilateralIndices.length; i += 4) {
        const [a, b, c, d] = quadrilateralIndices.subarray(i, i + 4);
        index.set([a, b, c, a, c, d], at);
        at += 6;
    }
    return index;
}

/** Each side of the polygons once. */
function sidesOf(polygons, corners, vertexCount, seen, pairs) {
    for (let i = 0; i < polygons.length; i += corners) {
        for (let side = 0; side < corners; ++side) {
            const a = polygons[i + side];
            const b = polygons[i + ((side + 1) % corners)];
            const key = Math.min(a, b) * vertexCount + Math.max(a, b);
            if (!seen.has(key)) {
                seen.add(key);
                pairs.push(a, b);
            }
        }
    }
}

export class Shapes {
    /** @param positions of all vertices; sphere, that encloses them */
    constructor(positions, sphere) {
        this.position = new BufferAttribute(positions, 3);
        this.sphere = sphere;
    }

    geometry(index) {
        const geometry = new BufferGeometry();
        geometry.setAttribute("position", this.position);
        geometry.setIndex(new BufferAttribute(index, 1));
        geometry.boundingSphere = this.sphere;
        return geometry;
    }

    patch(patch) {
        const material = new MeshLambertMaterial({
            side: DoubleSide, flatShading: true, polygonOffset: true, polygonOffsetFactor: 1, polygonOffsetUnits: 1,
        });
        const mesh = new Mesh(this.geometry(triangulated(patch)), material);
        mesh.userData = patch;
        return mesh;
    }

    line(line) {
        const segments = new LineSegments(this.geometry(line.indices), new LineBasicMaterial());
        segments.userData = line;
        return segments;
    }

    /** The lines of the polygons of a patch. */
    meshLines(patch) {
        const pairs = [];
        const seen = new Set();
        sidesOf(patch.triangleIndices, 3, this.position.count, seen, pairs);
        sidesOf(patch.quadrilateralIndices, 4, this.position.count, seen, pairs);
        const material = new LineBasicMaterial({ transparent: true, opacity: 0.45 });
        return new LineSegments(this.geometry(new Uint32Array(pairs)), material);
    }
}

/** Round marks of the same size from near and far, in front of all else. */
export function marks(places, colour) {
    const geometry = new BufferGeometry();
    geometry.setAttribute("position", new BufferAttribute(new Float32Array(places.flat()), 3));
    const material = new PointsMaterial({
        color: colour, size: 14, sizeAttenuation: false, depthTest: false, map: disc(), alphaTest: 0.5,
    });
    const points = new Points(geometry, material);
    points.renderOrder = 1;
    points.frustumCulled = false;
    return points;
}

function disc() {
    const canvas = document.createElement("canvas");
    canvas.width = canvas.height = 32;
    const context = canvas.getContext("2d");
    context.fillStyle = "white";
    context.arc(16, 16, 14, 0, 2 * Math.PI);
    context.fill();
    return new CanvasTexture(canvas);
}
