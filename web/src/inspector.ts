// The panel that describes one record: its state, what has been found on it, its fields, and what can be done with it.

import type { App } from "./app";
import type { ElementFacts, Finding, SwitchEvent, Thing } from "./documents";
import { fill, h, icon, power } from "./dom";
import { fieldList, rowOf } from "./fields";
import { tableRoute, thingRoute, writeRoute } from "./route";

export class Inspector {
  readonly element: HTMLElement;

  constructor(private readonly app: App, private readonly close: () => void) {
    this.element = h("aside", { class: "inspector", "aria-label": "Selected equipment", hidden: true });
  }

  hide(): void {
    this.element.hidden = true;
    this.element.replaceChildren();
  }

  /** Shows a record. `facts` are those of its elements in a diagram: one, or two for a branch with both ends there. */
  show(thing: Thing, facts: ElementFacts[]): void {
    const findings = this.app.findings.filter((each) => each.table === thing.table && each.id === thing.id);
    const kind = facts[0]?.kind ?? this.app.tableInfo(thing.table)?.title ?? thing.table;
    fill(this.element,
         h("header", {},
           h("div", {}, h("p", { class: "kind" }, kind), h("h2", {}, thing.id)),
           h("button", { type: "button", class: "tool", "aria-label": "Close", title: "Close (Esc)",
                         onclick: this.close }, icon("M5 5l10 10M15 5L5 15"))),
         facts[0] && stateChips(facts[0]),
         facts[0] && this.actions(facts[0]),
         facts.map((each) => factList(each, facts.length > 1)),
         findingList(findings),
         this.links(thing, facts.length === 0),
         this.fields(thing, facts.length === 0));
    this.element.hidden = false;
  }

  private actions(facts: ElementFacts): HTMLElement | null {
    const events = eventsFor(facts);
    if (!this.app.trial || events.length === 0) return null;
    return h("div", { class: "actions" },
             events.map((event) => h("button", { type: "button", class: "primary",
                                                 onclick: () => void this.app.trial!.add(event) }, wordsFor(event))));
  }

  private links(thing: Thing, isElsewhere: boolean): HTMLElement {
    const links: HTMLElement[] = [];
    const diagram = thing.table === "ST" ? thing.id : thing.station;
    if (isElsewhere && diagram !== "") {
      links.push(h("a", { href: thingRoute(thing) }, `In the diagram of ${diagram}`));
    }
    if (!isElsewhere) links.push(h("a", { href: tableRoute(thing.table, thing.id) }, `In table ${thing.table}`));
    return h("p", { class: "links" }, links);
  }

  /** The fields of the record, fetched when they are asked for. */
  private fields(thing: Thing, isOpen: boolean): HTMLElement | null {
    const info = this.app.tableInfo(thing.table);
    if (!info) return null;
    const content = h("div");
    const details = h("details", { class: "all-fields", open: isOpen }, h("summary", {}, "Fields"), content);
    const load = async () => {
      const table = await this.app.source.table(thing.table);
      const row = rowOf(table, thing.id);
      fill(content, row >= 0 ? fieldList(info, table, row) : h("p", {}, "The table has no such record."));
    };
    details.addEventListener("toggle", () => {
      if (details.open && !content.hasChildNodes()) load().catch((error: Error) => fill(content, error.message));
    });
    return details;
  }
}

function chip(text: string, kind: string): HTMLElement {
  return h("span", { class: `chip ${kind}` }, text);
}

function stateChips(facts: ElementFacts): HTMLElement {
  const isSwitch = facts.kind === "breaker" || facts.kind === "disconnector";
  const chips: HTMLElement[] = [];
  if (isSwitch) chips.push(chip(facts.open ? "open" : "closed", facts.open ? "open" : "closed"));
  else if (facts.open) chips.push(chip("off", "open"));
  if (facts.state) chips.push(chip(facts.state, facts.state === "live" ? "live" : "dead"));
  if (facts.reference) chips.push(chip("reference of its island", "plain"));
  if (facts.changed) chips.push(chip("changed", "changed"));
  return h("p", { class: "chips" }, chips);
}

