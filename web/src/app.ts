// The page as a whole: its head, its navigation, the view in the middle and the panel beside it.

import { isException, type Finding, type ModelDocument, type Run, type StateDocument, type TableInfo } from "./documents";
import { fill, h, icon, number, visible } from "./dom";
import { Inspector } from "./inspector";
import { readRoute, writeRoute, type Route } from "./route";
import { SearchBox } from "./search_box";
import type { Banner, Commit, Source } from "./sources/source";
import { StationList } from "./station_list";
import { applyTheme, currentTheme, followSystem, nextTheme, type Theme } from "./theme";
import { Trial } from "./trial";
import { TrialBar } from "./trial_bar";
import { FindingsView } from "./views/findings";
import { GridView } from "./views/grid";
import { LogView } from "./views/log";
import { RunsView } from "./views/runs";
import { StateView } from "./views/state";
import { StationView } from "./views/station";
import { TablesView } from "./views/tables";
import type { View } from "./views/view";

const kMostLogged = 500;

export class App {
  model!: ModelDocument;
  state!: StateDocument;
  findings: Finding[] = [];
  findingsByStation = new Map<string, "error" | "warning">();
  runs: Run[] = [];
  log: Commit[] = [];
  trial: Trial | null = null;
  readonly inspector: Inspector;

  private view: View | null = null;
  private viewName = "";
  private theme: Theme = currentTheme();
  private trialBar: TrialBar | null = null;
  private readonly stations: StationList;
  private readonly search: SearchBox;
  private readonly place = h("main", { id: "view", tabindex: -1 });
  private readonly tabs = h("nav", { class: "tabs", "aria-label": "Views" });
  private readonly side = h("div", { class: "side" });
  private readonly banner = h("div", { class: "banner", role: "status", hidden: true });
  private readonly message = h("div", { class: "message", role: "alert", hidden: true });
  private readonly status = h("span", { class: "live-status", hidden: true });

  constructor(readonly source: Source) {
    this.inspector = new Inspector(this, () => this.closeInspector());
    this.stations = new StationList(this);
    this.search = new SearchBox(this);
    fill(this.side, this.tabs, this.stations.element);
  }

  /** Fetches what the page needs at once, and shows it. */
  async start(root: HTMLElement): Promise<void> {
    [this.model, this.state, this.findings, this.runs] = await Promise.all([
      this.source.model(), this.source.state(), this.source.findings(), this.source.runs()]);
    this.noteFindings();
    if (this.source.session) this.beginSession();
    applyTheme(this.theme);
    followSystem(() => this.theme);
    document.title = visible(this.model.name);
    fill(root, h("a", { class: "skip", href: "#view", onclick: (event: Event) => {
      event.preventDefault();
      this.place.focus();
    } }, "Skip to the view"), this.head(), this.banner, this.message, this.trialBar?.element,
         h("div", { class: "frame" }, this.side, this.place,
           this.inspector.element));
    addEventListener("hashchange", () => this.route());
    addEventListener("keydown", (event) => this.onKey(event));
    if (this.runs.length > 0 && location.hash === "") location.hash = writeRoute(["runs"]);
    await this.stations.load();
    this.route();
  }

  /** Notes which stations are marked for their findings. */
  private noteFindings(): void {
    for (const finding of this.findings) {
      if (finding.station === "" || this.findingsByStation.get(finding.station) === "error") continue;
      this.findingsByStation.set(finding.station, finding.severity);
    }
    if (isException(this.findingsByStation.size, this.model.summary.stations ?? 0)) return;
    for (const [station, worst] of this.findingsByStation) {
      if (worst !== "error") this.findingsByStation.delete(station);
    }
  }

  tableInfo(name: string): TableInfo | undefined {
    return this.model.tables.find((table) => table.name === name);
  }

  /** Finds the station of a record, and goes to the address that `place` gives for it, if any. */
  async openRecord(table: string, id: string, place: (station: string) => string | null): Promise<void> {
    const matches = await this.source.search(id);
    const found = matches.find((each) => each.table === table && each.id === id);
    const address = place(found?.station ?? "");
    if (address !== null) location.hash = address;
  }

  /** A line that something went wrong, until the next view. */
  complain(text: string): void {
    this.message.textContent = text;
    this.message.hidden = text === "";
  }

  private head(): HTMLElement {
    const { verdict, errors, warnings } = this.state;
    const text = verdict === "good"
      ? warnings > 0 ? `good, ${number(warnings)} warning${warnings === 1 ? "" : "s"}` : "good"
      : `${number(errors)} error${errors === 1 ? "" : "s"}`;
    const theme = h("button", { type: "button", class: "tool", onclick: () => {
      this.theme = nextTheme(this.theme);
      applyTheme(this.theme);
      label();
    } }, icon("M10 3a7 7 0 1 0 0 14zM10 3a7 7 0 0 1 0 14"));
    const label = () => {
      theme.title = `Theme: ${this.theme}`;
      theme.setAttribute("aria-label", `Theme: ${this.theme}`);
    };
    label();
    return h("header", { class: "head" },
             h("div", { class: "name" }, h("h1", { title: this.model.source }, this.model.name),
               h("a", { class: `chip ${verdict}`, href: writeRoute(["findings"]) }, text), this.status),
             this.search.element,
             h("div", { class: "head-tools" }, theme,
               h("button", { type: "button", class: "tool", title: "Print", "aria-label": "Print",
                             onclick: () => print() }, icon("M6 8V3h8v5M6 14H3V8h14v6h-3M6 12h8v5H6z"))));
  }

