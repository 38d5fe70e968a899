// What the middle of the page shows.

export interface View {
  readonly element: HTMLElement;
  readonly title: string;
  /** Goes to another place in the same view. False when that needs another view. */
  go(args: string[]): boolean;
  /** Fetches anew what has changed; `stations` are those whose picture differs. */
  refresh?(stations: string[] | null): void;
  dispose?(): void;
}
