// Tables of the page: wide ones scroll within themselves, long ones show their first rows.

import { counted, element } from "./dom.js";

const shownRows = 200;

/** The heading of a section, to which main.js makes a link. */
export function title(section, text) {
    section.append(element("h2", { id: `${section.id}-title` }, text));
}

/**
 * @param columns objects with `head`, `cell`, which makes the content of a row's cell, `isNumber`, and `isLong`, of
 * texts that need some width
 * @param filterBy makes the text of a row that a filter looks through; without it there is no filter
 * @param more how many rows the page had no room for
 */
export function table(caption, columns, rows, filterBy = null, more = 0) {
    const body = element("tbody", {});
    const rest = element("p", { class: "hint", role: "status" });
    const show = (wanted) => {
        const fitting = rows.filter((row) => !wanted || filterBy(row).toLowerCase().includes(wanted));
        body.replaceChildren(...fitting.slice(0, shownRows).map((row) => tableRow(columns, row)));
        const left = fitting.length - shownRows;
        rest.textContent = left > 0 ? `${counted(left, "more row")} not shown` : "";
    };
    const heads = columns.map((column) => element("th", { scope: "col", class: classOf(column) }, column.head));
    show("");
    return element("div", {},
        filterBy && rows.length > 10 ? filterBox(caption, show) : null,
        element("div", { class: "scroll", tabindex: 0, role: "region", "aria-label": caption },
            element("table", {}, element("caption", {}, caption),
                element("thead", {}, element("tr", {}, heads)), body)),
        rest, andMore(more));
}

/**
 * What stands behind a list of which the page has a part; null where it has all.
 * @param what is counted, where that is not plain
 */
export function andMore(count = 0, tag = "p", what = "") {
    const more = what ? counted(count, `more ${what}`) : `${count.toLocaleString("en")} more`;
    return count > 0 ? element(tag, { class: "hint" }, `and ${more}`) : null;
}

/** Whether a list has rows, be it that the page had no room for any. */
export const isAny = (rows, more = 0) => rows.length + more > 0;

function filterBox(caption, show) {
    const input = element("input", {
        type: "search", "aria-label": `${caption} that contain`, oninput: () => show(input.value.trim().toLowerCase()),
    });
    input.placeholder = "Rows that contain …";
    return input;
}

const classOf = ({ isNumber, isLong }) => (isNumber ? "number" : isLong && "long");

function tableRow(columns, row) {
    return element("tr", {}, columns.map((column) => element("td", { class: classOf(column) }, column.cell(row))));
}

/** Terms and what they are. */
export function facts(rows) {
    return element("dl", { class: "facts" },
        rows.filter(Boolean).flatMap(([term, text]) => [element("dt", {}, term), element("dd", {}, text)]));
}
