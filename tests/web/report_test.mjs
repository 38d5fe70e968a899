// The page as people use it: the report on a model in a browser.

import assert from "node:assert/strict";
import { mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { axeSource, compareWithGolden, dtsdb, esbuild, openBrowser, reportOn, root, sampleReport, Tab, temporaryFolder,
         web } from "./support.mjs";

const folder = temporaryFolder();
const kBreaker = "Hekou-132-E01-Q0";
const kDiagram = "station/Hekou";
let browser;
let sample;

before(async () => {
  sample = sampleReport(folder);
  browser = await openBrowser();
});
after(() => browser?.close());

/** Runs `steps` in a tab that shows the sample at `place`; the tab must have done nothing that it must not. */
async function inSample(place, steps, options) {
  const tab = await Tab.open(browser, options);
  await tab.show(sample, place);
  await steps(tab, tab.page);
  assert.deepEqual(tab.faults, []);
  await tab.close();
}

/** The faults that axe finds, without minor ones. */
async function faultsOfAccess(page) {
  await page.evaluate(axeSource);
  const { violations } = await page.evaluate(() => globalThis.axe.run(document));
  return violations.filter((each) => each.impact === "serious" || each.impact === "critical")
    .map((each) => `${each.id}: ${each.nodes.map((node) => node.target).join(" ")}`);
}

describe("report", () => {
  test("is one file that asks for nothing else", () => inSample("", async (tab) => {
    assert.equal(await tab.text("h1"), "ieee14");
    assert.ok(tab.requests.every((url) => /^(file:|data:|about:)/.test(url)), tab.requests.join(" "));
    const text = readFileSync(sample, "utf8");
    assert.ok(!/(?:src|href)=["']?(?:https?:)?\/\//.test(text));
  }));

  test("is the same each time", () => {
    const again = reportOn(join(root, "examples/ieee14"), folder, "again.html");
    assert.ok(readFileSync(again).equals(readFileSync(sample)));
  });

  test("shows tables and findings of a model with errors", async () => {
    const model = join(folder, "faulty");
    mkdirSync(model);
    writeFileSync(join(model, "ST.csv"), "id,dv\nNorth,Nowhere\n");
    const tab = await Tab.open(browser);
    await tab.show(reportOn(model, folder, "faulty.html", 1), "findings");
    assert.match(await tab.text(".head .chip"), /error/);
    await tab.waitForText(".rows", "ST_DISTRICT_UNKNOWN");
    await tab.go("state");
    await tab.waitForText("main", "can't be worked out");
    assert.deepEqual(tab.faults, []);
    await tab.close();
  });

  test("shows texts of the model as texts", async () => {
    const model = join(folder, "hostile");
    const id = "<img src=x onerror=alert(1)>";
    mkdirSync(model);
    writeFileSync(join(model, "CO.csv"), "id\nC\n");
    writeFileSync(join(model, "DV.csv"), "id,co\nD,C\n");
    writeFileSync(join(model, "ST.csv"), `id,dv\n${id},D\n`);
    writeFileSync(join(model, "KV.csv"), `id,st,vbase\n"K""><script>",${id},110\n`);
    const tab = await Tab.open(browser);
    await tab.show(reportOn(model, folder, "hostile.html", 1), "table/ST");
    await tab.waitForText(".rows .body", id);
    assert.equal(await tab.page.$("img"), null);
    await tab.go(`station/${encodeURIComponent(id)}`);
    await tab.page.waitForFunction(() => document.querySelector(".station-view .note")?.textContent !== "" ||
                                         document.querySelector(".stage svg") !== null);
    assert.equal(await tab.page.$("img"), null);
    assert.deepEqual(tab.faults, []);
    await tab.close();
  });
});

describe("identities of strangers", () => {
  const kTurning = "\u202Egnirts\u2067";
  const kNames = ["<script>document.body.id = 'run'</script>", "</style></script><!--", "<img src=x onerror=alert(1)>",
                  "javascript:alert(1)", "a\nb", "a\rb", "\u0001\u001B[31mred", kTurning, "a\u2028b\u2029", "\uFEFFmark", "{}",
                  "\"'`", "'=1", "\u{1F50C}", "e\u0301", "x".repeat(10000)];
  const quoted = (text) => `"${text.replaceAll('"', '""')}"`;
  let report;

  before(() => {
    const model = join(folder, "strangers");
    mkdirSync(model);
    const write = (table, lines) => writeFileSync(join(model, `${table}.csv`), lines.join("\r\n") + "\r\n");
    write("CO", ["id", "C"]);
    write("DV", ["id,co", "D,C"]);
    write("ST", ["id,dv", ...kNames.map((name) => `${quoted(name)},D`)]);
    write("KV", ["id,st,vbase,vmin,vmax", `K,${quoted(kTurning)},110,100,120`]);
    write("CB", ["id,kv,nd,znd,flags", ...kNames.map((name) => `${quoted(name)},K,${quoted(name)},hub,1`)]);
    write("LD", ["id,kv,nd", ...kNames.map((name) => `${quoted(name)},K,${quoted(name)}`)]);
    process.env.DTSDB_ENCODING = "utf-8";
    report = reportOn(model, folder, "strangers.html", 1);
    delete process.env.DTSDB_ENCODING;
  });

  /** What must hold wherever such identities are shown. */
  async function expectCalm(tab) {
    await tab.settle();
    const seen = await tab.page.evaluate(() => ({
      id: document.body.id,
      text: document.body.innerText,
      turned: [...document.querySelectorAll("body, body *")].filter((each) => getComputedStyle(each).direction !== "ltr").length,
      strangers: document.querySelectorAll("main script, main img, main iframe").length,
      width: document.documentElement.scrollWidth - document.documentElement.clientWidth,
    }));
    assert.equal(seen.id, "");
    assert.doesNotMatch(seen.text, /[\u0000-\u0008\u000B-\u001F\u007F-\u009F\u200E\u200F\u2028-\u202E\u2066-\u2069]/);
    assert.equal(seen.turned + seen.strangers, 0);
    assert.equal(seen.width, 0, "nothing is wider than the window");
    assert.deepEqual(tab.faults, []);
  }

  for (const place of ["table/CB", "table/ST", "findings", "state", `station/${encodeURIComponent(kTurning)}`]) {
    test(`stay in their place in ${place.split("/").slice(0, 2).join(" ").slice(0, 10)}`, async () => {
      const tab = await Tab.open(browser);
      tab.page.on("dialog", (dialog) => {
        tab.faults.push(dialog.message());
        dialog.dismiss();
      });
      await tab.show(report, place);
      await expectCalm(tab);
      if (place === "table/CB") {
        await tab.waitForText(".rows", "\\u202Egnirts");
        const heights = await tab.page.$$eval(".rows .body > *", (rows) => rows.map((row) => row.offsetHeight));
        assert.ok(heights.length > 10 && heights.every((height) => height === heights[0]), heights.join(" "));
      }
      await tab.close();
    });
  }

  test("are found by a search and shown as they are not", async () => {
    const tab = await Tab.open(browser);
    await tab.show(report);
    await tab.page.type('[role="combobox"]', "gnirts");
    await tab.waitForText(".matches", "\\u202Egnirts");
    await expectCalm(tab);
    await tab.close();
  });
});

describe("search", () => {
  test("finds equipment by a part of its name and opens it", () => inSample("", async (tab, page) => {
    await page.type('[role="combobox"]', "e01-q0");
    await tab.waitForText(".matches", kBreaker);
    await page.type('[role="combobox"]', "");
    await page.evaluate((id) => [...document.querySelectorAll(".matches li")]
      .find((item) => item.textContent.includes(id))
      .dispatchEvent(new MouseEvent("mousedown", { bubbles: true })), kBreaker);
    await tab.waitForText(".inspector h2", kBreaker);
    assert.equal(await page.evaluate(() => location.hash), `#station/Hekou/CB/${kBreaker}`);
  }));

  test("finds what is nearly written so", () => inSample("", async (tab, page) => {
    await page.type('[role="combobox"]', "Hekuo");
    await tab.waitForText(".matches", "Hekou");
  }));
});

describe("diagram", () => {
  test("a click on a breaker shows its section, island and flow", () => inSample(kDiagram, async (tab) => {
    await tab.clickElement("CB", kBreaker);
    await tab.waitForText(".inspector h2", kBreaker);
    const facts = await tab.text(".inspector .facts");
    assert.match(facts, /Section\d+Island\d+/);
    assert.match(facts, /Flow−?\d+(\.\d+)? MW/);
    assert.equal(await tab.text(".inspector .chip"), "closed");
    assert.equal(await tab.page.$(".inspector .actions"), null);  // a report switches nothing
  }));

  test("is reached by an address with the equipment in it", () =>
    inSample(`${kDiagram}/CB/${kBreaker}`, async (tab, page) => {
      await tab.waitForText(".inspector h2", kBreaker);
      await page.waitForSelector(`g.selected[data-id="${kBreaker}"] .halo`);
      await page.click(".inspector summary");
      await tab.waitForText(".fields", "status_id");
      await page.goBack();
    }));

  test("zooms with the wheel and with keys, and goes back to all of it", () => inSample(kDiagram, async (tab, page) => {
    const width = () => page.$eval(".stage svg", (svg) => Number(svg.getAttribute("viewBox").split(" ")[2]));
    await page.waitForSelector(".stage svg");
    const first = await width();
    await page.mouse.move(700, 400);
    await page.mouse.wheel({ deltaY: -400 });
    await page.waitForFunction((before) =>
      Number(document.querySelector(".stage svg").getAttribute("viewBox").split(" ")[2]) < before, {}, first);
    const near = await width();
    await page.$eval('.stage g[tabindex="0"]', (group) => group.focus());
    await page.keyboard.press("-");
    assert.ok(await width() > near);
    await page.keyboard.press("0");
    assert.ok(await width() >= first);
  }));

  test("is gone through by keys", () => inSample(kDiagram, async (tab, page) => {
    await page.waitForSelector('.stage g[tabindex="0"]');
    await page.$eval('.stage g[tabindex="0"]', (group) => group.focus());
    const focused = () => page.evaluate(() => document.activeElement.getAttribute("data-id"));
    const start = await focused();
    await page.keyboard.press("ArrowDown");
    const next = await focused();
    assert.notEqual(next, start);
    await page.keyboard.press("Enter");
    await tab.waitForText(".inspector h2", next);
    await page.keyboard.press("Escape");
    await page.waitForFunction(() => document.querySelector(".inspector").hidden);
  }));

  test("is refused when it contains what the program never writes", async () => {
    const built = await esbuild.build({ entryPoints: [join(web, "src/picture.ts")], bundle: true, write: false,
                                        format: "iife", globalName: "picture" });
    const page = await browser.newPage();
    await page.evaluate(built.outputFiles[0].text + ";globalThis.picture = picture;");
    const refusal = (content) => page.evaluate((inner) => {
      try {
        globalThis.picture.parsePicture(`<svg xmlns="http://www.w3.org/2000/svg">${inner}</svg>`);
        return "";
      } catch (error) {
        return error.message;
      }
    }, content);
    assert.equal(await refusal('<g id="a"><use href="#b"/><text x="1">x</text></g>'), "");
    for (const bad of ["<script>1</script>", '<g onclick="x()"/>', '<use href="http://x/y"/>', "<foreignObject/>",
                       '<image href="#a"/>', '<g style="fill:url(x)"/>', "<a><text/></a>", "<animate/>", "<g"]) {
      assert.notEqual(await refusal(bad), "", bad);
    }
    await page.close();
  });
});

describe("tables", () => {
  test("one of 10,000 rows is quick: few elements, filter and sorting over all", async () => {
    const model = join(folder, "large.obj");
    dtsdb(["generate", "--stations", "600", "--seed", "7", "-o", model]);
    const tab = await Tab.open(browser);
    await tab.show(reportOn(model, folder, "large.html"), "table/CB");
    await tab.page.waitForSelector(".body .row");
    const rows = await tab.page.$eval(".rows", (grid) => Number(grid.getAttribute("aria-rowcount")) - 1);
    assert.ok(rows >= 10000, `${rows} rows`);
    const elements = () => tab.page.$$eval(".body .row", (all) => all.length);
    assert.ok(await elements() < 120);
    await tab.page.focus(".rows");
    await tab.page.keyboard.press("End");
    await tab.page.waitForSelector(`.body .row.active[aria-rowindex="${rows + 1}"]`);
    assert.ok(await elements() < 120);
    const last = await tab.text(".body .row.active .cell");
    await tab.page.type(".filter", last);
    await tab.waitForText(".count", "1 of");
    await tab.page.$eval(".filter", (input) => {
      input.value = "";
      input.dispatchEvent(new Event("input"));
    });
    await tab.page.click('[role="columnheader"] button');
    await tab.page.click('[role="columnheader"] button');
    await tab.waitForText(".body .row .cell", last);
    assert.deepEqual(tab.faults, []);
    await tab.close();
  });

  test("a row opens its record", () => inSample("table/LN", async (tab, page) => {
    await page.waitForSelector(".body .row");
    const id = await tab.text(".body .row .cell");
    await page.click(".body .row");
    await tab.waitForText(".inspector h2", id);
    await tab.waitForText(".inspector .fields", "nd");
  }));
});

describe("islands", () => {
  test("are listed with what is dead", () => inSample("state", async (tab) => {
    assert.match(await tab.text(".state-view h2"), /^1 live island/);
    await tab.waitForText(".state-view", "out of service");
  }));
});

describe("switching report", () => {
  test("shows each run before and after, with what changed", async () => {
    const file = join(folder, "runs.html");
    dtsdb(["switch", join(root, "examples/ieee14"), "open", "CB", kBreaker, "run", "close", "CB", kBreaker, "--report",
           file]);
    const tab = await Tab.open(browser);
    await tab.show(file);
    await tab.waitForText(".run-tabs", "Run 2");
    await tab.waitForText(".run-side .events", `open CB ${kBreaker}`);
    await tab.go("runs/1/Hekou");
    await tab.page.waitForSelector(".comparison figure:nth-child(2) g.changed");
    const classes = await tab.page.$$eval(`g[data-id="${kBreaker}"]`, (all) => all.map((each) => each.className.baseVal));
    assert.equal(classes.length, 2);
    assert.match(classes[0], /closed.*changed/);
    assert.match(classes[1], /open.*changed/);
    assert.deepEqual(tab.faults, []);
    await tab.close();
  });
});

describe("theme", () => {
  test("follows the system, and can be chosen", () => inSample("", async (tab, page) => {
    const theme = () => page.evaluate(() => document.documentElement.dataset.theme);
    assert.equal(await theme(), "dark");
    await page.click('[aria-label="Theme: auto"]');
    assert.equal(await theme(), "light");
    await page.click('[aria-label="Theme: light"]');
    assert.equal(await theme(), "dark");
  }, { theme: "dark" }));
});

describe("print", () => {
  test("leaves out what is for the screen, and shows all rows", () => inSample("table/CB", async (tab, page) => {
    await page.waitForSelector(".body .row");
    await page.emulateMediaType("print");
    const isHidden = (selector) => page.$eval(selector, (element) => getComputedStyle(element).display === "none");
    for (const selector of [".side", ".search", ".head-tools", ".table-tools"]) assert.ok(await isHidden(selector));
    const pdf = await page.pdf({ format: "A4" });
    assert.equal(Buffer.from(pdf.subarray(0, 5)).toString(), "%PDF-");
    const shown = await page.evaluate(() => {
      dispatchEvent(new Event("beforeprint"));
      const count = document.querySelectorAll(".body .row").length;
      dispatchEvent(new Event("afterprint"));
      return [count, Number(document.querySelector(".rows").getAttribute("aria-rowcount")) - 1];
    });
    assert.equal(shown[0], shown[1]);
  }));
});

describe("access", () => {
  for (const theme of ["light", "dark"]) {
    for (const place of ["grid", `${kDiagram}/CB/${kBreaker}`, "table/CB", "state", "findings"]) {
      test(`${place} has no serious fault in the ${theme} theme`, () => inSample(place, async (tab, page) => {
        await tab.settle();
        assert.deepEqual(await faultsOfAccess(page), []);
      }, { theme }));
    }
  }

  test("the search is reached and used by keys", () => inSample("", async (tab, page) => {
    await page.keyboard.press("/");
    await page.keyboard.type("Longtan");
    await tab.waitForText(".matches", "Longtan");
    await page.keyboard.press("Enter");
    await page.waitForFunction(() => location.hash === "#station/Longtan");
    await page.waitForSelector(".stage svg");
  }));
});

describe("golden pictures", () => {
  const views = [
    { name: "diagram-light", place: `${kDiagram}/CB/${kBreaker}` },
    { name: "diagram-dark", place: `${kDiagram}/CB/${kBreaker}`, theme: "dark" },
    { name: "diagram-tablet", place: kDiagram, width: 820, height: 1180 },
    { name: "table-light", place: "table/LN" },
    { name: "islands-dark", place: "state", theme: "dark" },
    { name: "grid-light", place: "grid" },
  ];
  for (const { name, place, ...options } of views) {
    test(name, () => inSample(place, async (tab) => {
      assert.equal(await compareWithGolden(tab, browser, name), "");
    }, options));
  }
});
