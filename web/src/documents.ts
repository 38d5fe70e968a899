// The documents that the program hands over; docs/page.md describes them.

/** A record by its table and identity, with the station that it is in. */
export interface Thing {
  table: string;
  id: string;
  station: string;
}

export interface Field {
  name: string;
  type: string;
  unit: string;
  meaning: string;
  writers: string;
  refers?: string;
}

export interface TableInfo {
  name: string;
  title: string;
  rows: number;
  fields: Field[];
}

export interface ModelDocument {
  format: number;
  program: string;
  name: string;
  source: string;
  live: boolean;
  version: number;
  summary: Record<string, number>;
  tables: TableInfo[];
}

export type Value = string | number | null;

export interface TableDocument {
  version: number;
  name: string;
  columns: Value[][];
}

export interface Island {
  number: number;
  live: boolean;
  reference: string;
  stations: number;
  sections: number;
  nodes: number;
  buses: number;
  units: number;
  loads: number;
  generation: number | null;
  load: number | null;
}

export interface DeadThing extends Thing {
  state: string;
}

export interface UnbalancedSet {
  level: string;
  station: string;
  state: string;
  p: number | null;
  q: number | null;
  nodes: number;
  breakers: string[];
}

export interface StateDocument {
  version: number;
  verdict: "good" | "faulty";
  topology: boolean;
  errors: number;
  warnings: number;
  islands: Island[];
  dead: DeadThing[];
  unbalanced: UnbalancedSet[];
}

export interface Finding extends Thing {
  code: string;
  severity: "error" | "warning";
  field: string;
  text: string;
  remedy: string;
}

/** Whether a mark on `some` of `all` still shows anything: one on nearly everything doesn't. */
export function isException(some: number, all: number): boolean { return some * 4 <= all; }

export interface GridDocument {
  version: number;
  svg: string;
}

/** What is known of one element of a station's diagram. */
export interface ElementFacts {
  table: string;
  id: string;
  kind?: string;
  open?: boolean;
  state?: string;
  node?: string;
  section?: number | null;
  island?: number | null;
  from?: string;
  to?: string;
  otherSection?: number | null;
  otherIsland?: number | null;
  p?: number | null;
  q?: number | null;
  far?: string;
  end?: "from" | "to";
  reference?: boolean;
  breaker?: string;
  voltage?: number | null;
  findings: number[];
  changed?: boolean;
}

export interface StationDocument {
  version: number;
  id: string;
  svg: string;
  elements: Record<string, ElementFacts>;
}

/** A switching: a breaker or a piece of equipment opens or closes; of a branch also one end alone. */
export interface SwitchEvent {
  table: string;
  id: string;
  open: boolean;
  end?: "from" | "to";
}

export interface SwitchResult extends SwitchEvent {
  applied: boolean;
  text: string;
}

export interface Changes {
  becameDead: Thing[];
  becameLive: Thing[];
  islandsBefore: number;
  islandsAfter: number;
  lostLoad: number | null;
  stations: string[];
}

export interface WhatIfAnswer {
  version: number;
  events: SwitchResult[];
  changes: Changes;
}

/** One run of a switching report. */
export interface Run {
  title: string;
  events: { text: string; effect: string }[];
  changes: Changes;
  before: { state: StateDocument; grid: GridDocument };
  after: { state: StateDocument; grid: GridDocument };
  stations: Record<string, { before: string; after: string }>;
}
