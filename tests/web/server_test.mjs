// The page in front of dtsdb serve itself: commits of other programs, and switchings that are tried out.

import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { copyFileSync, renameSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { after, afterEach, before, beforeEach, test } from "node:test";
import { dtsdb, openBrowser, root, Tab, temporaryFolder } from "./support.mjs";

const kBreaker = "Hekou-132-E07-Q0";
const inside = (id, state = "") => `g${state}[data-id="${id}"]`;
let browser;
let database;
let folder;
let program;
let tab;

before(async () => {
  browser = await openBrowser();
});
after(() => browser?.close());

beforeEach(async () => {
  folder = temporaryFolder();
  database = `rtdb:${join(folder, "grid")}`;
  dtsdb(["validate", join(root, "examples/ieee14"), "-o", database]);
  dtsdb(["run", database, "--once"]);
  program = spawn(process.env.DTSDB_PROGRAM, ["serve", database, "--port", "0"], { stdio: ["ignore", "pipe", "inherit"] });
  const [address] = await once(createInterface(program.stdout), "line");
  tab = await Tab.open(browser);
  await tab.show(address, "station/Hekou");
  await tab.page.waitForSelector(inside(kBreaker, ".closed"));
  await tab.waitForText(".live-status", "live");
});
afterEach(async () => {
  await tab.close();
  program.kill("SIGTERM");
  const [code] = await once(program, "exit");
  assert.equal(code, 0);
});

/** Switches the breaker as another program does, and follows it up. */
function open() {
  const now = Math.floor(Date.now() / 1000);
  dtsdb(["rtdb", "put", join(folder, "grid"), "TPTRACE", "id=1", `name=${kBreaker}`, "type=1", "status=0", `time=${now}`]);
  dtsdb(["run", database, "--once"]);
}

test("a commit of another program changes the picture and is logged", async () => {
  open();
  await tab.page.waitForSelector(inside(kBreaker, ".open"));
  await tab.go("log");
  await tab.waitForText(".log", `CB ${kBreaker} opened`);
  assert.deepEqual(tab.faults, []);
});

test("a breaker is tried out, and the script leads dtsdb switch there", async () => {
  await tab.go(`station/Hekou/CB/${kBreaker}`);
  await tab.waitForText(".inspector h2", kBreaker);
  await tab.page.click(".inspector .actions button");
  await tab.page.waitForSelector(inside(kBreaker, ".open.changed"));
  assert.match(await tab.text(".trial .summary"), /47.8 MW/);
  const script = await tab.page.$eval(".trial a[download]", (link) => fetch(link.href).then((answer) => answer.text()));
  assert.equal(script, `open CB ${kBreaker}\n`);
  const file = join(folder, "script.txt");
  writeFileSync(file, script);
  assert.match(dtsdb(["switch", database, "--script", file]), /47\.8/);
  await tab.page.click(".trial-tools button");  // undo
  await tab.page.waitForSelector(inside(kBreaker, ".closed"));
  assert.deepEqual(tab.faults, []);
});

test("a database that vanishes gets a banner until it is back", async () => {
  const file = join(folder, "grid.fdb");
  copyFileSync(file, join(folder, "copy.fdb"));
  renameSync(file, join(folder, "away.fdb"));
  await tab.page.waitForFunction(() => !document.querySelector(".banner").hidden);
  await tab.page.waitForSelector(inside(kBreaker, ".closed"));
  renameSync(join(folder, "copy.fdb"), file);
  await tab.page.waitForFunction(() => document.querySelector(".banner").hidden);
});
