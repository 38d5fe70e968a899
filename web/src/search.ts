// Finding records by parts of their identity, as the serving program does.

import type { Thing } from "./documents";

const kMost = 50;

/** The number of characters to insert, delete or replace that turn `a` into `b`; `limit` + 1 for anything above. */
export function editDistance(a: string, b: string, limit: number): number {
  if (Math.abs(a.length - b.length) > limit) return limit + 1;
  let last = Array.from({ length: b.length + 1 }, (_, i) => i);
  for (let i = 1; i <= a.length; ++i) {
    const row = [i];
    for (let j = 1; j <= b.length; ++j) {
      const replaced = last[j - 1]! + (a[i - 1] === b[j - 1] ? 0 : 1);
      row.push(Math.min(replaced, last[j]! + 1, row[j - 1]! + 1));
    }
    if (Math.min(...row) > limit) return limit + 1;
    last = row;
  }
  return Math.min(last[b.length]!, limit + 1);
}

/**
 * Records that are called so, then those whose identity begins with `text`, then those that contain it; where there are
 * none, those near to it.
 */
export function findLike(all: Thing[], text: string): Thing[] {
  const wanted = text.trim().toLowerCase();
  if (wanted === "") return [];
  const same: Thing[] = [];
  const begins: Thing[] = [];
  const contains: Thing[] = [];
  for (const thing of all) {
    const id = thing.id.toLowerCase();
    const place = id.indexOf(wanted);
    if (id === wanted) same.push(thing);
    else if (place === 0 && begins.length < kMost) begins.push(thing);
    else if (place > 0 && contains.length < kMost) contains.push(thing);
  }
  const found = [...same, ...begins, ...contains].slice(0, kMost);
  return found.length > 0 ? found : nearTo(all, wanted);
}

function nearTo(all: Thing[], wanted: string): Thing[] {
  const limit = Math.max(1, Math.floor((wanted.length + 1) / 3));
  const near: { distance: number; thing: Thing }[] = [];
  for (const thing of all) {
    const distance = editDistance(wanted, thing.id.toLowerCase(), limit);
    if (distance <= limit) near.push({ distance, thing });
  }
  near.sort((a, b) => a.distance - b.distance);
  return near.slice(0, 3).map((each) => each.thing);
}
