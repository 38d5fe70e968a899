// A picture of the program on the page: checked, then shown with zoom, pan and elements that can be chosen.

import { h, icon } from "./dom";

const kSvg = "http://www.w3.org/2000/svg";
const kElements = new Set(["svg", "g", "defs", "symbol", "use", "title", "desc", "path", "rect", "circle", "ellipse",
  "line", "polyline", "polygon", "text", "tspan", "marker", "pattern"]);
const kMostZoom = 8;
const kRoomBefore = { x: 130, y: 260 };  // what the first look leaves in front of the first bar
const kMostFirst = 1.5;
const kRoomForTools = 60;  // at the lower edge
const kDragThreshold = 4;
const kPanStep = 60;

/** Reads a picture of the program. What it never contains (scripts, listeners, links out of it) makes it refused. */
export function parsePicture(text: string): SVGSVGElement {
  const bare = text.replace(/<style>[^<]*<\/style>/, "");  // the page has the style already, for both themes
  const parsed = new DOMParser().parseFromString(bare, "image/svg+xml");
  const root = parsed.documentElement;
  if (root.namespaceURI !== kSvg || root.localName !== "svg") throw new Error("The picture can't be read.");
  for (const element of [root, ...root.querySelectorAll("*")]) checkElement(element);
  return document.importNode(root, true) as unknown as SVGSVGElement;
}

function checkElement(element: Element): void {
  if (element.namespaceURI !== kSvg || !kElements.has(element.localName)) {
    throw new Error(`The picture is refused: it contains <${element.localName}>.`);
  }
  for (const attribute of element.attributes) {
    const name = attribute.localName.toLowerCase();
    const leadsOut = name === "href" && !attribute.value.startsWith("#");
    if (name.startsWith("on") || name === "style" || leadsOut) {
      throw new Error(`The picture is refused: it contains the attribute ${name}.`);
    }
  }
}

/** A frame behind what has been chosen. */
function addHalo(group: SVGGElement): void {
  const box = group.getBBox();
  const halo = document.createElementNS(kSvg, "rect");
  const values = { class: "halo", x: box.x - 5, y: box.y - 5, width: box.width + 10, height: box.height + 10, rx: 4 };
  for (const [name, value] of Object.entries(values)) halo.setAttribute(name, String(value));
  if (box.width > 0 || box.height > 0) group.prepend(halo);
}

export interface PictureOptions {
  label: string;
  /** What is done when an element is chosen. */
  choose: (table: string, id: string) => void;
  /** The least scale of the first look: below it texts are too small to be read. Without it that shows all. */
  leastScale?: number;
  /** What that look has in its middle, where it can't show all; without it the first bar is near its left edge. */
  middle?: string;
  /** Further text beside the buttons. */
  legend?: Node;
}

interface Point {
  x: number;
  y: number;
}

export class PictureView {
  readonly element: HTMLElement;
  private readonly stage: HTMLElement;
  private svg: SVGSVGElement | null = null;
  private width = 1;
  private height = 1;
  private view = { x: 0, y: 0, scale: 1 };
  private isPlaced = false;
  private readonly pointers = new Map<number, Point>();
  private dragged = 0;
  private readonly observer: ResizeObserver;
  private isOnPaper = false;
  private readonly beginPrint = () => this.print(true);
  private readonly endPrint = () => this.print(false);

  constructor(private readonly options: PictureOptions) {
    this.stage = h("div", { class: "stage picture" });
    this.element = h("section", { class: "picture-view", "aria-label": options.label }, this.stage, this.tools());
    this.observer = new ResizeObserver(() => (this.isPlaced ? this.apply() : this.begin()));
    this.observer.observe(this.stage);
    addEventListener("beforeprint", this.beginPrint);
    addEventListener("afterprint", this.endPrint);
    this.listen();
  }

