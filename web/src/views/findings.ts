// What the validation has found.

import type { App } from "../app";
import { DataTable } from "../data_table";
import { h, number } from "../dom";
import type { Finding } from "../documents";
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
      tools: kindChoice(findings, (code) => this.table?.filterBy(code)),
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

/** A choice of one kind of finding; the most frequent come first. */
function kindChoice(findings: Finding[], choose: (code: string) => void): HTMLElement {
  const kinds = new Map<string, { count: number; text: string }>();
  for (const { code, text } of findings) {
    const kind = kinds.get(code) ?? { count: 0, text };
    kinds.set(code, { ...kind, count: kind.count + 1 });
  }
  const sorted = [...kinds].sort(([, a], [, b]) => b.count - a.count);
  const select = h("select", { class: "kinds", "aria-label": "Kind of finding", onchange: () => choose(select.value) },
                   h("option", { value: "" }, `All kinds (${number(findings.length)})`),
                   sorted.map(([code, kind]) =>
                     h("option", { value: code }, `${code.split("_")[0]}: ${kind.text} (${number(kind.count)})`)));
  return select;
}
