// The map of the grid: all stations with the lines between them.

import type { App } from "../app";
import { h, number } from "../dom";
import { PictureView } from "../picture";
import { stationRoute, thingRoute } from "../route";
import type { View } from "./view";

export class GridView implements View {
  readonly element: HTMLElement;
  readonly title = "Grid";
  private readonly note = h("p", { class: "note", role: "status" });
  private readonly picture: PictureView;
  private readonly numbers = h("dl", { class: "numbers" });

  constructor(private readonly app: App) {
    this.picture = new PictureView({ label: "Map of the grid", choose: (table, id) => this.choose(table, id) });
    this.element = h("div", { class: "view grid-view" }, this.numbers, this.note, this.picture.element);
    this.showNumbers();
    void this.load();
  }

  go(): boolean { return true; }

  refresh(): void {
    this.showNumbers();
    void this.load();
  }

  dispose(): void { this.picture.dispose(); }

  private showNumbers(): void {
    const { summary } = this.app.model;
    const entries: [string, number | undefined][] = [
      ["stations", summary.stations], ["voltage levels", summary.levels], ["switches", summary.switches],
      ["lines", summary.lines], ["windings", summary.transformers], ["units", summary.units],
      ["loads", summary.loads], ["live islands", this.app.state.islands.length],
      ["dead", this.app.state.dead.length],
    ];
    this.numbers.replaceChildren(...entries.map(([name, value]) =>
      h("div", {}, h("dt", {}, name), h("dd", {}, number(value ?? 0)))));
  }

  private async load(): Promise<void> {
    try {
      const grid = await this.app.source.grid();
      if (grid.svg === "") throw new Error("There is no map of this grid. Choose a station, or look at the tables.");
      this.picture.show(grid.svg);
      this.picture.element.hidden = false;
      this.note.textContent = "";
    } catch (error) {
      this.picture.element.hidden = true;
      this.note.textContent = (error as Error).message;
    }
  }

  private choose(table: string, id: string): void {
    if (table === "ST") location.hash = stationRoute(id);
    else void this.app.openRecord(table, id, (station) => thingRoute({ table, id, station }));
  }
}
