// The tables of the model, one at a time.

import type { App } from "../app";
import { DataTable, type Column } from "../data_table";
import type { TableDocument, TableInfo, Value } from "../documents";
import { fill, h, number } from "../dom";
import { isEmptyValue, rowOf } from "../fields";
import { tableRoute } from "../route";
import type { View } from "./view";

export class TablesView implements View {
  readonly element: HTMLElement;
  readonly title: string;
  private readonly place = h("div", { class: "table-place" });
  private readonly about = h("p", { class: "about" });
  private table: DataTable | null = null;
  private document: TableDocument | null = null;

  constructor(private readonly app: App, private readonly name: string, private id: string | undefined) {
    this.title = name;
    const options = app.model.tables.map((table) =>
      h("option", { value: table.name, selected: table.name === name },
        `${table.name} (${number(table.rows)})`));
    const choice = h("select", { "aria-label": "Table", onchange: () => (location.hash = tableRoute(choice.value)) },
                     groupOptions(app.model.tables, options));
    this.element = h("div", { class: "view table-view" }, h("div", { class: "view-head" }, choice, this.about),
                     this.place);
    void this.load();
  }

  go(args: string[]): boolean {
    if (args[0] !== this.name) return false;
    this.id = args[1];
    this.showSelection();
    return true;
  }

  refresh(): void { void this.load(); }

  dispose(): void { this.table?.dispose(); }

  private async load(): Promise<void> {
    const info = this.app.tableInfo(this.name);
    try {
      if (!info) throw new Error(`There is no table ${this.name}.`);
      this.about.textContent = info.title;
      this.document = await this.app.source.table(this.name);
      this.table?.dispose();
      this.table = new DataTable({
        label: `Table ${this.name}`, columns: columnsOf(info, this.document.columns), data: this.document.columns,
        open: (row) => this.open(row),
      });
      fill(this.place, this.table.element);
      this.showSelection();
    } catch (error) {
      fill(this.place, h("p", { class: "note" }, (error as Error).message));
    }
  }

  private open(row: number): void {
    location.hash = tableRoute(this.name, String(this.document!.columns[0]![row]));
  }

  private showSelection(): void {
    if (this.id === undefined || !this.document) {
      this.app.inspector.hide();
      return;
    }
    const row = rowOf(this.document, this.id);
    if (row < 0) return;
    this.table?.select(row);
    void this.app.openRecord(this.name, this.id, (station) => {
      this.app.inspector.show({ table: this.name, id: this.id!, station }, []);
      return null;
    });
  }
}

/** What people keep comes first; what the program makes of it after it. */
function groupOptions(tables: TableInfo[], options: HTMLOptionElement[]): HTMLElement[] {
  const isKept = (table: TableInfo) => table.fields[0]?.writers.includes("input") ?? false;
  const group = (label: string, kept: boolean) =>
    h("optgroup", { label }, options.filter((_, i) => isKept(tables[i]!) === kept));
  return [group("The network", true), group("Worked out from it", false)];
}

/**
 * Hidden at first: columns in which no record has a value of its own, numbers of other records, and the names of
 * measurement points.
 */
function columnsOf(info: TableInfo, data: Value[][]): Column[] {
  return info.fields.map((field, i) => ({
    name: field.name, title: field.meaning, unit: field.unit, isNumber: field.type !== "text",
    isMinor: i > 0 && (data[i]!.every(isEmptyValue) || field.refers === "ANALOG" ||
                       (field.refers !== undefined && field.type === "i32")),
  }));
}
