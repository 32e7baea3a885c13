// Opens a report and does with it what its reader would, one of an empty case, one that tells of changes, and one
// that has no room for all: node visit.mjs BROWSER PAGE EMPTY CHANGED LIMITED SCRATCH. Prints what it has seen as one JSON object.

import { createHash } from "node:crypto";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const [browserPath, pagePath, emptyPath, changedPath, limitedPath, scratch] = process.argv.slice(2);
const ready = () => document.documentElement.dataset.ready;
const faults = [];
const seen = { faults };

async function open(context, path = pagePath, told = faults) {
    const page = await context.newPage();
    page.on("console", (message) => told.push(`${message.type()}: ${message.text()}`));
    page.on("pageerror", (error) => faults.push(error.message));
    page.on("dialog", (dialog) => faults.push(`dialog: ${dialog.message()}`));
    page.on("request", (request) => /^(file|data|blob):/.test(request.url()) || faults.push(request.url()));
    await page.goto(pathToFileURL(path).href);
    await page.waitForFunction(ready);
    return page;
}

/** What the view shows once it has drawn anew, as a number to compare. */
async function picture(page) {
    await page.evaluate(() => {
        scrollTo({ top: 0, behavior: "instant" });
        return new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));
    });
    return createHash("sha256").update(await page.locator("#canvas").screenshot()).digest("hex");
}

/** The cells of a table, row by row. */
const rowsOf = async (table) => (await table.locator("tbody tr").allInnerTexts()).map((row) => row.split("\t"));

const selected = (page) => page.locator("#selection").innerText();

async function visit(page) {
    seen.ready = await page.evaluate(ready);
    seen.title = await page.title();
    seen.sections = await page.locator("#sections a").allInnerTexts();
    seen.names = await rowsOf(page.locator("#overview table").filter({ has: page.locator("caption", { hasText: "Names" }) }));
    await page.locator("#canvas").click();
    seen.clicked = await selected(page);
    await page.locator("#canvas").click();
    seen.clickedAgain = await selected(page);
}

async function hide(page) {
    const all = await picture(page);
    const rows = page.locator("#entities > ul > li > .row");
    seen.listed = await rows.allInnerTexts();
    const boxes = rows.locator("input");
    await boxes.nth(1).uncheck();
    seen.hidingChanges = (await picture(page)) !== all;
    await boxes.nth(1).check();
    seen.showingRestores = (await picture(page)) === all;
    await page.getByLabel("Across").selectOption("x");
    seen.cuttingChanges = (await picture(page)) !== all;
    await page.getByLabel("Across").selectOption("nowhere");
    await hideAll(page, boxes);
}

/** Of an empty view the picture is the same from all sides, apart from its triad. */
async function hideAll(page, boxes) {
    await page.evaluate(() => (document.getElementById("triad").style.display = "none"));
    await page.getByRole("checkbox", { name: "Findings", exact: true }).uncheck();
    await boxes.nth(0).uncheck();
    await boxes.nth(1).uncheck();
    const loose = await picture(page);
    await boxes.nth(2).uncheck();
    seen.hidingLooseChanges = (await picture(page)) !== loose;
    await page.locator("#canvas").press("ArrowRight"); // and show that the keyboard is there
    const none = await picture(page);
    await page.keyboard.press("ArrowRight");
    seen.emptyWhenHidden = (await picture(page)) === none;
    await page.locator("#entities button.name").last().click();
    seen.loose = await selected(page);
}

/** With the keyboard alone: which kinds of things are reached, and whether they do what they are for. */
async function press(page) {
    await page.reload();
    await page.waitForFunction(ready);
    const reached = new Set();
    for (let i = 0; i < 60; ++i) {
        await page.keyboard.press("Tab");
        reached.add(await page.evaluate(() => document.activeElement.id || document.activeElement.localName));
    }
    seen.reached = [...reached].sort();
    await page.locator("#canvas").focus();
    const before = await picture(page);
    await page.keyboard.press("ArrowLeft");
    seen.arrowsTurn = (await picture(page)) !== before;
    await page.keyboard.press("0");
    const all = await picture(page);
    await page.locator("#entities input[type=checkbox]").nth(1).focus();
    await page.keyboard.press("Space");
    seen.spaceHides = (await picture(page)) !== all;
    await page.locator("#entities button.name").first().focus();
    await page.keyboard.press("Enter");
    seen.entered = await selected(page);
}

