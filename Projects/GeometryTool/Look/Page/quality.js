// Histograms of how good the elements are, and of how large.

import { kindsOf } from "./case.js";
import { counted, drawing, element, measure } from "./dom.js";
import { facts, title } from "./tables.js";

const measureNames = ["", "length", "area", "volume"];
const bar = { height: 18, gap: 4, left: 110, width: 220, right: 70 };

/** Bars that lie: a label, the bar, and the number, a line each. */
function histogram(heading, bins) {
    const most = Math.max(...bins.map((bin) => bin.count));
    const line = bar.height + bar.gap;
    const width = bar.left + bar.width + bar.right;
    const rows = bins.flatMap((bin, i) => {
        const length = most > 0 ? (bar.width * bin.count) / most : 0;
        const middle = i * line + bar.height / 2;
        return [
            drawing("text", { x: bar.left - 8, y: middle, class: "bin" }, bin.label),
            drawing("rect", {
                x: bar.left, y: i * line, width: bin.count > 0 ? Math.max(length, 1) : 0, height: bar.height,
                class: bin.isPoor ? "bar poor" : "bar",
            }),
            drawing("text", { x: bar.left + length + 6, y: middle, class: "count" }, bin.count.toLocaleString("en")),
        ];
    });
    const text = bins.map((bin) => `${bin.label}: ${bin.count}`).join(", ");
    return element("figure", {}, element("figcaption", {}, heading),
        drawing("svg", { viewBox: `0 0 ${width} ${bins.length * line}`, role: "img", "aria-label": `${heading}; ${text}` },
            ...rows));
}

const poorFrom = 10;

/** Up to the worst that there are. */
function aspectBins(aspects) {
    const worst = aspects.findLastIndex(([, count]) => count > 0);
    return aspects.slice(0, worst + 1).map(([from, count], i) => ({
        label: i + 1 < aspects.length ? `${from} to ${aspects[i + 1][0]}` : `${from} and more`,
        count,
        isPoor: from >= poorFrom,
    }));
}

/** A bin for each power of two between the first and the last; where these are many, for several. */
function measureBins(measures) {
    const low = measures[0][0];
    const high = measures[measures.length - 1][0];
    const stride = Math.ceil((high - low + 1) / 12);
    const bins = [];
    for (let from = low; from <= high; from += stride) {
        const inBin = measures.filter(([exponent]) => exponent >= from && exponent < from + stride);
        const count = inBin.reduce((sum, [, each]) => sum + each, 0);
        bins.push({ label: `from ${measure(Number((2 ** from).toPrecision(2)))}`, count });
    }
    return bins;
}

const extreme = ({ value, id }) => `${measure(value)} (id ${id})`;

const extremes = (name, range) => range ? [name, `${extreme(range.smallest)} to ${extreme(range.largest)}`] : null;

const listed = (name, { count, firstIds }) =>
    count > 0 ? [name, `${counted(count, "element")}: ${firstIds.join(", ")}${count > firstIds.length ? ", …" : ""}`] : null;

function dimensionPart(quality, bins) {
    const name = measureNames[quality.dimension];
    const hasAspects = bins.aspects.some(([, count]) => count > 0);
    return element("div", {},
        element("h3", {}, `Mesh ${kindsOf[quality.dimension]}`),
        facts([
            ["Total " + name, measure(quality.totalMeasure)],
            extremes("Each", quality.measure),
            extremes("Aspect", quality.aspect),
            listed("Inverted", quality.inverted), listed("Twisted", quality.twisted),
            listed("Degenerate", quality.degenerate), listed("Unknown kind", quality.unknown),
        ]),
        element("div", { class: "side-by-side" },
            hasAspects ? histogram("Aspect, 1 is best", aspectBins(bins.aspects)) : null,
            bins.measures.length > 0 ? histogram(`${name[0].toUpperCase()}${name.slice(1)}`, measureBins(bins.measures)) : null));
}

export function showQuality(section, { info, histograms }) {
    if (info.quality.length === 0) {
        return;
    }
    title(section, "Quality");
    const byDimension = new Map(histograms.map((bins) => [bins.dimension, bins]));
    const highestFirst = [...info.quality].sort((a, b) => b.dimension - a.dimension);
    section.append(...highestFirst.map((quality) => dimensionPart(quality, byDimension.get(quality.dimension))));
}
