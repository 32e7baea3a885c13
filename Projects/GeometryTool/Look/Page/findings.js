// What `ovrageo verify` has found, with a way to each place.

import { counted, element, place } from "./dom.js";
import { andMore, isAny, title } from "./tables.js";

function findingItem(finding, goTo) {
    const button = finding.place && element("button", {
        type: "button", onclick: () => goTo(finding.place), "aria-label": `Show the place ${place(finding.place)}`,
    }, "Show");
    return element("li", {}, finding.text, " ", button);
}

function groupOf(group, goTo) {
    const rest = group.count - group.first.length;
    return element("details", { class: `finding ${group.severity}`, open: group.severity === "error" },
        element("summary", {}, `${group.severity} ${group.kind}: ${counted(group.count, "finding")}`),
        element("ul", {}, group.first.map((finding) => findingItem(finding, goTo)),
            andMore(rest, "li")));
}

export function showFindings(section, { verify }, goTo) {
    title(section, "Findings");
    const byRank = (a, b) => (a.severity === "error" ? 0 : 1) - (b.severity === "error" ? 0 : 1);
    const groups = [...verify.findings].sort(byRank);
    section.append(...(isAny(groups, verify.findingsMore)
        ? groups.map((group) => groupOf(group, goTo))
        : [element("p", {}, "Nothing is wrong with this case.")]), andMore(verify.findingsMore, "p", "kind") ?? "");
}
