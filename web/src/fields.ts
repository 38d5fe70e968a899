// The fields of a record as a list, with links to the records that it names.

import type { TableDocument, TableInfo, Value } from "./documents";
import { h } from "./dom";
import { tableRoute } from "./route";

/** The row of a record in its table, -1 when it isn't there. */
export function rowOf(table: TableDocument, id: string): number {
  return (table.columns[0] ?? []).findIndex((value) => String(value) === id);
}

/** A value that every record has at first: nothing is lost by leaving it out. */
export function isEmptyValue(value: Value | undefined): boolean {
  return value === null || value === undefined || value === "" || value === 0 || value === -1;
}

/** The fields of a record that hold something. */
export function fieldList(info: TableInfo, table: TableDocument, row: number): HTMLElement {
  const list = h("dl", { class: "fields" });
  info.fields.forEach((field, i) => {
    const value = table.columns[i]?.[row];
    if (isEmptyValue(value)) return;
    const text = `${value}${field.unit ? ` ${field.unit}` : ""}`;
    const isLink = field.refers !== undefined && field.type === "text";
    list.append(h("dt", { title: field.meaning }, field.name),
                h("dd", {}, isLink ? h("a", { href: tableRoute(field.refers!, String(value)) }, text) : text));
  });
  return list;
}
