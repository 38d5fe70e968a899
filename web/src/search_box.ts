// The search for equipment by its identity: a field with a list of matches below it.

import type { App } from "./app";
import type { Thing } from "./documents";
import { debounce, fill, h } from "./dom";
import { thingRoute } from "./route";

export class SearchBox {
  readonly element: HTMLElement;
  readonly input: HTMLInputElement;
  private readonly list = h("ul", { class: "matches", role: "listbox", id: "matches", "aria-label": "Matches",
                                    hidden: true });
  private matches: Thing[] = [];
  private active = -1;
  private asked = 0;

  constructor(private readonly app: App) {
    this.input = h("input", {
      type: "search", role: "combobox", placeholder: "Search equipment  ( / )", "aria-label": "Search equipment",
      "aria-controls": "matches", "aria-expanded": "false", "aria-autocomplete": "list", autocomplete: "off",
      spellcheck: "false", oninput: debounce(100, () => void this.ask()),
      onkeydown: (event: KeyboardEvent) => this.onKey(event), onblur: () => setTimeout(() => this.hide(), 150),
      onfocus: () => void this.ask(),
    });
    this.element = h("div", { class: "search" }, this.input, this.list);
  }

  private async ask(): Promise<void> {
    const number = ++this.asked;
    const text = this.input.value;
    const matches = text.trim() === "" ? [] : await this.app.source.search(text);
    if (number !== this.asked) return;  // a later question has been asked
    this.matches = matches;
    this.active = matches.length > 0 ? 0 : -1;
    this.render(text);
  }

  private render(text: string): void {
    this.list.hidden = text.trim() === "";
    this.input.setAttribute("aria-expanded", String(!this.list.hidden));
    if (this.matches.length === 0) {
      fill(this.list, h("li", { class: "none", role: "option", "aria-selected": "false" }, "Nothing is called so."));
    } else {
      fill(this.list, this.matches.map((thing, i) =>
        h("li", { role: "option", id: `match-${i}`, "aria-selected": String(i === this.active),
                  onmousedown: (event: MouseEvent) => { event.preventDefault(); this.open(i); } },
          h("span", { class: "table" }, thing.table), h("span", { class: "id" }, thing.id),
          thing.station !== thing.id && h("span", { class: "station" }, thing.station))));
    }
    this.mark();
  }

  private mark(): void {
    this.list.querySelectorAll("[id]").forEach((option, i) =>
      option.setAttribute("aria-selected", String(i === this.active)));
    if (this.active >= 0 && !this.list.hidden) {
      this.input.setAttribute("aria-activedescendant", `match-${this.active}`);
      this.list.children[this.active]?.scrollIntoView({ block: "nearest" });
    } else {
      this.input.removeAttribute("aria-activedescendant");
    }
  }

  private onKey(event: KeyboardEvent): void {
    const last = this.matches.length - 1;
    if (event.key === "ArrowDown") this.active = Math.min(this.active + 1, last);
    else if (event.key === "ArrowUp") this.active = Math.max(this.active - 1, 0);
    else if (event.key === "Enter") this.open(this.active);
    else if (event.key === "Escape") {
      this.input.value = "";
      this.hide();
    } else return;
    event.preventDefault();
    this.mark();
  }

  private open(place: number): void {
    const thing = this.matches[place];
    if (!thing) return;
    location.hash = thingRoute(thing);
    this.input.value = "";
    this.hide();
    this.input.blur();
  }

  private hide(): void {
    ++this.asked;
    this.list.hidden = true;
    this.input.setAttribute("aria-expanded", "false");
    this.input.removeAttribute("aria-activedescendant");
  }
}
