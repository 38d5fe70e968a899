// The diagram of a station.

import type { App } from "../app";
import { isException, type ElementFacts, type StationDocument } from "../documents";
import { h } from "../dom";
import { PictureView } from "../picture";
import { stationRoute, thingRoute } from "../route";
import type { View } from "./view";

export class StationView implements View {
  readonly element: HTMLElement;
  readonly title: string;
  private readonly picture: PictureView;
  private readonly note = h("p", { class: "note", role: "status" });
  private document: StationDocument | null = null;

  constructor(private readonly app: App, private readonly id: string, private selection: string[]) {
    this.title = id;
    this.picture = new PictureView({
      label: `Diagram of station ${id}`,
      choose: (table, element) => this.choose(table, element),
      leastScale: 0.75,
      legend: legend(),
    });
    this.element = h("div", { class: "view station-view" }, this.note, this.picture.element);
    void this.load();
  }

  go(args: string[]): boolean {
    if (args[0] !== this.id) return false;
    this.selection = args.slice(1);
    this.showSelection();
    return true;
  }

  refresh(stations: string[] | null): void {
    if (stations === null || stations.includes(this.id)) void this.load();
  }

  dispose(): void { this.picture.dispose(); }

  private async load(): Promise<void> {
    try {
      this.document = await this.app.source.station(this.id);
      this.picture.show(this.document.svg);
      this.note.textContent = "";
      this.markFindings();
      this.showSelection();
    } catch (error) {
      this.note.textContent = (error as Error).message;
    }
  }

  /** Marks what has errors; what has warnings only where that is the exception. */
  private markFindings(): void {
    const elements = Object.entries(this.document?.elements ?? {});
    const found = elements.filter(([, facts]) => facts.findings.length > 0);
    const marksWarnings = isException(found.length, elements.length);
    for (const [id, facts] of found) {
      const isError = facts.findings.some((place) => this.app.findings[place]?.severity === "error");
      if (!isError && !marksWarnings) continue;
      this.element.querySelector(`g[id="${CSS.escape(id)}"]`)?.classList.add(isError ? "has-error" : "has-warning");
    }
  }

  private showSelection(): void {
    const [table, id] = this.selection;
    this.picture.select(table, id);
    if (table === undefined || id === undefined) this.app.inspector.hide();
    else this.app.inspector.show({ table, id, station: this.id }, this.factsOf(table, id));
  }

  private factsOf(table: string, id: string): ElementFacts[] {
    return Object.values(this.document?.elements ?? {}).filter((each) => each.table === table && each.id === id);
  }

  private choose(table: string, id: string): void {
    if (table === "ST") location.hash = stationRoute(id);
    else location.hash = thingRoute({ table, id, station: this.id });
  }
}

function legend(): HTMLElement {
  const entry = (kind: string, text: string) => h("li", {}, h("span", { class: `swatch ${kind}` }), text);
  return h("ul", { class: "legend", "aria-label": "Legend" }, entry("live", "one colour, one section"),
           entry("dead", "dead"), entry("changed", "changed"), entry("warning", "finding"));
}
