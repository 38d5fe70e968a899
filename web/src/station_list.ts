// The list of all stations beside the view; of a long one only what is in sight is an element.

import type { App } from "./app";
import { debounce, h } from "./dom";
import { stationRoute } from "./route";

const kRowHeight = 30;
const kOverscan = 10;

export class StationList {
  readonly element: HTMLElement;
  private readonly list: HTMLElement;
  private readonly scroller: HTMLElement;
  private readonly filter: HTMLInputElement;
  private ids: string[] = [];
  private shown: string[] = [];
  private current = "";

  constructor(private readonly app: App) {
    this.list = h("ul", { "aria-label": "Stations" });
    this.filter = h("input", { type: "search", placeholder: "Filter", "aria-label": "Filter stations",
                               oninput: debounce(60, () => this.apply()) });
    this.scroller = h("div", { class: "station-rows", onscroll: () => this.render() }, this.list);
    this.element = h("nav", { class: "stations", "aria-label": "Stations" },
                     h("div", { class: "stations-head" }, h("h2", {}, "Stations"), this.filter), this.scroller);
    new ResizeObserver(() => this.render()).observe(this.scroller);
  }

  async load(): Promise<void> {
    this.ids = ((await this.app.source.table("ST")).columns[0] ?? []).map(String);
    this.filter.hidden = this.ids.length < 12;
    this.apply();
  }

  /** Marks the station that is shown. */
  select(id: string): void {
    this.current = id;
    const place = this.shown.indexOf(id);
    const top = place * kRowHeight;
    const { scrollTop, clientHeight } = this.scroller;
    if (place >= 0 && (top < scrollTop || top + kRowHeight > scrollTop + clientHeight)) {
      this.scroller.scrollTop = top - clientHeight / 2;
    }
    this.render();
  }

  render(): void {
    if (this.shown.length === 0) {
      this.list.replaceChildren();
      return;
    }
    const dead = new Set(this.app.state.dead.filter((each) => each.table === "ST").map((each) => each.id));
    const marked = this.app.findingsByStation;
    const first = Math.max(0, Math.floor(this.scroller.scrollTop / kRowHeight) - kOverscan);
    const last = first + Math.ceil(this.scroller.clientHeight / kRowHeight) + 2 * kOverscan;
    this.list.replaceChildren(...this.shown.slice(first, last).map((id, i) => {
      const worst = marked.get(id);
      const item = h("li", {}, h("a", { href: stationRoute(id), "aria-current": id === this.current ? "page" : null },
                                 h("span", { class: dead.has(id) ? "dot dead" : "dot live", "aria-hidden": "true" }),
                                 h("span", { class: "name" }, id),
                                 dead.has(id) && h("span", { class: "sr-only" }, " (dead)"),
                                 worst && h("span", { class: `mark ${worst}`, title: `has a finding: ${worst}` }, "!")));
      item.style.top = `${(first + i) * kRowHeight}px`;
      return item;
    }));
  }

  private apply(): void {
    const wanted = this.filter.value.trim().toLowerCase();
    this.shown = this.ids.filter((id) => id.toLowerCase().includes(wanted));
    this.list.style.height = `${this.shown.length * kRowHeight}px`;
    this.render();
  }
}
