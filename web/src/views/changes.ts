// What switching has changed, as lists of what lost and regained supply.

import type { Changes, Thing } from "../documents";
import { counted, h, power } from "../dom";
import { stationRoute, thingRoute } from "../route";

const kMostListed = 200;

export function changeList(changes: Changes): HTMLElement {
  const { islandsBefore, islandsAfter, lostLoad, becameDead, becameLive, stations } = changes;
  const islands = islandsBefore === islandsAfter ? `${islandsAfter}, as before` : `${islandsBefore} → ${islandsAfter}`;
  return h("div", { class: "changes" },
           h("dl", { class: "facts" },
             h("dt", {}, "Live islands"), h("dd", {}, islands),
             h("dt", {}, "Lost load"), h("dd", { class: lostLoad ? "bad" : "" }, power(lostLoad, "MW"))),
           things("Became dead", becameDead), things("Became live", becameLive),
           stations.length > 0 && h("details", { open: stations.length <= 8 },
             h("summary", {}, counted(stations.length, "diagram"), " changed"),
             h("ul", { class: "things" }, stations.slice(0, kMostListed).map((id) =>
               h("li", {}, h("a", { href: stationRoute(id) }, id))))));
}

function things(title: string, all: Thing[]): HTMLElement | null {
  if (all.length === 0) return null;
  return h("details", { open: all.length <= 12 },
           h("summary", {}, `${title}: ${all.length}`),
           h("ul", { class: "things" },
             all.slice(0, kMostListed).map((thing) =>
               h("li", {}, h("span", { class: "table" }, thing.table), " ",
                 h("a", { href: thingRoute(thing) }, thing.id))),
             all.length > kMostListed && h("li", {}, `and ${all.length - kMostListed} more`)));
}
