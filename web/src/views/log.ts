// What has been committed while the page was open, the newest on top.

import type { App } from "../app";
import { counted, fill, h } from "../dom";
import { stationRoute, tableRoute } from "../route";
import type { View } from "./view";

export class LogView implements View {
  readonly element: HTMLElement;
  readonly title = "Log";

  constructor(private readonly app: App) {
    this.element = h("div", { class: "view log-view" });
    this.refresh();
  }

  go(): boolean { return true; }

  refresh(): void {
    if (this.app.log.length === 0) {
      fill(this.element, h("p", { class: "note" }, "Nothing has changed since the page was opened."));
      return;
    }
    fill(this.element, h("ol", { class: "log" }, this.app.log.map((entry) =>
      h("li", {}, h("time", {}, entry.time), h("span", { class: "what" }, counted(entry.count, "change"),
                                               ` (version ${entry.version})`),
        h("ul", {}, entry.changes.map((change) =>
          h("li", {}, h("a", { href: tableRoute(change.table, change.id) }, `${change.table} ${change.id}`), " ",
            change.text)),
          entry.count > entry.changes.length && h("li", {}, `and ${entry.count - entry.changes.length} more`)),
        entry.stations.length > 0 && h("p", {}, "Diagrams: ", entry.stations.slice(0, 12).map((id) =>
          h("a", { href: stationRoute(id) }, id)))))));
  }
}
