// Bundles the page into one file that needs no other: node build.mjs TARGET. What a case puts in stands
// there as {{title}}, {{case}}, {{positions}} and {{indices}}.

import { createHash } from "node:crypto";
import { readFile, writeFile } from "node:fs/promises";
import { build } from "esbuild";

async function bundled(entry) {
    const result = await build({
        entryPoints: [entry],
        bundle: true,
        minify: true,
        format: "iife",
        target: "es2022",
        charset: "utf8",
        legalComments: "none", // the licence stands on the page
        write: false,
    });
    return result.outputFiles[0].text;
}

const asHtml = (text) => text.replace(/&/g, "&amp;").replace(/</g, "&lt;");
const withoutEndTags = (script) => script.replace(/<\/script/gi, "<\\/script").replace(/<!--/g, "<\\!--");

const script = withoutEndTags(await bundled("main.js"));
const three = JSON.parse(await readFile("node_modules/three/package.json", "utf8"));
const parts = {
    style: await bundled("style.css"),
    script,
    scriptHash: "sha256-" + createHash("sha256").update(script).digest("base64"),
    threeVersion: three.version,
    threeLicence: asHtml(await readFile("node_modules/three/LICENSE", "utf8")),
};
const page = await readFile("index.html", "utf8");
await writeFile(process.argv[2], page.replace(/\{\{build\.(\w+)\}\}/g, (mark, name) => parts[name]));
