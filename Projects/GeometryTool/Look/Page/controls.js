// How the view is shown: colours, lines, what can be seen through, and a plane that cuts.

import { element, measure } from "./dom.js";

const linesUpTo = 60000; // polygons; more would only blacken the faces
const steps = 200;

export class Controls {
    constructor(root, data, surfaces, scene, onDress) {
        this.scene = scene;
        const names = data.bodyDimension === 3 ? ["face", "region"] : ["edge", "face"];
        const polygons = surfaces.patches.reduce((sum, patch) => sum + patch.triangles + patch.quadrilaterals, 0);
        const dress = () => onDress(this.settings());
        this.colourBy = choice([["boundary", names[0]], ["body", names[1]], ["material", "material"]], dress);
        this.colourBy.value = data.bodies.length > 1 ? "body" : "boundary";
        this.fluid = box(data.bodies.some((body) => body.materialType !== "fluid" && body.elements > 0), dress);
        this.lines = box(polygons <= linesUpTo, () => scene.setMeshLines(this.lines.checked));
        this.marks = box(true, () => scene.setMarks(this.marks.checked));
        this.axis = choice([["none", "nowhere"], [0, "x"], [1, "y"], [2, "z"]], () => this.clip());
        this.at = element("input", { type: "range", min: 0, max: steps, value: steps / 2, oninput: () => this.clip() });
        this.otherSide = box(false, () => this.clip());
        this.where = element("output", {});
        const hasFluid = data.bodies.some((body) => body.materialType === "fluid");
        root.append(
            labelled("Colour by", this.colourBy),
            checked("Mesh lines", this.lines),
            hasFluid ? checked("See through fluid", this.fluid) : "",
            data.verify.findings.length > 0 ? checked("Findings", this.marks) : "",
            element("fieldset", {}, element("legend", {}, "Cut"),
                labelled("Across", this.axis), labelled("At", this.at), this.where,
                checked("Other side", this.otherSide)),
            element("button", { type: "button", onclick: () => scene.fit() }, "Fit all in"));
        scene.setMeshLines(this.lines.checked);
        this.clip();
    }

    settings() {
        return { colourBy: this.colourBy.value, seesThroughFluid: this.fluid.checked };
    }

    clip() {
        const isOff = this.axis.value === "none";
        this.at.disabled = this.otherSide.disabled = isOff;
        const axis = isOff ? null : Number(this.axis.value);
        const fraction = this.at.value / steps;
        this.scene.clip(axis, fraction, this.otherSide.checked);
        this.where.textContent = isOff ? "" : `${"xyz"[axis]} = ${measure(this.scene.coordinate(axis, fraction))}`;
    }
}

function choice(options, onchange) {
    return element("select", { onchange },
        options.map(([value, text]) => element("option", { value }, text)));
}

const box = (isChecked, onchange) => element("input", { type: "checkbox", checked: isChecked, onchange });
const labelled = (text, control) => element("label", {}, element("span", {}, text), control);
const checked = (text, control) => element("label", { class: "check" }, control, text);
