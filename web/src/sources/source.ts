// Where documents come from: the page itself, or the program that serves it.

import type {
  Changes, Finding, GridDocument, ModelDocument, Run, StateDocument, StationDocument, SwitchEvent, TableDocument, Thing,
  WhatIfAnswer,
} from "../documents";

export interface Source {
  model(): Promise<ModelDocument>;
  table(name: string): Promise<TableDocument>;
  state(): Promise<StateDocument>;
  findings(): Promise<Finding[]>;
  grid(): Promise<GridDocument>;
  station(id: string): Promise<StationDocument>;
  search(text: string): Promise<Thing[]>;
  /** The runs of a switching report; none elsewhere. */
  runs(): Promise<Run[]>;
  /** What only a serving program can do; null in a report. */
  readonly session: Session | null;
}

export interface Commit {
  version: number;
  time: string;
  count: number;
  changes: { table: string; id: string; text: string }[];
  stations: string[];
}

export interface Banner {
  kind: "vanished" | "columns" | "replaced" | "back";
  text: string;
}

/** What a serving program sends by itself. */
export interface Listener {
  commit(commit: Commit): void;
  banner(banner: Banner): void;
  connected(isConnected: boolean): void;
}

/** Trying switchings out, and hearing of commits. */
export interface Session {
  listen(listener: Listener): void;
  /** Tries out exactly these events in this viewer's copy; none drop the copy. */
  tryOut(events: SwitchEvent[]): Promise<WhatIfAnswer>;
  /** The address of the events as a script. */
  scriptAddress(): string;
}

export const kNoChanges: Changes = {
  becameDead: [], becameLive: [], islandsBefore: 0, islandsAfter: 0, lostLoad: 0, stations: [],
};