  private renderTabs(): void {
    const tab = (name: string, title: string, address: Route, count?: number) =>
      h("a", { href: writeRoute(address), "aria-current": this.viewName === name ? "page" : null }, title,
        count !== undefined && count > 0 && h("span", { class: "badge" }, number(count)));
    const stations = h("button", { type: "button", class: "stations-button", "aria-expanded": "false",
                                   onclick: () => this.toggleStations() }, "Stations");
    fill(this.tabs, stations, this.runs.length > 0 && tab("runs", "Runs", ["runs"], this.runs.length), tab("grid", "Grid", ["grid"]),
         tab("table", "Tables", ["table", "ST"]), tab("findings", "Findings", ["findings"], this.findings.length),
         tab("state", "Islands", ["state"], this.state.islands.length),
         this.model.live && tab("log", "Log", ["log"], this.log.length));
  }

  /** On a narrow screen the list of stations lies over the view, when it is asked for. */
  private toggleStations(isOpen = !this.side.classList.contains("stations-open")): void {
    this.side.classList.toggle("stations-open", isOpen);
    this.tabs.querySelector(".stations-button")?.setAttribute("aria-expanded", String(isOpen));
  }

  private route(): void {
    const [name = "grid", ...args] = readRoute(location.hash);
    this.complain("");
    this.toggleStations(false);
    if (name !== this.viewName || !this.view?.go(args)) {
      this.view?.dispose?.();
      this.inspector.hide();
      this.view = this.makeView(name, args);
      this.viewName = name;
      fill(this.place, this.view.element);
    }
    document.title = visible(`${this.view!.title} – ${this.model.name}`);
    this.place.setAttribute("aria-label", this.view!.title);
    this.renderTabs();
    this.stations.select(name === "station" ? (args[0] ?? "") : "");
  }

  private makeView(name: string, args: string[]): View {
    switch (name) {
      case "station": return new StationView(this, args[0] ?? "", args.slice(1));
      case "table": return new TablesView(this, args[0] ?? "ST", args[1]);
      case "findings": return new FindingsView(this);
      case "state": return new StateView(this);
      case "runs": return new RunsView(this, args);
      case "log": return new LogView(this);
      default: return new GridView(this);
    }
  }

  private closeInspector(): void {
    const [name = "", first] = readRoute(location.hash);
    location.hash = writeRoute(first === undefined ? [name] : [name, first]);
  }

  private onKey(event: KeyboardEvent): void {
    const isTyping = (event.target as Element).matches("input, select, textarea");
    if (event.key === "/" && !isTyping) {
      event.preventDefault();
      this.search.input.focus();
    }
    if (event.key === "Escape" && !isTyping && !this.inspector.element.hidden) this.closeInspector();
  }

  private beginSession(): void {
    const session = this.source.session!;
    this.trial = new Trial(session, () => void this.onTrial(), (text) => this.complain(text));
    this.trialBar = new TrialBar(this.trial, session);
    session.listen({
      commit: (commit) => void this.onCommit(commit),
      banner: (banner) => this.onBanner(banner),
      connected: (isConnected) => this.onConnection(isConnected),
    });
  }

  private async onTrial(): Promise<void> {
    this.trialBar?.render();
    await this.reload(null);
  }

  private async onCommit(commit: Commit): Promise<void> {
    this.log.unshift(commit);
    this.log.length = Math.min(this.log.length, kMostLogged);
    if (this.trial?.isActive) {
      this.renderTabs();
      this.view?.refresh?.([]);
      return;  // the copy stays what it was made of
    }
    await this.reload(commit.stations);
  }

  /** Fetches the state, and lets the view fetch what it shows. */
  private async reload(stations: string[] | null): Promise<void> {
    try {
      this.state = await this.source.state();
    } catch (error) {
      this.complain((error as Error).message);
      return;
    }
    this.stations.render();
    this.renderTabs();
    this.view?.refresh?.(stations);
  }

  private onBanner(banner: Banner): void {
    const isBack = banner.kind === "back";
    const again = banner.kind === "replaced" &&
      h("button", { type: "button", onclick: () => location.reload() }, "Load anew");
    fill(this.banner, isBack ? "" : banner.text, again);
    this.banner.hidden = isBack;
    if (isBack) void this.reload(null);
  }

  private onConnection(isConnected: boolean): void {
    const wasLost = this.status.classList.contains("off");
    this.status.hidden = false;
    this.status.className = isConnected ? "live-status on" : "live-status off";
    this.status.textContent = isConnected ? (this.model.live ? "live" : "served") : "no connection";
    if (isConnected && wasLost) void this.reload(null);  // what was committed meanwhile
  }
}