  /** Shows a picture; a second one in the same zoom, with what is chosen where it was. */
  show(text: string): void {
    const svg = parsePicture(text);
    const before = this.placeOfChosen();
    const focused = this.svg?.contains(document.activeElement) ? document.activeElement?.id : undefined;
    this.width = svg.viewBox.baseVal.width;
    this.height = svg.viewBox.baseVal.height;
    svg.removeAttribute("width");
    svg.removeAttribute("height");
    svg.setAttribute("role", "group");
    svg.setAttribute("aria-label", this.options.label);
    svg.querySelector(":scope > title")?.remove();
    this.svg = svg;
    this.nameElements(svg);
    this.stage.replaceChildren(svg);
    if (this.isPlaced) this.apply();
    else this.begin();
    if (before) this.keepPlace(before);
    if (focused) svg.querySelector<SVGGElement>(`[id="${CSS.escape(focused)}"]`)?.focus({ preventScroll: true });
  }

  /** Marks the elements of a record, and brings them into sight. Returns whether there are any. */
  select(table: string | undefined, id: string | undefined): boolean {
    const all = this.elements();
    const meant = all.filter((each) => each.dataset.table === table && each.dataset.id === id);
    this.svg?.querySelectorAll(".halo").forEach((halo) => halo.remove());
    for (const each of all) {
      const isMeant = meant.includes(each);
      each.classList.toggle("selected", isMeant);
      if (isMeant) each.setAttribute("aria-current", "true");
      else each.removeAttribute("aria-current");
    }
    const first = meant[0];
    for (const each of meant) addHalo(each);
    if (first) {
      this.makeTabStop(first);
      this.reveal(first);
    }
    return first !== undefined;
  }

  dispose(): void {
    this.observer.disconnect();
    removeEventListener("beforeprint", this.beginPrint);
    removeEventListener("afterprint", this.endPrint);
  }

  fit(): void {
    const { width, height } = this.stage.getBoundingClientRect();
    if (!this.svg || width === 0 || height === 0) return;
    const room = Math.max(height - kRoomForTools, height / 2);
    const scale = Math.min(width / this.width, room / this.height, kMostFirst);
    this.view = { scale, x: (this.width - width / scale) / 2, y: (this.height - room / scale) / 2 };
    this.isPlaced = true;
    this.apply();
  }

  /** The first look: all of the picture, or where that can't be read, the part around its first bar. */
  private begin(): void {
    this.fit();
    const scale = this.options.leastScale ?? 0;
    if (!this.svg || !this.isPlaced || this.view.scale >= scale) return;
    const stage = this.stage.getBoundingClientRect();
    const height = (stage.height - kRoomForTools) / scale;
    const wanted = this.wantedCorner(stage.width / scale, height);
    const start = (size: number, room: number, at: number) =>
      room >= size ? (size - room) / 2 : Math.min(Math.max(at, 0), size - room);
    this.view = { scale, x: start(this.width, stage.width / scale, wanted.x),
                  y: start(this.height, height, wanted.y) };
    this.apply();
    const chosen = this.svg.querySelector<SVGGElement>("g.selected");
    if (chosen) this.reveal(chosen);
  }


  /** The element that is chosen, and where it is seen. */
  private placeOfChosen(): { id: string; box: DOMRect } | null {
    const chosen = this.svg?.querySelector("g.selected");
    return chosen ? { id: chosen.id, box: chosen.getBoundingClientRect() } : null;
  }

  private keepPlace(before: { id: string; box: DOMRect }): void {
    const now = this.svg?.querySelector(`[id="${CSS.escape(before.id)}"]`)?.getBoundingClientRect();
    if (now && now.width > 0) this.pan(before.box.left + 5 - now.left, before.box.top + 5 - now.top);
  }

  private elements(): SVGGElement[] {
    return this.svg ? [...this.svg.querySelectorAll<SVGGElement>("g[data-table]")] : [];
  }

  private nameElements(svg: SVGSVGElement): void {
    let first = true;
    for (const group of svg.querySelectorAll<SVGGElement>("g[data-table]")) {
      const title = group.querySelector(":scope > title")?.textContent ?? group.dataset.id ?? "";
      if (group.childElementCount < 2) continue;  // nothing to be seen
      group.setAttribute("role", "button");
      const texts = [...group.querySelectorAll(":scope > text")];
      for (const text of texts) text.before(" ");  // or else lines would run together when they are read aloud
      const seen = texts.map((text) => text.textContent).join(" ");
      group.setAttribute("aria-label", seen === "" ? title : `${seen} – ${title}`);
      group.setAttribute("tabindex", first ? "0" : "-1");
      first = false;
    }
  }

