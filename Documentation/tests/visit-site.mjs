// Opens every page of the site on a phone, in the light and in the dark: node visit-site.mjs BROWSER DRIVER SITE SCRATCH,
// DRIVER being the folder where playwright-core is installed. Prints what is wrong, a line each.

import { createRequire } from "node:module";
import { readdirSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

const [browserPath, driver, site, scratch] = process.argv.slice(2);
const { chromium } = createRequire(join(driver, "visit.mjs"))("playwright-core");

/** In the page: what its reader would not see, would have to push aside, or could hardly read. */
function faultsOfPage() {
    const faults = [];
    const name = (element) => element.localName + (element.className.length ? "." + element.className : "");

    for (const image of document.querySelectorAll("img")) {
        if (!image.complete || image.naturalWidth === 0) {
            faults.push(`no picture ${image.getAttribute("src")}`);
        }
    }
    function lookAtWidth(of) {
        const width = document.documentElement.scrollWidth; // a phone shows a wide page smaller: innerWidth grows with it
        if (width > screen.width) {
            faults.push(`${of}${width} pixels wide, for ${screen.width} on the screen`);
        }
    }
    lookAtWidth("");
    const menu = document.querySelector("label[for=menu]");
    if (menu) {
        menu.click();
        lookAtWidth("with its menu, ");
        if (![...document.querySelectorAll("#pages a")].some((link) => link.checkVisibility())) {
            faults.push("no way to the other pages");
        }
    }

    const channels = (text) => text.match(/[\d.]+/g).map(Number);
    const over = ([r, g, b, a = 1], below) => [r, g, b].map((value, i) => value * a + below[i] * (1 - a));
    function paperOf(element) {
        const colour = channels(getComputedStyle(element).backgroundColor);
        return colour[3] === 0 ? (element.parentElement ? paperOf(element.parentElement) : [255, 255, 255])
                               : over(colour, element.parentElement ? paperOf(element.parentElement) : [255, 255, 255]);
    }
    // Relative luminance and contrast, and what is large: WCAG 2.1, 1.4.3.
    const linear = (value) => (value / 255 <= 0.04045 ? value / 255 / 12.92 : ((value / 255 + 0.055) / 1.055) ** 2.4);
    const luminance = ([r, g, b]) => 0.2126 * linear(r) + 0.7152 * linear(g) + 0.0722 * linear(b);
    function contrast(one, other) {
        const [dark, light] = [luminance(one), luminance(other)].sort((a, b) => a - b);
        return (light + 0.05) / (dark + 0.05);
    }
    const poor = new Set();
    function lookAt(element, style, what) {
        const size = parseFloat(style.fontSize);
        const enough = size >= 24 || (size >= 18.66 && style.fontWeight >= 700) ? 3 : 4.5;
        const paper = paperOf(element);
        const found = contrast(over(channels(style.color), paper), paper);
        if (found < enough) {
            poor.add(`${what} has a contrast of ${found.toFixed(2)}: ${style.color} on ${paper.map(Math.round)}`);
        }
    }
    for (const input of document.querySelectorAll("input[placeholder]:not([hidden])")) {
        lookAt(input, getComputedStyle(input, "::placeholder"), "what stands in an empty " + name(input));
    }
    const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    while (texts.nextNode()) {
        const element = texts.currentNode.parentElement;
        if (!texts.currentNode.data.trim() || !element.checkVisibility({ visibilityProperty: true, opacityProperty: true })) {
            continue;
        }
        lookAt(element, getComputedStyle(element), name(element));
    }
    return [...faults, ...poor];
}

const browser = await chromium.launch({
    executablePath: browserPath,
    env: { ...process.env, HOME: scratch, XDG_CONFIG_HOME: scratch, XDG_CACHE_HOME: scratch },
    args: ["--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
           "--disable-component-update", "--disable-sync"],
});
const pages = readdirSync(site).filter((name) => name.endsWith(".html")).sort();
for (const colorScheme of ["light", "dark"]) {
    const context = await browser.newContext({ viewport: { width: 375, height: 740 }, colorScheme, isMobile: true, hasTouch: true });
    const page = await context.newPage();
    let told = [];
    page.on("console", (message) => message.type() === "error" && told.push(message.text()));
    page.on("pageerror", (error) => told.push(error.message));
    page.on("request", (request) => /^(file|data|blob):/.test(request.url()) || told.push(`asks for ${request.url()}`));
    for (const name of pages) {
        told = [];
        await page.goto(pathToFileURL(join(site, name)).href);
        for (const fault of [...told, ...(await page.evaluate(faultsOfPage))]) {
            console.log(`${name}, ${colorScheme}: ${fault}`);
        }
    }
    await context.close();
}
await browser.close();
