// Finds pages, headings, classes and members by parts of their names. ENTRIES, of name, kind and link, are those
// of index.js, which Documentation/site/finish makes.
const field = document.getElementById("find");
const found = document.getElementById("found");
const most = 14;

function isHit(entry, words) {
    const name = entry[0].toLowerCase();
    return words.every((word) => name.includes(word));
}

// What begins with the first word comes first, then what is short.
function rank(entry, words) {
    const name = entry[0].toLowerCase();
    return (name.startsWith(words[0]) ? 0 : 1000) + name.length;
}

function item([name, kind, link]) {
    const anchor = document.createElement("a");
    anchor.href = link;
    anchor.append(name, " ", Object.assign(document.createElement("small"), { textContent: kind }));
    const line = document.createElement("li");
    line.append(anchor);
    return line;
}

function find() {
    const words = field.value.toLowerCase().split(/\s+/).filter(Boolean);
    const hits = words.length ? ENTRIES.filter((entry) => isHit(entry, words)) : [];
    hits.sort((a, b) => rank(a, words) - rank(b, words));
    found.replaceChildren(...hits.slice(0, most).map(item));
}

field.hidden = false;
field.addEventListener("input", find);
field.addEventListener("keydown", (event) => {
    const first = found.querySelector("a");
    if (event.key === "Enter" && first) { location.href = first.href; }
    if (event.key === "Escape") { field.value = ""; find(); }
});
find();