  private tools(): HTMLElement {
    const button = (label: string, path: string, action: () => void) =>
      h("button", { type: "button", class: "tool", title: label, "aria-label": label, onclick: action }, icon(path));
    return h("div", { class: "picture-tools" },
             button("Zoom in (+)", "M10 4v12M4 10h12", () => this.zoom(1.3)),
             button("Zoom out (−)", "M4 10h12", () => this.zoom(1 / 1.3)),
             button("Show all (0)", "M4 8V4h4M12 4h4v4M16 12v4h-4M8 16H4v-4", () => this.fit()),
             this.options.legend);
  }

  /** The upper left corner of a first look with room for so much of the picture. */
  private wantedCorner(width: number, height: number): Point {
    const boxes = (selector: string) =>
      [...(this.svg?.querySelectorAll<SVGGElement>(selector) ?? [])].map((each) => each.getBBox());
    const meant = this.options.middle ? boxes(this.options.middle) : [];
    if (meant.length > 0) {
      const middle = (from: number[], to: number[]) => (Math.min(...from) + Math.max(...to)) / 2;
      return { x: middle(meant.map((box) => box.x), meant.map((box) => box.x + box.width)) - width / 2,
               y: middle(meant.map((box) => box.y), meant.map((box) => box.y + box.height)) - height / 2 };
    }
    const first = boxes("g.bus, g.switch")[0] ?? new DOMRect();
    const skip = (at: number, room: number) => (at < 2 * room ? 0 : at - room);  // little in front of it stays in sight
    return { x: skip(first.x, kRoomBefore.x), y: skip(first.y, kRoomBefore.y) };
  }

  /** On paper stands the whole picture, whatever is in sight now. */
  private print(isOnPaper: boolean): void {
    this.isOnPaper = isOnPaper;
    if (isOnPaper) this.svg?.setAttribute("viewBox", `0 0 ${this.width} ${this.height}`);
    else this.apply();
  }

  private apply(): void {
    if (this.isOnPaper) return;
    const { width, height } = this.stage.getBoundingClientRect();
    if (!this.svg || width === 0) return;
    const { x, y, scale } = this.view;
    this.svg.setAttribute("viewBox", `${x} ${y} ${width / scale} ${height / scale}`);
  }

  private zoom(factor: number, at?: Point): void {
    const box = this.stage.getBoundingClientRect();
    const point = at ?? { x: box.width / 2, y: box.height / 2 };
    const least = Math.min(box.width / this.width, box.height / this.height, 1) / 2;
    const scale = Math.min(Math.max(this.view.scale * factor, least), kMostZoom);
    this.view.x += point.x / this.view.scale - point.x / scale;
    this.view.y += point.y / this.view.scale - point.y / scale;
    this.view.scale = scale;
    this.apply();
  }

  private pan(dx: number, dy: number): void {
    this.view.x -= dx / this.view.scale;
    this.view.y -= dy / this.view.scale;
    this.apply();
  }

  private reveal(group: SVGGElement): void {
    const box = group.getBoundingClientRect();
    const stage = this.stage.getBoundingClientRect();
    const isInside = box.left >= stage.left && box.right <= stage.right && box.top >= stage.top &&
      box.bottom <= stage.bottom;
    if (isInside || box.width === 0) return;
    this.pan(stage.left + stage.width / 2 - (box.left + box.width / 2),
             stage.top + stage.height / 2 - (box.top + box.height / 2));
  }

