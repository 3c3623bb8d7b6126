// A game against the engine.

import { ask } from "./dialogs.mjs";
import { on } from "./dom.mjs";
import { boardOf, isWhite, otherSide } from "./fen.mjs";
import { partOf } from "./game.mjs";
import { GameClock } from "./game_clock.mjs";
import { GameForm } from "./game_form.mjs";
import { Hint } from "./hint.mjs";
import { drawPlay, stateWords } from "./play_view.mjs";
import { drawNames } from "./players.mjs";
import { moveWords } from "./speech.mjs";

// Milliseconds: of a move at full strength without a clock, and the most at a level.
const FULL_TIME = 1500;
const LEVEL_TIME = 20000;

export class Play {
  #thinking = false;
  #entered = false;

  constructor(app) {
    this.app = app;
    this.form = new GameForm(app, (game, side) => this.#start(game, side));
    this.hint = new Hint(app);
    on("take-back", () => this.takeBack());
    on("hint", () => this.#showHint());
    on("resign", () => this.resign());
    on("again", () => this.#showForm());
    on("to-review", () => this.app.choose("review"));
    this.clock = new GameClock(app, (side) => this.#outOfTime(side));
  }

  get play() {
    return this.app.game.play;
  }
  get running() {
    return Boolean(this.play) && !this.play.over;
  }
  get texts() {
    return this.app.texts;
  }

  name() {
    this.form.name();
    this.hint.draw();
  }

  async #start(game, side) {
    this.form.settle(game, side);
    await this.app.searcher.newGame();
    await this.app.load(game, { ply: game.moves.length });
  }

  // What was set up is there again for another game.
  #showForm() {
    const { game } = this.app;
    game.play = null;
    this.app.load(this.form.again(game));
  }

  // The course of a game.

  enter() {
    this.#entered = true;
    this.clock.enter();
  }

  leave() {
    this.#entered = false;
    this.clock.stop();
    if (this.#thinking) {
      this.app.searcher.stop();
    }
    this.hint.drop();
  }

  /** A game that is left or begun anew: nothing of the one before goes on. */
  forget() {
    if (this.#thinking || this.hint.running) {
      this.app.searcher.stop();
    }
    this.hint.forget();
    this.clock.renew();
  }

  /** Whether the user may make a move in the position that is shown. */
  mayMove(side) {
    const { app } = this;
    const atEnd = app.atEnd && app.view.line.length === 0;
    return atEnd && (this.running ? side === this.play.side : !this.play);
  }

  /** The user's move. Without a game it begins one. */
  async make(move) {
    if (!this.play) {
      const { game, position } = this.app;
      this.form.settle(game, position.side);
      this.clock.renew();
      await this.app.searcher.newGame();
    }
    this.hint.drop();
    await this.#append(move, this.play.side);
  }

  async #append(move, side) {
    const { app } = this;
    this.clock.press(side);
    app.game.moves.push(move.uci);
    app.view = { ply: app.game.moves.length, line: [] };
    const words = moveWords(this.texts, move);
    app.say(side === this.play.side ? words : this.texts.get("say.engine", { words }));
    app.sounds.move(move);
    await app.show();
  }

  /** What is to be done in the position that the game has come to. */
  follow() {
    const { app } = this;
    if (!this.running || !this.#entered) {
      return;
    }
    const { end, side } = app.last;
    if (end) {
      this.#finish(end.kind, end.result);
      return;
    }
    if (app.game.moves.length > 0) {
      this.clock.run(side);
    }
    if (side !== this.play.side && !this.#thinking) {
      this.#think(side);
    }
  }

  async #think(side) {
    const { app } = this;
    const { game } = app;
    const { level } = game.play;
    this.#thinking = true;
    this.draw();
    const count = game.moves.length;
    const best =
      await app.searcher.search(partOf(game), this.#options(level), this.#limits(level));
    this.#thinking = false;
    const same = app.game === game && game.moves.length === count && this.running && this.#entered;
    if (!same) {
      // What has come meanwhile may wait for the engine too.
      this.follow();
      return;
    }
    const move = app.last.legal.find((each) => each.uci === best);
    if (move) {
      await this.#append(move, side);
    } else if (best === null) {
      this.follow();
    } else {
      app.tell(this.texts.get("engine.failed", { words: best }));
    }
  }

  #options(level) {
    return { MultiPV: 1, UCI_LimitStrength: level > 0, ...(level ? { UCI_Elo: level } : {}) };
  }

  #limits(level) {
    return this.clock.limits() ?? "movetime " + (level ? LEVEL_TIME : FULL_TIME);
  }

  #finish(kind, result) {
    const { app } = this;
    this.play.over = { kind, result };
    app.game.result = result;
    this.clock.stop();
    this.hint.drop();
    app.keep();
    this.draw();
    app.say(this.words());
    app.sounds.play("over");
    app.drawCaptions();
  }

  async resign() {
    const { game } = this.app;
    const sure = this.running && await ask(this.texts, "resign");
    if (sure && this.running && this.app.game === game) {
      const lost = this.play.side === "white" ? "0-1" : "1-0";
      if (this.#thinking) {
        this.app.searcher.stop();
      }
      this.#finish("resigned", lost);
    }
  }

  async takeBack() {
    const { app } = this;
    if (!this.running) {
      return;
    }
    const mine = app.last.side === this.play.side;
    const count = Math.min(mine ? 2 : 1, app.game.moves.length);
    if (this.#thinking) {
      app.searcher.stop();
    }
    this.hint.drop();
    app.leavePosition();
    app.game.moves.splice(app.game.moves.length - count, count);
    app.view = { ply: app.game.moves.length, line: [] };
    this.clock.stop();
    app.say(this.texts.get("say.back"));
    await app.show();
  }

  #showHint() {
    if (this.running && this.app.last.side === this.play.side) {
      this.hint.show();
    }
  }

  #outOfTime(side) {
    if (this.#thinking) {
      this.app.searcher.stop();
    }
    // A bare king cannot win by the clock.
    const other = otherSide(side);
    const pieces = boardOf(this.app.last.fen).filter((piece) =>
      piece !== "." && isWhite(piece) === (other === "white"));
    const won = other === "white" ? "1-0" : "0-1";
    this.#finish("time", pieces.length > 1 ? won : "1/2-1/2");
  }

  // What is seen.

  /** One sentence on the state of the game. */
  words() {
    return stateWords(this.app);
  }

  draw() {
    drawPlay(this.app);
    this.clock.draw();
    this.hint.draw();
  }

  /** Names and clocks beside the board, where there is a game. */
  drawPlayers(flipped) {
    drawNames(this.app.game, this.texts, flipped, this.app.mode === "play" && !this.play);
    this.clock.draw();
  }
}
