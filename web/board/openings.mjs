// The name of the opening of a game: the last one that a position on the way to the one shown has.

import { find, setText } from "./dom.mjs";

// Names are given early in a game.
const MOST_MOVES = 40;

/** What a position is known by, whatever the moves to it: the first three fields of its FEN. */
const keyOf = (fen) => fen.split(" ", 3).join(" ");

export class Openings {
  #core;
  #names;

  constructor(core, place = new URL("./openings.json", import.meta.url)) {
    this.#core = core;
    // Without the names the page works all the same.
    this.#names = fetch(place).then((answer) => (answer.ok ? answer.json() : {})).catch(() => ({}));
  }

  /** The name behind the moves of a game, which begins with the FEN; "" where there is none. */
  async nameOf({ moves, ...start }, fen) {
    const names = await this.#names;
    const line = moves.slice(0, MOST_MOVES);
    const { fens = [] } = await this.#core.ask({ ask: "line", ...start, line });
    const known = [fen, ...fens].map(keyOf).findLast((key) => Object.hasOwn(names, key));
    return known ? names[known] : "";
  }

  /** Shows the name, unless the page shows something else by then, which `now` tells. */
  async show(part, fen, now) {
    const name = await this.nameOf(part, fen).catch(() => "");
    if (now()) {
      setText(find("opening"), name);
    }
  }
}
