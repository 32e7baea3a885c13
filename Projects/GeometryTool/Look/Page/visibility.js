// What is shown of a case: regions and faces that are not hidden. A patch that bounds regions is shown
// as long as one of them is.

const keyOf = (entity) => `${entity.dimension}/${entity.id}`;

export class Visibility extends EventTarget {
    constructor(data) {
        super();
        this.data = data;
        this.hidden = new Set();
    }

    isHidden(entity) {
        return this.hidden.has(keyOf(entity));
    }

    hide(entities, isHidden) {
        for (const entity of entities) {
            isHidden ? this.hidden.add(keyOf(entity)) : this.hidden.delete(keyOf(entity));
        }
        this.dispatchEvent(new Event("change"));
    }

    /** The regions whose boundary a patch or line is, or is itself a part of. */
    bodiesOf(part) {
        const entity = this.data.entityOf(part);
        if (!entity) {
            return [];
        }
        if (entity.dimension === this.data.bodyDimension) {
            return [entity];
        }
        return entity.bounds.map((id) => this.data.find(this.data.bodyDimension, id)).filter(Boolean);
    }

    isShown(part) {
        const entity = this.data.entityOf(part);
        if (!entity && part.faces?.length > 0) { // an edge goes with its faces
            return part.faces.some((id) => this.isShown({ dimension: this.data.bodyDimension - 1, id }));
        }
        const bodies = this.bodiesOf(part);
        const inSight = bodies.length === 0 || bodies.some((body) => !this.isHidden(body));
        return inSight && !(entity && this.isHidden(entity));
    }
}
