// What the endgame tables know of a position. A table is built while it is asked for, which takes a
// while: in a core of its own, and only where somebody wants it.

import { BoardCore } from "./core.mjs";
import { button, find, make } from "./dom.mjs";
import { boardOf } from "./fen.mjs";

// The endings that the core has tables of: White's pieces beside the king, and Black's. Each is
// also for the other colours, and for less than all of its pieces.
const TABLES = [["NB", ""], ["Q", "r"], ["R", "n"]];

const swapped = (piece) => (piece === piece.toLowerCase() ? piece.toUpperCase()
  : piece.toLowerCase());

/** Whether the core has a table for a position. */
export function hasTable(fen) {
  const pieces = boardOf(fen).filter((piece) => !".Kk".includes(piece));
  const fits = (own) => TABLES.some((table) => {
    const all = [...table.join("")];
    return own.length <= all.length && new Set(own).size === own.length &&
      own.every((piece) => all.includes(piece));
  });
  return fen.split(" ")[2] === "-" && pieces.length > 0 &&
    (fits(pieces) || fits(pieces.map(swapped)));
}

export class Ending {
  #core = null;
  #run = 0;
  // What was answered, and the position that was asked about last, by its game.
  #known = new Map();
  #asked = "";

  constructor(app) {
    this.app = app;
  }

  /** Offers to ask about a position, or tells what was answered; another one is given up. */
  offer(part, position) {
    this.#run += 1;
    const key = JSON.stringify(part);
    const known = this.#known.get(key);
    if (position.end || !hasTable(position.fen)) {
      find("ending").replaceChildren();
    } else if (known) {
      this.#show(known, position);
    } else if (this.#asked === key) {
      this.#ask(part, position);
    } else {
      find("ending").replaceChildren(make("p", { class: "buttons" },
        button(this.app.texts.get("ending.ask"), { id: "ask-ending" },
          () => this.#ask(part, position))));
    }
  }

  /** What was built stays; nothing more is built until the position is shown again. */
  leave() {
    this.#run += 1;
  }

  async #ask(part, position) {
    const run = ++this.#run;
    const { texts } = this.app;
    const key = JSON.stringify(part);
    this.#asked = key;
    this.#core ??= new BoardCore();
    const words = make("p", { class: "ending", role: "status" },
      texts.get("ending.wait", { share: 0 }));
    find("ending").replaceChildren(words);
    try {
      for (;;) {
        const { ending, error } = await this.#core.ask({ ask: "ending", ...part });
        if (run !== this.#run) {
          return;
        }
        if (error || !ending) {
          words.textContent = error ?? texts.get("ending.none");
          return;
        }
        if (ending.result !== null) {
          this.#known.set(key, ending);
          this.#show(ending, position);
          return;
        }
        words.textContent =
          texts.get("ending.wait", { share: Math.floor(100 * ending.progress) });
      }
    } catch (error) {
      words.textContent = String(error.message ?? error);
    }
  }

  #words({ result, plies }) {
    const { texts } = this.app;
    if (result === "1/2-1/2") {
      return texts.get("ending.draw");
    }
    const key = result === "1-0" ? "ending.white" : "ending.black";
    return texts.get(key, { moves: Math.ceil(plies / 2) });
  }

  #show(ending, position) {
    const { app } = this;
    const rows = ending.moves.map((move) => {
      const legal = position.legal.find(({ uci }) => uci === move.uci);
      return make("li", {}, button(app.texts.san(move.san), { class: "book-move" },
        () => legal && app.explore(legal)),
      make("span", { class: "faint small" }, " " + this.#words(move)));
    });
    find("ending").replaceChildren(
      make("p", { class: "ending", role: "status" }, `${ending.name}: ${this.#words(ending)}`),
      make("ol", { class: "ending-moves" }, ...rows));
  }
}
