// What stands beside the view: how it is shown, what is shown, and what was clicked.

import { isPatch, kinds, materialOf, titleOf } from "./case.js";
import { colourScale, neutral } from "./colours.js";
import { Controls } from "./controls.js";
import { byId, counted, element, measure, place } from "./dom.js";
import { EntityTree } from "./tree.js";

const measureNames = ["", "Length", "Area", "Volume"];

export class Panel {
    constructor(data, surfaces, scene, visibility) {
        this.data = data;
        this.scene = scene;
        this.visibility = visibility;
        this.clicks = { hits: [], next: 0 };
        this.controls = new Controls(byId("controls"), data, surfaces, scene, (settings) => this.dress(settings));
        this.tree = new EntityTree(byId("entities"), data, visibility, (entity) => this.select(entity));
        scene.onclick = (hits) => this.click(hits);
        this.dress(this.controls.settings());
        this.tellWhatIsLeftOut(surfaces);
        this.select(null);
    }

    tellWhatIsLeftOut({ patches, polygonsLeftOut, segmentsLeftOut }) {
        const polygons = patches.reduce((sum, patch) => sum + patch.leftOut, polygonsLeftOut);
        const told = [[polygons, "polygon"], [segmentsLeftOut, "mesh edge"]]
            .filter(([count]) => count > 0).map(([count, what]) => counted(count, what)).join(" and ");
        byId("note").textContent = told && `Left out: ${told}, too many for this page`;
    }

    /** What a patch belongs to where it is coloured by region: what is not fluid shows. */
    bodyOf(part) {
        const bodies = this.visibility.bodiesOf(part);
        return bodies.find((body) => !isFluid(body)) ?? bodies[0];
    }

    dress({ colourBy, seesThroughFluid }) {
        const valueOf = {
            boundary: (part) => this.data.entityOf(part),
            body: (part) => this.bodyOf(part),
            material: (part) => this.bodyOf(part) && materialOf(this.bodyOf(part)),
        }[colourBy];
        const values = {
            boundary: this.data.entities,
            body: this.data.bodies,
            material: this.data.bodies.map(materialOf).sort(),
        }[colourBy];
        const scale = colourScale(values);
        const colourOf = (part) => scale.get(valueOf(part)) ?? neutral;
        const isClear = (part) => seesThroughFluid && this.boundsFluidAlone(part);
        this.scene.dress(colourOf, isClear);
        this.tree.colour(colourOf);
    }

    boundsFluidAlone(part) {
        const bodies = this.visibility.bodiesOf(part);
        return bodies.length > 0 && bodies.every(isFluid);
    }

    /** A second click at the same place goes on to what lies behind. */
    click(hits) {
        const same = hits.length > 0 && hits.length === this.clicks.hits.length &&
            hits.every((hit, i) => hit.patch === this.clicks.hits[i].patch);
        this.clicks = { hits, next: same ? (this.clicks.next + 1) % hits.length : 0 };
        const hit = hits[this.clicks.next];
        this.select(hit ? this.data.entityOf(hit.patch) : null, hit?.place);
    }

    selectFromTable(entity) {
        this.select(entity);
        byId("view").scrollIntoView();
        byId("selection").focus({ preventScroll: true });
    }

    goTo(point) {
        this.scene.goTo(point);
        byId("view").scrollIntoView();
        byId("canvas").focus({ preventScroll: true });
    }

    select(entity, at = null) {
        this.scene.highlight(entity && ((part) => this.isPartOf(part, entity)));
        this.tree.mark(entity);
        byId("selection").replaceChildren(...(entity ? this.facts(entity, at) : [this.invitation()]));
    }

    isPartOf(part, entity) {
        const isItself = this.data.entityOf(part) === entity;
        return isItself || (isPatch(part) && this.visibility.bodiesOf(part).includes(entity));
    }

    invitation() {
        return element("p", { class: "hint" }, "Nothing is selected: click a face, or a name below.");
    }

    facts(entity, at) {
        const rows = [
            ...(entity === this.data.loose ? [["Polygons", entity.polygons.toLocaleString("en")]] : this.rows(entity)),
            at ? ["Clicked at", place(at)] : null,
            ...entity.attributes.filter(([tag]) => !tag.startsWith("material_")),
        ];
        return [
            element("h3", { tabindex: -1 }, titleOf(entity)),
            element("dl", {}, ...rows.filter(Boolean).flatMap(([name, value]) => [
                element("dt", {}, name), element("dd", {}, value),
            ])),
            this.buttons(entity),
        ];
    }

    rows(entity) {
        const bounds = entity.bounds.map((id) => this.data.find(this.data.bodyDimension, id)).filter(Boolean);
        return [
            ["Name", entity.name || "none"],
            ["Kind", `${kinds[entity.dimension]} ${entity.id}`],
            entity.tag && entity.tag !== entity.name ? ["In the input", entity.tag] : null,
            entity.dimension === this.data.bodyDimension ? ["Material", materialOf(entity)] : null,
            bounds.length > 0 ? ["Bounds", bounds.map(titleOf).join(", ")] : null,
            ["Elements", entity.elements.toLocaleString("en")],
            [measureNames[entity.dimension], measure(entity.measure)],
        ];
    }

    buttons(entity) {
        const { all, loose } = this.data;
        const isAlike = (other) => other.dimension === entity.dimension || other === loose || entity === loose;
        const others = all.filter((other) => other !== entity && isAlike(other));
        return element("div", { class: "buttons" },
            element("button", { type: "button", onclick: () => this.visibility.hide([entity], true) }, "Hide"),
            element("button", { type: "button", onclick: () => this.visibility.hide(others, true) }, "Hide all others"),
            element("button", { type: "button", onclick: () => this.visibility.hide(all, false) }, "Show all"));
    }
}

const isFluid = (entity) => entity.materialType === "fluid";
