// Elements of the page. Texts of a case only ever get in as text.

/** Makes an element; children are elements or texts. */
export function element(tag, attributes = {}, ...children) {
    return filled(document.createElement(tag), attributes, children);
}

/** The same for a drawing. */
export function drawing(tag, attributes = {}, ...children) {
    return filled(document.createElementNS("http://www.w3.org/2000/svg", tag), attributes, children);
}

function filled(node, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (name.startsWith("on")) {
            node.addEventListener(name.slice(2), value);
        } else if (value !== false && value !== null && value !== undefined) {
            node.setAttribute(name, value === true ? "" : value);
        }
    }
    node.append(...children.flat().filter((child) => child !== null && child !== undefined));
    return node;
}

export const byId = (id) => document.getElementById(id);

/** "1 element", "12,000 elements". */
export function counted(count, singular, plural = `${singular}s`) {
    return `${count.toLocaleString("en")} ${count === 1 ? singular : plural}`;
}

/** A measure to four digits; 0.00012 as 1.2e-4. */
export function measure(value) {
    if (value === null || !Number.isFinite(value)) {
        return "none";
    }
    const rounded = Number(value.toPrecision(4));
    const isPlain = rounded === 0 || (Math.abs(rounded) >= 1e-3 && Math.abs(rounded) < 1e6);
    return isPlain ? String(rounded) : rounded.toExponential().replace("e+", "e");
}

export const place = (point) => `(${point.map(measure).join(", ")})`;
