/** A game as it is told to the core. */
export interface Game {
  /** A FEN text, or "startpos". */
  start?: string;
  chess960?: boolean;
  /** As UCI has them; castling in Chess960 is the king onto his own rook. At most 4000. */
  moves?: string[];
}

/** What a board has to know of chess, from a worker of its own. docs/board-core.md has the forms. */
export class BoardCore {
  /** Starts the worker. @param options `wasm` is the address of the module, if not beside this. */
  constructor(options?: { wasm?: URL | string });

  /**
   * Answers requests one after the other. What the core cannot answer gives an object with the
   * member `error`, one sentence. Fails when the request was ended, or the module has failed; it is
   * loaded anew then.
   */
  ask(request: Game & { ask: string; [field: string]: unknown }): Promise<any>;

  /** The same as the text that the core writes: JSON in one line. */
  askText(request: Game & { ask: string; [field: string]: unknown }): Promise<string>;

  /** Hands over an opening book, to be asked about from here on: its number of entries. */
  book(bytes: ArrayBuffer): Promise<{ entries: number } | { error: string }>;

  /** Ends the request that the core works on, which fails; those behind it go on. */
  restart(): void;

  /** Ends the worker; what waits fails. */
  close(): void;
}
