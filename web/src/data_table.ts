// A table of any length: only the rows in sight are elements. Filter, sorting, keyboard.

import type { Value } from "./documents";
import { counted, debounce, fill, h } from "./dom";

export interface Column {
  name: string;
  title?: string;
  unit?: string;
  isNumber?: boolean;
  /** Hidden until all columns are asked for. */
  isMinor?: boolean;
  /** Decimals of its numbers; those of the value when not given. */
  digits?: number;
}

export interface DataTableOptions {
  label: string;
  columns: Column[];
  /** One array for each column. */
  data: Value[][];
  /** What is done when a row is opened by click or Enter. */
  open?: (row: number) => void;
  /** A class for a row. */
  rowClass?: (row: number) => string;
  /** What stands beside the filter. */
  tools?: HTMLElement;
  /** Without toolbar, as high as its rows. */
  isSmall?: boolean;
}

const kRowHeight = 28;
const kOverscan = 12;
const kMostPrinted = 5000;
const kPaperWidth = 1000;  // of A4 laid across
const kLeastZoom = 0.45;
const kSample = 300;
const kWidest = 42;

export class DataTable {
  readonly element: HTMLElement;
  private readonly scroller: HTMLElement;
  private readonly body: HTMLElement;
  private readonly header: HTMLElement;
  private readonly count: HTMLElement;
  private readonly filter: HTMLInputElement;
  private readonly size: number;
  private readonly id = `table-${Math.random().toString(36).slice(2)}`;
  private shown: number[] = [];
  private texts: string[] | null = null;
  private sortColumn = -1;
  private isDescending = false;
  private showsMinor = false;
  private active = -1;
  private readonly observer: ResizeObserver;
  private isOnPaper = false;
  private readonly beginPrint = () => this.print(true);
  private readonly endPrint = () => this.print(false);

  constructor(private readonly options: DataTableOptions) {
    this.size = options.data[0]?.length ?? 0;
    this.header = h("div", { role: "rowgroup", class: "head" });
    this.body = h("div", { role: "rowgroup", class: "body" });
    this.count = h("span", { class: "count", role: "status" });
    this.filter = h("input", {
      type: "search", class: "filter", placeholder: "Filter rows", "aria-label": `Filter ${options.label}`,
      oninput: debounce(80, () => this.applyFilter()),
    });
    this.scroller = h("div", {
      class: "rows", role: "grid", tabindex: 0, "aria-label": options.label,
      onscroll: () => this.render(), onkeydown: (event: KeyboardEvent) => this.onKey(event),
      onclick: (event: MouseEvent) => this.onClick(event),
    }, this.header, this.body);
    this.element = h("div", { class: options.isSmall ? "data-table small" : "data-table" },
                     options.isSmall ? null : this.toolbar(), this.scroller);
    this.observer = new ResizeObserver(() => this.render());
    this.observer.observe(this.scroller);
    addEventListener("beforeprint", this.beginPrint);
    addEventListener("afterprint", this.endPrint);
    this.layOut();
    this.applyFilter();
  }

  dispose(): void {
    this.observer.disconnect();
    removeEventListener("beforeprint", this.beginPrint);
    removeEventListener("afterprint", this.endPrint);
  }

  /** Marks a row and brings it into sight. */
  select(row: number): void {
    this.active = this.shown.indexOf(row);
    this.reveal();
    this.render();
  }

  /** Shows the rows that contain these words. */
  filterBy(words: string): void {
    this.filter.value = words;
    this.applyFilter();
  }

  private toolbar(): HTMLElement {
    const hasMinor = this.options.columns.some((column) => column.isMinor);
    const all = h("input", { type: "checkbox", onchange: () => {
      this.showsMinor = all.checked;
      this.layOut();
      this.render();
    } });
    return h("div", { class: "table-tools" }, this.filter, this.options.tools, this.count,
             hasMinor && h("label", { class: "switch-label" }, all, "All columns"));
  }

