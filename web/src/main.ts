import { App } from "./app";
import { fill, h } from "./dom";
import { EmbeddedSource } from "./sources/embedded";
import { ServerSource } from "./sources/server";

const root = document.getElementById("page")!;
const data = document.getElementById("data");
const source = data ? new EmbeddedSource(data) : new ServerSource(document.baseURI);

new App(source).start(root).catch((error: Error) => {
  fill(root, h("p", { class: "fatal", role: "alert" }, `The page can't be shown: ${error.message}`));
});