  private listen(): void {
    const { stage } = this;
    stage.addEventListener("wheel", (event) => {
      event.preventDefault();
      this.zoom(Math.exp(-event.deltaY * (event.ctrlKey ? 0.01 : 0.0015)), this.pointOf(event));
    }, { passive: false });
    stage.addEventListener("pointerdown", (event) => {
      if (event.button !== 0) return;
      this.pointers.set(event.pointerId, this.pointOf(event));
      this.dragged = 0;
    });
    stage.addEventListener("pointermove", (event) => this.move(event));
    for (const name of ["pointerup", "pointercancel", "pointerleave"] as const) {
      stage.addEventListener(name, (event) => {
        this.pointers.delete(event.pointerId);
        stage.classList.remove("dragging");
      });
    }
    stage.addEventListener("click", (event) => {
      if (this.dragged < kDragThreshold) this.choose(event.target as Element);
    });
    stage.addEventListener("keydown", (event) => this.onKey(event));
  }

  private pointOf(event: MouseEvent): Point {
    const box = this.stage.getBoundingClientRect();
    return { x: event.clientX - box.left, y: event.clientY - box.top };
  }

  private move(event: PointerEvent): void {
    const before = this.pointers.get(event.pointerId);
    if (!before) return;
    const now = this.pointOf(event);
    const other = [...this.pointers].find(([id]) => id !== event.pointerId)?.[1];
    this.pointers.set(event.pointerId, now);
    this.dragged += Math.hypot(now.x - before.x, now.y - before.y);
    if (this.dragged < kDragThreshold) return;
    this.stage.classList.add("dragging");
    if (other) {
      const distance = (point: Point) => Math.hypot(point.x - other.x, point.y - other.y);
      this.zoom(distance(now) / Math.max(distance(before), 1), { x: (now.x + other.x) / 2, y: (now.y + other.y) / 2 });
    } else {
      this.pan(now.x - before.x, now.y - before.y);
    }
  }

  private choose(target: Element): void {
    const group = target.closest<SVGGElement>("g[data-table]");
    if (!group) return;
    this.makeTabStop(group);
    group.focus({ preventScroll: true });
    this.options.choose(group.dataset.table ?? "", group.dataset.id ?? "");
  }

  private makeTabStop(group: SVGGElement): void {
    this.svg?.querySelector('g[tabindex="0"]')?.setAttribute("tabindex", "-1");
    group.setAttribute("tabindex", "0");
  }

  /** Arrows go from element to element; with Shift they move the picture. */
  private onKey(event: KeyboardEvent): void {
    const arrows: Record<string, Point> = {
      ArrowLeft: { x: -1, y: 0 }, ArrowRight: { x: 1, y: 0 }, ArrowUp: { x: 0, y: -1 }, ArrowDown: { x: 0, y: 1 },
    };
    const way = arrows[event.key];
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    if (way && event.shiftKey) this.pan(-way.x * kPanStep, -way.y * kPanStep);
    else if (way) this.focusNext(way);
    else if (event.key === "+" || event.key === "=") this.zoom(1.3);
    else if (event.key === "-") this.zoom(1 / 1.3);
    else if (event.key === "0") this.fit();
    else if (event.key === "Enter" || event.key === " ") this.choose(event.target as Element);
    else return;
    event.preventDefault();
  }

  /** Moves the focus to the nearest element that lies in this direction. */
  private focusNext(way: Point): void {
    const active = document.activeElement;
    if (!active || !this.stage.contains(active)) return;
    const middle = (element: Element) => {
      const box = element.getBoundingClientRect();
      return { x: box.left + box.width / 2, y: box.top + box.height / 2 };
    };
    const from = middle(active);
    let best: SVGGElement | null = null;
    let least = Infinity;
    for (const each of this.elements()) {
      if (each === active || !each.hasAttribute("tabindex")) continue;
      const to = middle(each);
      const along = (to.x - from.x) * way.x + (to.y - from.y) * way.y;
      const across = Math.abs((to.x - from.x) * way.y) + Math.abs((to.y - from.y) * way.x);
      const cost = along + 2.5 * across;
      if (along > 1 && cost < least) [best, least] = [each, cost];
    }
    if (!best) return;
    this.makeTabStop(best);
    best.focus({ preventScroll: true });
    this.reveal(best);
  }
}
