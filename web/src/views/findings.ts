// What the validation has found.

import type { App } from "../app";
import { DataTable } from "../data_table";
import { h } from "../dom";
import { thingRoute } from "../route";
import type { View } from "./view";

export class FindingsView implements View {
  readonly element: HTMLElement;
  readonly title = "Findings";
  private readonly table: DataTable | null = null;

  constructor(app: App) {
    const { findings } = app;
    this.element = h("div", { class: "view" });
    if (findings.length === 0) {
      this.element.append(h("p", { class: "note" }, "The validation has found nothing."));
      return;
    }
    this.table = new DataTable({
      label: "Findings",
      columns: [{ name: "severity" }, { name: "table" }, { name: "record" }, { name: "station" }, { name: "field" },
                { name: "what" }, { name: "what to do" }, { name: "code" }],
      data: [findings.map((each) => each.severity), findings.map((each) => each.table),
             findings.map((each) => each.id), findings.map((each) => each.station),
             findings.map((each) => each.field), findings.map((each) => each.text),
             findings.map((each) => each.remedy), findings.map((each) => each.code)],
      rowClass: (row) => findings[row]!.severity,
      open: (row) => {
        const finding = findings[row]!;
        if (finding.table !== "") location.hash = thingRoute(finding);
      },
    });
    this.element.append(this.table.element);
  }

  go(): boolean { return true; }
  dispose(): void { this.table?.dispose(); }
}
