// The page in front of a serving program: states that change, and switchings that are tried out.

import assert from "node:assert/strict";
import { after, afterEach, before, beforeEach, test } from "node:test";
import { MockServer } from "./mock_server.mjs";
import { openBrowser, sampleReport, Tab, temporaryFolder } from "./support.mjs";

const kBreaker = "Hekou-132-E01-Q0";
const kOther = "Hekou-132-E03-Q0";
const inside = (id, state = "") => `g${state}[data-id="${id}"]`;
let browser;
let report;
let server;
let tab;

before(async () => {
  report = sampleReport(temporaryFolder());
  browser = await openBrowser();
});
after(() => browser?.close());

beforeEach(async () => {
  server = await MockServer.start(report);
  tab = await Tab.open(browser);
  await tab.show(server.address, "station/Hekou");
  await tab.page.waitForSelector(inside(kBreaker));
});
afterEach(async () => {
  await tab.close();
  await server.stop();
});

/** Chooses a breaker and presses the button that its panel offers. */
async function press(id) {
  await tab.clickElement("CB", id);
  await tab.waitForText(".inspector h2", id);
  await tab.page.click(".inspector .actions button");
}

test("a commit changes the picture and is logged", async () => {
  await tab.waitForText(".live-status", "live");
  assert.match(await tab.page.$eval(inside(kBreaker), (group) => group.className.baseVal), /closed/);
  server.commit(kBreaker, "Hekou");
  await tab.page.waitForSelector(inside(kBreaker, ".open"));
  await tab.go("log");
  await tab.waitForText(".log", `CB ${kBreaker}`);
  assert.deepEqual(tab.faults, []);
});

test("a breaker is tried out, marked, and taken back", async () => {
  await press(kBreaker);
  await tab.page.waitForSelector(inside(kBreaker, ".open.changed"));
  assert.match(await tab.text(".trial .events"), new RegExp(`Open CB ${kBreaker}`));
  assert.match(await tab.text(".trial .summary"), /1 → 2 islands.*47.8 MW/);
  await tab.waitForText(".inspector .actions", "Close");
  await press(kOther);
  await tab.page.waitForSelector(inside(kOther, ".open.changed"));
  assert.deepEqual(server.events.map((event) => event.id), [kBreaker, kOther]);
  const script = await tab.page.$eval(".trial a[download]", (link) => link.href);
  assert.match(script, /\/api\/script\?viewer=[a-z0-9]{16,32}$/);
  await tab.page.click(".trial-tools button");  // undo
  await tab.page.waitForSelector(inside(kOther, ".closed"));
  assert.deepEqual(server.events.map((event) => event.id), [kBreaker]);
  await press(kBreaker);  // closing it again takes the event back
  await tab.page.waitForFunction(() => document.querySelector(".trial").hidden);
  assert.deepEqual(server.events, []);
  await tab.page.waitForSelector(inside(kBreaker, ".closed"));
  assert.deepEqual(tab.faults, []);
});

test("what the program refuses is shown in words", async () => {
  server.refusal = "the model has changed; try again";
  await press(kBreaker);
  await tab.waitForText(".message", "the model has changed");
  assert.equal(await tab.page.$eval(".trial", (bar) => bar.hidden), true);
});

test("a banner stands as long as the source is away", async () => {
  server.send("banner", { kind: "vanished", text: "The database is gone." });
  await tab.waitForText(".banner", "The database is gone.");
  server.send("banner", { kind: "back", text: "" });
  await tab.page.waitForFunction(() => document.querySelector(".banner").hidden);
});

test("a lost connection is shown", async () => {
  await tab.waitForText(".live-status", "live");
  await server.stop();
  await tab.waitForText(".live-status", "no connection");
});
