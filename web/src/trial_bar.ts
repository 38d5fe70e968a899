// The bar that shows what is tried out: the switchings, what they change, and the way back.

import { counted, fill, h, power } from "./dom";
import type { SwitchEvent } from "./documents";
import { wordsFor } from "./inspector";
import type { Session } from "./sources/source";
import type { Trial } from "./trial";
import { changeList } from "./views/changes";

export class TrialBar {
  readonly element: HTMLElement;

  constructor(private readonly trial: Trial, private readonly session: Session) {
    this.element = h("section", { class: "trial", "aria-label": "What is tried out", hidden: true });
  }

  render(): void {
    const { trial } = this;
    this.element.hidden = !trial.isActive;
    if (!trial.isActive || !trial.answer) return;
    const { changes } = trial.answer;
    const button = (text: string, action: () => void) => h("button", { type: "button", onclick: action }, text);
    const wasOpen = this.element.querySelector("details")?.open ?? false;
    fill(this.element,
         h("div", { class: "trial-line" },
           h("strong", {}, "Trying out"),
           h("ol", { class: "events" }, trial.events.map((event, i) => eventItem(event, trial.answer!.events[i]?.text))),
           h("span", { class: "summary", role: "status" }, summaryOf(changes)),
           h("div", { class: "trial-tools" }, button("Undo", () => void trial.undo()),
             button("Clear", () => void trial.clear()),
             h("a", { class: "button", href: this.session.scriptAddress(), download: "what-if.txt" }, "Save as script"))),
         h("details", { open: wasOpen }, h("summary", {}, "Differences"), changeList(changes)));
  }
}

function eventItem(event: SwitchEvent, text: string | undefined): HTMLElement {
  return h("li", { title: text }, `${wordsFor(event)} ${event.table} ${event.id}`);
}

function summaryOf(changes: { becameDead: unknown[]; becameLive: unknown[]; lostLoad: number | null;
                              islandsBefore: number; islandsAfter: number }): string {
  const parts: string[] = [];
  if (changes.islandsBefore !== changes.islandsAfter) {
    parts.push(`${changes.islandsBefore} → ${counted(changes.islandsAfter, "island")}`);
  }
  if (changes.becameDead.length > 0) parts.push(`${changes.becameDead.length} became dead`);
  if (changes.becameLive.length > 0) parts.push(`${changes.becameLive.length} became live`);
  if (changes.lostLoad) parts.push(`${power(changes.lostLoad, "MW")} of load lost`);
  return parts.length > 0 ? parts.join(", ") : "supply as before";
}
