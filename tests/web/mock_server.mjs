// A stand-in for the serving program: the documents of a report, answers to what is tried out, and events on demand.

import { readFileSync } from "node:fs";
import { createServer } from "node:http";
import { join } from "node:path";
import { gunzipSync } from "node:zlib";
import { web } from "./support.mjs";

const kFiles = { "/": ["index.html", "text/html"], "/page.js": ["page.js", "text/javascript"],
                 "/page.css": ["page.css", "text/css"] };
const kPolicy = "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src data:";

function unpack(text) { return JSON.parse(gunzipSync(Buffer.from(text, "base64")).toString()); }

/** The documents in a report. */
export function documentsOf(file) {
  const html = readFileSync(file, "utf8");
  const stations = new Map();
  for (const [, id, data] of html.matchAll(/data-station="([^"]*)">([^<]*)</g)) stations.set(id, data);
  return { common: unpack(/id="data">([^<]*)</.exec(html)[1]), station: (id) => unpack(stations.get(id)) };
}

export class MockServer {
  static async start(file) {
    const server = new MockServer(documentsOf(file));
    await new Promise((done) => server.http.listen(0, "127.0.0.1", done));
    return server;
  }

  constructor(documents) {
    this.documents = documents;
    this.events = [];
    this.opened = new Set();  // breakers that the live state has open
    this.version = 1;
    this.refusal = "";
    this.streams = new Set();
    this.http = createServer((request, response) => this.answer(request, response));
  }

  get address() { return `http://127.0.0.1:${this.http.address().port}/`; }

  send(event, data) {
    for (const stream of this.streams) stream.write(`event: ${event}\ndata: ${JSON.stringify(data)}\n\n`);
  }

  /** A breaker opens in the live state. */
  commit(id, station) {
    this.opened.add(id);
    this.send("commit", { version: ++this.version, time: "2026-11-22T12:00:00Z", count: 1,
                          changes: [{ table: "CB", id, text: "closed → open" }], stations: [station] });
  }

  stop() {
    for (const stream of this.streams) stream.end();
    this.http.closeAllConnections();
    return new Promise((done) => this.http.close(done));
  }

  answer(request, response) {
    const url = new URL(request.url, this.address);
    response.setHeader("Content-Security-Policy", kPolicy);
    const file = kFiles[url.pathname];
    if (file) {
      response.setHeader("Content-Type", file[1]);
      return response.end(readFileSync(join(web, "dist", file[0])));
    }
    const name = url.pathname.replace("/api/", "");
    if (name === "events") return this.stream(response);
    if (name === "whatif") return this.tryOut(request, response);
    const { common } = this.documents;
    const hasCopy = url.searchParams.has("viewer");
    const answers = {
      model: () => ({ ...common.model, live: true, version: this.version }),
      state: () => ({ ...common.state, version: this.version }), findings: () => common.findings,
      grid: () => common.grid, table: () => common.tables[url.searchParams.get("name")],
      station: () => this.station(url.searchParams.get("id"), hasCopy),
      search: () => ({ matches: this.search(url.searchParams.get("q")) }),
    };
    response.setHeader("Content-Type", "application/json");
    return response.end(JSON.stringify(answers[name]?.() ?? { error: "unknown" }));
  }

  search(text) {
    return this.documents.common.records.filter(([, id]) => id.toLowerCase().includes(text.toLowerCase()))
      .slice(0, 50).map(([table, id, station]) => ({ table, id, station }));
  }

  station(id, hasCopy) {
    const station = this.documents.station(id);
    const open = (breaker, isChanged) => {
      for (const [element, facts] of Object.entries(station.elements)) {
        if (facts.table !== "CB" || facts.id !== breaker) continue;
        Object.assign(facts, { open: true, changed: isChanged });
        const mark = isChanged ? "open changed" : "open";
        station.svg = station.svg.replace(new RegExp(`(id="${element}" class="[^"]*)closed`), `$1${mark}`);
      }
    };
    for (const breaker of this.opened) open(breaker, false);
    if (hasCopy) for (const event of this.events) open(event.id, true);
    return station;
  }

  stream(response) {
    response.setHeader("Content-Type", "text/event-stream");
    response.write(`event: hello\ndata: {"version":${this.version}}\n\n`);
    this.streams.add(response);
    response.on("close", () => this.streams.delete(response));
  }

  async tryOut(request, response) {
    let body = "";
    for await (const piece of request) body += piece;
    if (this.refusal !== "") {
      response.statusCode = 409;
      return response.end(JSON.stringify({ error: this.refusal }));
    }
    this.events = JSON.parse(body).events;
    const dead = this.events.map(() => ({ table: "LD", id: "Hekou-L1", station: "Hekou" }));
    return response.end(JSON.stringify({
      version: this.version, events: this.events.map((event) => ({ ...event, applied: true, text: "followed up" })),
      changes: { becameDead: dead, becameLive: [], islandsBefore: 1, islandsAfter: 2,
                 lostLoad: 47.8 * dead.length, stations: ["Hekou"] },
    }));
  }
}
