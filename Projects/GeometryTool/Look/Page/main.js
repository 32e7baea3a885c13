// Fills the page from the case that stands in it.

import { readCase, readSurfaces } from "./case.js";
import { byId, counted, element } from "./dom.js";
import { showChanges } from "./changes.js";
import { showFindings } from "./findings.js";
import { showOverview } from "./overview.js";
import { showBodies, showBoundaries } from "./entities.js";
import { showQuality } from "./quality.js";
import { showAttributes } from "./attributes.js";
import { Panel } from "./panel.js";
import { Scene } from "./scene.js";
import { Visibility } from "./visibility.js";

function showVerdict({ verify }) {
    const verdict = byId("verdict");
    verdict.classList.add(verify.sound ? "sound" : "unsound");
    verdict.textContent =
        `${verify.sound ? "Sound" : "Unsound"}: ${counted(verify.errors, "error")}, ` +
        counted(verify.warnings, "warning");
}

/** A link to each section that has something to say; the others go. */
function showSections() {
    for (const section of document.querySelectorAll("main > section")) {
        const title = section.querySelector("h2");
        if (title) {
            byId("sections").append(element("a", { href: `#${section.id}` }, title.textContent));
        } else {
            section.remove();
        }
    }
}

async function showView(data) {
    if (data.surfaces.patches.length + data.surfaces.lines.length === 0) {
        throw new Error("the case has no mesh faces");
    }
    if (!document.createElement("canvas").getContext("webgl2")) {
        throw new Error("this browser has no WebGL, or it is switched off");
    }
    const surfaces = await readSurfaces(data.surfaces);
    const visibility = new Visibility(data);
    const scene = new Scene(byId("canvas"), data, surfaces, visibility);
    return new Panel(data, surfaces, scene, visibility);
}

function showNoView(error) {
    byId("view").classList.add("without");
    byId("note").textContent = `The surfaces cannot be shown here: ${error.message}`;
}

async function start() {
    const data = readCase();
    showVerdict(data);
    let panel = null;
    const select = (entity) => panel?.selectFromTable(entity);
    const goTo = (point) => panel?.goTo(point);
    showOverview(byId("overview"), data, select);
    showChanges(byId("changes"), data, select);
    showFindings(byId("findings"), data, goTo);
    showBodies(byId("bodies"), data, select);
    showBoundaries(byId("boundaries"), data, select);
    showQuality(byId("quality"), data);
    showAttributes(byId("attributes"), data);
    showSections();
    panel = await showView(data).catch(showNoView);
    document.documentElement.dataset.ready = panel ? "view" : "tables";
}

start();
