// Where in the page the viewer is, as it stands behind '#' in the address: the view and its arguments.

import type { Thing } from "./documents";

export type Route = string[];

export function readRoute(hash: string): Route {
  const parts = hash.replace(/^#/, "").split("/").map((part) => {
    try {
      return decodeURIComponent(part);
    } catch {
      return part;  // no encoding of ours
    }
  });
  return parts[0] === "" ? ["grid"] : parts;
}

export function writeRoute(route: Route): string {
  return "#" + route.map(encodeURIComponent).join("/");
}

export function stationRoute(id: string): string { return writeRoute(["station", id]); }

export function tableRoute(table: string, id?: string): string {
  return writeRoute(id === undefined ? ["table", table] : ["table", table, id]);
}

// What has an element of its own in a station's diagram.
const kDrawn = new Set(["KV", "ND", "BUS", "CB", "LN", "DLN", "XF", "UN", "LD", "CP", "ZBR"]);

/** The place where a record is shown: in its station's diagram, or else in its table. */
export function thingRoute(thing: Thing): string {
  if (thing.table === "ST") return stationRoute(thing.id);
  if (thing.station !== "" && kDrawn.has(thing.table)) {
    return writeRoute(["station", thing.station, thing.table, thing.id]);
  }
  return tableRoute(thing.table, thing.id);
}
