// Moves that the user makes: on the board, or typed.

import { BoardView, isOwn } from "./board_view.mjs";
import { askPromotion } from "./dialogs.mjs";
import { find } from "./dom.mjs";
import { targetsOf, typedMoves } from "./moves.mjs";

export class Hand {
  constructor(app) {
    this.app = app;
    this.board = new BoardView(find("board"), app.texts, {
      targets: (square) => this.#targets(square),
      move: (from, to) => this.#chosen(from, to),
      refused: () => this.#refused(),
    });
    find("typed-form").addEventListener("submit", (event) => this.#typed(event));
  }

  /** Leaves nothing of a move that was begun in another position. */
  clear() {
    find("typed").value = "";
  }

  #tell(key, values) {
    this.app.tell(this.app.texts.get(key, values), { passing: true });
  }

  // A piece that cannot be moved was taken: that the engine's move is waited for is seen anyhow.
  #refused() {
    const { position, modes, mode, atEnd, view } = this.app;
    const { running, play } = modes.play;
    if (!position || mode !== "play" || !play) {
      return;
    }
    if (!running) {
      this.#tell("play.over");
    } else if (!atEnd || view.line.length) {
      this.#tell("play.back");
    }
  }

  #mayMove() {
    const { position, modes, mode } = this.app;
    return Boolean(position) && !position.end && modes[mode].mayMove(position.side);
  }

  #targets(square) {
    const { position } = this.app;
    if (!this.#mayMove() || !isOwn(position.fen, square, position.side)) {
      return null;
    }
    return [...targetsOf(square, position.legal).keys()];
  }

  async #chosen(from, to) {
    const moves = targetsOf(from, this.app.position.legal).get(to) ?? [];
    await this.#make(await this.#oneOf(moves));
  }

  async #oneOf(moves) {
    const promotions = moves.length > 1 && moves.every((move) => move.promotion);
    return promotions ? askPromotion(this.app.texts, moves, this.app.position.side) : moves[0];
  }

  async #make(move) {
    const { app } = this;
    if (move && app.position.legal.includes(move) && this.#mayMove()) {
      app.tell("");
      await app.modes[app.mode].make(move);
    }
  }

  async #typed(event) {
    event.preventDefault();
    const { app } = this;
    const field = find("typed");
    const text = field.value.trim();
    if (!text) {
      return;
    }
    if (!this.#mayMove()) {
      this.#tell("typed.not");
      return;
    }
    const moves = typedMoves(text, app.position.legal, (san) => app.texts.san(san));
    const squares = new Set(moves.map((move) => move.from + move.to));
    if (squares.size !== 1) {
      this.#tell(squares.size ? "typed.several" : "typed.none", { text });
      return;
    }
    field.value = "";
    await this.#make(await this.#oneOf(moves));
  }
}