function factList(facts: ElementFacts, namesEnd: boolean): HTMLElement {
  const list = h("dl", { class: "facts" });
  const add = (name: string, ...value: (Node | string)[]) => list.append(h("dt", {}, name), h("dd", {}, ...value));
  const section = (number: number | null | undefined) => (number === null || number === undefined ? "none" : `${number}`);
  const island = (number: number | null | undefined) =>
    number === null || number === undefined ? "none, dead" : h("a", { href: writeRoute(["state"]) }, `${number}`);
  if (namesEnd && facts.end) add("End", facts.end);
  if (facts.voltage !== undefined && facts.voltage !== null) add("Base voltage", `${facts.voltage} kV`);
  if (facts.section !== undefined) {
    const isSplit = facts.otherSection !== undefined && facts.otherSection !== facts.section;
    add("Section", isSplit ? `${section(facts.section)} | ${section(facts.otherSection)}` : section(facts.section));
    const isParted = facts.otherIsland !== undefined && facts.otherIsland !== facts.island;
    if (isParted) add("Island", island(facts.island), " | ", island(facts.otherIsland));
    else add("Island", island(facts.island));
  }
  if (facts.from && facts.to) add("Nodes", `${facts.from} – ${facts.to}`);
  else if (facts.node && facts.kind !== "node") add("Node", facts.node);
  if (facts.far) add("Leads to", facts.far);
  if (facts.breaker) add("Carried by", facts.breaker);
  if (facts.p !== undefined && !facts.open) {
    const { p, q, way } = flowOf(facts);
    add("Flow", h("strong", {}, power(p, "MW")), ` / ${power(q, "Mvar")}`);
    if (way) add("Direction", way);
  }
  return list;
}

/** The power in the direction in which it goes, and that direction in words. */
function flowOf(facts: ElementFacts): { p: number | null; q: number | null; way: string | null } {
  const p = facts.p ?? null;
  const q = facts.q ?? null;
  if (p === null || q === null) return { p, q, way: null };
  const isBack = p < 0 || (p === 0 && q < 0);
  const kind = facts.kind === "DC line" ? "line" : facts.kind;
  const between = facts.from && facts.to ? [`${facts.from} → ${facts.to}`, `${facts.to} → ${facts.from}`]
    : [`into the ${kind}`, `out of the ${kind}`];
  return { p: isBack ? -p : p, q: isBack ? -q : q, way: between[isBack ? 1 : 0]! };
}

export function findingList(findings: Finding[]): HTMLElement | null {
  if (findings.length === 0) return null;
  return h("ul", { class: "findings" }, findings.map((finding) =>
    h("li", { class: finding.severity },
      h("strong", {}, finding.severity), " ", finding.text, finding.field && ` (field ${finding.field})`,
      finding.remedy && h("p", { class: "remedy" }, finding.remedy))));
}

// What can be switched, by table.
const kWords: Record<string, [off: string, on: string]> = {
  CB: ["Open", "Close"], UN: ["Switch off", "Switch on"], LD: ["Switch off", "Switch on"],
  CP: ["Switch off", "Switch on"], LN: ["Take out", "Take in"], XF: ["Take out", "Take in"],
  DLN: ["Take out", "Take in"], ZBR: ["Take out", "Take in"],
};

/** The switchings that make sense for an element as it is now. */
export function eventsFor(facts: ElementFacts): SwitchEvent[] {
  if (!kWords[facts.table]) return [];
  return [{ table: facts.table, id: facts.id, open: !facts.open }];
}

export function wordsFor(event: SwitchEvent): string {
  const words = kWords[event.table];
  return words ? words[event.open ? 0 : 1] : event.open ? "Open" : "Close";
}
