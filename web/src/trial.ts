// Switchings that the viewer tries out in a copy of the model, with the way back.

import type { SwitchEvent, WhatIfAnswer } from "./documents";
import type { Session } from "./sources/source";

export class Trial {
  events: SwitchEvent[] = [];
  answer: WhatIfAnswer | null = null;

  /** `onChange` is called when the copy has another state, `onError` when the program refuses. */
  constructor(private readonly session: Session, private readonly onChange: () => void,
              private readonly onError: (message: string) => void) {}

  get isActive(): boolean { return this.events.length > 0; }

  /** Tries one more switching. One that takes the last one on the same equipment back removes it. */
  add(event: SwitchEvent): Promise<void> {
    const last = this.events.findLastIndex((each) => isSameThing(each, event));
    const rest = this.events.filter((_, i) => i !== last);
    const takesBack = last >= 0 && this.events[last]!.open !== event.open;
    return this.use(takesBack ? rest : [...this.events, event]);
  }

  undo(): Promise<void> { return this.use(this.events.slice(0, -1)); }

  clear(): Promise<void> { return this.use([]); }

  /** Tries the same events again, on what the model is now. */
  repeat(): Promise<void> { return this.use(this.events); }

  private async use(events: SwitchEvent[]): Promise<void> {
    try {
      this.answer = await this.session.tryOut(events);
      this.events = events;
      if (events.length === 0) this.answer = null;
      this.onChange();
    } catch (error) {
      this.onError((error as Error).message);
    }
  }
}

function isSameThing(a: SwitchEvent, b: SwitchEvent): boolean {
  return a.table === b.table && a.id === b.id && a.end === b.end;
}
