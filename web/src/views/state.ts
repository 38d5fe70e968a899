// The state of the grid: islands, what is dead, and breakers without whole flows.

import type { App } from "../app";
import { DataTable, type Column } from "../data_table";
import type { StateDocument, Value } from "../documents";
import { counted, fill, h } from "../dom";
import { tableRoute, thingRoute } from "../route";
import type { View } from "./view";

export class StateView implements View {
  readonly element: HTMLElement;
  readonly title = "Islands";
  private tables: DataTable[] = [];

  constructor(private readonly app: App) {
    this.element = h("div", { class: "view state-view" });
    this.render(app.state);
  }

  go(): boolean { return true; }
  refresh(): void { this.render(this.app.state); }
  dispose(): void { for (const table of this.tables) table.dispose(); }

  private render(state: StateDocument): void {
    this.dispose();
    this.tables = [];
    if (!state.topology) {
      fill(this.element, h("p", { class: "note" }, "The model has errors, so its topology can't be worked out. " +
                                                   "The findings list them."));
      return;
    }
    fill(this.element, this.islands(state), this.dead(state), this.unbalanced(state));
  }

  private section(title: string, table: DataTable | null, empty: string): HTMLElement {
    if (table) this.tables.push(table);
    return h("section", {}, h("h2", {}, title), table ? table.element : h("p", { class: "note" }, empty));
  }

  private islands({ islands }: StateDocument): HTMLElement {
    const columns: Column[] = [{ name: "island", isNumber: true }, { name: "reference" },
      { name: "stations", isNumber: true }, { name: "sections", isNumber: true }, { name: "nodes", isNumber: true },
      { name: "units", isNumber: true }, { name: "loads", isNumber: true },
      { name: "generation", unit: "MW", isNumber: true, digits: 1 },
      { name: "load", unit: "MW", isNumber: true, digits: 1 }];
    const data: Value[][] = [islands.map((each) => each.number), islands.map((each) => each.reference),
      islands.map((each) => each.stations), islands.map((each) => each.sections), islands.map((each) => each.nodes),
      islands.map((each) => each.units), islands.map((each) => each.loads), islands.map((each) => each.generation),
      islands.map((each) => each.load)];
    const open = (row: number) => {
      const { reference } = islands[row]!;
      if (reference !== "") location.hash = tableRoute("UN", reference);
    };
    const table = islands.length > 0 ? new DataTable({ label: "Live islands", columns, data, open,
                                                       isSmall: islands.length <= 12 }) : null;
    return this.section(counted(islands.length, "live island"), table, "Nothing is live.");
  }

  private dead({ dead }: StateDocument): HTMLElement {
    const table = dead.length > 0 ? new DataTable({
      label: "Dead and isolated equipment",
      columns: [{ name: "table" }, { name: "record" }, { name: "station" }, { name: "state" }],
      data: [dead.map((each) => each.table), dead.map((each) => each.id), dead.map((each) => each.station),
             dead.map((each) => each.state)],
      open: (row) => (location.hash = thingRoute(dead[row]!)),
    }) : null;
    return this.section(`${dead.length} not live`, table, "Everything is live.");
  }

  private unbalanced({ unbalanced }: StateDocument): HTMLElement {
    const table = unbalanced.length > 0 ? new DataTable({
      label: "Sets of breakers without whole flows",
      columns: [{ name: "voltage level" }, { name: "station" }, { name: "state" },
                { name: "surplus p", unit: "MW", isNumber: true, digits: 2 },
                { name: "surplus q", unit: "Mvar", isNumber: true, digits: 2 }, { name: "nodes", isNumber: true },
                { name: "breakers" }],
      data: [unbalanced.map((each) => each.level), unbalanced.map((each) => each.station),
             unbalanced.map((each) => each.state), unbalanced.map((each) => each.p), unbalanced.map((each) => each.q),
             unbalanced.map((each) => each.nodes), unbalanced.map((each) => each.breakers.join(", "))],
      open: (row) => (location.hash = thingRoute({ table: "KV", id: unbalanced[row]!.level,
                                                   station: unbalanced[row]!.station })),
    }) : null;
    return this.section(counted(unbalanced.length, "set of breakers", "sets of breakers") + " without whole flows",
                        table, "Every set of breakers has its flows.");
  }
}
