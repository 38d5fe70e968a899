// Documents from the program that serves the page.

import type {
  Finding, GridDocument, ModelDocument, StateDocument, StationDocument, SwitchEvent, TableDocument, Thing, WhatIfAnswer,
} from "../documents";
import type { Banner, Commit, Listener, Session, Source } from "./source";

/** A name for this viewer's copy: 24 letters and digits. */
function makeViewer(): string {
  const letters = "abcdefghijklmnopqrstuvwxyz0123456789";
  const random = crypto.getRandomValues(new Uint8Array(24));
  return Array.from(random, (byte) => letters[byte % letters.length]).join("");
}

export class ServerSource implements Source, Session {
  readonly session = this;
  private readonly base: URL;
  private readonly viewer = makeViewer();
  private version = 0;
  private hasCopy = false;

  /** `page` is the address of the page. */
  constructor(page: string) {
    this.base = new URL("api/", page);
  }

  model() { return this.get<ModelDocument>("model").then((model) => this.note(model)); }
  findings() { return this.get<Finding[]>("findings"); }
  table(name: string) { return this.ofCopy<TableDocument>("table", { name }); }
  state() { return this.ofCopy<StateDocument>("state").then((state) => this.note(state)); }
  grid() { return this.ofCopy<GridDocument>("grid"); }
  station(id: string) { return this.ofCopy<StationDocument>("station", { id }); }
  async search(text: string) { return (await this.ofCopy<{ matches: Thing[] }>("search", { q: text })).matches; }
  async runs() { return []; }

  listen(listener: Listener): void {
    const stream = new EventSource(this.address("events"));
    const on = <T>(name: string, handle: (data: T) => void) =>
      stream.addEventListener(name, (event) => handle(JSON.parse((event as MessageEvent<string>).data) as T));
    on<{ version: number }>("hello", (hello) => {
      this.note(hello);
      listener.connected(true);
    });
    on<Commit>("commit", (commit) => listener.commit(this.note(commit)));
    on<Banner>("banner", (banner) => listener.banner(banner));
    stream.addEventListener("open", () => listener.connected(true));
    stream.addEventListener("error", () => listener.connected(false));
  }

  async tryOut(events: SwitchEvent[]): Promise<WhatIfAnswer> {
    const response = await fetch(this.address("whatif"), {
      method: "POST",
      headers: { "Content-Type": "application/json" },
      body: JSON.stringify({ viewer: this.viewer, version: this.version, events }),
    });
    const answer = await ServerSource.read<WhatIfAnswer>(response);
    this.hasCopy = events.length > 0;
    return answer;
  }

  scriptAddress(): string { return this.address("script", { viewer: this.viewer }); }

  private note<T extends { version: number }>(document: T): T {
    this.version = Math.max(this.version, document.version);
    return document;
  }

  private ofCopy<T>(name: string, values: Record<string, string> = {}): Promise<T> {
    return this.get<T>(name, this.hasCopy ? { ...values, viewer: this.viewer } : values);
  }

  private address(name: string, values: Record<string, string> = {}): string {
    const url = new URL(name, this.base);
    for (const [key, value] of Object.entries(values)) url.searchParams.set(key, value);
    return url.href;
  }

  private async get<T>(name: string, values: Record<string, string> = {}): Promise<T> {
    return ServerSource.read<T>(await fetch(this.address(name, values)));
  }

  private static async read<T>(response: Response): Promise<T> {
    if (response.ok) return (await response.json()) as T;
    const text = await response.text();
    let message = `The program answers ${response.status}.`;
    try {
      message = (JSON.parse(text) as { error?: string }).error ?? message;
    } catch {
      // no JSON: the status has to do
    }
    throw new Error(message);
  }
}
