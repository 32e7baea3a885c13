// What a preparation has changed, against the case that it was given.

import { kinds, kindsOf, titleOf } from "./case.js";
import { element } from "./dom.js";
import { nameButton } from "./entities.js";
import { andMore, facts, isAny, table, title } from "./tables.js";

const number = (value) => value.toLocaleString("en");
const signed = (value) => (value === 0 ? "0" : (value > 0 ? "+" : "−") + number(Math.abs(value)));

function countsTable(info, before) {
    const rows = info.dimensions.flatMap((now, dimension) => {
        const then = before.info.dimensions[dimension];
        return [
            { what: `model ${kindsOf[dimension]}`, then: then.model.count, now: now.model.count },
            {
                what: `mesh ${kindsOf[dimension]}`, then: then.mesh.count, now: now.mesh.count,
                added: before.meshAdded[dimension], removed: before.meshRemoved[dimension],
            },
            ...kindRows(then.mesh.kinds, now.mesh.kinds),
        ];
    });
    return table("Counts before and after", [
        { head: "", cell: (row) => row.what },
        { head: "before", isNumber: true, cell: (row) => number(row.then) },
        { head: "after", isNumber: true, cell: (row) => number(row.now) },
        { head: "change", isNumber: true, cell: (row) => signed(row.now - row.then) },
        { head: "new ids", isNumber: true, cell: (row) => (row.added === undefined ? "" : number(row.added)) },
        { head: "ids gone", isNumber: true, cell: (row) => (row.removed === undefined ? "" : number(row.removed)) },
    ], rows.filter((row) => row.then + row.now > 0));
}

/** One kind alone is counted in the line above. */
function kindRows(then, now) {
    const names = [...new Set([...Object.keys(then), ...Object.keys(now)])].sort();
    return names.length < 2 ? [] : names.map((kind) => ({ what: `· ${kind}`, then: then[kind] ?? 0, now: now[kind] ?? 0 }));
}

/** With a way to it, unless it is gone or the page had no room to list it. */
const nameOf = (entity, otherwise, select) => (entity ? nameButton(entity, select) : otherwise);

function entityTable({ find, before: { changed, changedMore } }, select) {
    const rows = changed.map((row) => ({ ...row, entity: row.after === null ? undefined : find(row.dimension, row.id) }));
    const titleOfRow = ({ entity, ...row }) => titleOf(entity ?? row);
    return table("Regions and faces that are new, gone, or have other elements", [
        { head: "kind", cell: ({ dimension, id }) => `${kinds[dimension]} ${id}` },
        { head: "name", cell: (row) => nameOf(row.entity, titleOfRow(row), select) },
        { head: "before", isNumber: true, cell: ({ before }) => (before === null ? "new" : number(before)) },
        { head: "after", isNumber: true, cell: ({ after }) => (after === null ? "gone" : number(after)) },
    ], rows, (row) => `${kinds[row.dimension]} ${row.id} ${titleOfRow(row)}`, changedMore);
}

/** A row for each value that differs; what is in one case only has none. */
function differenceRows({ find, before }) {
    return before.differences.flatMap(({ kind, part, first }) => first.flatMap(({ idA, idB, changes }) => {
        const entity = find(kindsOf.indexOf(part.replace("model ", "")), idB);
        const whom = subjectName(part, idB ?? idA);
        const whole = { what: kind === "only-in-a" ? "gone" : "new", a: "", b: "" };
        return (changes.length > 0 ? changes : [whole]).map((change) => ({ whom, entity, ...change }));
    }));
}

function subjectName(part, id) {
    const dimension = kindsOf.indexOf(part.replace("model ", ""));
    return dimension >= 0 ? `${kinds[dimension]} ${id}` : id === null ? `the ${part}` : `${part} region ${id}`;
}

/** What of the model reads otherwise, in the words of `ovrageo diff`. */
function differenceTable(data, select) {
    const rows = differenceRows(data);
    const more = data.before.differences.filter(({ count, first }) => count > first.length)
        .map(({ kind, part, count, first }) =>
            element("p", { class: "hint" }, `${kind} ${part}: and ${number(count - first.length)} more`));
    return [table("Names, attributes and places that differ", [
        { head: "kind", cell: ({ whom }) => whom },
        { head: "name", cell: ({ entity }) => nameOf(entity, "", select) },
        { head: "what", cell: ({ what }) => what },
        { head: "before", isLong: true, cell: ({ a }) => a },
        { head: "after", isLong: true, cell: ({ b }) => b },
    ], rows, ({ whom, entity, what, a, b }) => [whom, entity ? titleOf(entity) : "", what, a, b].join(" ")), ...more,
    andMore(data.before.differencesMore, "p", "kind") ?? ""];
}

/** What stands for the two sides of something: made by a preparation, or a shell's faces. */
export function twinTable(data, twins, more, select) {
    const entityOf = (twin, id, name) => nameOf(data.find(twin.dimension, id), name, select);
    return table("Doubled", [
        { head: "as", cell: (twin) => twin.relation },
        { head: "new", cell: (twin) => entityOf(twin, twin.id, twin.name) },
        { head: "made of", cell: (twin) => entityOf(twin, twin.originalId, twin.originalName) },
    ], twins, (twin) => `${twin.relation} ${twin.name} ${twin.originalName}`, more);
}

const kindsIn = ({ dimensions }) => dimensions.map((dimension) => kinds[dimension]).join(" and ");

export function showChanges(section, data, select) {
    const { info, before } = data;
    if (!before) {
        return;
    }
    title(section, "Changes");
    section.append(
        facts([["Since", before.info.case]]),
        countsTable(info, before),
        isAny(before.changed, before.changedMore) ? entityTable(data, select)
            : element("p", {}, `Every ${kindsIn(before)} has as many elements as before.`),
        ...(isAny(before.differences, before.differencesMore) ? differenceTable(data, select)
            : [element("p", {}, "Every name, attribute and place in the model is as before.")]),
        isAny(before.newTwins, before.newTwinsMore) ? twinTable(data, before.newTwins, before.newTwinsMore, select) : "");
}
