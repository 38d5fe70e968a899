// The runs of a switching report: for each what was switched, what that changed, and the pictures before and after.

import type { App } from "../app";
import type { Run } from "../documents";
import { fill, h } from "../dom";
import { PictureView } from "../picture";
import { writeRoute } from "../route";
import { changeList } from "./changes";
import type { View } from "./view";

export class RunsView implements View {
  readonly element: HTMLElement;
  readonly title = "Runs";
  private readonly tabs = h("nav", { class: "run-tabs", "aria-label": "Runs" });
  private readonly content = h("div", { class: "run" });
  private pictures: PictureView[] = [];

  constructor(private readonly app: App, private args: string[]) {
    this.element = h("div", { class: "view runs-view" }, this.tabs, this.content);
    this.render();
  }

  go(args: string[]): boolean {
    this.args = args;
    this.render();
    return true;
  }

  dispose(): void { for (const picture of this.pictures) picture.dispose(); }

  /** The arguments are the number of the run, from 1, and the station shown; without one it is the map. */
  private render(): void {
    this.dispose();
    this.pictures = [];
    const number = Math.min(Math.max(Number(this.args[0] ?? 1) || 1, 1), this.app.runs.length);
    const run = this.app.runs[number - 1];
    fill(this.tabs, this.app.runs.map((each, i) =>
      h("a", { href: writeRoute(["runs", String(i + 1)]), "aria-current": i + 1 === number ? "page" : null },
        each.title)));
    if (!run) return;
    const station = this.args[1];
    fill(this.content,
         h("div", { class: "run-side" }, h("h2", {}, run.title),
           h("ol", { class: "events" }, run.events.map((event) =>
             h("li", {}, event.text, h("span", { class: "effect" }, event.effect)))),
           changeList({ ...run.changes, stations: [] }), this.places(run, number, station)),
         this.comparison(run, station));
  }

  private places(run: Run, number: number, station: string | undefined): HTMLElement {
    const link = (text: string, ...args: string[]) =>
      h("li", {}, h("a", { href: writeRoute(["runs", String(number), ...args]),
                           "aria-current": station === args[0] ? "true" : null }, text));
    return h("div", {}, h("h3", {}, "Pictures"),
             h("ul", { class: "places" }, link("Map of the grid"),
               Object.keys(run.stations).map((id) => link(id, id))));
  }

  private comparison(run: Run, station: string | undefined): HTMLElement {
    const pair = station === undefined ? { before: run.before.grid.svg, after: run.after.grid.svg }
      : run.stations[station];
    if (!pair || pair.after === "") return h("p", { class: "note" }, "There is no picture of this in the report.");
    return h("div", { class: "comparison" }, this.picture("Before", pair.before), this.picture("After", pair.after));
  }

  private picture(title: string, svg: string): HTMLElement {
    const view = new PictureView({ label: title, leastScale: 0.65, middle: "g.changed", choose: () => undefined });
    this.pictures.push(view);
    view.show(svg);
    return h("figure", {}, h("figcaption", {}, title), view.element);
  }
}
