// The regions of a case with the faces that bound them, to hide and to select. Faces are listed when their
// region is opened, since there may be thousands.

import { kinds, titleOf } from "./case.js";
import { counted, element } from "./dom.js";

export class EntityTree {
    constructor(root, data, visibility, onSelect) {
        this.data = data;
        this.visibility = visibility;
        this.onSelect = onSelect;
        this.rows = [];
        this.sortBoundaries();
        this.filter = element("input", { type: "search", oninput: () => this.show(), "aria-label": "Names that contain" });
        this.filter.placeholder = "Names that contain …";
        this.list = element("ul", {});
        root.append(this.filter, this.list);
        visibility.addEventListener("change", () => this.update());
        this.show();
    }

    show() {
        const wanted = this.filter.value.trim().toLowerCase();
        this.rows = [];
        const fits = (entity) => titleOf(entity).toLowerCase().includes(wanted);
        this.list.replaceChildren(...(wanted
            ? this.data.all.filter(fits).slice(0, 200).map((entity) => this.item(entity))
            : this.wholeTree()));
        this.update();
    }

    /** By the regions that they bound; what bounds none, or none that is listed, is a row of its own. */
    sortBoundaries() {
        this.boundariesOf = new Map(this.data.bodies.map(({ id }) => [id, []]));
        this.others = [];
        for (const entity of this.data.boundaries) {
            const lists = [...new Set(entity.bounds)].map((id) => this.boundariesOf.get(id)).filter(Boolean);
            (lists.length > 0 ? lists : [this.others]).forEach((list) => list.push(entity));
        }
        this.others.push(...(this.data.loose ? [this.data.loose] : []));
    }

    wholeTree() {
        return [...this.data.bodies.map((body) => this.branch(body)), ...this.others.map((entity) => this.item(entity))];
    }

    branch(body) {
        const boundaries = this.boundariesOf.get(body.id);
        const inner = element("ul", {});
        const opened = element("details", {},
            element("summary", {}, counted(boundaries.length, kinds[this.data.bodyDimension - 1])), inner);
        opened.addEventListener("toggle", () => {
            if (opened.open && !inner.hasChildNodes()) {
                inner.append(...boundaries.map((entity) => this.item(entity)));
                this.update();
            }
        });
        const item = this.item(body);
        item.append(boundaries.length > 0 ? opened : "");
        return item;
    }

    item(entity) {
        const name = titleOf(entity);
        const box = element("input", {
            type: "checkbox", "aria-label": `Show ${name}`,
            onchange: () => this.visibility.hide([entity], !box.checked),
        });
        const swatch = element("span", { class: "swatch", "aria-hidden": "true" });
        const button = element("button", { type: "button", class: "name", onclick: () => this.onSelect(entity) }, name);
        this.rows.push({ entity, box, swatch, button });
        return element("li", {}, element("div", { class: "row" }, box, swatch, button));
    }

    colour(colourOf) {
        this.colourOf = colourOf;
        this.update();
    }

    mark(entity) {
        this.marked = entity;
        this.update();
    }

    update() {
        for (const { entity, box, swatch, button } of this.rows) {
            box.checked = !this.visibility.isHidden(entity);
            swatch.style.background = this.colourOf?.(entity) ?? "none";
            button.setAttribute("aria-pressed", entity === this.marked);
        }
    }
}
