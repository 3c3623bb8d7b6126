// The game, the position of it that is shown, and the ways from one to another.

import { emptyGame } from "./game.mjs";
import { moveWords } from "./speech.mjs";

/**
 * What extends this shows the position by show(), leaves the one before by leavePosition(), and
 * says and sounds what is done.
 */
export class Walk {
  game = emptyGame();
  // The position that is shown: half-moves of the game, and a line that leaves it there.
  view = { ply: 0, line: [], step: 0 };

  get atEnd() {
    return this.view.ply === this.game.moves.length;
  }

  go(ply) {
    this.leavePosition();
    this.view = { ply: Math.min(Math.max(ply, 0), this.game.moves.length), line: [], step: 0 };
    return this.show();
  }

  goLine(step) {
    this.leavePosition();
    this.view = { ...this.view, step };
    return this.show();
  }

  toEnd() {
    if (!this.atEnd || this.view.line.length) {
      this.go(this.game.moves.length);
    }
  }

  stepBy(direction) {
    const { view } = this;
    if (view.line.length) {
      const step = view.step + direction;
      return step < 1 ? this.go(view.ply) : step <= view.line.length ? this.goLine(step) : null;
    }
    return this.go(view.ply + direction);
  }

  /** Shows a line from the position with this many half-moves on, at a step of it. */
  showLine(ply, line, step) {
    this.leavePosition();
    this.view = { ply, line, step };
    return this.show();
  }

  /** A move beside a game that is played: on in the game, or in a line that leaves it. */
  async explore(move) {
    const { game, view } = this;
    const line = view.line.slice(0, view.step);
    this.say(moveWords(this.texts, move));
    this.sounds.move(move);
    if (!line.length && game.moves[view.ply] === move.uci) {
      await this.go(view.ply + 1);
    } else if (!line.length && this.atEnd && !this.modes.play.running && game.result === "*") {
      game.moves.push(move.uci);
      this.modes.review.forget();
      await this.go(game.moves.length);
    } else {
      await this.showLine(view.ply, [...line, move.uci], line.length + 1);
    }
  }
}
