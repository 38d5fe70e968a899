// Builds the page into dist/ (or the folder that is named): page.js, page.css and index.html.

import { build } from "esbuild";
import { copyFileSync, mkdirSync, readFileSync, statSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { fileURLToPath } from "node:url";

const kMostBytes = 300_000;

const here = dirname(fileURLToPath(import.meta.url));
const out = process.argv[2] ?? join(here, "dist");

/**
 * The style of the pictures, for both themes: what is meant for a dark system goes with the page's own theme. It isn't
 * bound to an ancestor, which would keep it from the symbols, and is a layer, so that all rules of the page win.
 */
function pictureStyle() {
  const text = readFileSync(join(here, "../pictures/style.css"), "utf8");
  const begin = text.indexOf("@media (prefers-color-scheme: dark)");
  const open = text.indexOf("{", begin);
  const close = text.lastIndexOf("}");
  if (begin < 0) throw new Error("pictures/style.css has no part for dark systems");
  const light = text.slice(0, begin) + text.slice(close + 1);
  const dark = `:root[data-theme="dark"] {\n${text.slice(open + 1, close)}\n}`;
  return `@layer pictures {\n${light}\n${dark}\n}\n`;
}

const pictures = {
  name: "picture-style",
  setup(api) {
    api.onResolve({ filter: /^picture-style$/ }, () => ({ path: "style.css", namespace: "pictures" }));
    api.onLoad({ filter: /.*/, namespace: "pictures" }, () => ({ contents: pictureStyle(), loader: "css" }));
  },
};

mkdirSync(out, { recursive: true });
const result = await build({
  entryPoints: { page: join(here, "src/main.ts"), style: join(here, "src/page.css") },
  bundle: true, minify: true, write: false, outdir: out, charset: "utf8", legalComments: "none",
  target: ["chrome110", "firefox113", "safari16.4"], format: "iife", plugins: [pictures], logLevel: "warning",
});
for (const file of result.outputFiles) {
  const name = file.path.endsWith(".js") ? "page.js" : "page.css";
  if (!file.path.endsWith("style.js")) writeFileSync(join(out, name), file.contents);
}
copyFileSync(join(here, "src/index.html"), join(out, "index.html"));

const bytes = ["index.html", "page.js", "page.css"].reduce((sum, name) => sum + statSync(join(out, name)).size, 0);
console.log(`${out}: ${bytes} bytes`);
if (bytes > kMostBytes) throw new Error(`the page is larger than ${kMostBytes} bytes`);
