// Elements made in code. All text goes in as text nodes, so nothing in a model is ever read as HTML.

export type Child = Node | string | number | null | undefined | false | Child[];

export interface Properties {
  [name: string]: string | number | boolean | null | undefined | ((event: never) => void);
}

/** An element with attributes, listeners (`onclick` and so on) and children. */
export function h<K extends keyof HTMLElementTagNameMap>(tag: K, properties: Properties = {},
                                                         ...children: Child[]): HTMLElementTagNameMap[K] {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (typeof value === "function") {
      element.addEventListener(name.slice(2), value as unknown as EventListener);
    } else if (value === true) {
      element.setAttribute(name, "");
    } else if (value !== false && value !== null && value !== undefined) {
      element.setAttribute(name, String(value));
    }
  }
  append(element, children);
  return element;
}

function append(element: HTMLElement, children: Child[]): void {
  for (const child of children) {
    if (Array.isArray(child)) append(element, child);
    else if (child instanceof Node) element.append(child);
    else if (child !== null && child !== undefined && child !== false) element.append(visible(String(child)));
  }
}

// Control characters but the line feed, separators of lines and paragraphs, and what sets the direction of text.
const kUnseen = /[\u0000-\u0009\u000B-\u001F\u007F-\u009F\u061C\u200E\u200F\u2028-\u202E\u2066-\u2069]/g;

/** A text as it is shown: what can't be seen, or would turn the text around it, stands there as "\u202E". */
export function visible(text: string): string {
  return text.replace(kUnseen, (c) => `\\u${c.charCodeAt(0).toString(16).toUpperCase().padStart(4, "0")}`);
}

/** Replaces what is in `element`. */
export function fill(element: HTMLElement, ...children: Child[]): void {
  element.replaceChildren();
  append(element, children);
}

/** One of the page's own icons, by the path of its strokes in a box of 20 by 20. */
export function icon(path: string): SVGElement {
  const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
  svg.setAttribute("viewBox", "0 0 20 20");
  svg.setAttribute("class", "icon");
  svg.setAttribute("aria-hidden", "true");
  const stroke = document.createElementNS("http://www.w3.org/2000/svg", "path");
  stroke.setAttribute("d", path);
  svg.append(stroke);
  return svg;
}

/** Waits until `pause` milliseconds have passed without another call. */
export function debounce(pause: number, action: () => void): () => void {
  let timer = 0;
  return () => {
    clearTimeout(timer);
    timer = setTimeout(action, pause);
  };
}

/** The text of a power, such as "12.5 MW"; a dash where it isn't known. */
export function power(value: number | null | undefined, unit: string): string {
  if (value === null || value === undefined) return "–";
  return `${number(value, 2)} ${unit}`;
}

/** A number with at most `digits` decimals and groups of thousands. */
export function number(value: number, digits = 0): string {
  return value.toLocaleString("en-GB", { maximumFractionDigits: digits }).replace("-", "−");
}

/** "1 station", "2 stations"; `many` where the plural isn't made by an s. */
export function counted(count: number, one: string, many = `${one}s`): string {
  return `${number(count)} ${count === 1 ? one : many}`;
}
