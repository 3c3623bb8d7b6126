// What the core knows of positions and games, asked once and remembered.

import { firstCore } from "./first_core.mjs";
import { partOf } from "./game.mjs";

const MOST_KNOWN = 1000;

export class Positions {
  core = firstCore;
  #known = new Map();
  // Settled when the book is there, or is not to be had.
  #book = null;

  /** What the core tells of a position, remembered. */
  async of(part) {
    const key = JSON.stringify(part);
    let known = this.#known.get(key);
    if (!known) {
      known = this.core.ask({ ask: "position", ...part });
      if (this.#known.size >= MOST_KNOWN) {
        this.#known.delete(this.#known.keys().next().value);
      }
      this.#known.set(key, known);
      known.catch(() => this.#known.delete(key));
    }
    return known;
  }

  /** The moves of a line from a position on, as players write them. */
  async sansOf(part, line) {
    const answer = await this.core.ask({ ask: "line", ...part, line });
    return answer.error ? line : answer.sans;
  }

  /** A game as PGN, or the error that the core gives. */
  pgnOf(game) {
    const { tags, result } = game;
    return this.core.ask({ ask: "to-pgn", ...partOf(game), tags, result });
  }

  /** The book moves of a position. The book is loaded when it is first looked into. */
  async bookOf(part) {
    this.#book ??= this.#takeBook();
    await this.#book;
    return this.core.ask({ ask: "book", ...part });
  }

  // Without it there are no book moves.
  async #takeBook() {
    try {
      const answer = await fetch(new URL("./Orvelin.bin", import.meta.url));
      if (answer.ok) {
        await this.core.book(await answer.arrayBuffer());
      }
    } catch {
      // The page works all the same.
    }
  }
}
