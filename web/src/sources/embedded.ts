// Documents that are part of the page: blocks of gzip in base64, unpacked when they are asked for.

import type { Finding, GridDocument, ModelDocument, Run, StateDocument, StationDocument, TableDocument, Thing }
  from "../documents";
import { findLike } from "../search";
import type { Source } from "./source";

interface Report {
  model: ModelDocument;
  tables: Record<string, TableDocument>;
  state: StateDocument;
  findings: Finding[];
  grid: GridDocument;
  records: [table: string, id: string, station: string][];
  runs?: Run[];
}

async function unpack<T>(block: Element): Promise<T> {
  const text = atob((block.textContent ?? "").trim());
  const bytes = Uint8Array.from(text, (c) => c.charCodeAt(0));
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("gzip"));
  return JSON.parse(await new Response(stream).text()) as T;
}

export class EmbeddedSource implements Source {
  readonly session = null;
  private readonly blocks = new Map<string, Element>();
  private readonly stations = new Map<string, Promise<StationDocument>>();
  private readonly report: Promise<Report>;
  private records: Thing[] | null = null;

  constructor(data: Element) {
    this.report = unpack<Report>(data);
    for (const block of document.querySelectorAll("script[data-station]")) {
      this.blocks.set(block.getAttribute("data-station") ?? "", block);
    }
  }

  async model() { return (await this.report).model; }
  async state() { return (await this.report).state; }
  async findings() { return (await this.report).findings; }
  async grid() { return (await this.report).grid; }
  async runs() { return (await this.report).runs ?? []; }

  async table(name: string): Promise<TableDocument> {
    const table = (await this.report).tables[name];
    if (!table) throw new Error(`There is no table ${name}.`);
    return table;
  }

  station(id: string): Promise<StationDocument> {
    const known = this.stations.get(id);
    if (known) return known;
    const block = this.blocks.get(id);
    if (!block) return Promise.reject(new Error(`There is no diagram of station ${id} in this report.`));
    const station = unpack<StationDocument>(block);
    this.stations.set(id, station);
    return station;
  }

  async search(text: string): Promise<Thing[]> {
    const report = await this.report;
    this.records ??= report.records.map(([table, id, station]) => ({ table, id, station }));
    return findLike(this.records, text);
  }
}
