// The directions of the axes, in a corner of the view.

import { Vector3 } from "three";
import { drawing } from "./dom.js";

const axes = [
    { name: "x", direction: new Vector3(1, 0, 0) },
    { name: "y", direction: new Vector3(0, 1, 0) },
    { name: "z", direction: new Vector3(0, 0, 1) },
];

/** Draws the axes as the camera sees them, those that point away first. */
export function drawTriad(svg, camera) {
    const seen = axes.map(({ name, direction }) => ({
        name,
        tip: direction.clone().transformDirection(camera.matrixWorldInverse),
    }));
    seen.sort((a, b) => a.tip.z - b.tip.z);
    svg.replaceChildren(...seen.flatMap(({ name, tip }) => arrow(name, tip)));
}

function arrow(name, tip) {
    const [x, y] = [tip.x, -tip.y];
    return [
        drawing("line", { x1: 0, y1: 0, x2: 24 * x, y2: 24 * y, class: `axis ${name}` }),
        drawing("text", { x: 33 * x, y: 33 * y, class: `axis ${name}` }, name),
    ];
}