async function readLicence(page) {
    await page.getByText("Licence of three.js").click();
    seen.licence = await page.locator("footer").innerText();
}

async function look(browser, name, options) {
    const context = await browser.newContext(options);
    const page = await open(context);
    const [width, visible] = await page.evaluate(() => [document.documentElement.scrollWidth, innerWidth]);
    seen[`${name}Width`] = { width, visible };
    seen[`${name}Paper`] = await page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    await context.close();
}

/** What the section of changes says, as its reader has it before him: paragraphs, and the rows of the last table. */
async function readChanges(browser) {
    const context = await browser.newContext({ viewport: { width: 1200, height: 1100 } });
    const page = await open(context, changedPath);
    const table = page.locator("#changes table").last();
    seen.differences = {
        caption: await table.locator("caption").innerText(),
        rows: await rowsOf(table),
        paragraphs: await page.locator("#changes p:not(:empty)").allInnerTexts(),
    };
    await context.close();
}

/** What is selected once each of some buttons has been pressed. */
async function selectEach(page, buttons) {
    const titles = [];
    for (const button of await buttons.all()) {
        await button.click();
        titles.push(await page.locator("#selection h3").innerText());
    }
    return titles;
}

/** What the page says of what it leaves out, and the last entry of the list beside the view. */
async function readLimited(browser) {
    const context = await browser.newContext({ viewport: { width: 1200, height: 1100 } });
    const page = await open(context, limitedPath);
    seen.limited = {
        hints: await page.locator(":is(#overview, #bodies, #boundaries) p.hint:not([role])").allInnerTexts(),
        note: await page.locator("#note").innerText(),
        rows: await page.locator("#entities > ul > li > .row").count(),
        last: await page.locator("#entities > ul > li > .row").last().innerText(),
        changed: await page.locator("#changes table").nth(1).locator("tbody tr").allInnerTexts(),
        texts: await page.locator(":is(#findings, #changes) > p").allInnerTexts(),
        selected: await selectEach(page, page.locator("#changes tbody button")),
    };
    await context.close();
}

/** What stands in place of a view that cannot be. */
async function lookWithout(browser, name, path, prepare) {
    const context = await browser.newContext({ viewport: { width: 1200, height: 1100 } });
    await context.addInitScript(prepare);
    const page = await open(context, path, []); // what draws complains of the missing WebGL
    seen[name] = {
        ready: await page.evaluate(ready),
        note: await page.locator("#note").innerText(),
        panel: await page.locator(".panel").isVisible(),
        height: (await page.locator(".stage").boundingBox()).height,
        table: await page.locator("#overview table, #overview dl").first().isVisible(),
    };
    await context.close();
}

const browser = await chromium.launch({
    executablePath: browserPath,
    env: { ...process.env, HOME: scratch, XDG_CONFIG_HOME: scratch, XDG_CACHE_HOME: scratch },
    args: [
        "--no-sandbox", "--disable-gpu-sandbox", "--disable-quic", "--no-first-run", "--disable-background-networking",
        "--disable-component-update", "--disable-sync", "--use-angle=swiftshader", "--enable-unsafe-swiftshader",
    ],
});
const context = await browser.newContext({ viewport: { width: 1200, height: 1100 }, colorScheme: "light" });
const page = await open(context);
await visit(page);
await hide(page);
await press(page);
await readLicence(page);
await context.close();
await look(browser, "phone", { viewport: { width: 360, height: 740 }, colorScheme: "light", isMobile: true, hasTouch: true });
await look(browser, "dark", { viewport: { width: 1200, height: 800 }, colorScheme: "dark" });
await readChanges(browser);
await readLimited(browser);
await lookWithout(browser, "empty", emptyPath, () => {});
await lookWithout(browser, "withoutWebGl", pagePath, () => (HTMLCanvasElement.prototype.getContext = () => null));
await browser.close();
console.log(JSON.stringify(seen));
