// What the tests of the page share: the program, a browser, models, and pictures to hold against golden ones.

import { execFileSync } from "node:child_process";
import { existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

const here = dirname(fileURLToPath(import.meta.url));
export const root = join(here, "../..");
export const web = join(root, "web");
const require = createRequire(join(web, "package.json"));
const puppeteer = require("puppeteer-core");
export const esbuild = require("esbuild");
export const axeSource = readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");

const kBrowsers = [process.env.DTSDB_BROWSER, "/usr/bin/chromium", "/usr/bin/chromium-browser"];
const kSample = join(root, "examples/ieee14");

/** Runs the program; the result is what it prints. Exit codes above `most` are a failure. */
export function dtsdb(args, most = 0) {
  try {
    return execFileSync(process.env.DTSDB_PROGRAM, args, { encoding: "utf8", stdio: ["ignore", "pipe", "pipe"] });
  } catch (error) {
    if (error.status !== null && error.status <= most) return error.stdout;
    throw error;
  }
}

/** A folder for the files of one test program, removed at its end. */
export function temporaryFolder() {
  const folder = mkdtempSync(join(tmpdir(), "dtsdb-page-"));
  process.on("exit", () => rmSync(folder, { recursive: true, force: true }));
  return folder;
}

/** The report on a model as a file. */
export function reportOn(model, folder, name = "report.html", most = 0) {
  const file = join(folder, name);
  dtsdb(["report", model, "-o", file], most);
  return file;
}

export function sampleReport(folder) { return reportOn(kSample, folder, "ieee14.html"); }

export async function openBrowser() {
  const executablePath = kBrowsers.find((path) => path && existsSync(path));
  if (!executablePath) throw new Error("No Chromium: install the package chromium, or name one in DTSDB_BROWSER.");
  const args = ["--disable-gpu", "--font-render-hinting=none", "--force-color-profile=srgb"];
  if (process.getuid() === 0) args.push("--no-sandbox");
  return puppeteer.launch({ executablePath, args, headless: true });
}

/** A tab that notes what it must not do: errors, refusals of the policy, requests to elsewhere. */
export class Tab {
  static async open(browser, { width = 1280, height = 800, theme = "light" } = {}) {
    const context = await browser.createBrowserContext();  // nothing that another tab has stored
    const tab = new Tab(await context.newPage());
    await tab.page.setViewport({ width, height });
    await tab.page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: theme },
                                         { name: "prefers-reduced-motion", value: "reduce" }]);
    return tab;
  }

  constructor(page) {
    this.page = page;
    this.faults = [];
    this.requests = [];
    page.on("pageerror", (error) => this.faults.push(error.message));
    page.on("console", (message) => message.type() === "error" && this.faults.push(message.text()));
    page.on("request", (request) => this.requests.push(request.url()));
  }

  /** Opens a file or an address, at a place in it, and waits until something is shown. */
  async show(target, place = "") {
    const address = target.startsWith("http") ? target : pathToFileURL(target).href;
    await this.page.goto("about:blank");
    await this.page.goto(address + (place ? `#${place}` : ""));
    await this.page.waitForSelector("main .view");
  }

  async go(place) {
    await this.page.evaluate((hash) => { location.hash = hash; }, place);
  }

  /** Waits for an element and returns its text. */
  async text(selector) {
    await this.page.waitForSelector(selector);
    return this.page.$eval(selector, (element) => element.textContent);
  }

  /** Waits until an element contains a text. */
  async waitForText(selector, text) {
    await this.page.waitForFunction((where, what) => document.querySelector(where)?.textContent.includes(what), {},
                                    selector, text);
  }

  /** Clicks an element of a picture, in the middle of its symbol. */
  async clickElement(table, id) {
    const selector = `.stage g[data-table="${table}"][data-id="${id}"]`;
    await this.page.waitForSelector(selector);
    const point = await this.page.$eval(selector, (group) => {
      const box = (group.querySelector("use, circle, rect") ?? group).getBoundingClientRect();
      return { x: box.left + box.width / 2, y: box.top + box.height / 2 };
    });
    await this.page.mouse.click(point.x, point.y);
  }

  /** Two frames, so that what has been asked for is drawn. */
  async settle() {
    await this.page.evaluate(() => document.fonts.ready.then(() => new Promise((done) =>
      requestAnimationFrame(() => requestAnimationFrame(() => done())))));
  }

  close() { return this.page.browserContext().close(); }
}

// A pixel differs when a channel is further off than this.
const kChannelTolerance = 48;
// Fonts and their smoothing differ a little from machine to machine.
const kPixelTolerance = 0.02;

/** The share of pixels in which two PNGs differ, worked out in the browser. */
async function shareOfDifferences(page, golden, picture) {
  return page.evaluate(async (a, b, tolerance) => {
    const pixels = async (base64) => {
      const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
      const bitmap = await createImageBitmap(new Blob([bytes], { type: "image/png" }));
      const canvas = new OffscreenCanvas(bitmap.width, bitmap.height).getContext("2d");
      canvas.drawImage(bitmap, 0, 0);
      return canvas.getImageData(0, 0, bitmap.width, bitmap.height);
    };
    const [first, second] = await Promise.all([pixels(a), pixels(b)]);
    if (first.width !== second.width || first.height !== second.height) return 1;
    let different = 0;
    for (let i = 0; i < first.data.length; i += 4) {
      const isOff = [0, 1, 2].some((channel) => Math.abs(first.data[i + channel] - second.data[i + channel]) > tolerance);
      if (isOff) ++different;
    }
    return different / (first.data.length / 4);
  }, golden, picture, kChannelTolerance);
}

/**
 * Holds what a tab shows against tests/web/golden/NAME.png. With DTSDB_REGENERATE=1 in the environment the golden
 * picture is written anew. Returns what is wrong, empty for nothing.
 */
export async function compareWithGolden(tab, browser, name) {
  await tab.settle();
  const picture = Buffer.from(await tab.page.screenshot()).toString("base64");
  const file = join(here, "golden", `${name}.png`);
  if (process.env.DTSDB_REGENERATE) {
    mkdirSync(dirname(file), { recursive: true });
    writeFileSync(file, Buffer.from(picture, "base64"));
    return "";
  }
  const judge = await browser.newPage();
  const share = await shareOfDifferences(judge, readFileSync(file).toString("base64"), picture);
  await judge.close();
  if (share <= kPixelTolerance) return "";
  const seen = join(process.env.DTSDB_PICTURES ?? tmpdir(), `${name}.png`);
  writeFileSync(seen, Buffer.from(picture, "base64"));
  return `${name}: ${(share * 100).toFixed(1)} % of the pixels differ; what was seen is ${seen}`;
}
