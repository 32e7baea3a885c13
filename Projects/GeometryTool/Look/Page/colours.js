// Colours that stay apart from one another and from both backgrounds.

const palette = [
    "#4c8dd6", "#e08a3c", "#4fa866", "#c95d63", "#8f76c9", "#a98b3f", "#3fa7a3", "#d071a9", "#7d93a8", "#91a83a",
    "#5f6fd0", "#b8704a",
];

/** A colour for each of the values, in their order, round and round. */
export function colourScale(values) {
    const distinct = [...new Set(values)];
    return new Map(distinct.map((value, index) => [value, palette[index % palette.length]]));
}

export const neutral = "#9aa3ad";

export const cssColour = (name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim();
