// Light or dark: as the system has it, or as the viewer chose.

const kKey = "dtsdb-theme";
const kThemes = ["auto", "light", "dark"] as const;
export type Theme = (typeof kThemes)[number];

const system = matchMedia("(prefers-color-scheme: dark)");

export function currentTheme(): Theme {
  try {
    const stored = localStorage.getItem(kKey);
    return kThemes.find((theme) => theme === stored) ?? "auto";
  } catch {
    return "auto";  // a page from a file may have no storage
  }
}

export function applyTheme(theme: Theme): void {
  const isDark = theme === "dark" || (theme === "auto" && system.matches);
  document.documentElement.dataset.theme = isDark ? "dark" : "light";
  try {
    localStorage.setItem(kKey, theme);
  } catch {
    // it then holds until the page is closed
  }
}

export function nextTheme(theme: Theme): Theme {
  return kThemes[(kThemes.indexOf(theme) + 1) % kThemes.length]!;
}

/** Follows the system where the viewer hasn't chosen; on paper all is light. */
export function followSystem(theme: () => Theme): void {
  system.addEventListener("change", () => applyTheme(theme()));
  addEventListener("beforeprint", () => (document.documentElement.dataset.theme = "light"));
  addEventListener("afterprint", () => applyTheme(theme()));
}