  private visibleColumns(): number[] {
    const columns = this.options.columns.map((_, i) => i);
    return this.showsMinor ? columns : columns.filter((i) => !this.options.columns[i]!.isMinor);
  }

  private layOut(): void {
    const columns = this.visibleColumns();
    const widths = columns.map((i) => `${this.widthOf(i)}ch`);
    this.element.style.setProperty("--columns", widths.join(" "));
    this.scroller.setAttribute("aria-colcount", String(columns.length));
    fill(this.header, h("div", { role: "row", class: "row", "aria-rowindex": 1 },
                        columns.map((i) => this.headOf(i))));
    this.body.replaceChildren();
  }

  private headOf(i: number): HTMLElement {
    const column = this.options.columns[i]!;
    const isSorted = this.sortColumn === i;
    const sort = isSorted ? (this.isDescending ? "descending" : "ascending") : "none";
    const button = h("button", { type: "button", tabindex: this.options.isSmall ? -1 : 0, title: column.title,
                                 onclick: () => this.sortBy(i) }, column.name,
                     column.unit ? h("span", { class: "unit" }, ` ${column.unit}`) : null,
                     h("span", { class: "sort", "aria-hidden": "true" },
                       isSorted ? (this.isDescending ? " ▾" : " ▴") : ""));
    return h("div", { role: "columnheader", "aria-sort": sort, class: column.isNumber ? "cell number" : "cell" },
             button);
  }

  private widthOf(i: number): number {
    const column = this.options.columns[i]!;
    let width = column.name.length + (column.unit ? column.unit.length + 1 : 0) + 3;
    const step = Math.max(1, Math.floor(this.size / kSample));
    for (let row = 0; row < this.size; row += step) width = Math.max(width, this.textOf(i, row).length + 3);
    return Math.min(width, kWidest);
  }

  private textOf(column: number, row: number): string {
    const value = this.options.data[column]![row];
    if (value === null || value === undefined) return "";
    const digits = this.options.columns[column]!.digits;
    return typeof value === "number" && digits !== undefined ? value.toFixed(digits) : String(value);
  }

  private textOfRow(row: number): string {
    return this.options.data.map((_, i) => this.textOf(i, row)).join("\u0001").toLowerCase();
  }

  private applyFilter(): void {
    const words = this.filter.value.toLowerCase().split(/\s+/).filter((word) => word !== "");
    this.shown = Array.from({ length: this.size }, (_, row) => row);
    if (words.length > 0) {
      this.texts ??= this.shown.map((row) => this.textOfRow(row));
      this.shown = this.shown.filter((row) => words.every((word) => this.texts![row]!.includes(word)));
    }
    this.sort();
    this.active = -1;
    this.scroller.scrollTop = 0;
    this.scroller.setAttribute("aria-rowcount", String(this.shown.length + 1));
    this.count.textContent = words.length > 0
      ? `${this.shown.length.toLocaleString("en-GB")} of ${counted(this.size, "row")}` : counted(this.size, "row");
    this.body.style.height = `${this.shown.length * kRowHeight}px`;
    this.render();
  }

  private sortBy(column: number): void {
    this.isDescending = this.sortColumn === column && !this.isDescending;
    this.sortColumn = column;
    this.layOut();
    this.sort();
    this.render();
    this.header.querySelectorAll("button")[this.visibleColumns().indexOf(column)]?.focus();
  }

  private sort(): void {
    const values = this.options.data[this.sortColumn];
    if (!values) return;
    const collator = new Intl.Collator("en", { numeric: true });
    const order = (a: number, b: number) => {
      const x = values[a];
      const y = values[b];
      if (typeof x === "number" && typeof y === "number") return x - y;
      return collator.compare(String(x ?? ""), String(y ?? ""));
    };
    const sign = this.isDescending ? -1 : 1;
    this.shown.sort((a, b) => sign * order(a, b) || a - b);
  }

  /** On paper stand all rows, as wide as the paper. */
  private print(isOnPaper: boolean): void {
    this.isOnPaper = isOnPaper;
    const width = this.header.scrollWidth;
    const zoom = Math.min(1, Math.max(kPaperWidth / width, kLeastZoom));
    this.element.style.setProperty("zoom", isOnPaper ? String(zoom) : "");
    this.render();
  }

  private render(): void {
    if (this.isOnPaper) {
      this.renderRange(0, Math.min(this.shown.length, kMostPrinted));
      return;
    }
    const first = Math.max(0, Math.floor(this.scroller.scrollTop / kRowHeight) - kOverscan);
    const height = this.options.isSmall ? this.shown.length * kRowHeight : this.scroller.clientHeight;
    const last = Math.min(this.shown.length, first + Math.ceil(height / kRowHeight) + 2 * kOverscan);
    this.renderRange(first, last);
  }

  private renderRange(first: number, last: number): void {
    const columns = this.visibleColumns();
    const rows: HTMLElement[] = [];
    for (let place = first; place < last; ++place) rows.push(this.rowAt(place, columns));
    if (rows.length === 0 && this.size > 0) rows.push(this.emptyRow());
    this.body.replaceChildren(...rows);
    const active = this.active >= first && this.active < last ? `${this.id}-${this.active}` : "";
    if (active) this.scroller.setAttribute("aria-activedescendant", active);
    else this.scroller.removeAttribute("aria-activedescendant");
  }

  private emptyRow(): HTMLElement {
    return h("div", { role: "row", class: "row" }, h("div", { role: "gridcell", class: "cell" }, "No row fits."));
  }

  private rowAt(place: number, columns: number[]): HTMLElement {
    const row = this.shown[place]!;
    const isActive = place === this.active;
    const classes = ["row", isActive ? "active" : "", this.options.open ? "opens" : "",
                     this.options.rowClass?.(row) ?? ""];
    const element = h("div", {
      role: "row", class: classes.filter((name) => name !== "").join(" "), id: `${this.id}-${place}`,
      "aria-rowindex": place + 2, "aria-selected": isActive ? "true" : "false",
    }, columns.map((i) => this.cellAt(i, row)));
    element.dataset.place = String(place);
    element.style.top = `${place * kRowHeight}px`;
    return element;
  }

  private cellAt(column: number, row: number): HTMLElement {
    const text = this.textOf(column, row);
    const isNumber = this.options.columns[column]!.isNumber;
    return h("div", { role: "gridcell", class: isNumber ? "cell number" : "cell",
                      title: text.length >= kWidest - 2 ? text : null }, text);
  }

  private onClick(event: MouseEvent): void {
    const row = (event.target as Element).closest<HTMLElement>(".row[data-place]");
    if (!row) return;
    this.active = Number(row.dataset.place);
    this.render();
    this.openActive();
  }

  private openActive(): void {
    const row = this.shown[this.active];
    if (row !== undefined) this.options.open?.(row);
  }

  private onKey(event: KeyboardEvent): void {
    if (event.target !== this.scroller) return;
    const page = Math.max(1, Math.floor(this.scroller.clientHeight / kRowHeight) - 2);
    const steps: Record<string, number> = {
      ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -this.size, End: this.size,
    };
    const step = steps[event.key];
    if (event.key === "Enter") this.openActive();
    else if (step !== undefined) {
      this.active = Math.min(Math.max(this.active + step, 0), this.shown.length - 1);
      this.reveal();
      this.render();
    } else return;
    event.preventDefault();
  }

  private reveal(): void {
    if (this.active < 0) return;
    const top = this.active * kRowHeight;
    const height = this.scroller.clientHeight - this.header.clientHeight;
    if (top < this.scroller.scrollTop) this.scroller.scrollTop = top;
    if (top + kRowHeight > this.scroller.scrollTop + height) this.scroller.scrollTop = top + kRowHeight - height;
  }
}
